#include "gui/common/ValueLabel.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

ValueLabel::ValueLabel(const QString& caption, QWidget* parent) : QLabel(parent)
{
    QString description = QString(caption).remove(QLatin1Char('&')).trimmed();
    if (description.endsWith(QLatin1Char(':')))
        description.chop(1);
    setAccessibleDescription(description.trimmed());
}

void ValueLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    frame.backgroundColor = palette().color(backgroundRole());
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
}
