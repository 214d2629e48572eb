#include "TestLink.h"

#include "grip/cGunInfo.h"
#include "link/InstalledLink.h"
#include "link/cError.h"
#include "shell/mMain.h"

TestLink::TestLink(bool realSleep) : m_realSleep(realSleep)
{
    recordSleeps(link);
    mCommBasic::SetLink(&link);
    mMain::SetUserInterface(&ui);
    ResetGunInfo();
    GripError().Clear();
}

TestLink::~TestLink()
{
    mCommBasic::SetLink(nullptr);
    mMain::SetUserInterface(nullptr);
    ResetGunInfo();
    GripError().Clear();
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
