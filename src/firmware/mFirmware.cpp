#include "firmware/mFirmware.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGunInfo.h"
#include "link/mAppFunc.h"
#include "link/mVersion.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <functional>

using namespace mAppFunc;

namespace mFirmware {
namespace {

// The hints are only ever shown: translated where they are made.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(mFirmware)
};

const QString kRule = QStringLiteral(";-----------------------------------");
const QString kLineEnd = QStringLiteral("\r\n");

[[noreturn]] void raiseFileError(qint32 number, const QString& path)
{
    //: A run-time error's message, then the file it is about.
    RaiseError(number, QString(), cText("mFirmware", QT_TRANSLATE_NOOP("mFirmware", "%1: %2"), {mErrCodes::RuntimeError(number), path}));
}

// Blanks only, as the file format has always been read: tabs and other white space stay.
QStringView trimBlanks(QStringView text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

int hexDigit(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    return -1;
}

// Byte n (from 1) of a record, exactly as GetByteFromHexstring reads it. Plain hex digits are
// read here (files are large); anything else goes to the catalogue routine, which decides.
quint8 byteAt(QStringView hex, qint32 n)
{
    const qsizetype start = 2 * static_cast<qsizetype>(n) - 2;
    if (start >= hex.size())
        return 0; // a short record reads 0 here
    const int high = hexDigit(hex.at(start));
    if (start + 1 >= hex.size()) {
        if (high >= 0)
            return static_cast<quint8>(high);
    } else {
        const int low = hexDigit(hex.at(start + 1));
        if (high >= 0 && low >= 0)
            return static_cast<quint8>(high * 16 + low);
    }
    return GetByteFromHexstring(hex.mid(start, 2).toString(), 1);
}

// The two upper-case hex digits of a byte.
void appendHex(QString& text, quint8 value)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    text += QLatin1Char(kDigits[value >> 4]);
    text += QLatin1Char(kDigits[value & 15]);
}

HexLine parseRecord(QStringView record, qint32 fileLine)
{
    HexLine line;
    line.FileLine = fileLine;
    line.ByteCount = byteAt(record, 1);
    line.AddrHi = byteAt(record, 2);
    line.AddrLo = byteAt(record, 3);
    line.RecordType = byteAt(record, 4);
    line.Data.reserve(line.ByteCount);
    for (qint32 n = 5; n <= line.ByteCount + 4; ++n)
        line.Data.append(byteAt(record, n));
    line.Checksum = byteAt(record, line.ByteCount + 5);
    return line;
}

void parseComment(FirmwareFile& image, QStringView comment)
{
    const qsizetype colon = comment.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return; // no value: an ordinary comment
    const QString key = trimBlanks(comment.left(colon)).toString().toUpper();
    // The value is the text between the first and a second colon exactly as it stands: a value
    // read back from a saved file keeps the blanks after the colon. Intended.
    const qsizetype next = comment.indexOf(QLatin1Char(':'), colon + 1);
    const QString value = comment.mid(colon + 1, next < 0 ? comment.size() - colon - 1 : next - colon - 1).toString();
    if (key == QLatin1String("FIRMWARE"))
        image.Firmware = value;
    else if (key == QLatin1String("BOOT"))
        image.Boot = value;
    else if (key == QLatin1String("PROTOCOL"))
        image.Protocol = value;
    else if (key == QLatin1String("HARDWARE"))
        image.Hardware = value;
}

// Lower and upper bound of a range text "a.b.c-d.e.f" (one version without "-").
void parseRange(const QString& text, mVersion::tVersion& lower, mVersion::tVersion& upper)
{
    const QStringList bounds = text.split(QLatin1Char('-'));
    mVersion::str2tVersion(bounds.first(), lower);
    mVersion::str2tVersion(bounds.last(), upper);
}

bool inRange(const mVersion::tVersion& version, const mVersion::tVersion& lower, const mVersion::tVersion& upper)
{
    // Major and minor are tested independently and the revision not at all, so 1.5.0-2.0.0
    // admits no 1.7.0. That is the program's rule and is kept.
    return lower.Major <= version.Major && version.Major <= upper.Major && lower.Minor <= version.Minor &&
           version.Minor <= upper.Minor;
}

} // namespace

