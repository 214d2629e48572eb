#pragma once
// What a screen reader reads: the accessible name of a control, and the controls of a window
// that it could not name.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QStringList>
#include <QWidget>

namespace guitest {

inline QString accessibleName(QWidget* widget)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
    return face ? face->text(QAccessible::Name) : QString();
}

// The object names of the lists, text boxes, combo boxes, date pickers and buttons of window
// that have no accessible name.
inline QStringList unnamedControls(QWidget* window)
{
    QStringList unnamed;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        const bool kind = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractItemView*>(widget)
                          || qobject_cast<QComboBox*>(widget) || qobject_cast<QDateEdit*>(widget)
                          || (qobject_cast<QLineEdit*>(widget) && !qobject_cast<QComboBox*>(widget->parentWidget())
                              && !qobject_cast<QAbstractSpinBox*>(widget->parentWidget()));
        // Parts Qt makes for itself (the combo's own list, the scroll bars' buttons) are left out.
        if (!kind || widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        // On Linux a combo box reads its label through the "labelled by" relation.
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        const bool labelled = face && !face->relations(QAccessible::Labelled).isEmpty();
        if (accessibleName(widget).trimmed().isEmpty() && widget->accessibleName().isEmpty() && !labelled)
            unnamed << widget->objectName();
    }
    return unnamed;
}

} // namespace guitest
