#include "TestLink.h"

#include "shell/mMain.h"

TestLink::TestLink(bool realSleep) : m_realSleep(realSleep)
{
    recordSleeps(link);
    mMain::SetUserInterface(&ui);
}

TestLink::~TestLink()
{
    mMain::SetUserInterface(nullptr);
}

void TestLink::serve(cLink& other)
{
    other.setPort(&port);
    recordSleeps(other);
}

void TestLink::recordSleeps(cLink& target)
{
    if (!m_realSleep)
        target.SetSleepFunction([this](qint32 ms) { sleeps.append(ms); });
}
