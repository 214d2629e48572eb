#include "grip/cBattery.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"

using namespace mAppFunc;

float cBattery::VoltageLevel() const
{
    const double reading = m_low + 256.0 * m_high;
    return static_cast<float>(reading * (2.5 / 1024.0) * (16.2 / 6.2));
}

void cBattery::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        const auto read = [&](const QByteArray& report) {
            m_low = FrameByte(report, 2);
            m_high = FrameByte(report, 3);
        };
        mGripReport::RecordDownload(session, CMD_DL_BATTERY, REP_BATTERY, read, mErrCodes::ERR_DL_BATTERY, mErrCodes::MessageText(mErrCodes::MSG_DL_BATTERY));
    });
}
