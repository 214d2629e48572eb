#include "gui/common/KeyPreview.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

KeyPreview::KeyPreview(QWidget* window, Handler handler) : QObject(window), m_window(window), m_handler(std::move(handler))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyPreview::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !m_window || !watched->isWidgetType())
        return false;
    auto* widget = static_cast<QWidget*>(watched);
    if (widget->window() != m_window)
        return false;
    // A key travels from the focused control up to the window; it is looked at once, where it
    // starts.
    QWidget* focus = m_window->focusWidget();
    QWidget* start = focus ? focus : m_window.data();
    if (widget != start)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (!m_handler(*key))
        return false;
    key->accept();
    return true;
}
