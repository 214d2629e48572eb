// Reading and writing the whole program memory against the virtual grip (behind the fake port,
// with the pauses recorded instead of slept), retries and their pauses, the failure after three
// attempts, the mid-transfer program restart of old firmware, and the verification rules.
#include "FirmwareTestSupport.h"
#include "TestLink.h"
#include "firmware/mCommSupport.h"
#include "library/cApplication.h"
#include "link/cError.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"
#include "sim/Checksum.h"

#include <QtTest>

using fwtest::bytes;
using fwtest::codes;
using fwtest::Line;

namespace {

// Index of the block frame (read or write) for a byte address, or -1.
qsizetype blockFrameIndex(const QList<QByteArray>& frames, int address, qsizetype from = 0)
{
    const int word = address / 2;
    for (qsizetype i = from; i < frames.size(); ++i) {
        const QByteArray& f = frames[i];
        const quint8 code = static_cast<quint8>(f.at(0));
        if ((code == 0x85 || code == 0x82 || code == 0x8A) && f.size() >= 3 &&
            static_cast<quint8>(f[1]) == (word >> 8) && static_cast<quint8>(f[2]) == (word & 0xFF))
            return i;
    }
    return -1;
}

int countOf(const QList<qint32>& values, qint32 value)
{
    return static_cast<int>(std::count(values.begin(), values.end(), value));
}

int blockFrames(const QList<QByteArray>& frames, int address)
{
    int count = 0;
    for (qsizetype i = blockFrameIndex(frames, address); i >= 0; i = blockFrameIndex(frames, address, i + 1))
        ++count;
    return count;
}

QList<HexLine> gripLines(int seed)
{
    return fwtest::FullImage(seed).Segments.mid(0, 252);
}

} // namespace

Q_DECLARE_METATYPE(HexLine)

class tst_FirmwareTransfer : public QObject {
    Q_OBJECT

private slots:
    void fullRead_data();
    void fullRead();
    void readRestartsOldFirmwareAt0x200_data();
    void readRestartsOldFirmwareAt0x200();
    void writeRestartsOldFirmwareAt0xF50_data();
    void writeRestartsOldFirmwareAt0xF50();
    void fullWrite_data();
    void fullWrite();
    void readRetries_data();
    void readRetries();
    void writeRetries_data();
    void writeRetries();
    void failureCarriesTheLinksMessage();
    void errorRecordIsClearedBeforeEachBlock();
    void linesThatCannotBeSent_data();
    void linesThatCannotBeSent();
    void compare_data();
    void compare();
    void compareErrorKeepsTheCallersWaitPointer();
};

void tst_FirmwareTransfer::fullRead_data()
{
    QTest::addColumn<QString>("boot");
    QTest::addColumn<bool>("old");
    QTest::newRow("old boot code") << "1.2.0" << true;
    QTest::newRow("new boot code") << "1.2.1" << false;
}

