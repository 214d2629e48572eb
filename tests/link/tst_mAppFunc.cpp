// The catalogue sizes, the byte helpers every record builds and reads its frames with, the hex
// helpers of the firmware file, and the check byte.
#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"

#include <QtTest>

using namespace mAppFunc;

class tst_mAppFunc : public QObject {
    Q_OBJECT
private slots:
    void functionSizes_data();
    void functionSizes();
    void reportSizes_data();
    void reportSizes();
    void variableInputSize();
    void byteFromHexstring_data();
    void byteFromHexstring();
    void lz_data();
    void lz();
    void frameBytes_data();
    void frameBytes();
    void frameByte_data();
    void frameByte();
    void checksum_data();
    void checksum();
};

void tst_mAppFunc::functionSizes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("input");
    QTest::addColumn<int>("report");
    QTest::newRow("boot-mode query") << 0x11 << 2 << 3;
    QTest::newRow("gun information") << 0x13 << 2 << 28;
    QTest::newRow("timing") << 0x14 << 2 << 14;
    QTest::newRow("counters") << 0x15 << 2 << 10;
    QTest::newRow("game timers") << 0x16 << 2 << 9;
    QTest::newRow("battery") << 0x17 << 2 << 4;
    QTest::newRow("options") << 0x18 << 2 << 6;
    QTest::newRow("ramping") << 0x19 << 2 << 5;
    QTest::newRow("upload timing") << 0x24 << 14 << 2;
    QTest::newRow("reset counter") << 0x25 << 6 << 2;
    QTest::newRow("upload game timers") << 0x26 << 9 << 2;
    QTest::newRow("upload options") << 0x28 << 6 << 2;
    QTest::newRow("upload ramping") << 0x29 << 5 << 2;
    QTest::newRow("stop program") << 0x81 << 2 << 2;
    QTest::newRow("start program") << 0x83 << 2 << 2;
    QTest::newRow("read block") << 0x85 << 4 << 18;
    QTest::newRow("0x86") << 0x86 << 2 << 2;
    QTest::newRow("0x87") << 0x87 << 2 << 2;
    QTest::newRow("unknown 0x12") << 0x12 << 0 << 0;
    QTest::newRow("below the range") << 0x10 << 0 << 0;
    QTest::newRow("above the range") << 0x8B << 0 << 0;
    QTest::newRow("a report code") << 0x41 << 0 << 0;
}

void tst_mAppFunc::functionSizes()
{
    QFETCH(int, code);
    QFETCH(int, input);
    QFETCH(int, report);
    QCOMPARE(GetFunctionInputSize(code, QByteArray(1, '\0')), input);
    QCOMPARE(GetFunctionReturnSize(code), report);
}

void tst_mAppFunc::reportSizes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("size");
    const QList<QPair<int, int>> table = {{0x41, 3}, {0x42, 2}, {0x43, 28}, {0x44, 14}, {0x45, 10},
                                          {0x46, 9},  {0x47, 4}, {0x48, 6},  {0x49, 5},  {0x50, 2},
                                          {0x91, 2},  {0x93, 2}, {0x95, 18}, {0x96, 0},  {0x97, 0},
                                          {0x00, 0},  {0x11, 0}, {0xFF, 0}};
    for (const auto& row : table)
        QTest::addRow("0x%02X", row.first) << row.first << row.second;
}

void tst_mAppFunc::reportSizes()
{
    QFETCH(int, code);
    QFETCH(int, size);
    QCOMPARE(GetReportReturnSize(code), size);
}

void tst_mAppFunc::variableInputSize()
{
    QCOMPARE(GetFunctionInputSize(0x82, QByteArray(10, '\0')), 10);
    QCOMPARE(GetFunctionInputSize(0x8A, QByteArray::fromHex("8A0020100102")), 6);
    QCOMPARE(GetFunctionInputSize(0x82, QByteArray()), 0);
}

void tst_mAppFunc::byteFromHexstring_data()
{
    QTest::addColumn<QString>("hex");
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("value"); // -1: not hex digits, a type mismatch
    QTest::newRow("first byte") << "1400EC" << 1 << 0x14;
    QTest::newRow("middle byte") << "1400EC" << 2 << 0x00;
    QTest::newRow("checksum") << "1400EC" << 3 << 0xEC;
    QTest::newRow("past the end") << "1400EC" << 4 << 0;
    QTest::newRow("far past the end") << "1400EC" << 400 << 0;
    QTest::newRow("empty string") << "" << 1 << 0;
    QTest::newRow("single trailing digit") << "14A" << 2 << 0xA;
    QTest::newRow("lower case") << "ff" << 1 << 0xFF;
    QTest::newRow("position zero") << "1400EC" << 0 << 0;
    QTest::newRow("not hex") << "ZZ" << 1 << -1;
    QTest::newRow("half hex") << "1G" << 1 << -1;
    QTest::newRow("blank") << " 1" << 1 << -1;
    QTest::newRow("sign") << "-1" << 1 << -1;
}

