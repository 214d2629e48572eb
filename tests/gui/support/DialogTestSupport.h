#pragma once
// What the tests of the library and options windows share: a fresh library with the scripted
// services and no main window, answering the next modal dialog, and what a screen reader reads.
#include "GuiTestSupport.h"

#include "library/mDatabase.h"
#include "shell/mMain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLineEdit>
#include <QStringList>
#include <QTimer>
#include <functional>

namespace guitest {

// A first run's library and preferences, with the scripted services installed.
class ScriptedLibrary {
public:
    ScriptedLibrary()
    {
        FreshStart();
        mMain::SetUserInterface(&ui);
        mMain::CheckForDB();
    }
    ~ScriptedLibrary() { mMain::SetUserInterface(nullptr); }
    ScriptedLibrary(const ScriptedLibrary&) = delete;
    ScriptedLibrary& operator=(const ScriptedLibrary&) = delete;

    ScriptedQtUi ui;
};

// Answers the next modal dialog a window opens with exec(): answer gets the dialog once it is on
// screen; a dialog that answer left open is cancelled, so that no test waits forever.
inline void answerNextModal(std::function<void(QDialog*)> answer, int tries = 0)
{
    QTimer::singleShot(tries == 0 ? 0 : 10, [answer, tries] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) {
            if (tries < 500)
                answerNextModal(answer, tries + 1);
            return;
        }
        answer(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
}

inline QString accessibleName(QWidget* widget)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
    return face ? face->text(QAccessible::Name) : QString();
}

// The object names of the lists, text boxes, combo boxes, date pickers and buttons of window
// that a screen reader could not name.
inline QStringList unnamedControls(QWidget* window)
{
    QStringList unnamed;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        const bool kind = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractItemView*>(widget)
                          || qobject_cast<QComboBox*>(widget) || qobject_cast<QDateEdit*>(widget)
                          || (qobject_cast<QLineEdit*>(widget) && !qobject_cast<QComboBox*>(widget->parentWidget())
                              && !qobject_cast<QAbstractSpinBox*>(widget->parentWidget()));
        // Parts Qt makes for itself (a combo box's list, scroll-bar buttons) have no object name.
        if (!kind || widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        // On Linux a combo box reads its label through the "labelled by" relation.
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        const bool labelled = face && !face->relations(QAccessible::Labelled).isEmpty();
        if (accessibleName(widget).trimmed().isEmpty() && !labelled)
            unnamed << widget->objectName();
    }
    return unnamed;
}

} // namespace guitest
