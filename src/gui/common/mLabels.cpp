#include "gui/common/mLabels.h"

#include <QLabel>
#include <QWidget>

namespace mLabels {
namespace {

QString readCaption(const QString& caption)
{
    QString text = QString(caption).remove(QLatin1Char('&')).trimmed();
    if (text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text.trimmed();
}

} // namespace

void LabelFor(QLabel* label, QWidget* control)
{
    if (!label || !control)
        return;
    label->setBuddy(control);
    control->setAccessibleName(readCaption(label->text()));
}

QLabel* ValueLabel(QWidget* parent, const QString& name, const QString& caption, const QString& value)
{
    return AsValueLabel(new QLabel(parent), name, caption, value);
}

QLabel* AsValueLabel(QLabel* label, const QString& name, const QString& caption, const QString& value)
{
    label->setText(value);
    label->setObjectName(name);
    label->setAccessibleDescription(readCaption(caption));
    return label;
}

} // namespace mLabels
