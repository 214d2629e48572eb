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
    auto* label = new QLabel(value, parent);
    label->setObjectName(name);
    label->setAccessibleDescription(readCaption(caption));
    return label;
}

} // namespace mLabels
