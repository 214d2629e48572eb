#include "gui/common/PlacedWidget.h"

#include "gui/common/mGUISupport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cmath>
#include <optional>

using mGUISupport::PixelsToTwips;
using mGUISupport::TwipsToPixels;

namespace {

// A stored number of twips as pixels, when a window can have it: any single can be stored, but
// a position or size beyond what a widget takes would not even fit the pixel count.
std::optional<int> pixels(float twips, const QWidget& window)
{
    const double limit = PixelsToTwips(QWIDGETSIZE_MAX, &window);
    if (!std::isfinite(twips) || std::fabs(double(twips)) > limit)
        return std::nullopt;
    return TwipsToPixels(twips, &window);
}

} // namespace

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
    // A coordinate the window cannot take keeps the current one, as resize does.
    const QPoint position(pixels(left, m_window).value_or(m_window.x()), pixels(top, m_window).value_or(m_window.y()));
    // A position saved on a screen that is gone would put the window out of reach.
    if (!QGuiApplication::screenAt(position + QPoint(40, 20)))
        return;
    m_window.move(position);
}

void PlacedWidget::resize(float width, float height)
{
    // A size the window cannot have keeps the current one; the widget bounds the rest.
    m_window.resize(pixels(width, m_window).value_or(m_window.width()), pixels(height, m_window).value_or(m_window.height()));
}