void tst_FirmwareTransfer::fullRead()
{
    QFETCH(QString, boot);
    QFETCH(bool, old);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1,boot=") + boot);
    sim.attach(link.port);
    const QByteArray memory = sim.grip->state().memory;

    FirmwareFile image;
    image.Firmware = QStringLiteral("kept");
    image.Segments.append(Line(0x10, {1, 2, 3}));
    mCommSupport::DLFirmware(image);

    QCOMPARE(image.Firmware, QStringLiteral("kept"));
    QCOMPARE(image.Segments.size(), 252);
    for (int i = 0; i < 252; ++i) {
        const int address = 0x40 + 16 * i;
        const HexLine& line = image.Segments[i];
        QCOMPARE(line.ByteCount, quint8(16));
        QCOMPARE(line.AddrHi * 256 + line.AddrLo, address);
        QCOMPARE(line.RecordType, quint8(0));
        QByteArray data;
        for (quint8 b : line.Data)
            data.append(static_cast<char>(b));
        QCOMPARE(data, memory.mid(address, 16));
        // The line keeps the block's own check byte, as the grip's boot code would check it.
        QByteArray checked = old ? bytes("8A") : QByteArray();
        checked.append(static_cast<char>(address / 2 >> 8));
        checked.append(static_cast<char>(address / 2 & 0xFF));
        checked.append(static_cast<char>(16));
        checked += data;
        QCOMPARE(line.Checksum, gripsim::checksumFor(checked));
    }
    QCOMPARE(codes(link.port.frames), QStringLiteral("13") + QStringLiteral(" 85").repeated(252));
    QCOMPARE(link.port.frames[1], bytes("85 00 20 5B"));
    QCOMPARE(link.port.frames.last(), bytes("85 07 F8 7C"));
    QCOMPARE(countOf(link.sleeps, 500), 0);
    QCOMPARE(link.ui.progressValues.size(), 252);
    QCOMPARE(link.ui.progressValues.last(), 252);
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_FirmwareTransfer::readRestartsOldFirmwareAt0x200_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("restart");
    QTest::newRow("1.1.70") << "1.1.70" << true;
    QTest::newRow("1.1.255") << "1.1.255" << true;
    QTest::newRow("0.9.0") << "0.9.0" << true;
    QTest::newRow("1.2.0") << "1.2.0" << false;
    QTest::newRow("4.0.0") << "4.0.0" << false;
}

void tst_FirmwareTransfer::readRestartsOldFirmwareAt0x200()
{
    QFETCH(QString, firmware);
    QFETCH(bool, restart);
    TestLink link;
    // The stored preference does not matter: the grip's firmware decides.
    mMain::Application().RegistrySettings().setBackwardCompatibleUpload(!restart);
    fwtest::SimGrip sim(QStringLiteral("boot=1.2.0,bootmode=1,firmware=") + firmware);
    sim.attach(link.port);

    FirmwareFile image;
    mCommSupport::DLFirmware(image);
    QCOMPARE(image.Segments.size(), 252);

    const QList<QByteArray>& frames = link.port.frames;
    const qsizetype at = blockFrameIndex(frames, 0x200);
    QVERIFY(at >= 5);
    const QString before = codes(frames.mid(at - 4, 4));
    if (restart) {
        QCOMPARE(before, QStringLiteral("13 83 13 81"));
        QCOMPARE(codes(frames).count(QStringLiteral("83")), 1);
    } else {
        QCOMPARE(before, QStringLiteral("85 85 85 85"));
        QVERIFY(!codes(frames).contains(QStringLiteral("83")));
    }
    // The grip is back in its boot code for the rest of the read.
    QVERIFY(sim.grip->state().bootMode);
}

void tst_FirmwareTransfer::writeRestartsOldFirmwareAt0xF50_data()
{
    readRestartsOldFirmwareAt0x200_data();
}

void tst_FirmwareTransfer::writeRestartsOldFirmwareAt0xF50()
{
    QFETCH(QString, firmware);
    QFETCH(bool, restart);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("boot=1.2.0,bootmode=1,firmware=") + firmware);
    sim.attach(link.port);

    mCommSupport::ULFirmware(fwtest::FullImage(3));

    const QList<QByteArray>& frames = link.port.frames;
    const qsizetype at = blockFrameIndex(frames, 0xF50);
    QVERIFY(at >= 5);
    QCOMPARE(codes(frames.mid(at - 4, 4)),
             restart ? QStringLiteral("13 83 13 81") : QStringLiteral("8A 8A 8A 8A"));
    QCOMPARE(codes(frames).count(QStringLiteral("83")), restart ? 1 : 0);
    // Not at 0x200, where the read restarts.
    const qsizetype at200 = blockFrameIndex(frames, 0x200);
    QCOMPARE(codes(frames.mid(at200 - 1, 1)), QStringLiteral("8A"));
}

