#include "grip/cBattery.h"

#include "grip/cGunInfo.h"
#include "grip/mGripReport.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <memory>

using namespace mAppFunc;

namespace {

std::unique_ptr<cBattery>& instance()
{
    static std::unique_ptr<cBattery> record;
    return record;
}

} // namespace

cBattery& BatteryRecord()
{
    auto& record = instance();
    if (!record)
        record = std::make_unique<cBattery>();
    return *record;
}

void ResetBatteryRecord()
{
    instance().reset();
}

float cBattery::VoltageLevel() const
{
    const double reading = m_low + 256.0 * m_high;
    return static_cast<float>(reading * (2.5 / 1024.0) * (16.2 / 6.2));
}

void cBattery::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        const QString report = mGripReport::RequestReport(CMD_DL_BATTERY);
        switch (mGripReport::ReportType(report)) {
        case REP_BATTERY:
            m_low = GetByteFromHexstring(report, 2);
            m_high = GetByteFromHexstring(report, 3);
            break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_BATTERY, QString(), mErrCodes::MSG_DL_BATTERY);
        }
    });
}
