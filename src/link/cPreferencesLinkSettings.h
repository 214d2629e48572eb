#pragma once
// The link's settings as the preferences hold them: every question goes to the preferences store
// it was given, and the traffic log lies in the program's folder.
#include "link/cLinkSettings.h"

class cRegistrySettings;

class cPreferencesLinkSettings : public cLinkSettings {
public:
    // The caller keeps the preferences, which must outlive this source.
    explicit cPreferencesLinkSettings(const cRegistrySettings& preferences) : m_preferences(preferences) {}

    QString CommDevice() const override;
    qint32 CommPort() const override;
    QString CommSettings() const override;
    qint32 CommInputMode() const override;
    bool CommLogToFile() const override;
    bool CommLogToConsole() const override;
    QString CommLogFile() const override;

private:
    const cRegistrySettings& m_preferences;
};