void tst_FirmwareTransfer::fullWrite_data()
{
    QTest::addColumn<QString>("boot");
    QTest::addColumn<QByteArray>("endFrame");
    QTest::newRow("old boot code") << "1.0.3" << bytes("8A 00 00 00 76");
    QTest::newRow("new boot code") << "2.0.0" << bytes("82 00 00 00 00");
}

void tst_FirmwareTransfer::fullWrite()
{
    QFETCH(QString, boot);
    QFETCH(QByteArray, endFrame);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1,boot=") + boot);
    sim.attach(link.port);
    const FirmwareFile image = fwtest::FullImage(11);

    mCommSupport::ULFirmware(image);

    const QByteArray memory = sim.grip->state().memory;
    for (const HexLine& line : image.Segments) {
        const int address = line.AddrHi * 256 + line.AddrLo;
        for (int i = 0; i < line.Data.size(); ++i)
            QCOMPARE(quint8(memory[address + i]), line.Data[i]);
    }
    // Every line in file order, the end record included (with a count of 0).
    QCOMPARE(link.port.frames.size(), 1 + 253);
    QCOMPARE(link.port.frames.last(), endFrame);
    QCOMPARE(link.ui.progressValues.last(), 253);
    QCOMPARE(countOf(link.sleeps, 500), 0);
}

void tst_FirmwareTransfer::readRetries_data()
{
    QTest::addColumn<int>("failures");
    QTest::newRow("one failure") << 1;
    QTest::newRow("two failures") << 2;
    QTest::newRow("three failures") << 3;
}

void tst_FirmwareTransfer::readRetries()
{
    QFETCH(int, failures);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1"));
    sim.grip->addBlockFailure({0x200, failures});
    sim.attach(link.port);

    FirmwareFile image;
    image.Segments.append(Line(0x10, {9}));
    const FirmwareFile before = image;
    try {
        mCommSupport::DLFirmware(image);
        QVERIFY(failures < 3);
        QCOMPARE(image.Segments.size(), 252);
        QCOMPARE(blockFrames(link.port.frames, 0x200), failures + 1);
    } catch (const MarloError& e) {
        QCOMPARE(failures, 3);
        QCOMPARE(e.Number(), mErrCodes::ERR_DL_FIRMWARE);
        QCOMPARE(e.Source(), QStringLiteral("DLFirmware"));
        QCOMPARE(e.Description(), QStringLiteral("Download failed at address: 512 (1) Checksum error."));
        QCOMPARE(e.Trail().first().module, QStringLiteral("mCommSupport"));
        QCOMPARE(e.Trail().first().procedure, QStringLiteral("DLFirmware - read PIC-memory [$0200]"));
        QCOMPARE(blockFrames(link.port.frames, 0x200), 3);
        QCOMPARE(blockFrameIndex(link.port.frames, 0x210), -1);
        QCOMPARE(link.ui.progressValues.last(), (0x200 - 0x40) / 16);
        QCOMPARE(image, before);
    }
    // Reads are tried again at once.
    QCOMPARE(countOf(link.sleeps, 500), 0);
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_FirmwareTransfer::writeRetries_data()
{
    QTest::addColumn<int>("failures");
    QTest::addColumn<int>("pauses");
    QTest::newRow("one failure") << 1 << 1;
    QTest::newRow("two failures") << 2 << 2;
    QTest::newRow("three failures") << 3 << 2;
}

void tst_FirmwareTransfer::writeRetries()
{
    QFETCH(int, failures);
    QFETCH(int, pauses);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,boot=1.2.1,bootmode=1"));
    sim.grip->addBlockFailure({0x200, failures});
    sim.attach(link.port);
    const FirmwareFile image = fwtest::FullImage(2);
    const QByteArray original = sim.grip->state().memory;

    try {
        mCommSupport::ULFirmware(image);
        QVERIFY(failures < 3);
        QCOMPARE(blockFrames(link.port.frames, 0x200), failures + 1);
        QCOMPARE(quint8(sim.grip->state().memory[0x200]), image.Segments[(0x200 - 0x40) / 16].Data[0]);
    } catch (const MarloError& e) {
        QCOMPARE(failures, 3);
        QCOMPARE(e.Number(), mErrCodes::ERR_UL_FIRMWARE);
        QCOMPARE(e.Source(), QStringLiteral("ULFirmware"));
        QCOMPARE(e.Description(), QStringLiteral("Upload failed at address: 512 (1) Checksum error."));
        QCOMPARE(e.Trail().first().procedure, QStringLiteral("ULFirmware - upload data to grip"));
        QCOMPARE(blockFrames(link.port.frames, 0x200), 3);
        // Blocks already written stay written; nothing after the failed one was sent.
        const QByteArray memory = sim.grip->state().memory;
        QCOMPARE(quint8(memory[0x1F0]), image.Segments[(0x1F0 - 0x40) / 16].Data[0]);
        QCOMPARE(memory.mid(0x200), original.mid(0x200));
        QCOMPARE(blockFrameIndex(link.port.frames, 0x210), -1);
    }
    // A pause of 500 ms after each failed attempt that is not the last, and only there.
    QCOMPARE(countOf(link.sleeps, 500), pauses);
    const qsizetype firstPause = link.sleeps.indexOf(500);
    QCOMPARE(link.sleeps.mid(firstPause - 1, 3), (QList<qint32>{100, 500, 100}));
    QCOMPARE(link.sleeps.last(), 100);
}

void tst_FirmwareTransfer::failureCarriesTheLinksMessage()
{
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1,fault=badsum@85*3"));
    sim.attach(link.port);
    FirmwareFile image;
    try {
        mCommSupport::DLFirmware(image);
        QFAIL("three spoiled reports were accepted");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::ERR_DL_FIRMWARE);
        QCOMPARE(e.Description(), QStringLiteral("Download failed at address: 64 (10212) ") + mErrCodes::MSG_DL_FIRMWAREDATA);
    }
    QVERIFY(image.Segments.isEmpty());
}

