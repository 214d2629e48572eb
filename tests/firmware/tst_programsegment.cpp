// One block of program memory: its address forms, the exact frames of both boot-code
// generations, and what each kind of answer makes of an exchange.
#include "FirmwareTestSupport.h"
#include "TestLink.h"
#include "firmware/cProgramSegment.h"
#include "link/cError.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "sim/Checksum.h"

#include <QtTest>

using fwtest::bytes;

namespace {

QByteArray blockReport(int first)
{
    QByteArray report("\x95", 1);
    for (int i = 0; i < 16; ++i)
        report.append(static_cast<char>(first + i));
    return gripsim::withChecksum(report);
}

} // namespace

class tst_ProgramSegment : public QObject {
    Q_OBJECT

private slots:
    void addressForms_data();
    void addressForms();
    void addressFromText();
    void dataIndexesFromOne();
    void uploadFrame_data();
    void uploadFrame();
    void downloadFrameAndData();
    void answers_data();
    void answers();
};

void tst_ProgramSegment::addressForms_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("hi");
    QTest::addColumn<int>("lo");

    QTest::newRow("0x200 is word 0100") << 0x200 << "0100" << 0x02 << 0x00;
    QTest::newRow("first block") << 0x40 << "0020" << 0x00 << 0x40;
    QTest::newRow("odd address: whole part") << 0x41 << "0020" << 0x00 << 0x41;
    QTest::newRow("last block") << 0xFF0 << "07F8" << 0x0F << 0xF0;
    QTest::newRow("restart block of a write") << 0xF50 << "07A8" << 0x0F << 0x50;
    QTest::newRow("zero") << 0 << "0000" << 0 << 0;
}

void tst_ProgramSegment::addressForms()
{
    QFETCH(int, address);
    QFETCH(QString, text);
    QFETCH(int, hi);
    QFETCH(int, lo);
    cProgramSegment segment;
    segment.setAddress(address);
    QCOMPARE(segment.AddressText(), text);
    QCOMPARE(segment.Address(), QString::number(address));
    QCOMPARE(int(segment.addrHi()), hi);
    QCOMPARE(int(segment.addrLo()), lo);
}

void tst_ProgramSegment::addressFromText()
{
    cProgramSegment segment;
    segment.setAddress(QStringLiteral("512"));
    QCOMPARE(segment.AddressValue(), 512);
    QCOMPARE(segment.AddressText(), QStringLiteral("0100"));
    try {
        segment.setAddress(QStringLiteral("0x200"));
        QFAIL("a non-decimal address was taken");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_TYPE_MISMATCH);
    }
    QCOMPARE(segment.AddressValue(), 512);
}

void tst_ProgramSegment::dataIndexesFromOne()
{
    cProgramSegment segment;
    segment.setData(1, 0xAB);
    segment.setData(16, 0xCD);
    QCOMPARE(segment.Data(1), quint8(0xAB));
    QCOMPARE(segment.Data(16), quint8(0xCD));
    for (int index : {0, 17, -1}) {
        QVERIFY_THROWS_EXCEPTION(MarloError, segment.Data(index));
        try {
            segment.setData(index, 1);
        } catch (const MarloError& e) {
            QCOMPARE(e.Number(), mErrCodes::RT_SUBSCRIPT);
            continue;
        }
        QFAIL("index outside 1..16 was taken");
    }
}

void tst_ProgramSegment::uploadFrame_data()
{
    QTest::addColumn<QString>("boot");
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("frame");

    // Old boot code (up to 1.2.0): 0x8A and a check byte over the whole frame.
    QTest::newRow("boot 1.2.0: 8A, check covers the command")
        << "1.2.0" << 0x200 << bytes("01 02 03 04") << bytes("8A 01 00 04 01 02 03 04 67");
    // Newer boot code: 0x82 and a check byte from the address on.
    QTest::newRow("boot 1.2.1: 82, check starts at the address")
        << "1.2.1" << 0x200 << bytes("01 02 03 04") << bytes("82 01 00 04 01 02 03 04 F1");
    QTest::newRow("boot 1.1.1, no data") << "1.1.1" << 0x40 << QByteArray() << bytes("8A 00 20 00 56");
    QTest::newRow("boot 1.0.3, odd address") << "1.0.3" << 0x41 << bytes("80") << bytes("8A 00 20 01 80 D5");
    QTest::newRow("boot 2.0.0, full block")
        << "2.0.0" << 0xFF0 << QByteArray(16, '\xFF') << (bytes("82 07 F8 10") + QByteArray(16, '\xFF') + bytes("01"));
    QTest::newRow("boot 1.2.10 is newer than 1.2.0")
        << "1.2.10" << 0x40 << QByteArray() << bytes("82 00 20 00 E0");
}

