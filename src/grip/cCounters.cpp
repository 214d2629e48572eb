#include "grip/cCounters.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"
#include "link/mVersion.h"

using namespace mAppFunc;

namespace {

// The last firmware that resets by selector; newer firmware is sent the counters' new values.
const QString kLastSelectorFirmware = QStringLiteral("1.1.70");

} // namespace

void cCounters::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        m_counter1 = FrameByte(report, 2) + 256 * FrameByte(report, 3);
        m_counter2 = FrameByte(report, 4) + 256 * FrameByte(report, 5);
        // The top bit of the last byte is dropped on purpose: the total is never negative.
        m_total = FrameByte(report, 6) + 256 * FrameByte(report, 7) +
                  65536 * FrameByte(report, 8) +
                  16777216 * (FrameByte(report, 9) & 0x7F);
    });
}

void cCounters::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(session, CMD_DL_COUNTERS, REP_COUNTERS, [&](const QByteArray& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_COUNTERS, mErrCodes::MessageText(mErrCodes::MSG_DL_COUNTERS));
    });
}

QByteArray cCounters::ResetCommand(const cGunInfo& gunInfo, quint8 selector) const
{
    // VersionCompare answers below 1 when the firmware is not newer than the last selector one.
    if (mVersion::VersionCompare(kLastSelectorFirmware, gunInfo.FirmwareBuild()) < 1)
        return FrameBytes({CMD_RESET_COUNTER, selector, 0, 0, 0});
    return FrameBytes({CMD_RESET_COUNTER}) + mGripReport::WordBytes(m_counter1) + mGripReport::WordBytes(m_counter2);
}

void cCounters::ResetCounter(cGripSession& session, quint8 selector)
{
    const QString procedure = QStringLiteral("ResetCounter(%1)").arg(selector);
    PassErrors(kClass, kRevision, procedure, [&] {
        const auto command = [&] {
            // Zeroed before the exchange; they stay zeroed even when it fails.
            if (selector & 1)
                m_counter1 = 0;
            if (selector & 2)
                m_counter2 = 0;
            return ResetCommand(session.GunInfo(), selector);
        };
        mGripReport::RecordUpload(session, command, mErrCodes::ERR_RESET_COUNTER, mErrCodes::ResetCounterText(selector));
    });
}
