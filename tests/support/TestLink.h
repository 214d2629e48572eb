#pragma once
// Puts the link into a known state for one test: a fake port, a scripted user, no real sleeps,
// a fresh gun-information record and error record. Undone when it goes out of scope.
#include "FakeCommPort.h"
#include "ScriptedUi.h"

#include <QList>

class TestLink {
public:
    explicit TestLink(bool realSleep = false);
    ~TestLink();
    TestLink(const TestLink&) = delete;
    TestLink& operator=(const TestLink&) = delete;

    FakeCommPort port;
    ScriptedUi ui;
    QList<qint32> sleeps; // every DoWait, in milliseconds
};