void tst_FirmwareTransfer::errorRecordIsClearedBeforeEachBlock()
{
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1"));
    sim.attach(link.port);
    GripError().setErrorCode(cError::ChecksumError); // left over from an earlier request
    FirmwareFile image;
    mCommSupport::DLFirmware(image);
    QCOMPARE(image.Segments.size(), 252);
    QCOMPARE(codes(link.port.frames).count(QStringLiteral("85")), 252);
}

void tst_FirmwareTransfer::linesThatCannotBeSent_data()
{
    QTest::addColumn<HexLine>("line");
    QTest::addColumn<int>("number");
    QTest::newRow("address above 0x7FFF overflows") << Line(0x8000, {1}) << mErrCodes::RT_OVERFLOW;
    QTest::newRow("more than 16 data bytes") << Line(0x40, QList<quint8>(17, 1)) << mErrCodes::RT_SUBSCRIPT;
}

void tst_FirmwareTransfer::linesThatCannotBeSent()
{
    QFETCH(HexLine, line);
    QFETCH(int, number);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1"));
    sim.attach(link.port);
    FirmwareFile image;
    image.Segments = {Line(0x40, fwtest::Pattern(1)), line};
    try {
        mCommSupport::ULFirmware(image);
        QFAIL("the line was sent");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), number);
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("ULFirmware - upload data to grip"));
    }
    // The line before it was written; the bad one never reached the grip.
    QCOMPARE(codes(link.port.frames), QStringLiteral("13 82"));
}

