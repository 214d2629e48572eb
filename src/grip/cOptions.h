#pragma once
// The grip's option switches and option times. The record keeps no values of its own: every
// read and write goes to the preferences, section "Options", so all objects share them and
// they survive between runs; only a scratch record keeps its own.
#include "base/cRegistrySettings.h"
#include "grip/cStoredValues.h"
#include <QByteArray>
#include <QString>

class cGripSession;

class cOptions {
public:
    static inline const QString kClass = QStringLiteral("cOptions");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kSection = QStringLiteral("Options");

    explicit cOptions(cStoredValues::tKeeping keeping = cStoredValues::tKeeping::Preferences);

    // Puts the options to the grip (command 0x28); nothing happens when the firmware lacks them.
    void Upload(cGripSession& session);
    // Gets the options from the grip (command 0x18, report "H"); likewise only when supported.
    void Download(cGripSession& session);
    // Intentionally empty hooks: the options change only through the properties and Download.
    void Save();
    void Load();
    void Assign(bool EyeMounted, bool TriggerFilterOn, bool EyeCheckMaxTimeOn, bool UseEye,
                qint32 EyeCheckMaxTime, qint32 DefaultLoadTime, bool LoaderOn, bool LedOn,
                bool EyeCheckOKTimeOn, qint32 EyeCheckOKTime, bool CTOAdjust);
    void AssignDefaults();

    // The stored values of the section that cannot be read (their defaults are used), for the
    // report at start.
    static tUnreadablePreferences UnreadableValues();

    // The times are kept within their ranges: a value outside (stored or given) is replaced by
    // the default, and a setter answers the value it actually stored.
    bool EyeMounted() const;
    void setEyeMounted(bool value);
    bool TriggerFilterOn() const;
    void setTriggerFilterOn(bool value);
    bool EyeCheckMaxTimeOn() const;
    void setEyeCheckMaxTimeOn(bool value);
    bool UseEye() const;
    void setUseEye(bool value);
    qint32 EyeCheckMaxTime() const;
    qint32 setEyeCheckMaxTime(qint32 value);
    qint32 DefaultLoadTime() const;
    qint32 setDefaultLoadTime(qint32 value);
    bool LoaderOn() const;
    void setLoaderOn(bool value);
    bool LedOn() const;
    void setLedOn(bool value);
    bool EyeCheckOKTimeOn() const;
    void setEyeCheckOKTimeOn(bool value);
    qint32 EyeCheckOKTime() const;
    qint32 setEyeCheckOKTime(qint32 value);
    bool CTOAdjust() const;
    void setCTOAdjust(bool value);

    // Ranges and defaults of the three times.
    static constexpr qint32 EyeCheckMaxTimeMin = 1;
    static constexpr qint32 EyeCheckMaxTimeMax = 255;
    static constexpr qint32 EyeCheckMaxTimeDefault = 100;
    static constexpr qint32 DefaultLoadTimeMin = 1;
    static constexpr qint32 DefaultLoadTimeMax = 126;
    static constexpr qint32 DefaultLoadTimeDefault = 45;
    static constexpr qint32 EyeCheckOKTimeMin = 1;
    static constexpr qint32 EyeCheckOKTimeMax = 255;
    static constexpr qint32 EyeCheckOKTimeDefault = 100;

    // The upload command with the record's values; a value that does not fit what the record
    // carries on the wire raises the error of the upload, and nothing is sent.
    QByteArray Obj2Comm() const;

private:
    // The options byte: the eight switches packed, bit 0 first.
    quint8 OptionsByte() const;
    void Comm2Obj(const QByteArray& report);

    cStoredValues m_store;
};
