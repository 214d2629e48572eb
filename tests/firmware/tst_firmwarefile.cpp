// Firmware files: the worked example in both directions, a round trip, the lenient reading,
// damaged files (which load or fail cleanly, never crash) and the compatibility check against
// the grip's builds. A file that cannot be opened is a workflow's error.
#include "FirmwareTestSupport.h"
#include "base/mErrCodes.h"
#include "firmware/mCommSupport.h"
#include "grip/cGunInfo.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace fwtest;

namespace {

const QByteArray kExampleFile = ";-----------------------------------\r\n; Firmware: 1.1.70\r\n; Boot:     1.0.3\r\n"
                                "; Protocol: 1.1.1\r\n; Hardware: 2.0.1\r\n;-----------------------------------\r\n"
                                ":0400100001020304E2\r\n:00000001FF\r\n";
const FirmwareFile kExample{"1.1.70", "1.0.3", "1.1.1", "2.0.1", {Line(0x10, {1, 2, 3, 4}, 0, 0xE2), Line(0, {}, 1, 0xFF)}};

// What a damaged file gives: the number of lines loaded, or one of these.
constexpr int kAny = -1, kRefused = -2, kEither = -3; // loads / fails with "Type mismatch" / either

// A well-formed file: 16-byte blocks from 0x40 upward and the end record.
QByteArray wellFormed(int blocks)
{
    QList<HexLine> lines;
    for (int b = 0; b < blocks; ++b)
        lines.append(Line(0x40 + 16 * b, Pattern(b), 0, 0x5A));
    return mFirmware::FirmwareFileText(Image(lines << Line(0, {}, 1, 0xFF))).toLatin1();
}

} // namespace

Q_DECLARE_METATYPE(HexLine)

class tst_FirmwareFile : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    const QString m_file = m_dir.filePath(QStringLiteral("test.tvf"));
    void write(const QByteArray& bytes) { mFirmware::SaveFile(m_file, QString::fromLatin1(bytes)); }
    QByteArray read() const
    {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
    }
    FirmwareFile load(FirmwareFile image = {})
    {
        mFirmware::LoadFirmwareFile(image, m_file);
        return image;
    }