void tst_FirmwareTransfer::compare_data()
{
    QTest::addColumn<QList<HexLine>>("lines");
    QTest::addColumn<bool>("equal");
    QTest::addColumn<int>("error");         // 0: none shown
    QTest::addColumn<QString>("procedure"); // of the shown error

    const QList<HexLine> grip = gripLines(7);
    QList<HexLine> changed = gripLines(7);
    changed[100].Data[15] ^= 0x01;
    const QList<quint8> upperHalf = grip[0].Data.mid(8);
    QList<quint8> otherHalf = upperHalf;
    otherHalf[0] ^= 0x80;
    const HexLine beyond = Line(0x1000, {0});
    QList<HexLine> wrongFirst = {Line(0x40, QList<quint8>(16, 0)), beyond};

    QTest::newRow("identical image") << fwtest::FullImage(7).Segments << true << 0 << QString();
    QTest::newRow("one bit differs") << changed << false << 0 << QString();
    QTest::newRow("empty file image") << QList<HexLine>{} << true << 0 << QString();
    QTest::newRow("lines below 0x40 are skipped")
        << QList<HexLine>{Line(0x30, {1, 2, 3}), Line(0x0, {4}), Line(0, {}, 1, 0xFF)} << true << 0 << QString();
    QTest::newRow("part of a block") << QList<HexLine>{Line(0x48, upperHalf)} << true << 0 << QString();
    QTest::newRow("part of a block differs") << QList<HexLine>{Line(0x48, otherHalf)} << false << 0 << QString();
    QTest::newRow("stops after the first differing line") << wrongFirst << false << 0 << QString();
    QTest::newRow("line beyond the grip image")
        << QList<HexLine>{grip[0], beyond} << false << mErrCodes::RT_SUBSCRIPT
        << QStringLiteral("CompareProgramData - Addr: $1000");
    QTest::newRow("line running past its block")
        << QList<HexLine>{Line(0x48, grip[0].Data)} << false << mErrCodes::RT_SUBSCRIPT
        << QStringLiteral("CompareProgramData - Addr: $48");
    QTest::newRow("high byte 0x80 overflows")
        << QList<HexLine>{grip[0], grip[1], Line(0x8000, {1})} << false << mErrCodes::RT_OVERFLOW
        << QStringLiteral("CompareProgramData - Line: 2");
}

void tst_FirmwareTransfer::compare()
{
    QFETCH(QList<HexLine>, lines);
    QFETCH(bool, equal);
    QFETCH(int, error);
    QFETCH(QString, procedure);
    TestLink link;
    FirmwareFile file;
    file.Segments = lines;
    FirmwareFile grip;
    grip.Segments = gripLines(7);

    QCOMPARE(mCommSupport::CompareProgramData(file, grip), equal);
    if (error == 0) {
        QVERIFY(link.ui.errors.isEmpty());
    } else {
        QCOMPARE(link.ui.errors.size(), 1);
        const MarloError& shown = link.ui.errors.first();
        QCOMPARE(shown.Number(), error);
        QCOMPARE(shown.Trail().last().module, QStringLiteral("mCommSupport"));
        QCOMPARE(shown.Trail().last().procedure, procedure);
    }
    QVERIFY(link.port.frames.isEmpty());
}

void tst_FirmwareTransfer::compareErrorKeepsTheCallersWaitPointer()
{
    TestLink link;
    FirmwareFile file;
    file.Segments = {Line(0x1000, {1})};
    FirmwareFile grip;
    mMain::WaitMousePointer();
    mMain::WaitMousePointer();
    QVERIFY(!mCommSupport::CompareProgramData(file, grip));
    QCOMPARE(link.ui.errors.size(), 1);
    QCOMPARE(mMain::MousePointerDepth(), 2);
    mMain::RestoreMousePointer();
    mMain::RestoreMousePointer();
    QCOMPARE(mMain::MousePointerDepth(), 0);
    QCOMPARE(link.ui.busyPointer.last(), false);
}

QTEST_GUILESS_MAIN(tst_FirmwareTransfer)
#include "tst_firmwaretransfer.moc"
