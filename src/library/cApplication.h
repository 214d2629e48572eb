#pragma once
// The application object: the root of shared state for the whole run. It owns the preferences,
// the library collection (loaded on first use) and the key of the active setting.
#include "library/cColSetsTemplate.h"
#include "shell/cRegistrySettings.h"

#include <QString>
#include <memory>

class cApplication {
public:
    static inline const QString kClass = QStringLiteral("cApplication");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    cApplication();
    // Drops the preferences and the library collection, without saving.
    ~cApplication();
    cApplication(const cApplication&) = delete;
    cApplication& operator=(const cApplication&) = delete;

    // The preferences object, made on first access.
    cRegistrySettings& RegistrySettings();

    // The library: made on first access and loaded with every row of the library file.
    cColSetsTemplate& colSetsTemplate();
    // True once the library was opened (nothing is loaded by asking).
    bool LibraryMade() const { return m_colSetsTemplate != nullptr; }

    // The library member whose ID is the active key; nothing when there is none (a key that is
    // not in the library is not reported).
    std::shared_ptr<cSetsTemplate> ActiveSetting();
    // Only a member of the library can be active: any other record leaves no active setting.
    void setActiveSetting(const std::shared_ptr<cSetsTemplate>& record);

    // False while the library was never opened; otherwise whether anything in it changed.
    bool AnythingNeedSave();

    // Makes a record that is not in the library a named template of it: added (its ParentID
    // becomes empty) and renamed "<name or [Untitled]> (promoted from statistic)". A record
    // already in the library fails at the duplicate key and is not renamed.
    void PromoteSetting(const std::shared_ptr<cSetsTemplate>& record);

private:
    std::unique_ptr<cRegistrySettings> m_registrySettings;
    std::unique_ptr<cColSetsTemplate> m_colSetsTemplate;
    QString m_activeKey;
};