private slots:
    void workedExample()
    {
        write(QByteArray(4096, 'X')); // saving replaces the old file
        mFirmware::SaveFirmwareFile(m_file, kExample);
        QCOMPARE(read(), kExampleFile);
        // Read back, each build text keeps the blanks that follow its colon.
        const FirmwareFile image = load();
        QCOMPARE(QStringList({image.Firmware, image.Boot, image.Protocol, image.Hardware}).join('|'), " 1.1.70|     1.0.3| 1.1.1| 2.0.1");
        QCOMPARE(image.Segments, kExample.Segments);
    }

    // Every record type, 255 data bytes and wrong checksums come back as they were; every byte
    // of the file is one character.
    void roundTrip()
    {
        QList<quint8> full;
        for (int i = 0; i < 255; ++i)
            full.append(static_cast<quint8>(i));
        FirmwareFile image = Image({Line(0, {0, 0}, 4, 0xFA), Line(0x0FFF, {0xAB}, 5), Line(0xFF00, full, 0, 0x80),
                                    Line(0x10, {1, 2, 3, 4}, 0, 0xE3), Line(0, {}, 1, 0xFF)});
        image.Firmware = QString::fromLatin1(bytes("80 A0 E9 FF"));
        mFirmware::SaveFirmwareFile(m_file, image);
        QVERIFY(read().contains("; Firmware: " + bytes("80 A0 E9 FF") + "\r\n"));
        QCOMPARE(load().Segments, image.Segments);
        QCOMPARE(load().Firmware, ' ' + image.Firmware);
    }

    void leniency_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QList<HexLine>>("segments");
        QTest::addColumn<QString>("firmware");
        const QList<HexLine> end{Line(0, {}, 1, 0xFF)}, none;
        QTest::newRow("only comments") << QByteArray(";---\r\n; Firmware: 1.1.70\r\n; anything\r\n") << none << " 1.1.70";
        QTest::newRow("short record reads 0") << QByteArray(":0400100001\r\n") << QList<HexLine>{Line(0x10, {1, 0, 0, 0})} << "";
        QTest::newRow("one trailing digit") << QByteArray(":0400100001020304E\r\n") << QList<HexLine>{Line(0x10, {1, 2, 3, 4}, 0, 0x0E)} << "";
        QTest::newRow("lower case") << QByteArray(":02abcd00eeff00\r\n") << QList<HexLine>{Line(0xABCD, {0xEE, 0xFF})} << "";
        QTest::newRow("text after the record") << QByteArray(":010040007700trailing\r\n") << QList<HexLine>{Line(0x40, {0x77})} << "";
        QTest::newRow("blanks around, other lines") << QByteArray("hello\r\n\r\n  \r\n   :00000001FF   \r\nx:0100") << end << "";
        // Lines end with CR LF only: with LF alone the file is one line, whose first record is
        // read (the rest lies beyond its byte count).
        QTest::newRow("LF line ends") << QByteArray(":0100400011AA\n:0100500022BB\n") << QList<HexLine>{Line(0x40, {0x11}, 0, 0xAA)} << "";
        QTest::newRow("blanks around key") << QByteArray("   ;  FiRmWaRe  :1.2.3\r\n") << none << "1.2.3";
        QTest::newRow("cut at a colon") << QByteArray("; Firmware: 2.0:1\r\n") << none << " 2.0";
        QTest::newRow("unknown key, no colon") << QByteArray("; Compiler: 1.0.0\r\n; Firmware 1.0.0\r\n") << none << "";
        QTest::newRow("tab is no blank") << QByteArray("; Firmware\t: 1.0.0\r\n\t:00000001FF\r\n") << none << "";
    }

    void leniency()
    {
        QFETCH(QByteArray, text);
        QFETCH(QList<HexLine>, segments);
        QFETCH(QString, firmware);
        write(text);
        QCOMPARE(load().Segments, segments);
        QCOMPARE(load().Firmware, firmware);
    }

    void damagedFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("segments");
        const QByteArray good = wellFormed(20);
        QTest::newRow("well formed") << good << 21;
        QTest::newRow("only CR and NUL") << QByteArray(5000, '\r') + QByteArray(5000, '\0') << 0;
        QTest::newRow("only colons") << QByteArray(":\r\n").repeated(100) << 100;
        QTest::newRow("huge count, odd digit") << QByteArray(":FF0040001\r\n") << 1;
        QTest::newRow("cut mid-record") << good.left(good.size() / 2) << kAny;
        QTest::newRow("NUL after records") << good + QByteArray(100, '\0') << 21;
        QTest::newRow("long line") << ":10" + QByteArray(1 << 20, 'A') << 1;
        QTest::newRow("letter G") << QByteArray(":0G00100001020304E2\r\n") << kRefused;
        QTest::newRow("bad checksum digit") << QByteArray(":0400100001020304Q2\r\n") << kRefused;
        QTest::newRow("sign") << QByteArray(":+400100001020304E2\r\n") << kRefused;
        QTest::newRow("NUL inside") << QByteArray(good).replace(":10004000", QByteArray(":1000\0" "000", 9)) << kRefused;
        QTest::newRow("last line bad") << good + ":0x\r\n" << kRefused;
        // A good file with characters replaced and its end cut off; every fourth one binary junk.
        const QByteArray small = wellFormed(8);
        const QByteArray damage("0123456789ABCDEFGa:; \r\n\t\0\xFF", 26);
        QRandomGenerator random(20260421);
        for (int round = 0; round < 400; ++round) {
            QByteArray bytes = round % 4 ? small : QByteArray(1 + random.bounded(4096), '\0');
            for (int edit = round % 4 ? 1 + random.bounded(12) : bytes.size(); edit > 0; --edit)
                bytes[random.bounded(int(bytes.size()))] = round % 4 ? damage[random.bounded(26)] : char(random.bounded(256));
            QTest::addRow("random %d", round) << (round % 3 ? bytes : bytes.left(random.bounded(int(bytes.size())))) << kEither;
        }
    }

    void damagedFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, segments);
        write(bytes);
        FirmwareFile image = kExample;
        const MarloError e = ErrorOf([&] { image = load(image); });
        if (e.Number() == 0) {
            QVERIFY2(segments != kRefused, "a damaged file was accepted");
            QVERIFY(segments < 0 || image.Segments.size() == segments);
            for (const HexLine& line : image.Segments)
                QCOMPARE(line.Data.size(), line.ByteCount);
        } else {
            // The only way a readable file is refused: a byte that is no hex number.
            QVERIFY2(segments == kRefused || segments == kEither, qPrintable(e.Description()));
            QCOMPARE(e.Number(), mErrCodes::RT_TYPE_MISMATCH);
            QCOMPARE(e.Trail().last().procedure, QStringLiteral("LoadFirmwareFile"));
            QVERIFY(image == kExample);
        }
    }

    void imageCheck_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("line");       // the line named in the refusal, 0: the image may be written
        QTest::addColumn<QString>("problem"); // what the refusal says is wrong
        const QByteArray header = wellFormed(0).left(wellFormed(0).indexOf("\r\n:") + 2);  // six lines
        const auto block = [](int address, int count) {
            QList<quint8> data;
            for (int i = 0; i < count; ++i)
                data.append(quint8(i));
            return mFirmware::FirmwareFileText({"", "", "", "", {Line(address, data)}}).split("\r\n").at(6).toLatin1() + "\r\n";
        };
        QByteArray whole = header;  // the whole program memory in 16-byte blocks
        for (int address = 0; address < 0x8000; address += 16)
            whole += block(address, 16);
        QTest::newRow("only comments: nothing to write") << header << 0 << "";
        QTest::newRow("the readable memory and the end record") << wellFormed(252) << 0 << "";
        QTest::newRow("short record: zeros, no refusal") << QByteArray(":0400100001\r\n") << 0 << "";
        QTest::newRow("the whole memory") << whole << 0 << "";
        QTest::newRow("a record of 0x11 bytes, fourth") << wellFormed(2) + block(0x80, 17) << 10 << "holds 17 data bytes, but a memory block holds at most 16";
        QTest::newRow("count 0xFF, the record cut short") << QByteArray(":FF0040001\r\n") << 1 << "holds 255 data bytes";
        QTest::newRow("address 0x8000") << header + block(0x8000, 1) << 7 << "the address 0x8000 lies outside the program memory";
        QTest::newRow("data past the end") << header + block(0x7FF8, 16) << 7 << "16 data bytes from address 0x7FF8 run past the end";
        QTest::newRow("one byte more than the memory") << whole + block(0x40, 1) << 6 + 2049 << "more data than the program memory (32768 bytes)";
        QTest::newRow("a record more than the memory has bytes") << QByteArray(":00000001FF\r\n").repeated(32769) << 32769
                                                                    << "more records than the program memory has bytes (32768)";
    }
    // A file the write would fail on is refused as a whole, before anything is sent, naming the
    // line and what is wrong; the reading rules stay as lenient as they are.
    void imageCheck()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, line);
        QFETCH(QString, problem);
        write(text);
        const FirmwareFile image = load();
        const MarloError e = ErrorOf([&] { mCommSupport::CheckFirmwareImage(image); });
        if (line == 0) {
            QVERIFY2(e.Number() == 0, qPrintable(e.Description()));
            return;
        }
        QCOMPARE(e.Number(), mErrCodes::ERR_FIRMWARE_IMAGE);
        QVERIFY2(e.Description().startsWith(QStringLiteral("The firmwarefile cannot be uploaded: line %1: ").arg(line)) &&
                     e.Description().contains(problem) && e.Description().endsWith(QLatin1String("\r\nNothing was sent to the grip.")),
                 qPrintable(e.Description()));
    }

    void checkFirmwareVersion_data()
    {
        QTest::addColumn<QString>("file"); // its Boot|Hardware|Firmware[|Protocol]: the firmware is parsed, though it plays no part
        QTest::addColumn<QString>("grip"); // its boot and hardware builds
        QTest::addColumn<int>("result");   // 1 fits, 0 does not, else the error raised
        QTest::addColumn<QString>("hint"); // the start of the error's one hint, which says what is wrong with the file
        // Header values as read from a file, with the blanks after the colon.
        QTest::newRow("fits") << "     1.0.0-1.2.0| 2.1.0| 1.1.70" << "boot=1.1.5,hardware=2.1.9" << 1 << "";
        QTest::newRow("hardware 2.2.0") << "     1.0.0-1.2.0| 2.1.0| 1.1.70" << "boot=1.1.5,hardware=2.2.0" << 0 << "";
        // Major and minor are tested on their own, the revision not at all.
        QTest::newRow("minor on its own") << "1.5.0-2.0.0|1.1.1|1.1.70" << "boot=1.7.0,hardware=1.1.1" << 0 << "";
        QTest::newRow("revision above") << "1.2.0|1.1.0|1.1.70" << "boot=1.2.999,hardware=1.1.65535" << 1 << "";
        QTest::newRow("revision below") << "1.2.7|1.1.9|1.1.70" << "boot=1.2.0,hardware=1.1.0" << 1 << "";
        QTest::newRow("boot major below") << "1.0.0-1.2.0|1.1.1|1.1.70" << "boot=0.1.0,hardware=1.1.1" << 0 << "";
        QTest::newRow("hardware minor below") << "1.0.0-1.2.0|2.1.0-2.3.0|1.1.70" << "boot=1.1.1,hardware=2.0.5" << 0 << "";
        QTest::newRow("last part is the upper bound") << "1.0.0-9.9.9-1.2.0|1.1.1|1.1.70" << "boot=1.3.0,hardware=1.1.1" << 0 << "";
        QTest::newRow("reversed range") << "1.2.0-1.0.0|1.1.1|1.1.70" << "boot=1.1.0,hardware=1.1.1" << 0 << "";
        // A header that is missing or malformed keeps the error it has always raised.
        QTest::newRow("no header") << "|||" << "" << mErrCodes::ERR_VERSION_FORMAT << "The file has no firmware header";
        QTest::newRow("no boot build") << "| 2.1.0| 1.1.70" << "" << mErrCodes::ERR_VERSION_FORMAT
                                       << "The file's firmware header names no Boot build.";
        QTest::newRow("hardware not a version") << " 1.0.0| 2.1| 1.1.70" << "" << mErrCodes::ERR_VERSION_FORMAT
                                                << "The file's Hardware build \"2.1\" is not a version";
        QTest::newRow("bad firmware") << "1.1.1|1.1.1|abc.d.e" << "" << mErrCodes::RT_TYPE_MISMATCH << "";
        QTest::newRow("minor above a byte") << " 1.0.0| 2.1.0| 1.300.0" << "" << mErrCodes::RT_OVERFLOW
                                            << "The file's Firmware build \"1.300.0\" is not a version";
    }

    void checkFirmwareVersion()
    {
        QFETCH(QString, file);
        QFETCH(QString, grip);
        QFETCH(int, result);
        QFETCH(QString, hint);
        TestLink link;
        auto sim = Grip(link.port, grip);
        RefreshGunInfo(link.session, true);
        const QStringList header = file.split(QLatin1Char('|'));
        bool fits = false;
        const FirmwareFile image{header[2], header[0], header.value(3, QStringLiteral("1.1.1")), header[1], {}};
        const MarloError e = ErrorOf([&] { fits = mFirmware::checkFirmwareVersion(image, link.session.GunInfo()); });
        QCOMPARE(e.Number() ? e.Number() : int(fits), result);
        QVERIFY(!e.Number() || e.Trail().last().procedure == QLatin1String("checkFirmwareVersion"));
        QVERIFY2(hint.isEmpty() || (e.Hints().size() == 1 && e.Hints().first().startsWith(hint)), qPrintable(e.Hints().join('\n')));
    }
};

QTEST_GUILESS_MAIN(tst_FirmwareFile)
#include "tst_firmwarefile.moc"
