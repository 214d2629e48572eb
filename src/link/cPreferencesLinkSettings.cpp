#include "link/cPreferencesLinkSettings.h"

#include "base/cRegistrySettings.h"
#include "base/mServices.h"

QString cPreferencesLinkSettings::CommDevice() const { return m_preferences.CommDevice(); }
qint32 cPreferencesLinkSettings::CommPort() const { return m_preferences.CommPort(); }
QString cPreferencesLinkSettings::CommSettings() const { return m_preferences.CommSettings(); }
qint32 cPreferencesLinkSettings::CommInputMode() const { return m_preferences.CommInputMode(); }
bool cPreferencesLinkSettings::CommLogToFile() const { return m_preferences.CommLogToFile(); }
bool cPreferencesLinkSettings::CommLogToConsole() const { return m_preferences.CommLogToConsole(); }
QString cPreferencesLinkSettings::CommLogFile() const { return mMain::ProgramFile(QStringLiteral("komm.log")); }
