#include "library/cApplication.h"

#include "shell/mMain.h"

cApplication::cApplication() = default;

cApplication::~cApplication()
{
    ShowErrors(kClass, kRevision, QStringLiteral("Class_Terminate"), [this] {
        m_colSetsTemplate.reset();
        m_registrySettings.reset();
    });
}

cRegistrySettings& cApplication::RegistrySettings()
{
    if (!m_registrySettings)
        m_registrySettings = std::make_unique<cRegistrySettings>();
    return *m_registrySettings;
}

cColSetsTemplate& cApplication::colSetsTemplate()
{
    if (!m_colSetsTemplate) {
        m_colSetsTemplate = std::make_unique<cColSetsTemplate>();
        ShowErrors(kClass, kRevision, QStringLiteral("colSetsTemplate"), [this] {
            QSqlDatabase connection;
            m_colSetsTemplate->Load(connection);
        });
    }
    return *m_colSetsTemplate;
}

std::shared_ptr<cSetsTemplate> cApplication::ActiveSetting()
{
    std::shared_ptr<cSetsTemplate> active;
    ShowErrors(kClass, kRevision, QStringLiteral("Get ActiveSetting"), [&] {
        if (!m_activeKey.isEmpty())
            active = colSetsTemplate().Find(m_activeKey);
    });
    return active;
}

void cApplication::setActiveSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Set ActiveSetting"), [&] {
        if (record && colSetsTemplate().Contains(record->ID()))
            m_activeKey = record->ID();
        else
            m_activeKey.clear();
    });
}

bool cApplication::AnythingNeedSave()
{
    bool needSave = false;
    ShowErrors(kClass, kRevision, QStringLiteral("AnythingNeedSave"), [&] {
        needSave = m_colSetsTemplate && m_colSetsTemplate->IsDirty();
    });
    return needSave;
}

void cApplication::PromoteSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    ShowErrors(kClass, kRevision, QStringLiteral("PromoteSetting"), [&] {
        colSetsTemplate().AddByObjectOrThrow(record);
        const QString name = record->sName().isEmpty() ? QStringLiteral("[Untitled]") : record->sName();
        record->setsName(name + QStringLiteral(" (promoted from statistic)"));
    });
}
