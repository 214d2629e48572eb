#include "gui/shell/PlacedWidget.h"

#include "gui/shell/mGUISupport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

using mGUISupport::PixelsToTwips;
using mGUISupport::TwipsToPixels;

QString PlacedWidget::formName() const
{
    return m_window.objectName();
}

qint16 PlacedWidget::windowState() const
{
    if (m_window.isMinimized())
        return StateMinimized;
    if (m_window.isMaximized())
        return StateMaximized;
    return StateNormal;
}

void PlacedWidget::setWindowState(qint16 state)
{
    switch (state) {
    case StateMinimized: m_window.setWindowState(Qt::WindowMinimized); break;
    case StateMaximized: m_window.setWindowState(Qt::WindowMaximized); break;
    default: m_window.setWindowState(Qt::WindowNoState); break;
    }
}

float PlacedWidget::left() const { return float(PixelsToTwips(m_window.x(), &m_window)); }
float PlacedWidget::top() const { return float(PixelsToTwips(m_window.y(), &m_window)); }
float PlacedWidget::width() const { return float(PixelsToTwips(m_window.width(), &m_window)); }
float PlacedWidget::height() const { return float(PixelsToTwips(m_window.height(), &m_window)); }

void PlacedWidget::move(float left, float top)
{
    QPoint position(TwipsToPixels(left, &m_window), TwipsToPixels(top, &m_window));
    // A position saved on a screen that is gone would put the window out of reach.
    if (!QGuiApplication::screenAt(position + QPoint(40, 20)))
        return;
    m_window.move(position);
}

void PlacedWidget::resize(float width, float height)
{
    m_window.resize(TwipsToPixels(width, &m_window), TwipsToPixels(height, &m_window));
}
