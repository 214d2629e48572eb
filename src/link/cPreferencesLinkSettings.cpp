#include "link/cPreferencesLinkSettings.h"

#include "base/mServices.h"

QString cPreferencesLinkSettings::CommDevice() const { return mMain::RegistrySettings().CommDevice(); }
qint32 cPreferencesLinkSettings::CommPort() const { return mMain::RegistrySettings().CommPort(); }
QString cPreferencesLinkSettings::CommSettings() const { return mMain::RegistrySettings().CommSettings(); }
qint32 cPreferencesLinkSettings::CommInputMode() const { return mMain::RegistrySettings().CommInputMode(); }
bool cPreferencesLinkSettings::CommLogToFile() const { return mMain::RegistrySettings().CommLogToFile(); }
bool cPreferencesLinkSettings::CommLogToConsole() const { return mMain::RegistrySettings().CommLogToConsole(); }
QString cPreferencesLinkSettings::CommLogFile() const { return mMain::ProgramFile(QStringLiteral("komm.log")); }
