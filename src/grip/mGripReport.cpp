#include "grip/mGripReport.h"

#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"

using namespace mAppFunc;

namespace mGripReport {

namespace {

void recordExchange(cGripSession& session, const std::function<QByteArray()>& send, qint32 expected,
                    const std::function<void(const QByteArray&)>& read, qint32 errorNumber,
                    const cText& errorMessage, const std::function<bool()>& supported)
{
    WaitPointerScope wait;
    RefreshGunInfo(session, true);
    // The gun information was just refreshed, so the flags follow the grip at hand.
    if (supported && !supported())
        return;
    const QByteArray report = send();
    const qint32 type = ReportType(report);
    if (type == expected) {
        if (read)
            read(report);
    } else if (type == REP_NEGATIVE) {
        session.GripError().RecordNegativeAnswer(report);
    } else {
        RaiseError(errorNumber, QString(), errorMessage);
    }
}

} // namespace

QByteArray RequestReport(cLink& link, qint32 command)
{
    return PassErrors(kModule, kRevision, QStringLiteral("RequestReport"), [&] {
        return link.CommHexData(FrameBytes({command}), true);
    });
}

qint32 ReportType(const QByteArray& report, const tExchangeOptions& options)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ReportType"), [&] {
        if (report.isEmpty())
            return NotAReport;
        const qint32 code = FrameByte(report, 1);
        if (code == REP_NEGATIVE)
            return code;
        // The link hands over short and spoiled reports as they came; they are not data.
        const qint32 size = GetReportReturnSize(code);
        if (size == 0 || report.size() != size)
            return NotAReport;
        if (options.checkChecksum && !mCommBasic::CheckCRC(report))
            return NotAReport;
        return code;
    });
}

void RecordDownload(cGripSession& session, qint32 command, qint32 expected, const std::function<void(const QByteArray&)>& read,
                    qint32 errorNumber, const cText& errorMessage, const std::function<bool()>& supported)
{
    recordExchange(session, [&] { return RequestReport(session.Link(), command); }, expected, read, errorNumber, errorMessage, supported);
}

void RecordUpload(cGripSession& session, const std::function<QByteArray()>& command, qint32 errorNumber, const cText& errorMessage,
                  const std::function<bool()>& supported)
{
    recordExchange(session, [&] { return session.Link().CommHexData(command(), true); }, REP_ACK, {}, errorNumber,
                   errorMessage, supported);
}

QByteArray WordBytes(qint32 value)
{
    return FrameBytes({value & 255, (value / 256) & 255});
}

} // namespace mGripReport
