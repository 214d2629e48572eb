#pragma once
// Module mCommBasic: the serial link's name in error frames, the check byte of a frame and the
// traffic-log entry. The link itself is the object cLink (link/cLink.h), which the program builds
// and hands to whatever talks to the grip.
#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace mCommBasic {

inline const QString kModule = QStringLiteral("mCommBasic");
inline const QString kRevision = QStringLiteral("$Revision: 41 $");

// The check byte of a frame: what makes the sum of all its bytes a multiple of 256.
quint8 CalcCRC(const QByteArray& frame);
// Whether the last byte of the frame is the check byte of the bytes before it (false when empty).
bool CheckCRC(const QByteArray& frame);

// One traffic-log entry, as written to komm.log and the console: the bytes in decimal and in hex.
QString FormatLogEntry(const QDateTime& when, const QByteArray& bytes, const QString& label);

} // namespace mCommBasic
