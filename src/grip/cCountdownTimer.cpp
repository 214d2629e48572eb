#include "grip/cCountdownTimer.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"

using namespace mAppFunc;

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

QByteArray cCountdownTimer::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return FrameBytes({CMD_UL_COUNTDOWN, m_countDownTimer, m_preAlert1On ? 1 : 0}) +
               mGripReport::WordBytes(m_preAlert1Time) + FrameBytes({m_preAlert2On ? 1 : 0}) +
               mGripReport::WordBytes(m_preAlert2Time);
    });
}

void cCountdownTimer::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        m_countDownTimer = FrameByte(report, 2);
        // A switch is on only when its byte is exactly 1.
        m_preAlert1On = FrameByte(report, 3) == 1;
        m_preAlert1Time = FrameByte(report, 4) + 256 * FrameByte(report, 5);
        m_preAlert2On = FrameByte(report, 6) == 1;
        m_preAlert2Time = FrameByte(report, 7) + 256 * FrameByte(report, 8);
        Save();
    });
}

void cCountdownTimer::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(session, CMD_DL_COUNTDOWN, REP_COUNTDOWN, [&](const QByteArray& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_COUNTDOWN, mErrCodes::MessageText(mErrCodes::MSG_DL_COUNTDOWN));
    });
}

void cCountdownTimer::Upload(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        mGripReport::RecordUpload(session, [&] { return Obj2Comm(); }, mErrCodes::ERR_UL_COUNTDOWN, mErrCodes::MessageText(mErrCodes::MSG_UL_COUNTDOWN));
    });
}
