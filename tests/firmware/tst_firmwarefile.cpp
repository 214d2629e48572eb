// Firmware files: the worked example in both directions, round trips, the lenient reading,
// the step names of LoadFile/SaveFile and the compatibility check against the grip's builds.
#include "TestLink.h"
#include "firmware/mFirmware.h"
#include "grip/cGunInfo.h"
#include "link/MarloError.h"
#include "link/mErrCodes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QByteArray kExampleFile = ";-----------------------------------\r\n"
                                "; Firmware: 1.1.70\r\n"
                                "; Boot:     1.0.3\r\n"
                                "; Protocol: 1.1.1\r\n"
                                "; Hardware: 2.0.1\r\n"
                                ";-----------------------------------\r\n"
                                ":0400100001020304E2\r\n"
                                ":00000001FF\r\n";

HexLine hexLine(quint8 count, quint16 address, quint8 type, QList<quint8> data, quint8 checksum)
{
    HexLine line;
    line.ByteCount = count;
    line.AddrHi = static_cast<quint8>(address >> 8);
    line.AddrLo = static_cast<quint8>(address & 0xFF);
    line.RecordType = type;
    line.Data = std::move(data);
    line.Checksum = checksum;
    return line;
}

FirmwareFile exampleImage()
{
    FirmwareFile image;
    image.Firmware = QStringLiteral("1.1.70");
    image.Boot = QStringLiteral("1.0.3");
    image.Protocol = QStringLiteral("1.1.1");
    image.Hardware = QStringLiteral("2.0.1");
    image.Segments = {hexLine(4, 0x0010, 0, {1, 2, 3, 4}, 0xE2), hexLine(0, 0, 1, {}, 0xFF)};
    return image;
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeAll(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

// A gun-information report (hex) with the given builds; the serial and checksum do not matter.
QString gunInfoReport(const QList<int>& firmware, const QList<int>& protocol, const QList<int>& boot,
                      const QList<int>& hardware)
{
    QByteArray bytes("\x43", 1);
    bytes += QByteArray(10, 'S');
    for (const QList<int>& build : {firmware, protocol, boot, hardware}) {
        bytes.append(static_cast<char>(build[0]));
        bytes.append(static_cast<char>(build[1]));
        bytes.append(static_cast<char>(build[2] & 0xFF));
        bytes.append(static_cast<char>(build[2] >> 8));
    }
    bytes.append('\0');
    return QString::fromLatin1(bytes.toHex().toUpper());
}

QList<int> build(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    return {parts[0].toInt(), parts[1].toInt(), parts[2].toInt()};
}

} // namespace

Q_DECLARE_METATYPE(HexLine)

class tst_FirmwareFile : public QObject {
    Q_OBJECT

private slots:
    void workedExampleIsWrittenByteForByte();
    void workedExampleIsReadBack();
    void roundTrip_data();
    void roundTrip();
    void lenientReading_data();
    void lenientReading();
    void headerKeys_data();
    void headerKeys();
    void badHexDigitsFailCleanlyAndKeepTheImage_data();
    void badHexDigitsFailCleanlyAndKeepTheImage();
    void loadFileNamesTheFailingStep_data();
    void loadFileNamesTheFailingStep();
    void saveFileNamesTheFailingStep();
    void savingReplacesTheOldFile();
    void loadFileKeepsEveryByte();
    void checkFirmwareVersion_data();
    void checkFirmwareVersion();
    void checkFirmwareVersionPassesBadHeaders_data();
    void checkFirmwareVersionPassesBadHeaders();

private:
    QTemporaryDir m_dir;
    QString path(const QString& name) const { return m_dir.filePath(name); }
};

void tst_FirmwareFile::workedExampleIsWrittenByteForByte()
{
    const QString file = path(QStringLiteral("example.tvf"));
    mFirmware::SaveFirmwareFile(file, exampleImage());
    QCOMPARE(readAll(file), kExampleFile);
}

void tst_FirmwareFile::workedExampleIsReadBack()
{
    const QString file = path(QStringLiteral("example-in.tvf"));
    writeAll(file, kExampleFile);
    FirmwareFile image;
    mFirmware::LoadFirmwareFile(image, file);

    // Each build text keeps the blanks that follow its colon.
    QCOMPARE(image.Firmware, QStringLiteral(" 1.1.70"));
    QCOMPARE(image.Boot, QStringLiteral("     1.0.3"));
    QCOMPARE(image.Protocol, QStringLiteral(" 1.1.1"));
    QCOMPARE(image.Hardware, QStringLiteral(" 2.0.1"));
    QCOMPARE(image.Segments.size(), 2);
    const HexLine& data = image.Segments[0];
    QCOMPARE(data.ByteCount, quint8(4));
    QCOMPARE(data.AddrHi, quint8(0x00));
    QCOMPARE(data.AddrLo, quint8(0x10));
    QCOMPARE(data.RecordType, quint8(0));
    QCOMPARE(data.Data, (QList<quint8>{1, 2, 3, 4}));
    QCOMPARE(data.Checksum, quint8(0xE2));
    const HexLine& end = image.Segments[1];
    QCOMPARE(end.ByteCount, quint8(0));
    QCOMPARE(end.RecordType, quint8(1));
    QVERIFY(end.Data.isEmpty());
    QCOMPARE(end.Checksum, quint8(0xFF));
}

void tst_FirmwareFile::roundTrip_data()
{
    QTest::addColumn<QList<HexLine>>("segments");

    QList<quint8> sixteen;
    for (int i = 0; i < 16; ++i)
        sixteen.append(static_cast<quint8>(0xF0 + i));
    QList<quint8> full;
    for (int i = 0; i < 255; ++i)
        full.append(static_cast<quint8>(i));

    QTest::newRow("no segments") << QList<HexLine>{};
    QTest::newRow("end record only") << QList<HexLine>{hexLine(0, 0, 1, {}, 0xFF)};
    QTest::newRow("block at 0x40") << QList<HexLine>{hexLine(16, 0x0040, 0, sixteen, 0x12)};
    QTest::newRow("every record type kept")
        << QList<HexLine>{hexLine(2, 0, 4, {0, 0}, 0xFA), hexLine(1, 0x0FFF, 5, {0xAB}, 0x00), hexLine(0, 0, 1, {}, 0xFF)};
    QTest::newRow("255 data bytes") << QList<HexLine>{hexLine(255, 0xFF00, 0, full, 0x80)};
    QTest::newRow("wrong checksums stay wrong")
        << QList<HexLine>{hexLine(4, 0x0010, 0, {1, 2, 3, 4}, 0x00), hexLine(4, 0x0010, 0, {1, 2, 3, 4}, 0xE3)};
}

void tst_FirmwareFile::roundTrip()
{
    QFETCH(QList<HexLine>, segments);
    FirmwareFile image;
    image.Firmware = QStringLiteral("2.0.20");
    image.Boot = QStringLiteral("1.0.0-1.2.0");
    image.Protocol = QStringLiteral("1.1.1");
    image.Hardware = QStringLiteral("2.1.0");
    image.Segments = segments;

    const QString file = path(QStringLiteral("roundtrip.tvf"));
    mFirmware::SaveFirmwareFile(file, image);
    FirmwareFile loaded;
    mFirmware::LoadFirmwareFile(loaded, file);

    QCOMPARE(loaded.Segments, segments);
    QCOMPARE(loaded.Firmware, QStringLiteral(" 2.0.20"));
    QCOMPARE(loaded.Boot, QStringLiteral("     1.0.0-1.2.0"));
    QCOMPARE(loaded.Protocol, QStringLiteral(" 1.1.1"));
    QCOMPARE(loaded.Hardware, QStringLiteral(" 2.1.0"));

    // Saving what was loaded writes the records unchanged; the untrimmed build texts gain
    // another blank after each colon.
    const QString again = path(QStringLiteral("roundtrip2.tvf"));
    mFirmware::SaveFirmwareFile(again, loaded);
    const QList<QByteArray> first = readAll(file).split('\n');
    const QList<QByteArray> second = readAll(again).split('\n');
    QCOMPARE(second.size(), first.size());
    QCOMPARE(second.mid(6), first.mid(6));
    QCOMPARE(second[1], QByteArray("; Firmware:  2.0.20\r"));
    QCOMPARE(second[2], QByteArray("; Boot:          1.0.0-1.2.0\r"));
}

void tst_FirmwareFile::lenientReading_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QList<HexLine>>("expected");

    QTest::newRow("only comment lines") << QByteArray(";---\r\n; Firmware: 1.1.70\r\n; anything\r\n") << QList<HexLine>{};
    QTest::newRow("empty file") << QByteArray() << QList<HexLine>{};
    QTest::newRow("short record reads 0")
        << QByteArray(":0400100001\r\n") << QList<HexLine>{hexLine(4, 0x0010, 0, {1, 0, 0, 0}, 0)};
    QTest::newRow("single trailing digit") << QByteArray(":0400100001020304E\r\n")
                                           << QList<HexLine>{hexLine(4, 0x0010, 0, {1, 2, 3, 4}, 0x0E)};
    QTest::newRow("checksum not checked") << QByteArray(":0400100001020304FF\r\n")
                                          << QList<HexLine>{hexLine(4, 0x0010, 0, {1, 2, 3, 4}, 0xFF)};
    QTest::newRow("lower-case digits") << QByteArray(":02abcd00eeff00\r\n")
                                       << QList<HexLine>{hexLine(2, 0xABCD, 0, {0xEE, 0xFF}, 0x00)};
    QTest::newRow("extended address record kept")
        << QByteArray(":020000040000FA\r\n") << QList<HexLine>{hexLine(2, 0, 4, {0, 0}, 0xFA)};
    QTest::newRow("blanks around a record") << QByteArray("   :00000001FF   \r\n")
                                            << QList<HexLine>{hexLine(0, 0, 1, {}, 0xFF)};
    QTest::newRow("bare colon") << QByteArray(":\r\n") << QList<HexLine>{hexLine(0, 0, 0, {}, 0)};
    QTest::newRow("characters after the record ignored")
        << QByteArray(":010040007700trailing\r\n") << QList<HexLine>{hexLine(1, 0x0040, 0, {0x77}, 0)};
    QTest::newRow("other lines ignored")
        << QByteArray("hello\r\n\r\n  \r\n:00000001FF\r\nx:0100\r\n") << QList<HexLine>{hexLine(0, 0, 1, {}, 0xFF)};
    QTest::newRow("last line without line end") << QByteArray(":00000001FF") << QList<HexLine>{hexLine(0, 0, 1, {}, 0xFF)};
    // Lines end with CR LF only: with LF alone the file is one line, whose first record is read
    // (the rest of the line lies beyond its byte count).
    QTest::newRow("LF line ends are one line")
        << QByteArray(":0100400011AA\n:0100500022BB\n") << QList<HexLine>{hexLine(1, 0x0040, 0, {0x11}, 0xAA)};
    QTest::newRow("CR line ends are one line")
        << QByteArray(":0100400011AA\r:0100500022BB\r") << QList<HexLine>{hexLine(1, 0x0040, 0, {0x11}, 0xAA)};
    QTest::newRow("LF-only header hides the records")
        << QByteArray(";---\n:0100400011AA\n") << QList<HexLine>{};
}

