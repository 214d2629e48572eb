#include "TestLink.h"

#include "shell/mMain.h"

TestLink::TestLink(bool realSleep)
{
    if (!realSleep)
        link.SetSleepFunction([this](qint32 ms) { sleeps.append(ms); });
    mMain::SetUserInterface(&ui);
}

TestLink::~TestLink()
{
    mMain::SetUserInterface(nullptr);
}
