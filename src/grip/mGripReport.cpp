#include "grip/mGripReport.h"

#include "base/mErrorReport.h"
#include "grip/cGunInfo.h"
#include "link/InstalledLink.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"

using namespace mAppFunc;

namespace mGripReport {

namespace {

void recordExchange(const std::function<QByteArray()>& send, qint32 expected,
                    const std::function<void(const QByteArray&)>& read, qint32 errorNumber,
                    const QString& errorMessage, const std::function<bool()>& supported)
{
    WaitPointerScope wait;
    RefreshGunInfo(true);
    // The gun information was just refreshed, so the flags follow the grip at hand.
    if (supported && !supported())
        return;
    const QByteArray report = send();
    const qint32 type = ReportType(report);
    if (type == expected) {
        if (read)
            read(report);
    } else if (type == REP_NEGATIVE) {
        GripError().RecordNegativeAnswer(report);
    } else {
        RaiseError(errorNumber, QString(), errorMessage);
    }
}

} // namespace

QByteArray RequestReport(qint32 command)
{
    return PassErrors(kModule, kRevision, QStringLiteral("RequestReport"), [&] {
        return mCommBasic::Link().CommHexData(FrameBytes({command}), true);
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

void RecordDownload(qint32 command, qint32 expected, const std::function<void(const QByteArray&)>& read,
                    qint32 errorNumber, const QString& errorMessage, const std::function<bool()>& supported)
{
    recordExchange([&] { return RequestReport(command); }, expected, read, errorNumber, errorMessage, supported);
}

void RecordUpload(const std::function<QByteArray()>& command, qint32 errorNumber, const QString& errorMessage,
                  const std::function<bool()>& supported)
{
    recordExchange([&] { return mCommBasic::Link().CommHexData(command(), true); }, REP_ACK, {}, errorNumber,
                   errorMessage, supported);
}

QByteArray WordBytes(qint32 value)
{
    return FrameBytes({value & 255, (value / 256) & 255});
}

} // namespace mGripReport
