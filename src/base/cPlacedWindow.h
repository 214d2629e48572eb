#pragma once
// What the preferences need of a window to keep its placement: its form name, state, position
// and size in twips. The desktop program adapts its windows to this; the core has no widgets.
#include <QString>

class cPlacedWindow {
public:
    static constexpr qint16 StateNormal = 0;
    static constexpr qint16 StateMinimized = 1;
    static constexpr qint16 StateMaximized = 2;

    virtual ~cPlacedWindow() = default;
    virtual QString formName() const = 0;
    virtual qint16 windowState() const = 0;
    virtual void setWindowState(qint16 state) = 0;
    virtual float left() const = 0;
    virtual float top() const = 0;
    virtual float width() const = 0;
    virtual float height() const = 0;
    virtual void move(float left, float top) = 0;
    virtual void resize(float width, float height) = 0;
};