void tst_mAppFunc::byteFromHexstring()
{
    QFETCH(QString, hex);
    QFETCH(int, n);
    QFETCH(int, value);
    try {
        QCOMPARE(int(GetByteFromHexstring(hex, n)), value);
    } catch (const MarloError& e) {
        QCOMPARE(value, -1);
        QCOMPARE(e.Number(), mErrCodes::RT_TYPE_MISMATCH);
    }
}

void tst_mAppFunc::lz_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("padded");
    QTest::newRow("one digit") << 2 << "A" << "0A";
    QTest::newRow("already two") << 2 << "1F" << "1F";
    QTest::newRow("longer stays") << 2 << "100" << "100";
    QTest::newRow("empty") << 2 << "" << "00";
    QTest::newRow("four") << 4 << "100" << "0100";
}

void tst_mAppFunc::lz()
{
    QFETCH(int, length);
    QFETCH(QString, text);
    QFETCH(QString, padded);
    QCOMPARE(LZ(length, text), padded);
}

void tst_mAppFunc::frameBytes_data()
{
    QTest::addColumn<QList<int>>("values");
    QTest::addColumn<QByteArray>("bytes"); // empty: the values do not fit, "Invalid procedure call"
    QTest::newRow("zero") << QList<int>{0} << QByteArray(1, '\0');
    QTest::newRow("ten") << QList<int>{10} << QByteArray("\x0A");
    QTest::newRow("max") << QList<int>{255} << QByteArray("\xFF");
    QTest::newRow("a command") << QList<int>{0x29, 3, 100, 1} << QByteArray::fromHex("29036401");
    QTest::newRow("256 does not fit") << QList<int>{256} << QByteArray();
    QTest::newRow("negative does not fit") << QList<int>{-1} << QByteArray();
    QTest::newRow("never cut to a byte") << QList<int>{0x24, 0x10A, 3} << QByteArray();
}

void tst_mAppFunc::frameBytes()
{
    QFETCH(QList<int>, values);
    QFETCH(QByteArray, bytes);
    try {
        QByteArray built;
        // The helper takes a list written out in the code: one to four values here.
        switch (values.size()) {
        case 1: built = FrameBytes({values[0]}); break;
        case 3: built = FrameBytes({values[0], values[1], values[2]}); break;
        case 4: built = FrameBytes({values[0], values[1], values[2], values[3]}); break;
        default: QFAIL("no row of that many values");
        }
        QCOMPARE(built, bytes);
        QVERIFY(!bytes.isEmpty());
    } catch (const MarloError& e) {
        QVERIFY(bytes.isEmpty());
        QCOMPARE(e.Number(), mErrCodes::RT_INVALID_CALL);
    }
}

void tst_mAppFunc::frameByte_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<int>("n");
    QTest::addColumn<int>("value");
    const QByteArray command = QByteArray::fromHex("1400EC");
    QTest::newRow("first byte") << command << 1 << 0x14;
    QTest::newRow("middle byte") << command << 2 << 0x00;
    QTest::newRow("check byte, high bit set") << command << 3 << 0xEC;
    QTest::newRow("past the end") << command << 4 << 0;
    QTest::newRow("far past the end") << command << 400 << 0;
    QTest::newRow("position zero") << command << 0 << 0;
    QTest::newRow("negative position") << command << -1 << 0;
    QTest::newRow("empty frame") << QByteArray() << 1 << 0;
    QTest::newRow("255") << QByteArray("\xFF") << 1 << 255;
}

void tst_mAppFunc::frameByte()
{
    QFETCH(QByteArray, frame);
    QFETCH(int, n);
    QFETCH(int, value);
    QCOMPARE(int(FrameByte(frame, n)), value);
}

void tst_mAppFunc::checksum_data()
{
    QTest::addColumn<QString>("hex");
    QTest::addColumn<int>("crc");
    QTest::newRow("timing download command") << "1400" << 0xEC;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("sums to 512") << "80FF81" << 0x00;
    QTest::newRow("single byte") << "14" << 0xEC;
    QTest::newRow("defaults upload") << "240A0A1E231C000A0A1E231C00" << 0xFA;
}

void tst_mAppFunc::checksum()
{
    QFETCH(QString, hex);
    QFETCH(int, crc);
    const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
    QCOMPARE(int(mCommBasic::CalcCRC(bytes)), crc);
    const QByteArray framed = bytes + char(crc);
    QVERIFY(mCommBasic::CheckCRC(framed));
    quint32 sum = 0;
    for (char byte : framed)
        sum += static_cast<quint8>(byte);
    QCOMPARE(sum % 256, 0u);
    // Any change of one byte breaks the check.
    QByteArray broken = framed;
    broken[0] = char(broken[0] ^ 0x10);
    QVERIFY(!mCommBasic::CheckCRC(broken));
    QVERIFY(!mCommBasic::CheckCRC(QByteArray())); // nothing carries no check byte
}

QTEST_GUILESS_MAIN(tst_mAppFunc)
#include "tst_mAppFunc.moc"
