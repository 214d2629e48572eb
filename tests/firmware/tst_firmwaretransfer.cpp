// One block of program memory and the whole of it, against the virtual grip behind the fake port
// (the pauses recorded instead of slept): the frames of both boot-code generations, the answers
// to a block exchange, the program restart of old firmware, retries and their pauses, the
// failure after three attempts, and the verification rules.
#include "FirmwareTestSupport.h"
#include "base/mErrCodes.h"
#include "firmware/cProgramSegment.h"
#include "firmware/mCommSupport.h"
#include "grip/cGunInfo.h"
#include "link/cError.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"
#include "sim/Checksum.h"

#include <QtTest>

using namespace fwtest;

namespace {

// How many frames of a block command (0x82, 0x85, 0x8A) for a byte address were sent.
qsizetype framesAt(const QList<QByteArray>& frames, int code, int address)
{
    const QByteArray head = QByteArray::fromHex(QByteArray::number(code << 16 | address / 2, 16));
    return std::count_if(frames.begin(), frames.end(), [&](const QByteArray& frame) { return frame.startsWith(head); });
}

} // namespace

Q_DECLARE_METATYPE(HexLine)

class tst_FirmwareTransfer : public QObject {
    Q_OBJECT

private slots:
    // Old boot code (up to 1.2.0) takes 0x8A and a check byte over the whole frame; newer boot
    // code 0x82 and a check byte from the address on.
    void uploadFrame_data()
    {
        QTest::addColumn<QString>("boot");
        QTest::addColumn<int>("address");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QByteArray>("frame");
        QTest::newRow("1.2.0") << "1.2.0" << 0x200 << bytes("01 02 03 04") << bytes("8A 01 00 04 01 02 03 04 67");
        QTest::newRow("1.2.1") << "1.2.1" << 0x200 << bytes("01 02 03 04") << bytes("82 01 00 04 01 02 03 04 F1");
        QTest::newRow("no data, odd address") << "1.1.1" << 0x41 << QByteArray() << bytes("8A 00 20 00 56");
        QTest::newRow("full block") << "2.0.0" << 0xFF0 << QByteArray(16, '\xFF') << bytes("82 07 F8 10" + QByteArray(32, 'F') + "01");
        QTest::newRow("1.2.10 is newer") << "1.2.10" << 0x40 << QByteArray() << bytes("82 00 20 00 E0");
        // Addresses are computed in signed 16 bits: a high byte of 0x80 or more overflows.
        QTest::newRow("0x8000 overflows") << "1.2.1" << 0x8000 << bytes("01") << QByteArray();
    }

    void uploadFrame()
    {
        QFETCH(QString, boot);
        QFETCH(int, address);
        QFETCH(QByteArray, data);
        QFETCH(QByteArray, frame);
        TestLink link;
        auto sim = Grip(link.port, QStringLiteral("bootmode=1,boot=") + boot);
        const FirmwareFile image = Image({Line(address, QList<quint8>(data.begin(), data.end()))});
        QCOMPARE(ErrorOf([&] { mCommSupport::ULFirmware(link.session, image); }).Number(), frame.isEmpty() ? mErrCodes::RT_OVERFLOW : 0);
        QCOMPARE(link.port.frames.size(), frame.isEmpty() ? 1 : 2);
        QVERIFY(link.port.writes.join().endsWith(frame)); // the block's own check byte ends it: the link appends nothing
    }

    void segmentAnswers_data()
    {
        QTest::addColumn<bool>("upload");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("result"); // 0 false (negative answer), else the error raised
        const QByteArray block = gripsim::withChecksum(bytes("95 000102030405060708090A0B0C0D0E0F"));
        QTest::newRow("write answered with a block") << true << block << mErrCodes::ERR_UL_FIRMWAREDATA;
        QTest::newRow("read refused") << false << bytes("50 01 AF") << 0;
        QTest::newRow("read answered with gun information") << false << QByteArray(28, '\x43') << mErrCodes::ERR_DL_FIRMWAREDATA;
        // Bytes lost on the way, though what arrived adds up.
        QTest::newRow("read cut short") << false << gripsim::withChecksum(block.left(9)) << mErrCodes::ERR_DL_FIRMWAREDATA;
    }

