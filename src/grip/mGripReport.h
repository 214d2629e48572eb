#pragma once
// What the grip records share on the link: asking for a report and telling which report came.
#include <QString>

namespace mGripReport {

inline const QString kModule = QStringLiteral("mGripReport");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

constexpr qint32 NotAReport = -1;

// Sends a command without parameter bytes and answers the report (empty when none came).
QString RequestReport(qint32 command);

// The code of a report that arrived whole: as long as its code says and with a correct check
// byte (unless checking is switched off on the link). A negative answer (0x50) counts whatever
// its shape. Anything else (nothing, a cut-off frame, a spoiled one) is NotAReport, which the
// records treat like any other unexpected report.
qint32 ReportType(const QString& report);

} // namespace mGripReport
