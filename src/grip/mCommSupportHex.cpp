#include "grip/mCommSupportHex.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGunInfo.h"
#include "link/InstalledLink.h"
#include "link/cError.h"
#include "link/cLink.h"
#include "link/mAppFunc.h"

using namespace mAppFunc;

namespace mCommSupportHex {
namespace {

// The shared shape of the three requests. Answers the report, or an empty text after a
// negative answer (recorded in cError).
QByteArray programControl(const QString& procedure, qint32 command, qint32 expectedReport, bool forceRefresh)
{
    return PassErrors(kModule, kRevision, procedure, [&]() -> QByteArray {
        WaitPointerScope wait;
        RefreshGunInfo(forceRefresh);
        const QByteArray report = mCommBasic::Link().CommHexData(FrameBytes({command}), true);
        const qint32 code = FrameByte(report, 1);
        if (code == expectedReport)
            return report;
        if (code == REP_NEGATIVE) {
            GripError().RecordNegativeAnswer(report);
            return QByteArray();
        }
        // The same text for all three requests: reused on purpose.
        RaiseError(mErrCodes::ERR_PROGRAM_CONTROL, QString(), mErrCodes::MSG_PROGRAM_CONTROL);
    });
}

} // namespace

bool GRIPStartProgram(bool forceRefresh)
{
    return !programControl(QStringLiteral("GRIPStartProgram"), CMD_START_PROGRAM, REP_STARTED, forceRefresh).isEmpty();
}

bool GRIPStopProgram(bool forceRefresh)
{
    return !programControl(QStringLiteral("GRIPStopProgram"), CMD_STOP_PROGRAM, REP_STOPPED, forceRefresh).isEmpty();
}

bool GRIPIsBootmode(bool forceRefresh)
{
    const QByteArray report = programControl(QStringLiteral("GRIPIsBootmode"), CMD_BOOTMODE, REP_BOOTMODE, forceRefresh);
    return !report.isEmpty() && FrameByte(report, 2) > 0;
}

} // namespace mCommSupportHex
