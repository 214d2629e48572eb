#pragma once
// What one test talks to the grip through, as a new program has it: its preferences, a fake port,
// a fresh link over it, a fresh session with the grip (records, gun information, error record)
// and the application object, with a scripted user and no real sleeps. The user is uninstalled
// when it goes out of scope.
#include "FakeCommPort.h"
#include "ScriptedUi.h"

#include "base/cRegistrySettings.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "shell/cApplication.h"

#include <QList>
#include <memory>

class TestLink {
public:
    // The link's pauses are recorded in sleeps instead of slept, unless realSleep.
    explicit TestLink(bool realSleep = false);
    ~TestLink();
    TestLink(const TestLink&) = delete;
    TestLink& operator=(const TestLink&) = delete;

    // The application object (library, preferences, active setting).
    cApplication& app() { return *m_app; }
    // As the program's next start: the application object dropped (its library unsaved, the
    // shared connection closed) and made again over the preferences read again from the store.
    void restart();

    cRegistrySettings prefs;
    FakeCommPort port;
    ScriptedUi ui;
    QList<qint32> sleeps; // every DoWait, in milliseconds
    cPreferencesLinkSettings settings{prefs};
    cLink link{&port, settings};
    cGripSession session{link};

private:
    std::unique_ptr<cApplication> m_app = std::make_unique<cApplication>(prefs);
};
