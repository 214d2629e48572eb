#pragma once
// The desktop's style with the focus of a push button always in sight. Fusion marks a focused
// button by the outline it also gives the default button, so with the focus on the default button
// the window looks as if nothing had the focus; a focus frame inside the focused button tells.
#include <QProxyStyle>

class FocusStyle : public QProxyStyle {
    Q_OBJECT
public:
    // Over the application's style, when that is Fusion (other styles frame the focus
    // themselves).
    static void Install();

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
};
