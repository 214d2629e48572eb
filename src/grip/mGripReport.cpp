#include "grip/mGripReport.h"

#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "shell/mMain.h"

using namespace mAppFunc;

namespace mGripReport {

QString RequestReport(qint32 command)
{
    return PassErrors(kModule, kRevision, QStringLiteral("RequestReport"), [&] {
        return mCommBasic::CommHexData(HexByte(command), true);
    });
}

qint32 ReportType(const QString& report)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ReportType"), [&] {
        if (report.size() < 2)
            return NotAReport;
        const qint32 code = GetByteFromHexstring(report, 1);
        if (code == REP_NEGATIVE)
            return code;
        // The link hands over short and spoiled reports as they came; they are not data.
        const qint32 size = GetReportReturnSize(code);
        if (size == 0 || report.size() != 2 * size)
            return NotAReport;
        if (!mCommBasic::bNoCRCIn && !mCommBasic::CheckCRC(report))
            return NotAReport;
        return code;
    });
}

} // namespace mGripReport
