#pragma once
// Puts the link into a known state for one test: a fresh link over a fake port, installed for the
// records, with a scripted user, no real sleeps, a fresh gun-information record and error
// record. Undone when it goes out of scope.
#include "FakeCommPort.h"
#include "ScriptedUi.h"

#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"

#include <QList>

class TestLink {
public:
    explicit TestLink(bool realSleep = false);
    ~TestLink();
    TestLink(const TestLink&) = delete;
    TestLink& operator=(const TestLink&) = delete;

    // Makes another link (the main window's own) talk to this fake port, with its pauses
    // recorded here unless the sleeps are real.
    void serve(cLink& other);

    FakeCommPort port;
    ScriptedUi ui;
    QList<qint32> sleeps; // every DoWait, in milliseconds
    cPreferencesLinkSettings settings;
    cLink link{&port, settings};

private:
    void recordSleeps(cLink& target);

    bool m_realSleep;
};
