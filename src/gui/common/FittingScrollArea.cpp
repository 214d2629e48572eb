#include "gui/common/FittingScrollArea.h"

#include <QEvent>

FittingScrollArea::FittingScrollArea(QWidget* parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
}

QSize FittingScrollArea::sizeHint() const
{
    // The base class caps its hint at a few dozen lines of text.
    if (!widget())
        return QScrollArea::sizeHint();
    const int frame = 2 * frameWidth();
    return widget()->sizeHint() + QSize(frame, frame);
}

bool FittingScrollArea::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::viewportEvent(event);
}
