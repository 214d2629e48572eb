#include "grip/cStoredValues.h"

#include "base/cRegistrySettings.h"
#include "base/mErrorReport.h"

namespace {

qint32 inRange(qint32 value, const cStoredValues::tRange& range)
{
    return value < range.min || value > range.max ? range.def : value;
}

// Writes a value to the store only when it differs from what is stored: the same text again
// changes nothing, and every write costs the store a write to disk.
void saveIfChanged(const QString& section, const QString& key, const QString& text)
{
    const QVariant current = cRegistrySettings::GetSetting(section, key, QVariant());
    if (current.isValid() && cRegistrySettings::StoredText(current) == text)
        return;
    cRegistrySettings::SaveSetting(section, key, text);
}

} // namespace

cStoredValues::cStoredValues(const QString& recordClass, const QString& revision, const QString& section, tKeeping keeping)
    : m_class(recordClass), m_revision(revision), m_section(section), m_keeping(keeping)
{
}

bool cStoredValues::Switch(const QString& property, const QString& key, tUnreadablePreferences* problems) const
{
    if (m_keeping == tKeeping::Own)
        return m_own.value(key, 0) != 0;
    return PassErrors(m_class, m_revision, property,
                      [&] { return cRegistrySettings::ReadBool(m_section, key, false, problems); });
}

void cStoredValues::setSwitch(const QString& property, const QString& key, bool value)
{
    if (m_keeping == tKeeping::Own) {
        m_own.insert(key, value ? 1 : 0);
        return;
    }
    PassErrors(m_class, m_revision, property, [&] { saveIfChanged(m_section, key, cRegistrySettings::BoolText(value)); });
}

qint32 cStoredValues::Number(const QString& property, const tRange& range, tUnreadablePreferences* problems) const
{
    // The setter keeps an own value within the range.
    if (m_keeping == tKeeping::Own)
        return m_own.value(property, range.def);
    // A stored number outside the range reads as the default, as one that is no number does.
    return PassErrors(m_class, m_revision, property, [&] {
        return cRegistrySettings::ReadLong(m_section, property, range.def, range.min, range.max, problems);
    });
}

qint32 cStoredValues::setNumber(const QString& property, qint32 value, const tRange& range)
{
    return PassErrors(m_class, m_revision, property, [&] {
        const qint32 kept = inRange(value, range);
        if (m_keeping == tKeeping::Own)
            m_own.insert(property, kept);
        else
            saveIfChanged(m_section, property, QString::number(kept));
        return kept;
    });
}
