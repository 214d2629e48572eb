#pragma once
// The command catalogue (code and size of every command and report) and the byte helpers with
// which every record builds and takes apart its frames; the hex-text helpers for where hex text
// is the format (the traffic log, the firmware file).
#include <QByteArray>
#include <QString>
#include <initializer_list>

namespace mAppFunc {

inline const QString kModule = QStringLiteral("mAppFunc");
inline const QString kRevision = QStringLiteral("$Revision: 37 $");

// Command codes.
constexpr qint32 CMD_BOOTMODE = 0x11;
constexpr qint32 CMD_DL_GUNINFO = 0x13;
constexpr qint32 CMD_DL_TIMING = 0x14;
constexpr qint32 CMD_DL_COUNTERS = 0x15;
constexpr qint32 CMD_DL_COUNTDOWN = 0x16;
constexpr qint32 CMD_DL_BATTERY = 0x17;
constexpr qint32 CMD_DL_OPTIONS = 0x18;
constexpr qint32 CMD_DL_HYPER = 0x19;
constexpr qint32 CMD_UL_TIMING = 0x24;
constexpr qint32 CMD_RESET_COUNTER = 0x25;
constexpr qint32 CMD_UL_COUNTDOWN = 0x26;
constexpr qint32 CMD_UL_OPTIONS = 0x28;
constexpr qint32 CMD_UL_HYPER = 0x29;
constexpr qint32 CMD_STOP_PROGRAM = 0x81;
constexpr qint32 CMD_WRITE_BLOCK = 0x82;
constexpr qint32 CMD_START_PROGRAM = 0x83;
constexpr qint32 CMD_READ_BLOCK = 0x85;
constexpr qint32 CMD_0x86 = 0x86;
constexpr qint32 CMD_0x87 = 0x87;
constexpr qint32 CMD_WRITE_BLOCK_OLD = 0x8A;

// Report codes.
constexpr qint32 REP_BOOTMODE = 0x41;
constexpr qint32 REP_ACK = 0x42;       // "B"
constexpr qint32 REP_GUNINFO = 0x43;   // "C"
constexpr qint32 REP_TIMING = 0x44;    // "D"
constexpr qint32 REP_COUNTERS = 0x45;  // "E"
constexpr qint32 REP_COUNTDOWN = 0x46; // "F"
constexpr qint32 REP_BATTERY = 0x47;   // "G"
constexpr qint32 REP_OPTIONS = 0x48;   // "H"
constexpr qint32 REP_HYPER = 0x49;     // "I"
constexpr qint32 REP_NEGATIVE = 0x50;  // "P": the grip's negative answer
constexpr qint32 REP_STOPPED = 0x91;
constexpr qint32 REP_STARTED = 0x93;
constexpr qint32 REP_BLOCK = 0x95;

// Input size of a command in bytes (code and checksum included); for the two variable-length
// block writes it is the length of the given frame. 0 for unknown codes.
qint32 GetFunctionInputSize(qint32 code, const QByteArray& frame = QByteArray());
// Size of the report that answers a command; 0 outside 0x11-0x8A or not in the table.
qint32 GetFunctionReturnSize(qint32 code);
// Size of a report by its own code; 0 if unknown.
qint32 GetReportReturnSize(qint32 code);

// Byte n (from 1) of a frame; 0 past its end, so that a short report reads as zeros.
quint8 FrameByte(const QByteArray& frame, qint32 n);
// The bytes of values that must each fit a byte. A value outside 0 to 255 raises the run-time
// error "Invalid procedure call", as the two-digit hex padding of the classic program did: it is
// never cut to a byte, and nothing is built.
QByteArray FrameBytes(std::initializer_list<qint32> values);

// Byte n (from 1) of a hex text; 0 past the end; a single trailing digit reads as one digit.
quint8 GetByteFromHexstring(const QString& hex, qint32 n);
// The text padded on the left with "0" to the given length; a longer text comes back unchanged.
QString LZ(qint32 length, const QString& text);
// The value of a hex text (up to eight digits); invalid digits raise "Type mismatch".
qint32 HexValue(const QString& text);
// Bytes as upper-case hex text, two digits each.
QString BytesToHex(const QByteArray& bytes);

} // namespace mAppFunc
