#pragma once
// What the desktop program's tests share: the main window made against a virtual grip behind
// the in-memory port, or a library alone, with the scripted services installed; controls found
// by name and used as the user uses them; the next modal dialog answered; what a screen reader
// reads. It brings the headers nearly every test of a window needs.
#include "grip/mGripComparison.h"
#include "GripTestSupport.h"
#include "ScriptedQtUi.h"

#include "gui/shell/fTolvaneMan.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>
#include <functional>
#include <memory>

// Fails the test with the first error shown, if any was.
#define GUITEST_NO_ERRORS(script) QVERIFY2((script).errors.isEmpty(), qPrintable(guitest::firstError(script)))

namespace guitest {

// A comparison where one value of each kind differs and a record was left out.
mGripComparison::tComparison differingComparison();
// Fills every record of the grip with values that differ from a fresh window's and from each
// other.
void fillGrip(griptest::GripHarness& grip);


// A control of a window by its object name; warns when there is none.
template <typename T>
T* control(QObject* window, const QString& name)
{
    T* found = window->findChild<T*>(name);
    if (!found)
        qWarning("no control named %s", qPrintable(name));
    return found;
}

// Runs the command of that name as the user does: triggers the menu item or clicks the button.
void run(QObject* window, const QString& name);
// Whether the command or control of that name (a menu item or a widget) can be used.
bool enabled(QObject* window, const QString& name);
// Of every command the main window holds while a grip command or a firmware transfer runs, the
// ones that can be used.
QStringList enabledCommands(QObject* window);
// The text of the text box of that name.
QString text(QObject* window, const QString& name);
// Replaces what a text box holds by typing (an empty text erases it).
void type(QLineEdit* edit, const QString& text);
void type(QObject* window, const QString& name, const QString& text);
// A list's texts in one column, row by row; selecting a row as a click does.
QStringList columnTexts(QTreeWidget* list, int column);
void selectRow(QTreeWidget* list, int index);

// Answers the next modal dialog a window opens with exec(): answer gets the dialog once it is on
// screen; a dialog that answer left open is cancelled, so that no test waits forever.
void answerNextModal(std::function<void(QDialog*)> answer, int tries = 0);

// What a screen reader reads as the control's name: its own, or for a combo box the label it is
// labelled by.
QString accessibleName(QObject* control);
// The object names of the controls of window a user can reach that a screen reader could not
// name.
QStringList unnamedControls(QWidget* window);

// The grip harness, the scripted services and a fresh library, in that order of making; the
// window comes last and talks to the harness's port.
class WindowHarness {
public:
    explicit WindowHarness(const QString& gripOptions = QString());
    ~WindowHarness();

    // The application object the window is given, and its preferences.
    cApplication& app() { return grip.link.app(); }
    cRegistrySettings& prefs() { return grip.link.prefs; }

    // Makes (and shows) the main window with the given command line, over the harness's session
    // (its link talks to the harness's port). Showing runs the first activation.
    fTolvaneMan& open(bool show = true, const QStringList& commandLine = {});
    // The command codes the grip received since the last call (gun-information refreshes too).
    QList<int> takeCodes();

    griptest::GripHarness grip;
    ScriptedQtUi ui;
    std::unique_ptr<fTolvaneMan> window;
};

// A first run's library and preferences, with the scripted services installed and no window.
class ScriptedLibrary {
public:
    ScriptedLibrary();
    ~ScriptedLibrary();
    ScriptedLibrary(const ScriptedLibrary&) = delete;
    ScriptedLibrary& operator=(const ScriptedLibrary&) = delete;

    cApplication& app() { return program.app(); }
    cRegistrySettings& prefs() { return program.prefs; }

    TestLink program;
    ScriptedQtUi ui;
};

// The texts of the messages shown so far; the first error as "number: description".
QStringList messageTexts(const ScriptedUi& script);
QString firstError(const ScriptedUi& script);
// A preference of section Initialize as the store on disk holds it.
QString stored(const QString& key);

// Forgets the library and the stored preferences, and puts the template library in place, so
// that the program made next starts as a first run.
void FreshStart();

} // namespace guitest