void tst_FirmwareFile::lenientReading()
{
    QFETCH(QByteArray, text);
    QFETCH(QList<HexLine>, expected);
    const QString file = path(QStringLiteral("lenient.tvf"));
    writeAll(file, text);
    FirmwareFile image;
    mFirmware::LoadFirmwareFile(image, file);
    QCOMPARE(image.Segments, expected);
}

void tst_FirmwareFile::headerKeys_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("boot");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("hardware");

    QTest::newRow("lower-case key") << QByteArray("; firmware: x") << " x" << "" << "" << "";
    QTest::newRow("mixed case, blanks around the key") << QByteArray(";   BoOt   :1.2.3") << "" << "1.2.3" << "" << "";
    QTest::newRow("value untrimmed") << QByteArray("; Protocol:   1.1.1") << "" << "" << "   1.1.1" << "";
    QTest::newRow("value cut at a colon") << QByteArray("; Hardware: 2.0:1") << "" << "" << "" << " 2.0";
    QTest::newRow("blanks before the semicolon") << QByteArray("    ; Firmware: 1.0.0") << " 1.0.0" << "" << "" << "";
    QTest::newRow("empty value") << QByteArray("; Boot:") << "" << "" << "" << "";
    QTest::newRow("unknown key") << QByteArray("; Compiler: 1.0.0") << "" << "" << "" << "";
    QTest::newRow("key without colon") << QByteArray("; Firmware 1.0.0") << "" << "" << "" << "";
    QTest::newRow("tab is no blank") << QByteArray("; Firmware\t: 1.0.0") << "" << "" << "" << "";
}

