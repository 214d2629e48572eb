#pragma once
// What the grip records share on the link: the exchange every record makes, asking for a report,
// telling which report came, and the 16-bit values of the payloads.
#include "base/cText.h"
#include "link/cLink.h"

#include <QByteArray>
#include <QString>
#include <functional>

class cGripSession;

namespace mGripReport {

inline const QString kModule = QStringLiteral("mGripReport");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

constexpr qint32 NotAReport = -1;

// Sends a command without parameter bytes and answers the report (empty when none came).
QByteArray RequestReport(cLink& link, qint32 command);

// The code of a report that arrived whole: as long as its code says and with a correct check
// byte (unless the exchange it came from did not check check bytes). A negative answer (0x50)
// counts whatever its shape. Anything else (nothing, a cut-off frame, a spoiled one) is
// NotAReport, which the records treat like any other unexpected report.
qint32 ReportType(const QByteArray& report, const tExchangeOptions& options = {});

// The exchange of every record, run inside the record's own error frame so that errors name the
// record: the wait pointer, a fresh gun information, then (only when `supported` is empty or
// says yes) the command. The expected report goes to `read`; a negative answer is recorded in
// the session's error record, not raised; anything else raises the record's own error, with an
// empty source.
void RecordDownload(cGripSession& session, qint32 command, qint32 expected, const std::function<void(const QByteArray&)>& read,
                    qint32 errorNumber, const cText& errorMessage, const std::function<bool()>& supported = {});
// The same for a command with parameters, answered by the acknowledgement. The command is built
// after the gun information is refreshed, as it may depend on the grip's firmware; a value that
// does not fit its byte fails there, and nothing is sent.
void RecordUpload(cGripSession& session, const std::function<QByteArray()>& command, qint32 errorNumber, const cText& errorMessage,
                  const std::function<bool()>& supported = {});

// A 16-bit value as two bytes, low byte first; the masking cuts the value to 16 bits, so it
// never fails.
QByteArray WordBytes(qint32 value);

} // namespace mGripReport
