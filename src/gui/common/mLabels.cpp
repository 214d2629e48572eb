#include "gui/common/mLabels.h"

#include <QLabel>
#include <QWidget>

namespace mLabels {

void LabelFor(QLabel* label, QWidget* control)
{
    if (!label || !control)
        return;
    label->setBuddy(control);
    QString name = label->text();
    name.remove(QLatin1Char('&'));
    name = name.trimmed();
    if (name.endsWith(QLatin1Char(':')))
        name.chop(1);
    control->setAccessibleName(name.trimmed());
}

} // namespace mLabels
