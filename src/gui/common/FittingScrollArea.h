#pragma once
// A scroll area that asks for room for the whole of its content: a window built around one opens
// at its full size, looking as if there were no scroll area, and shows scroll bars only when it
// is made smaller than that (a small screen, a large font or scale). It takes no focus itself: the
// keyboard goes from control to control, and the area scrolls to the one that has the focus.
#include <QScrollArea>

class FittingScrollArea : public QScrollArea {
    Q_OBJECT
public:
    explicit FittingScrollArea(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    // The content asks for another size: so does the area, from the window around it.
    bool viewportEvent(QEvent* event) override;
};
