#include "grip/mCommSupportHex.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/mAppFunc.h"

using namespace mAppFunc;

namespace mCommSupportHex {
namespace {

// The shared shape of the three requests. Answers the report, or an empty text after a
// negative answer (recorded in the session's cError).
QByteArray programControl(cGripSession& session, const QString& procedure, qint32 command, qint32 expectedReport, bool forceRefresh)
{
    return PassErrors(kModule, kRevision, procedure, [&]() -> QByteArray {
        WaitPointerScope wait;
        RefreshGunInfo(session, forceRefresh);
        const QByteArray report = session.Link().CommHexData(FrameBytes({command}), true);
        const qint32 code = FrameByte(report, 1);
        if (code == expectedReport)
            return report;
        if (code == REP_NEGATIVE) {
            session.GripError().RecordNegativeAnswer(report);
            return QByteArray();
        }
        // The same text for all three requests: reused on purpose.
        RaiseError(mErrCodes::ERR_PROGRAM_CONTROL, QString(), mErrCodes::MessageText(mErrCodes::MSG_PROGRAM_CONTROL));
    });
}

} // namespace

bool GRIPStartProgram(cGripSession& session, bool forceRefresh)
{
    return !programControl(session, QStringLiteral("GRIPStartProgram"), CMD_START_PROGRAM, REP_STARTED, forceRefresh).isEmpty();
}

bool GRIPStopProgram(cGripSession& session, bool forceRefresh)
{
    return !programControl(session, QStringLiteral("GRIPStopProgram"), CMD_STOP_PROGRAM, REP_STOPPED, forceRefresh).isEmpty();
}

bool GRIPIsBootmode(cGripSession& session, bool forceRefresh)
{
    const QByteArray report = programControl(session, QStringLiteral("GRIPIsBootmode"), CMD_BOOTMODE, REP_BOOTMODE, forceRefresh);
    return !report.isEmpty() && FrameByte(report, 2) > 0;
}

} // namespace mCommSupportHex
