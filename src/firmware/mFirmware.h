#pragma once
// Firmware files: a comment header naming the builds, then Intel HEX records kept as they are.
// The records' meaning is left to the transfer; reading never checks a checksum.
#include <QList>
#include <QString>

class cGunInfo;

// One Intel HEX record as found in the file.
struct HexLine {
    quint8 ByteCount = 0;
    quint8 AddrLo = 0;
    quint8 AddrHi = 0;
    quint8 RecordType = 0;  // 0 data, 1 end of file, 4 extended address...: stored, not interpreted
    QList<quint8> Data;     // ByteCount bytes, empty when ByteCount is 0
    quint8 Checksum = 0;    // as found in the file (or as the transfer made it)
    // The line of the file the record was read from (from 1; 0 when not read from a file), so
    // that a refusal can name it. Not part of the record: equality leaves it out.
    qint32 FileLine = 0;

    bool operator==(const HexLine& other) const
    {
        return ByteCount == other.ByteCount && AddrLo == other.AddrLo && AddrHi == other.AddrHi &&
               RecordType == other.RecordType && Data == other.Data && Checksum == other.Checksum;
    }
};

// An image of the grip's program memory with the builds it belongs to.
struct FirmwareFile {
    QString Firmware;
    QString Boot;
    QString Protocol;
    QString Hardware;
    QList<HexLine> Segments;

    bool operator==(const FirmwareFile&) const = default;
};

namespace mFirmware {

inline const QString kModule = QStringLiteral("mFirmware");
inline const QString kRevision = QStringLiteral("$Revision: 10 $");

// The filter of the firmware file dialogs; the second entry is preselected.
// The file dialog's filter, translated in kContext where it is shown.
inline constexpr char kContext[] = "mFirmware";
inline const QString kFileFilter = QStringLiteral(QT_TRANSLATE_NOOP("mFirmware", "All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"));
constexpr int kFileFilterIndex = 2;

// The whole file as one text, one character per byte. Each step names itself in error reports.
QString LoadFile(const QString& path);
// Replaces the file (a missing one is no error) with the text, one byte per character.
void SaveFile(const QString& path, const QString& text);

// Fills image from a file. On any error the image stays as it was.
void LoadFirmwareFile(FirmwareFile& image, const QString& path);
// Writes image to a file, replacing any file of that name.
void SaveFirmwareFile(const QString& path, const FirmwareFile& image);

// The text a firmware file holds for an image, and the image a text gives (the two halves of
// saving and loading, without the file).
QString FirmwareFileText(const FirmwareFile& image);
FirmwareFile ParseFirmwareText(const QString& text);

// Names the builds of the grip the gun information describes in the image's header (an image
// read from that grip).
void TakeBuilds(FirmwareFile& image, const cGunInfo& gunInfo);

// Whether a loaded file may be written to the grip the gun information describes: the grip's boot
// and hardware builds must lie in the file's Boot and Hardware ranges. The gun information must
// be fresh.
// A file whose header is missing or malformed raises the version-format error as it always
// has, with a hint that says what is wrong with the file ("The file has no firmware header").
bool checkFirmwareVersion(const FirmwareFile& file, const cGunInfo& gunInfo);

} // namespace mFirmware
