#pragma once
// The grip's ramping values: shots and time before ramping starts, and the ramping mode.
// Kept in the preferences, section "Hyper", like the options: shared by all objects and kept
// between runs; only a scratch record keeps its own.
#include "base/cRegistrySettings.h"
#include "grip/cStoredValues.h"
#include <QByteArray>
#include <QString>

class cGripSession;

class cHyper {
public:
    static inline const QString kClass = QStringLiteral("cHyper");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kSection = QStringLiteral("Hyper");

    explicit cHyper(cStoredValues::tKeeping keeping = cStoredValues::tKeeping::Preferences);

    // Puts the ramping values to the grip (command 0x29); nothing happens without ramping support.
    void Upload(cGripSession& session);
    // Gets them from the grip (command 0x19, report "I"); likewise only when supported.
    void Download(cGripSession& session);
    // Intentionally empty hooks: the values change only through the properties and Download.
    void Save();
    void Load();
    void Assign(qint32 Shots, qint32 HyperTime, qint32 HyperMode);
    void AssignDefaults();

    // The stored values of the section that cannot be read (their defaults are used), for the
    // report at start.
    static tUnreadablePreferences UnreadableValues();

    // Shots and HyperTime outside 1..255 (stored or given) are replaced by their defaults; a
    // setter answers the value it actually stored. HyperMode is not checked.
    qint32 Shots() const;
    qint32 setShots(qint32 value);
    qint32 HyperTime() const;
    qint32 setHyperTime(qint32 value);
    qint32 HyperMode() const;
    qint32 setHyperMode(qint32 value);

    static constexpr qint32 ShotsMin = 1;
    static constexpr qint32 ShotsMax = 255;
    static constexpr qint32 ShotsDefault = 3;
    static constexpr qint32 HyperTimeMin = 1;
    static constexpr qint32 HyperTimeMax = 255;
    static constexpr qint32 HyperTimeDefault = 100;
    static constexpr qint32 HyperModeDefault = 1;

    // The upload command with the record's values; a value that does not fit what the record
    // carries on the wire raises the error of the upload, and nothing is sent.
    QByteArray Obj2Comm() const;

private:
    void Comm2Obj(const QByteArray& report);

    cStoredValues m_store;
};
