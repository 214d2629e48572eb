#pragma once
// What one test talks to the grip through: a fake port, a fresh link over it and a fresh session
// with the grip (records, gun information, error record as a new program has them), with a
// scripted user and no real sleeps. The user is uninstalled when it goes out of scope.
#include "FakeCommPort.h"
#include "ScriptedUi.h"

#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"

#include <QList>

class TestLink {
public:
    // The link's pauses are recorded in sleeps instead of slept, unless realSleep.
    explicit TestLink(bool realSleep = false);
    ~TestLink();
    TestLink(const TestLink&) = delete;
    TestLink& operator=(const TestLink&) = delete;

    FakeCommPort port;
    ScriptedUi ui;
    QList<qint32> sleeps; // every DoWait, in milliseconds
    cPreferencesLinkSettings settings;
    cLink link{&port, settings};
    cGripSession session{link};
};