void tst_FirmwareFile::headerKeys()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, firmware);
    QFETCH(QString, boot);
    QFETCH(QString, protocol);
    QFETCH(QString, hardware);
    const QString file = path(QStringLiteral("header.tvf"));
    writeAll(file, line + "\r\n");
    FirmwareFile image;
    mFirmware::LoadFirmwareFile(image, file);
    QCOMPARE(image.Firmware, firmware);
    QCOMPARE(image.Boot, boot);
    QCOMPARE(image.Protocol, protocol);
    QCOMPARE(image.Hardware, hardware);
    QVERIFY(image.Segments.isEmpty());
}

void tst_FirmwareFile::badHexDigitsFailCleanlyAndKeepTheImage_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("letter G") << QByteArray(":0G00100001020304E2\r\n");
    QTest::newRow("blank inside the record") << QByteArray(":04 0100001020304E2\r\n");
    QTest::newRow("bad data digit") << QByteArray(":0400100001020Z04E2\r\n");
    QTest::newRow("bad checksum digit") << QByteArray(":0400100001020304Q2\r\n");
    QTest::newRow("sign") << QByteArray(":+400100001020304E2\r\n");
    QTest::newRow("NUL byte") << (QByteArray(":04") + QByteArray(1, '\0') + QByteArray("100001020304E2\r\n"));
    QTest::newRow("second line bad") << QByteArray(":00000001FF\r\n:0x\r\n");
}