QString LoadFile(const QString& path)
{
    return PassErrors(kModule, kRevision, QStringLiteral("LoadFile"), [&](Procedure& proc) {
        proc.setName(QStringLiteral("LoadFile - get filehandle"));
        QFile file(path);
        proc.setName(QStringLiteral("LoadFile - open file (") + path + QLatin1Char(')'));
        if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
            raiseFileError(QFileInfo::exists(path) ? mErrCodes::RT_FILE_ACCESS : mErrCodes::RT_FILE_NOT_FOUND, path);
        proc.setName(QStringLiteral("LoadFile - get filesize"));
        const qint64 size = file.size();
        proc.setName(QStringLiteral("LoadFile - resize readbuffer"));
        QByteArray buffer;
        buffer.resize(static_cast<qsizetype>(size));
        proc.setName(QStringLiteral("LoadFile - read datachunk"));
        if (size > 0 && file.read(buffer.data(), size) != size)
            raiseFileError(mErrCodes::RT_FILE_ACCESS, path);
        proc.setName(QStringLiteral("LoadFile - close file"));
        file.close();
        proc.setName(QStringLiteral("LoadFile - return buffer"));
        QString text = QString::fromLatin1(buffer);
        proc.setName(QStringLiteral("LoadFile - FINISHED!"));
        return text;
    });
}

void SaveFile(const QString& path, const QString& text)
{
    PassErrors(kModule, kRevision, QStringLiteral("SaveFile"), [&](Procedure& proc) {
        proc.setName(QStringLiteral("SaveFile - get filehandle"));
        QFile file(path);
        // The old file goes first; a missing one is no error.
        if (!path.isEmpty() && QFileInfo::exists(path) && !QFile::remove(path))
            raiseFileError(mErrCodes::RT_FILE_ACCESS, path);
        proc.setName(QStringLiteral("SaveFile - open file (") + path + QLatin1Char(')'));
        if (path.isEmpty() || !file.open(QIODevice::WriteOnly))
            raiseFileError(mErrCodes::RT_FILE_ACCESS, path);
        proc.setName(QStringLiteral("SaveFile - write datachunk"));
        const QByteArray bytes = text.toLatin1();
        if (file.write(bytes) != bytes.size())
            raiseFileError(mErrCodes::RT_FILE_ACCESS, path);
        proc.setName(QStringLiteral("SaveFile - close file"));
        file.close();
        if (file.error() != QFileDevice::NoError)
            raiseFileError(mErrCodes::RT_FILE_ACCESS, path);
        proc.setName(QStringLiteral("SaveFile - FINISHED!"));
    });
}

QString FirmwareFileText(const FirmwareFile& image)
{
    return PassErrors(kModule, kRevision, QStringLiteral("FirmwareFileText"), [&] {
        QString text;
        text.reserve(200 + image.Segments.size() * 44);
        text += kRule + kLineEnd;
        text += QStringLiteral("; Firmware: ") + image.Firmware + kLineEnd;
        text += QStringLiteral("; Boot:     ") + image.Boot + kLineEnd;
        text += QStringLiteral("; Protocol: ") + image.Protocol + kLineEnd;
        text += QStringLiteral("; Hardware: ") + image.Hardware + kLineEnd;
        text += kRule + kLineEnd;
        for (const HexLine& line : image.Segments) {
            text += QLatin1Char(':');
            appendHex(text, line.ByteCount);
            appendHex(text, line.AddrHi);
            appendHex(text, line.AddrLo);
            appendHex(text, line.RecordType);
            for (const quint8 byte : line.Data)
                appendHex(text, byte);
            appendHex(text, line.Checksum); // written as stored, never recomputed
            text += kLineEnd;
        }
        return text;
    });
}

