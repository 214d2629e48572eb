#pragma once
// The grip's timing values: the solenoid and valve times of one firing cycle and the firing
// mode, with the limits and defaults the timing editor works within.
#include <QByteArray>
#include <QString>

class cGripSession;

class cSettings {
public:
    static inline const QString kClass = QStringLiteral("cSettings");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    cSettings();

    // Puts the six values to the grip (command 0x24).
    void Upload(cGripSession& session);
    // Gets the six values from the grip (command 0x14, report "D").
    void Download(cGripSession& session);
    // Persistence hooks: intentionally empty, called where the record would persist.
    void Save();
    void Load();

    // Rate of fire in shots per second, two decimals.
    float ROF() const;

    // How the cycle's times are summed: as the grip's record does, in 16 bits with the run-time
    // overflow beyond; or wide, for a library row that may hold any whole numbers.
    enum class Arithmetic { SixteenBit, Wide };
    // The rate of fire of one cycle: 1000 / (dwell + cycle open + load + cycle close) shots per
    // second, rounded half to even to two decimals; 0 for a cycle of no or negative time. The
    // shot time is deliberately not part of the cycle.
    static float RateOfFire(qint32 Dwelltime, qint32 CycleTimeOpen, qint32 LoadTime, qint32 CycleTimeClose,
                            Arithmetic arithmetic);

    void Assign(qint32 CycleTimeOpen, qint32 CycleTimeClose, qint32 ShotTime, qint32 Dwelltime,
                qint32 LoadTime, qint32 FiringMode);
    void AssignDefaults();

    qint32 CycleTimeOpen() const { return m_cycleTimeOpen; }
    qint32 CycleTimeClose() const { return m_cycleTimeClose; }
    qint32 ShotTime() const { return m_shotTime; }
    qint32 Dwelltime() const { return m_dwelltime; }
    qint32 LoadTime() const { return m_loadTime; }
    qint32 FiringMode() const { return m_firingMode; }
    // The record stores what it is given; the editor keeps its controls within the limits.
    void setCycleTimeOpen(qint32 value);
    void setCycleTimeClose(qint32 value);
    void setShotTime(qint32 value);
    void setDwelltime(qint32 value);
    void setLoadTime(qint32 value);
    void setFiringMode(qint32 value);

    static constexpr qint32 CycleTimeOpenMin() { return 1; }
    static constexpr qint32 CycleTimeCloseMin() { return 1; }
    static constexpr qint32 ShotTimeMin() { return 1; }
    static constexpr qint32 DwelltimeMin() { return 1; }
    static constexpr qint32 LoadTimeMin() { return 1; }
    static constexpr qint32 CycleTimeOpenMax() { return 75; }
    static constexpr qint32 CycleTimeCloseMax() { return 75; }
    static constexpr qint32 ShotTimeMax() { return 20; }
    static constexpr qint32 DwelltimeMax() { return 20; }
    static constexpr qint32 LoadTimeMax() { return 75; }
    static constexpr qint32 DefaultFiringMode() { return 0; }

    // The upload command with the record's values; a value that does not fit what the record
    // carries on the wire raises the error of the upload, and nothing is sent.
    QByteArray Obj2Comm() const;

private:
    void Comm2Obj(const QByteArray& report);

    qint32 m_cycleTimeOpen = 0;
    qint32 m_cycleTimeClose = 0;
    qint32 m_shotTime = 0;
    qint32 m_dwelltime = 0;
    qint32 m_loadTime = 0;
    qint32 m_firingMode = 0;
};