void tst_ProgramSegment::uploadFrame()
{
    QFETCH(QString, boot);
    QFETCH(int, address);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, frame);
    TestLink link;
    fwtest::SetGripBuilds(QStringLiteral("1.1.70"), boot, QStringLiteral("2.1.0"));
    link.port.setResponder([](const QByteArray&) { return bytes("42 BE"); });

    cProgramSegment segment;
    segment.setAddress(address);
    segment.setByteCount(static_cast<quint8>(data.size()));
    for (int i = 0; i < data.size(); ++i)
        segment.setData(i + 1, static_cast<quint8>(data[i]));
    QCOMPARE(segment.Checksum(), quint8(frame.back()));
    QVERIFY(segment.Upload());

    // The block's own check byte ends the frame: nothing is appended, nothing else is sent.
    QCOMPARE(link.port.frames.size(), 1);
    QCOMPARE(link.port.frames[0], frame);
    QCOMPARE(link.port.writes.join(), frame);
    QCOMPARE(link.sleeps, QList<qint32>{100});
    QVERIFY(!mCommBasic::bNoCRCOut);
}

void tst_ProgramSegment::downloadFrameAndData()
{
    TestLink link;
    link.port.setResponder([](const QByteArray&) { return blockReport(0x30); });
    cProgramSegment segment;
    segment.setAddress(0x200);
    QVERIFY(segment.Download());
    // 0x85, the word address, and the link's checksum.
    QCOMPARE(link.port.frames, QList<QByteArray>{bytes("85 01 00 7A")});
    for (int i = 1; i <= 16; ++i)
        QCOMPARE(int(segment.Data(i)), 0x30 + i - 1);
}

void tst_ProgramSegment::answers_data()
{
    QTest::addColumn<bool>("upload");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("result");   // 1 true, 0 false (negative answer), -1 error
    QTest::addColumn<int>("number");

    const QByteArray negative = bytes("50 01 AF");
    const QByteArray block = blockReport(0);
    QByteArray spoiled = block;
    spoiled[17] = static_cast<char>(spoiled[17] ^ 0x01);

    QTest::newRow("write acknowledged") << true << bytes("42 BE") << 1 << 0;
    QTest::newRow("write refused") << true << negative << 0 << 0;
    QTest::newRow("write answered with a block") << true << block << -1 << mErrCodes::ERR_UL_FIRMWAREDATA;
    QTest::newRow("write unanswered") << true << QByteArray() << -1 << mErrCodes::ERR_UL_FIRMWAREDATA;
    QTest::newRow("read answered") << false << block << 1 << 0;
    QTest::newRow("read refused") << false << negative << 0 << 0;
    QTest::newRow("read answered with an acknowledgement") << false << bytes("42 BE") << -1 << mErrCodes::ERR_DL_FIRMWAREDATA;
    QTest::newRow("read answered with gun information") << false << QByteArray(28, '\x43') << -1
                                                         << mErrCodes::ERR_DL_FIRMWAREDATA;
    QTest::newRow("read with a spoiled byte") << false << spoiled << -1 << mErrCodes::ERR_DL_FIRMWAREDATA;
    QTest::newRow("read cut short") << false << block.left(9) << -1 << mErrCodes::ERR_DL_FIRMWAREDATA;
}

void tst_ProgramSegment::answers()
{
    QFETCH(bool, upload);
    QFETCH(QByteArray, answer);
    QFETCH(int, result);
    QFETCH(int, number);
    TestLink link;
    link.port.setResponder([&](const QByteArray&) { return answer; });
    cProgramSegment segment;
    segment.setAddress(0x200);
    segment.setByteCount(16);
    try {
        const bool ok = upload ? segment.Upload() : segment.Download();
        QCOMPARE(ok ? 1 : 0, result);
        QCOMPARE(GripError().ErrorCode(), result == 0 ? cError::ChecksumError : cError::NoError);
        if (!upload && ok)
            QCOMPARE(segment.Data(16), quint8(15));
    } catch (const MarloError& e) {
        QCOMPARE(result, -1);
        QCOMPARE(e.Number(), number);
        QCOMPARE(e.Source(), QString());
        QCOMPARE(e.Trail().first().module, QStringLiteral("cProgramSegment"));
        QCOMPARE(e.Trail().first().procedure, upload ? QStringLiteral("Upload (0x200)") : QStringLiteral("Download (0x200)"));
        if (!upload)
            QCOMPARE(segment.Data(16), quint8(0)); // a spoiled report leaves the data alone
    }
    QVERIFY(!mCommBasic::bNoCRCOut);
}

QTEST_GUILESS_MAIN(tst_ProgramSegment)
#include "tst_programsegment.moc"
