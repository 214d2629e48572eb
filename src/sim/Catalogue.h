#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace gripsim {

// Codes of the commands the grip understands and the reports it sends.
namespace code {
constexpr quint8 BootQuery = 0x11;
constexpr quint8 GunInfo = 0x13;
constexpr quint8 GetTiming = 0x14;
constexpr quint8 GetCounters = 0x15;
constexpr quint8 GetGameTimer = 0x16;
constexpr quint8 GetBattery = 0x17;
constexpr quint8 GetOptions = 0x18;
constexpr quint8 GetRamping = 0x19;
constexpr quint8 PutTiming = 0x24;
constexpr quint8 ResetCounter = 0x25;
constexpr quint8 PutGameTimer = 0x26;
constexpr quint8 PutOptions = 0x28;
constexpr quint8 PutRamping = 0x29;
constexpr quint8 StopProgram = 0x81;
constexpr quint8 WriteBlock = 0x82;
constexpr quint8 StartProgram = 0x83;
constexpr quint8 ReadBlock = 0x85;
constexpr quint8 Plain86 = 0x86;
constexpr quint8 Plain87 = 0x87;
constexpr quint8 WriteBlockOld = 0x8A;

constexpr quint8 Ack = 0x42;
constexpr quint8 Negative = 0x50;
} // namespace code

// The error byte of the grip's negative answer.
constexpr quint8 kNegativeError = 0x01;

// Bytes of one program-memory block report.
constexpr int kBlockSize = 16;

// Total size (code, data, checksum) of a command with a fixed size; 0 for the
// two block writes, whose size follows from their count byte, and for unknown codes.
int commandSize(quint8 command);

// True for a code the grip knows as a command.
bool isKnownCommand(quint8 command);

// True for the two program-memory writes (count byte at position 3).
bool isBlockWrite(quint8 command);

// Size of a block write whose count byte is given: code, address hi, lo,
// count, the data, checksum.
int blockWriteSize(quint8 count);

// The report that answers a command (0 if none) and the size of a report.
quint8 reportCodeFor(quint8 command);
int reportSize(quint8 report);

} // namespace gripsim
