#pragma once
// A window as the preferences keep its placement: its form name (the object name), its state
// and its position and size in twips.
#include "base/cPlacedWindow.h"

class QWidget;

class PlacedWidget : public cPlacedWindow {
public:
    explicit PlacedWidget(QWidget& window) : m_window(window) {}

    QString formName() const override;
    qint16 windowState() const override;
    void setWindowState(qint16 state) override;
    float left() const override;
    float top() const override;
    float width() const override;
    float height() const override;
    void move(float left, float top) override;
    void resize(float width, float height) override;

private:
    QWidget& m_window;
};