void tst_FirmwareFile::badHexDigitsFailCleanlyAndKeepTheImage()
{
    QFETCH(QByteArray, text);
    const QString file = path(QStringLiteral("bad.tvf"));
    writeAll(file, text);
    FirmwareFile image = exampleImage();
    try {
        mFirmware::LoadFirmwareFile(image, file);
        QFAIL("bad hex digits were accepted");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_TYPE_MISMATCH);
        QVERIFY(!e.Trail().isEmpty());
        QCOMPARE(e.Trail().last().module, QStringLiteral("mFirmware"));
        QCOMPARE(e.Trail().last().revision, QStringLiteral("$Revision: 10 $"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("LoadFirmwareFile"));
    }
    QCOMPARE(image, exampleImage());
}

void tst_FirmwareFile::loadFileNamesTheFailingStep_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("makeFolder");
    QTest::addColumn<int>("number");
    QTest::newRow("missing file") << QStringLiteral("missing.tvf") << false << mErrCodes::RT_FILE_NOT_FOUND;
    QTest::newRow("a folder") << QStringLiteral("folder.tvf") << true << mErrCodes::RT_FILE_ACCESS;
}

void tst_FirmwareFile::loadFileNamesTheFailingStep()
{
    QFETCH(QString, name);
    QFETCH(bool, makeFolder);
    QFETCH(int, number);
    const QString file = path(name);
    if (makeFolder)
        QVERIFY(QDir().mkpath(file));
    FirmwareFile image = exampleImage();
    try {
        mFirmware::LoadFirmwareFile(image, file);
        QFAIL("loading did not fail");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), number);
        QVERIFY(e.Description().contains(file));
        QCOMPARE(e.Trail().size(), 2);
        QCOMPARE(e.Trail()[0].module, QStringLiteral("mFirmware"));
        QCOMPARE(e.Trail()[0].procedure, QStringLiteral("LoadFile - open file (") + file + QStringLiteral(")"));
        QCOMPARE(e.Trail()[1].procedure, QStringLiteral("LoadFirmwareFile"));
    }
    QCOMPARE(image, exampleImage());
}