FirmwareFile ParseFirmwareText(const QString& text)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ParseFirmwareText"), [&] {
        FirmwareFile image;
        qsizetype start = 0;
        qint32 fileLine = 0;
        while (start <= text.size()) {
            qsizetype end = text.indexOf(kLineEnd, start);
            if (end < 0)
                end = text.size();
            ++fileLine;
            const QStringView line = trimBlanks(QStringView(text).mid(start, end - start));
            if (line.startsWith(QLatin1Char(':')))
                image.Segments.append(parseRecord(line.mid(1), fileLine));
            else if (line.startsWith(QLatin1Char(';')))
                parseComment(image, line.mid(1));
            start = end + kLineEnd.size();
        }
        return image;
    });
}

void LoadFirmwareFile(FirmwareFile& image, const QString& path)
{
    PassErrors(kModule, kRevision, QStringLiteral("LoadFirmwareFile"), [&] {
        FirmwareFile loaded = ParseFirmwareText(LoadFile(path));
        image = std::move(loaded);
    });
}

void SaveFirmwareFile(const QString& path, const FirmwareFile& image)
{
    PassErrors(kModule, kRevision, QStringLiteral("SaveFirmwareFile"), [&] {
        SaveFile(path, FirmwareFileText(image));
    });
}

void TakeBuilds(FirmwareFile& image, const cGunInfo& gunInfo)
{
    image.Firmware = gunInfo.FirmwareBuild();
    image.Boot = gunInfo.BootBuild();
    image.Protocol = gunInfo.ProtocolBuild();
    image.Hardware = gunInfo.HardwareBuild();
}

bool checkFirmwareVersion(const FirmwareFile& file, const cGunInfo& gunInfo)
{
    return PassErrors(kModule, kRevision, QStringLiteral("checkFirmwareVersion"), [&] {
        mVersion::tVersion bootLower, bootUpper, hardwareLower, hardwareUpper, unused;
        // The file's builds, in the order they have always been read; the error stays the one the
        // version routines raise, and says in a hint what is wrong with the file.
        const bool noHeader = file.Firmware.isEmpty() && file.Boot.isEmpty() && file.Protocol.isEmpty() &&
                              file.Hardware.isEmpty();
        const auto fileBuild = [&](const char* key, const QString& value, const std::function<void()>& parse) {
            try {
                parse();
            } catch (MarloError& e) {
                if (noHeader)
                    e.addHint(Texts::tr("The file has no firmware header: the comment lines \"; Firmware:\", "
                                 "\"; Boot:\", \"; Protocol:\" and \"; Hardware:\" that name its builds are missing."));
                else if (value.trimmed().isEmpty())
                    e.addHint(Texts::tr("The file's firmware header names no %1 build.").arg(QLatin1String(key)));
                else
                    e.addHint(Texts::tr("The file's %1 build \"%2\" is not a version (three numbers joined by \".\").")
                                  .arg(QLatin1String(key), value.trimmed()));
                throw;
            }
        };
        fileBuild("Boot", file.Boot, [&] { parseRange(file.Boot, bootLower, bootUpper); });
        fileBuild("Hardware", file.Hardware, [&] { parseRange(file.Hardware, hardwareLower, hardwareUpper); });
        // Parsed like the others, though they play no part in the decision.
        fileBuild("Firmware", file.Firmware, [&] { mVersion::str2tVersion(file.Firmware, unused); });
        fileBuild("Protocol", file.Protocol, [&] { mVersion::str2tVersion(file.Protocol, unused); });

        mVersion::tVersion gripBootLower, gripBoot, gripHardwareLower, gripHardware;
        parseRange(gunInfo.BootBuild(), gripBootLower, gripBoot);
        parseRange(gunInfo.HardwareBuild(), gripHardwareLower, gripHardware);
        return inRange(gripBoot, bootLower, bootUpper) && inRange(gripHardware, hardwareLower, hardwareUpper);
    });
}

} // namespace mFirmware
