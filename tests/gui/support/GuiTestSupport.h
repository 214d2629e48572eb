#pragma once
// What the desktop program's tests share: the main window made against a virtual grip behind
// the in-memory port, with the scripted services installed, and lookups of controls by name.
#include "GripTestSupport.h"
#include "ScriptedQtUi.h"

#include "gui/shell/fTolvaneMan.h"

#include <QTest>
#include <memory>

namespace guitest {

// A control of a window by its object name; fails the test when there is none.
template <typename T>
T* control(QObject* window, const QString& name)
{
    T* found = window->findChild<T*>(name);
    if (!found)
        qWarning("no control named %s", qPrintable(name));
    return found;
}

// The grip harness, the scripted services and a fresh library, in that order of making; the
// window comes last and talks to the harness's port.
class WindowHarness {
public:
    explicit WindowHarness(const QString& gripOptions = QString());
    ~WindowHarness();

    // Makes (and shows) the main window with the given command line; the link then uses the
    // harness's port. Showing runs the first activation.
    fTolvaneMan& open(bool show = true, const QStringList& commandLine = {});
    // The command codes the grip received since the last call (gun-information refreshes too).
    QList<int> takeCodes();

    griptest::GripHarness grip;
    ScriptedQtUi ui;
    std::unique_ptr<fTolvaneMan> window;
};

// The texts of the messages shown so far.
QStringList messageTexts(const ScriptedUi& script);

// Forgets the library, the application object and the preferences, and puts the template
// library in place, so that each test starts as a first run.
void FreshStart();

} // namespace guitest
