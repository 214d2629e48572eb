#pragma once
// What a screen reader makes of the battery indicator: a progress bar named "Battery" whose value
// is the voltage read ("5.60 V", or "No voltage read"), with its band as description ("high
// charge"); the value in volts from Min to Max for tools that read numbers.
#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

class ucIProgress;

class ucIProgressAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit ucIProgressAccessible(ucIProgress* indicator);

    // Makes the interface for every battery indicator; installed once, by the first indicator.
    static QAccessibleInterface* Factory(const QString& className, QObject* object);

    QString text(QAccessible::Text t) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    const ucIProgress* indicator() const;
};