    void segmentAnswers()
    {
        QFETCH(bool, upload);
        QFETCH(QByteArray, answer);
        QFETCH(int, result);
        TestLink link;
        link.port.setResponder([&](const QByteArray&) { return answer; });
        cProgramSegment segment;
        segment.setAddress(0x200);
        bool ok = false;
        const MarloError e = ErrorOf([&] { ok = upload ? segment.Upload(link.session) : segment.Download(link.session); });
        QCOMPARE(e.Number() ? e.Number() : int(ok), result);
        QCOMPARE(link.session.GripError().ErrorCode(), result == 0 ? cError::ChecksumError : cError::NoError);
        QVERIFY(!e.Number() || e.Source().isEmpty());
        QCOMPARE(e.Number() ? e.Trail().first().procedure : QString(), e.Number() ? (upload ? "Upload (0x200)" : "Download (0x200)") : "");
        QCOMPARE(segment.Data(16), quint8(0)); // a cut report leaves the data alone
    }

    // Old firmware has its program started and stopped again before the block at 0xF50 of a
    // write and at 0x200 of a read, whatever the stored preference says.
    void writeThenRead_data()
    {
        QTest::addColumn<QString>("grip");
        QTest::addColumn<QString>("write"); // the block write command
        QTest::addColumn<QString>("restart");
        QTest::addColumn<int>("checksum");  // of the first line read: the block's own
        QTest::newRow("old boot code and firmware") << "boot=1.2.0,firmware=1.1.70" << "8A" << " 13 83 13 81" << 0x7E;
        QTest::newRow("new boot code and firmware") << "boot=1.2.1,firmware=4.0.0" << "82" << "" << 0x08;
    }

    void writeThenRead()
    {
        QFETCH(QString, grip);
        QFETCH(QString, write);
        QFETCH(QString, restart);
        QFETCH(int, checksum);
        TestLink link;
        link.prefs.setBackwardCompatibleUpload(restart.isEmpty());
        auto sim = Grip(link.port, QStringLiteral("bootmode=1,") + grip);
        const FirmwareFile image = Image(11);
        mCommSupport::ULFirmware(link.session, image);
        // Every line in file order, the end record (without data) included.
        QCOMPARE(codes(link.port.frames), "13 " + Repeated(write, 241) + restart + ' ' + Repeated(write, 12));
        QCOMPARE(link.ui.progressValues.size(), 253); // a step a line

        link.port.frames.clear();
        link.session.GripError().setErrorCode(cError::ChecksumError); // left over from an earlier request
        FirmwareFile back{QStringLiteral("kept"), {}, {}, {}, {Line(0x10, {1})}};
        mCommSupport::DLFirmware(link.session, back);
        QCOMPARE(back.Firmware, QStringLiteral("kept"));
        QCOMPARE(back.Segments.value(0).Checksum, checksum);
        for (HexLine& line : back.Segments)
            line.Checksum = 0; // as in the image: compared above for the first block
        QCOMPARE(back.Segments, image.Segments.mid(0, 252));
        QCOMPARE(codes(link.port.frames), "13 " + Repeated("85", 28) + restart + ' ' + Repeated("85", 224));
        QCOMPARE(link.port.frames[1], bytes("85 00 20 5B"));
        QCOMPARE(link.port.frames.last(), bytes("85 07 F8 7C"));
        QVERIFY(sim->state().bootMode);
    }

    // A write is tried again after 500 ms, a read at once; the third failure ends the transfer.
    void retries_data()
    {
        QTest::addColumn<QString>("fault"); // failblock: writes refused, badsum: reads spoiled
        QTest::addColumn<int>("attempts");
        QTest::addColumn<int>("pauses");
        QTest::addColumn<QString>("failure");
        QTest::newRow("write, 2 failures") << "failblock=200*2" << 3 << 2 << "no error";
        QTest::newRow("write, 3 failures") << "failblock=200*3" << 3 << 2 << "Upload failed at address: 512 (1) Checksum error.";
        QTest::newRow("read, 3 failures") << "fault=badsum@85*3" << 3 << 0
                                          << "Download failed at address: 64 (10212) " + mErrCodes::MSG_DL_FIRMWAREDATA;
    }

