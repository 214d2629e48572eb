#include "grip/cSettings.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"

#include <cmath>
#include <limits>

using namespace mAppFunc;


cSettings::cSettings()
{
    Load();
}

void cSettings::Save()
{
    // What the record would persist is not settled: kept as an empty hook at its call points.
}

void cSettings::Load()
{
    // Empty hook, called when the record is made.
}

void cSettings::Upload(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        mGripReport::RecordUpload(session, [&] { return Obj2Comm(); }, mErrCodes::ERR_UL_TIMING, mErrCodes::MessageText(mErrCodes::MSG_UL_TIMING));
    });
}

void cSettings::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(session, CMD_DL_TIMING, REP_TIMING, [&](const QByteArray& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_TIMING, mErrCodes::MessageText(mErrCodes::MSG_DL_TIMING));
    });
}

QByteArray cSettings::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        // The link order differs from the property order.
        const QByteArray block =
            FrameBytes({m_shotTime, m_dwelltime, m_cycleTimeOpen, m_loadTime, m_cycleTimeClose, m_firingMode});
        // The six bytes go twice: the grip expects the doubled block, deliberately kept.
        return FrameBytes({CMD_UL_TIMING}) + block + block;
    });
}

void cSettings::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        // Only the first of the two blocks is read.
        m_shotTime = FrameByte(report, 2);
        m_dwelltime = FrameByte(report, 3);
        m_cycleTimeOpen = FrameByte(report, 4);
        m_loadTime = FrameByte(report, 5);
        m_cycleTimeClose = FrameByte(report, 6);
        m_firingMode = FrameByte(report, 7);
        Save();
    });
}

float cSettings::ROF() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("ROF"), [&] {
        return RateOfFire(m_dwelltime, m_cycleTimeOpen, m_loadTime, m_cycleTimeClose, Arithmetic::SixteenBit);
    });
}

float cSettings::RateOfFire(qint32 Dwelltime, qint32 CycleTimeOpen, qint32 LoadTime, qint32 CycleTimeClose,
                            Arithmetic arithmetic)
{
    // In 16 bits every term and every partial sum must fit, as in the grip's own arithmetic.
    const auto checked = [arithmetic](qint64 value) {
        if (arithmetic == Arithmetic::SixteenBit &&
            (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max()))
            RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
        return value;
    };
    qint64 sum = checked(Dwelltime);
    for (const qint64 term : {CycleTimeOpen, LoadTime, CycleTimeClose})
        sum = checked(sum + checked(term));
    if (sum <= 0)
        return 0.0F;
    // Rounded half to even, as the program always has.
    return static_cast<float>(std::nearbyint(1000.0 / static_cast<double>(sum) * 100.0) / 100.0);
}

void cSettings::Assign(qint32 CycleTimeOpen, qint32 CycleTimeClose, qint32 ShotTime, qint32 Dwelltime,
                       qint32 LoadTime, qint32 FiringMode)
{
    m_cycleTimeOpen = CycleTimeOpen;
    m_cycleTimeClose = CycleTimeClose;
    m_shotTime = ShotTime;
    m_dwelltime = Dwelltime;
    m_loadTime = LoadTime;
    m_firingMode = FiringMode;
    Save();
}

void cSettings::AssignDefaults()
{
    Assign(30, 28, 10, 10, 35, DefaultFiringMode());
}

void cSettings::setCycleTimeOpen(qint32 value) { m_cycleTimeOpen = value; Save(); }
void cSettings::setCycleTimeClose(qint32 value) { m_cycleTimeClose = value; Save(); }
void cSettings::setShotTime(qint32 value) { m_shotTime = value; Save(); }
void cSettings::setDwelltime(qint32 value) { m_dwelltime = value; Save(); }
void cSettings::setLoadTime(qint32 value) { m_loadTime = value; Save(); }
void cSettings::setFiringMode(qint32 value) { m_firingMode = value; Save(); }
