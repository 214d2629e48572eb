#pragma once
// The values of a record that lives in the preferences rather than in the object (the options and
// the ramping values): every read and write goes to the record's section of the store, so all
// objects share them and they survive between runs. Errors are passed on in the record's name,
// with the property as the procedure. A scratch record keeps its values in the object instead,
// so that what it is given reaches no other record and not the preferences.
#include "base/cRegistrySettings.h"

#include <QHash>
#include <QString>

class cStoredValues {
public:
    // The range of a number and the default that stands for a value outside it, stored or given.
    struct tRange {
        qint32 min;
        qint32 max;
        qint32 def;
    };

    enum class tKeeping { Preferences, Own };

    cStoredValues(const QString& recordClass, const QString& revision, const QString& section,
                  tKeeping keeping = tKeeping::Preferences);

    // A switch, kept under a key of its own (the program's keys differ from the property names
    // in places); false when nothing is stored.
    // Reads answer the default for a stored text that cannot be read (not True or False, not a
    // number, a number outside the range); when problems is given, such a text is added to it.
    bool Switch(const QString& property, const QString& key, tUnreadablePreferences* problems = nullptr) const;
    void setSwitch(const QString& property, const QString& key, bool value);
    // A number, kept under the property's name; the setter answers the value it actually stored.
    qint32 Number(const QString& property, const tRange& range, tUnreadablePreferences* problems = nullptr) const;
    qint32 setNumber(const QString& property, qint32 value, const tRange& range);

private:
    QString m_class;
    QString m_revision;
    QString m_section;
    tKeeping m_keeping;
    QHash<QString, qint32> m_own; // the values of a record that keeps its own, by key
};
