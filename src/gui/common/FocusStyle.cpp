#include "gui/common/FocusStyle.h"

#include <QApplication>
#include <QStyleOptionFocusRect>

void FocusStyle::Install()
{
    if (QApplication::style()->name() == QLatin1String("fusion"))
        QApplication::setStyle(new FocusStyle);
}

void FocusStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element != CE_PushButtonLabel || !(option->state & State_HasFocus))
        return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(*option);
    focus.rect = subElementRect(SE_PushButtonFocusRect, option, widget);
    drawPrimitive(PE_FrameFocusRect, &focus, painter, widget);
}