    void retries()
    {
        QFETCH(QString, fault);
        QFETCH(int, attempts);
        QFETCH(int, pauses);
        QFETCH(QString, failure);
        const bool write = fault.startsWith(QLatin1String("failblock"));
        const int address = write ? 0x200 : 0x40;
        const int code = write ? 0x82 : 0x85;
        TestLink link;
        auto sim = Grip(link.port, QStringLiteral("boot=1.2.1,bootmode=1,") + fault);
        const QByteArray before = sim->state().memory;
        FirmwareFile image = Image(2);
        const MarloError e = ErrorOf([&] { write ? mCommSupport::ULFirmware(link.session, image) : mCommSupport::DLFirmware(link.session, image); });
        const bool ok = e.Number() == 0;
        QCOMPARE(e.Description(), failure);
        QCOMPARE(framesAt(link.port.frames, code, address), attempts);
        QCOMPARE(framesAt(link.port.frames, code, address + 16), ok ? 1 : 0);
        // Blocks already written stay written; a read that fails leaves the image alone.
        const QByteArray memory = sim->state().memory;
        if (write)
            QCOMPARE(memory.mid(0x1F0, 32), bytes(image.Segments[27].Data) + (ok ? bytes(image.Segments[28].Data) : before.mid(0x200, 16)));
        else
            QVERIFY(ok ? bytes(image.Segments[0].Data) == memory.mid(0x40, 16) : image == Image(2));
        QCOMPARE(e.Number(), ok ? 0 : write ? mErrCodes::ERR_UL_FIRMWARE : mErrCodes::ERR_DL_FIRMWARE);
        QCOMPARE(e.Source(), ok ? QString() : write ? "ULFirmware" : "DLFirmware");
        // The pause lies between two attempts at the block.
        QCOMPARE(link.sleeps.count(500), pauses);
        QVERIFY(!pauses || link.sleeps.mid(link.sleeps.indexOf(500) - 1, 3) == (QList<qint32>{100, 500, 100}));
    }

    void compare_data()
    {
        QTest::addColumn<QList<HexLine>>("lines");
        QTest::addColumn<bool>("equal");
        QTest::addColumn<QString>("shown"); // the error shown, with where it was trapped
        const QList<HexLine> grip = Image(7).Segments.mid(0, 252);
        QList<HexLine> changed = grip;
        changed[100].Data[15] ^= 0x01;
        QList<quint8> otherHalf = grip[0].Data.mid(8);
        otherHalf[0] ^= 0x80;
        const HexLine beyond = Line(0x1000, {0});
        const QString at = QStringLiteral(" mCommSupport: CompareProgramData - ");
        QTest::newRow("one bit differs") << changed << false << "";
        QTest::newRow("part of a block") << QList<HexLine>{Line(0x48, grip[0].Data.mid(8))} << true << "";
        QTest::newRow("below 0x40 skipped") << QList<HexLine>{Line(0x30, {1}), Line(0, {}, 1), Line(0x48, otherHalf)} << false << "";
        // A difference ends the comparison: the line beyond the grip image is not looked at.
        QTest::newRow("stops at a difference") << QList<HexLine>{Line(0x40, QList<quint8>(16, 0)), beyond} << false << "";
        QTest::newRow("beyond the grip image") << QList<HexLine>{grip[0], beyond} << false << "9" + at + "Addr: $1000";
        QTest::newRow("past its block") << QList<HexLine>{Line(0x48, grip[0].Data)} << false << "9" + at + "Addr: $48";
        QTest::newRow("high byte 0x80") << QList<HexLine>{grip[0], grip[1], Line(0x8000, {1})} << false << "6" + at + "Line: 2";
    }

    void compare()
    {
        QFETCH(QList<HexLine>, lines);
        QFETCH(bool, equal);
        QFETCH(QString, shown);
        TestLink link;
        // Showing an error resets the wait pointer; the caller's stretch must stay open.
        mMain::WaitMousePointer();
        QCOMPARE(mCommSupport::CompareProgramData(Image(lines), Image(Image(7).Segments.mid(0, 252))), equal);
        QCOMPARE(mMain::MousePointerDepth(), 1);
        mMain::RestoreMousePointer();
        QStringList errors;
        for (const MarloError& e : link.ui.errors)
            errors << QStringLiteral("%1 %2: %3").arg(e.Number()).arg(e.Trail().last().module, e.Trail().last().procedure);
        QCOMPARE(errors.join(QLatin1Char('|')), shown);
    }
};

QTEST_GUILESS_MAIN(tst_FirmwareTransfer)
#include "tst_firmwaretransfer.moc"
