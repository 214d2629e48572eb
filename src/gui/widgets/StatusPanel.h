#pragma once
// A panel of the status bar that shows a text of any length: given less room than the text needs,
// it draws it shortened with "…" (a path in its middle, so that its file name stays) and shows the
// whole text as its tool tip. Its text stays whole for the window and a screen reader, and a long
// path never widens the window.
#include <QLabel>

class StatusPanel : public QLabel {
    Q_OBJECT
public:
    StatusPanel(Qt::TextElideMode elide, QWidget* parent);

    // The text as drawn in the room the panel has.
    QString shownText() const;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int room() const;

    Qt::TextElideMode m_elide;
};
