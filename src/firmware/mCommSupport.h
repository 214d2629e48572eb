#pragma once
// Reading, writing and verifying the grip's whole program memory, block by block. The grip
// must be in its boot code (the firmware workflows see to that).
#include "firmware/mFirmware.h"

#include <QString>

class cGripSession;

namespace mCommSupport {

inline const QString kModule = QStringLiteral("mCommSupport");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// The readable program memory: byte addresses 0x40 up to 0xFF0, 252 blocks of 16 bytes.
constexpr qint32 kFirstAddress = 0x40;
constexpr qint32 kEndAddress = 0xFFF;
constexpr qint32 kBlockSize = 16;
constexpr qint32 kBlockCount = 252;
// Where grips with old firmware get their program started and stopped again in mid-transfer.
constexpr qint32 kReadRestartAddress = 0x200;
constexpr qint32 kWriteRestartAddress = 0xF50;
// The program memory as the write can address it: byte addresses 0x0000 to 0x7FFF (the address
// of a line is reckoned in signed 16-bit arithmetic). Whether the grip takes a line outside its
// readable part is the grip's business.
constexpr qint32 kProgramMemoryBytes = 0x8000;
constexpr qint32 kAttempts = 3;
constexpr qint32 kWriteRetryPauseMs = 500;

// Reads the session's grip's program memory into image.Segments (one 16-byte line per block, replacing what it
// held); the header texts are left alone. Three failed attempts at a block raise 10800.
void DLFirmware(cGripSession& session, FirmwareFile& image);
// Writes every line of the image, in order and whatever its record type. Three failed
// attempts at a block raise 10801; blocks already written stay written.
void ULFirmware(cGripSession& session, const FirmwareFile& image);
// Checks a whole image before anything is sent: raises 10802 naming the line of the file and
// what is wrong for an image the write would fail on or could not sensibly send: a line longer
// than a memory block, an address outside the program memory, data running past its end, more
// data (or more lines) than the program memory holds. An empty image passes.
void CheckFirmwareImage(const FirmwareFile& image);
// Compares a file image with an image read from the grip. An error on the way (an address
// that overflows, a line beyond the grip image) is shown through the error reporter and
// answers false.
bool CompareProgramData(const FirmwareFile& fileImage, const FirmwareFile& gripImage);

} // namespace mCommSupport
