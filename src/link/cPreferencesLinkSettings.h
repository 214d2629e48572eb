#pragma once
// The link's settings as the preferences hold them: every question goes to the preferences
// object in force (mMain::RegistrySettings, which may be dropped and made again), and the
// traffic log lies in the program's folder.
#include "link/cLinkSettings.h"

class cPreferencesLinkSettings : public cLinkSettings {
public:
    QString CommDevice() const override;
    qint32 CommPort() const override;
    QString CommSettings() const override;
    qint32 CommInputMode() const override;
    bool CommLogToFile() const override;
    bool CommLogToConsole() const override;
    QString CommLogFile() const override;
};