void tst_FirmwareFile::saveFileNamesTheFailingStep()
{
    const QString file = path(QStringLiteral("no/such/folder/out.tvf"));
    try {
        mFirmware::SaveFirmwareFile(file, exampleImage());
        QFAIL("saving into a missing folder did not fail");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_FILE_ACCESS);
        QCOMPARE(e.Trail()[0].procedure, QStringLiteral("SaveFile - open file (") + file + QStringLiteral(")"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("SaveFirmwareFile"));
    }
}

void tst_FirmwareFile::savingReplacesTheOldFile()
{
    const QString file = path(QStringLiteral("replace.tvf"));
    writeAll(file, QByteArray(4096, 'X'));
    mFirmware::SaveFile(file, QStringLiteral("short"));
    QCOMPARE(readAll(file), QByteArray("short"));

    const QString fresh = path(QStringLiteral("fresh.tvf"));
    QVERIFY(!QFile::exists(fresh));
    mFirmware::SaveFile(fresh, QString());
    QVERIFY(QFile::exists(fresh));
    QCOMPARE(readAll(fresh), QByteArray());
}

void tst_FirmwareFile::loadFileKeepsEveryByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(static_cast<char>(i));
    const QString file = path(QStringLiteral("bytes.bin"));
    writeAll(file, bytes);
    const QString text = mFirmware::LoadFile(file);
    QCOMPARE(text.size(), 256);
    for (int i = 0; i < 256; ++i)
        QCOMPARE(text.at(i).unicode(), ushort(i));
    mFirmware::SaveFile(path(QStringLiteral("bytes2.bin")), text);
    QCOMPARE(readAll(path(QStringLiteral("bytes2.bin"))), bytes);
}

