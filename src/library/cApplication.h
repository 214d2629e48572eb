#pragma once
// The application object: the root of shared state for the whole run. It owns the preferences
// and (with the settings library) the library collection and the active setting.
#include "shell/cRegistrySettings.h"

#include <QString>
#include <memory>

class cApplication {
public:
    static inline const QString kClass = QStringLiteral("cApplication");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    cApplication();
    ~cApplication();

    // The preferences object, made on first access.
    cRegistrySettings& RegistrySettings();

private:
    std::unique_ptr<cRegistrySettings> m_registrySettings;
};
