// Fuzz target: the firmware file reader and the whole-image check. Whatever the bytes, reading
// either gives an image or the documented type mismatch; an image written and read again gives
// the same records; the check either refuses with 10802 naming a line of the file, or passes an
// image whose every line the write can set up as a memory block.
#include "FuzzSupport.h"

#include "base/mErrCodes.h"
#include "firmware/cProgramSegment.h"
#include "firmware/mCommSupport.h"
#include "firmware/mFirmware.h"

#include <QSet>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::startQt(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A file is read one character a byte.
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    FirmwareFile image;
    try {
        image = mFirmware::ParseFirmwareText(text);
    } catch (const MarloError& e) {
        fuzz::check(e.Number() == mErrCodes::RT_TYPE_MISMATCH, QStringLiteral("reading raised %1").arg(e.Number()));
        return 0;
    }
    QSet<qint32> lines;
    for (const HexLine& line : image.Segments) {
        fuzz::check(line.Data.size() == line.ByteCount, QStringLiteral("a record's data differ from its count"));
        fuzz::check(line.FileLine >= 1 && !lines.contains(line.FileLine), QStringLiteral("a record without its own line"));
        lines.insert(line.FileLine);
    }
    // Written and read again: the same records.
    fuzz::check(mFirmware::ParseFirmwareText(mFirmware::FirmwareFileText(image)).Segments == image.Segments,
                QStringLiteral("records changed by a round trip"));

    try {
        mCommSupport::CheckFirmwareImage(image);
    } catch (const MarloError& e) {
        fuzz::check(e.Number() == mErrCodes::ERR_FIRMWARE_IMAGE, QStringLiteral("the check raised %1").arg(e.Number()));
        bool named = false;
        for (const qint32 line : lines)
            named = named || e.Description().startsWith(QStringLiteral("The firmwarefile cannot be uploaded: line %1: ").arg(line));
        fuzz::check(named, QStringLiteral("the refusal names no line of the file: ") + e.Description());
        return 0;
    }
    // Passed: every line becomes a block as the write makes it, without an error.
    qint64 total = 0;
    for (const HexLine& line : image.Segments) {
        const qint32 address = line.AddrHi * 256 + line.AddrLo;
        fuzz::check(address <= 32767, QStringLiteral("an address the write overflows on was passed"));
        total += line.ByteCount;
        cProgramSegment segment;
        try {
            segment.setAddress(address);
            segment.setByteCount(line.ByteCount);
            for (qsizetype i = 0; i < line.Data.size(); ++i)
                segment.setData(static_cast<qint32>(i + 1), line.Data.at(i));
        } catch (const MarloError& e) {
            fuzz::fail(QStringLiteral("a passed line fails the write: %1 %2").arg(e.Number()).arg(e.Description()));
        }
    }
    fuzz::check(total <= mCommSupport::kProgramMemoryBytes, QStringLiteral("more data than the memory was passed"));
    return 0;
}