void tst_FirmwareFile::checkFirmwareVersion_data()
{
    QTest::addColumn<QString>("fileBoot");
    QTest::addColumn<QString>("fileHardware");
    QTest::addColumn<QString>("gripBoot");
    QTest::addColumn<QString>("gripHardware");
    QTest::addColumn<bool>("fits");

    // Header values as read from a file, with the blanks after the colon.
    QTest::newRow("documented: fits") << "     1.0.0-1.2.0" << " 2.1.0" << "1.1.5" << "2.1.9" << true;
    QTest::newRow("documented: hardware 2.2.0") << "     1.0.0-1.2.0" << " 2.1.0" << "1.1.5" << "2.2.0" << false;
    QTest::newRow("minor tested on its own") << "1.5.0-2.0.0" << "1.1.1" << "1.7.0" << "1.1.1" << false;
    QTest::newRow("minor at both ends") << "1.5.0-2.5.0" << "1.1.1" << "2.5.0" << "1.1.1" << true;
    QTest::newRow("revision ignored above") << "1.2.0" << "1.1.0" << "1.2.999" << "1.1.65535" << true;
    QTest::newRow("revision ignored below") << "1.2.7" << "1.1.9" << "1.2.0" << "1.1.0" << true;
    QTest::newRow("boot major below") << "1.0.0-1.2.0" << "1.1.1" << "0.1.0" << "1.1.1" << false;
    QTest::newRow("boot major above") << "1.0.0-1.2.0" << "1.1.1" << "2.1.0" << "1.1.1" << false;
    QTest::newRow("boot minor above") << "1.0.0-1.2.0" << "1.1.1" << "1.3.0" << "1.1.1" << false;
    QTest::newRow("hardware minor below") << "1.0.0-1.2.0" << "2.1.0-2.3.0" << "1.1.1" << "2.0.5" << false;
    QTest::newRow("last part is the upper bound") << "1.0.0-9.9.9-1.2.0" << "1.1.1" << "1.3.0" << "1.1.1" << false;
    QTest::newRow("reversed range fits nothing") << "1.2.0-1.0.0" << "1.1.1" << "1.1.0" << "1.1.1" << false;
}

void tst_FirmwareFile::checkFirmwareVersion()
{
    QFETCH(QString, fileBoot);
    QFETCH(QString, fileHardware);
    QFETCH(QString, gripBoot);
    QFETCH(QString, gripHardware);
    QFETCH(bool, fits);
    TestLink link;
    GunInfo().Comm2Obj(gunInfoReport({1, 1, 70}, {1, 1, 1}, build(gripBoot), build(gripHardware)));
    QCOMPARE(GunInfo().BootBuild(), gripBoot);

    FirmwareFile file;
    file.Firmware = QStringLiteral(" 1.1.70");
    file.Protocol = QStringLiteral(" 1.1.1");
    file.Boot = fileBoot;
    file.Hardware = fileHardware;
    QCOMPARE(mFirmware::checkFirmwareVersion(file), fits);
}

void tst_FirmwareFile::checkFirmwareVersionPassesBadHeaders_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("boot");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("hardware");
    QTest::addColumn<int>("number");

    QTest::newRow("no header at all") << "" << "" << "" << "" << mErrCodes::ERR_VERSION_FORMAT;
    QTest::newRow("two-part boot build") << "1.1.70" << "1.0" << "1.1.1" << "1.1.1" << mErrCodes::ERR_VERSION_FORMAT;
    QTest::newRow("firmware is parsed too") << "abc.d.e" << "1.1.1" << "1.1.1" << "1.1.1" << mErrCodes::RT_TYPE_MISMATCH;
    QTest::newRow("protocol is parsed too") << "1.1.70" << "1.1.1" << "1.1.1.1" << "1.1.1" << mErrCodes::ERR_VERSION_FORMAT;
    QTest::newRow("minor above a byte") << "1.1.70" << "1.300.0" << "1.1.1" << "1.1.1" << mErrCodes::RT_OVERFLOW;
}

void tst_FirmwareFile::checkFirmwareVersionPassesBadHeaders()
{
    QFETCH(QString, firmware);
    QFETCH(QString, boot);
    QFETCH(QString, protocol);
    QFETCH(QString, hardware);
    QFETCH(int, number);
    TestLink link;
    FirmwareFile file;
    file.Firmware = firmware;
    file.Boot = boot;
    file.Protocol = protocol;
    file.Hardware = hardware;
    try {
        mFirmware::checkFirmwareVersion(file);
        QFAIL("a bad header was accepted");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), number);
        QCOMPARE(e.Trail().last().module, QStringLiteral("mFirmware"));
        QCOMPARE(e.Trail().last().revision, QStringLiteral("$Revision: 10 $"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("checkFirmwareVersion"));
    }
}

QTEST_GUILESS_MAIN(tst_FirmwareFile)
#include "tst_firmwarefile.moc"
