#include "library/cApplication.h"

cApplication::cApplication() = default;
cApplication::~cApplication() = default;

cRegistrySettings& cApplication::RegistrySettings()
{
    if (!m_registrySettings)
        m_registrySettings = std::make_unique<cRegistrySettings>();
    return *m_registrySettings;
}
