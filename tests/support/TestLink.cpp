#include "TestLink.h"

#include "library/mDatabase.h"
#include "shell/mMain.h"

TestLink::TestLink(bool realSleep)
{
    if (!realSleep)
        link.SetSleepFunction([this](qint32 ms) { sleeps.append(ms); });
    mMain::SetUserInterface(&ui);
}

TestLink::~TestLink()
{
    m_app.reset();
    mMain::SetUserInterface(nullptr);
}

void TestLink::restart()
{
    m_app.reset();
    mDatabase::DisconnectDB();
    prefs = cRegistrySettings();
    m_app = std::make_unique<cApplication>(prefs);
}
