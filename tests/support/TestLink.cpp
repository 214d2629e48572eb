#include "TestLink.h"

#include "grip/cGunInfo.h"
#include "link/cError.h"
#include "link/mCommBasic.h"
#include "shell/mMain.h"

TestLink::TestLink(bool realSleep)
{
    mCommBasic::objComm = &port;
    mCommBasic::bCommBusy = false;
    mCommBasic::bNoCRCIn = false;
    mCommBasic::bNoCRCOut = false;
    if (!realSleep)
        mCommBasic::SetSleepFunction([this](qint32 ms) { sleeps.append(ms); });
    mMain::SetUserInterface(&ui);
    ResetGunInfo();
    GripError().Clear();
}

TestLink::~TestLink()
{
    mCommBasic::objComm = nullptr;
    mCommBasic::SetSleepFunction(nullptr);
    mCommBasic::ResetConsole();
    mMain::SetUserInterface(nullptr);
    ResetGunInfo();
    GripError().Clear();
}
