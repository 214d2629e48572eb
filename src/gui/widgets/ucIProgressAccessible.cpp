#include "gui/widgets/ucIProgressAccessible.h"

#include "gui/widgets/ucIProgress.h"

namespace {

double volts(qint32 hundredths)
{
    return hundredths / 100.0;
}

} // namespace

ucIProgressAccessible::ucIProgressAccessible(ucIProgress* indicator) : QAccessibleWidget(indicator, QAccessible::ProgressBar)
{
}

QAccessibleInterface* ucIProgressAccessible::Factory(const QString& className, QObject* object)
{
    auto* indicator = qobject_cast<ucIProgress*>(object);
    if (!indicator || className != QLatin1String(ucIProgress::staticMetaObject.className()))
        return nullptr;
    return new ucIProgressAccessible(indicator);
}

const ucIProgress* ucIProgressAccessible::indicator() const
{
    return static_cast<const ucIProgress*>(object());
}

QString ucIProgressAccessible::text(QAccessible::Text t) const
{
    if (t == QAccessible::Value)
        return indicator()->ValueText();
    // Only the band: the voltage in the tool tip, which a widget's description falls back to, is
    // the value already.
    if (t == QAccessible::Description)
        return indicator()->accessibleDescription();
    return QAccessibleWidget::text(t);
}

void* ucIProgressAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QVariant ucIProgressAccessible::currentValue() const
{
    return indicator()->HasValue() ? QVariant(volts(indicator()->Value())) : QVariant();
}

void ucIProgressAccessible::setCurrentValue(const QVariant&)
{
    // The indicator shows what the grip measured; no one sets it from outside.
}

QVariant ucIProgressAccessible::maximumValue() const
{
    return volts(indicator()->Max());
}

QVariant ucIProgressAccessible::minimumValue() const
{
    return volts(indicator()->Min());
}

QVariant ucIProgressAccessible::minimumStepSize() const
{
    return 0.01;
}
