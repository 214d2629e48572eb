#include "grip/cCounters.h"

#include "grip/cGunInfo.h"
#include "grip/mGripReport.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "link/mVersion.h"
#include "shell/mMain.h"

#include <memory>

using namespace mAppFunc;

namespace {

std::unique_ptr<cCounters>& instance()
{
    static std::unique_ptr<cCounters> record;
    return record;
}

// The last firmware that resets by selector; newer firmware is sent the counters' new values.
const QString kLastSelectorFirmware = QStringLiteral("1.1.70");

QString word(qint32 value)
{
    return HexByte(value & 255) + HexByte((value / 256) & 255);
}

} // namespace

cCounters& CountersRecord()
{
    auto& record = instance();
    if (!record)
        record = std::make_unique<cCounters>();
    return *record;
}

void ResetCountersRecord()
{
    instance().reset();
}

void cCounters::Comm2Obj(const QString& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        m_counter1 = GetByteFromHexstring(report, 2) + 256 * GetByteFromHexstring(report, 3);
        m_counter2 = GetByteFromHexstring(report, 4) + 256 * GetByteFromHexstring(report, 5);
        // The top bit of the last byte is dropped on purpose: the total is never negative.
        m_total = GetByteFromHexstring(report, 6) + 256 * GetByteFromHexstring(report, 7) +
                  65536 * GetByteFromHexstring(report, 8) +
                  16777216 * (GetByteFromHexstring(report, 9) & 0x7F);
    });
}

void cCounters::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        const QString report = mGripReport::RequestReport(CMD_DL_COUNTERS);
        switch (mGripReport::ReportType(report)) {
        case REP_COUNTERS: Comm2Obj(report); break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_COUNTERS, QString(), mErrCodes::MSG_DL_COUNTERS);
        }
    });
}

QString cCounters::ResetCommand(quint8 selector) const
{
    // VersionCompare answers below 1 when the firmware is not newer than the last selector one.
    if (mVersion::VersionCompare(kLastSelectorFirmware, GunInfo().FirmwareBuild()) < 1)
        return HexByte(CMD_RESET_COUNTER) + HexByte(selector) + QStringLiteral("000000");
    return HexByte(CMD_RESET_COUNTER) + word(m_counter1) + word(m_counter2);
}

void cCounters::ResetCounter(quint8 selector)
{
    const QString procedure = QStringLiteral("ResetCounter(%1)").arg(selector);
    PassErrors(kClass, kRevision, procedure, [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        // Zeroed before the exchange; they stay zeroed even when it fails.
        if (selector & 1)
            m_counter1 = 0;
        if (selector & 2)
            m_counter2 = 0;
        const QString report = mCommBasic::CommHexData(ResetCommand(selector), true);
        switch (mGripReport::ReportType(report)) {
        case REP_ACK: break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_RESET_COUNTER, QString(), mErrCodes::ResetCounterMessage(selector));
        }
    });
}
