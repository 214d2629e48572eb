#include "grip/cCountdownTimer.h"

#include "grip/cGunInfo.h"
#include "grip/mGripReport.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <memory>

using namespace mAppFunc;

namespace {

std::unique_ptr<cCountdownTimer>& instance()
{
    static std::unique_ptr<cCountdownTimer> record;
    return record;
}

// Low byte then high byte; the masking cuts the value to 16 bits, so it never fails.
QString word(qint32 value)
{
    return HexByte(value & 255) + HexByte((value / 256) & 255);
}

} // namespace

cCountdownTimer& CountdownTimerRecord()
{
    auto& record = instance();
    if (!record)
        record = std::make_unique<cCountdownTimer>();
    return *record;
}

void ResetCountdownTimerRecord()
{
    instance().reset();
}

cCountdownTimer::cCountdownTimer()
{
    Load();
}

void cCountdownTimer::Save()
{
    // Empty hook, called after every set and after a download.
}

void cCountdownTimer::Load()
{
    // Empty hook, called when the record is made.
}

void cCountdownTimer::Assign(qint32, bool, qint32, bool, qint32)
{
    // Deliberately does nothing.
}

void cCountdownTimer::AssignDefaults()
{
    // Has no effect, as Assign does nothing; kept so.
    Assign(10, false, 60, false, 0);
}

void cCountdownTimer::setCountDownTimer(qint32 value) { m_countDownTimer = value; Save(); }
void cCountdownTimer::setPreAlert1Time(qint32 value) { m_preAlert1Time = value; Save(); }
void cCountdownTimer::setPreAlert1On(bool value) { m_preAlert1On = value; Save(); }
void cCountdownTimer::setPreAlert2Time(qint32 value) { m_preAlert2Time = value; Save(); }
void cCountdownTimer::setPreAlert2On(bool value) { m_preAlert2On = value; Save(); }

QString cCountdownTimer::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return HexByte(CMD_UL_COUNTDOWN) + HexByte(m_countDownTimer) + HexByte(m_preAlert1On ? 1 : 0) +
               word(m_preAlert1Time) + HexByte(m_preAlert2On ? 1 : 0) + word(m_preAlert2Time);
    });
}

void cCountdownTimer::Comm2Obj(const QString& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        m_countDownTimer = GetByteFromHexstring(report, 2);
        // A switch is on only when its byte is exactly 1.
        m_preAlert1On = GetByteFromHexstring(report, 3) == 1;
        m_preAlert1Time = GetByteFromHexstring(report, 4) + 256 * GetByteFromHexstring(report, 5);
        m_preAlert2On = GetByteFromHexstring(report, 6) == 1;
        m_preAlert2Time = GetByteFromHexstring(report, 7) + 256 * GetByteFromHexstring(report, 8);
        Save();
    });
}

void cCountdownTimer::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        const QString report = mGripReport::RequestReport(CMD_DL_COUNTDOWN);
        switch (mGripReport::ReportType(report)) {
        case REP_COUNTDOWN: Comm2Obj(report); break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_COUNTDOWN, QString(), mErrCodes::MSG_DL_COUNTDOWN);
        }
    });
}

void cCountdownTimer::Upload()
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        const QString report = mCommBasic::CommHexData(Obj2Comm(), true);
        switch (mGripReport::ReportType(report)) {
        case REP_ACK: break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_UL_COUNTDOWN, QString(), mErrCodes::MSG_UL_COUNTDOWN);
        }
    });
}
