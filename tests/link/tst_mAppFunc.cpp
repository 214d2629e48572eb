// The catalogue sizes, the byte helpers every record builds and reads its frames with, the hex
// helpers of the firmware file, and the check byte.
#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "sim/Catalogue.h"

#include <QtTest>

using namespace mAppFunc;

class tst_mAppFunc : public QObject {
    Q_OBJECT
private slots:
    // The program's catalogue and the virtual grip's were written apart; every code of the byte's
    // range must agree in both, so that a slip in either (a size, a report, a missing code) shows.
    void catalogueAgreesWithTheGrip()
    {
        for (int code = 0; code <= 0xFF; ++code) {
            const auto command = static_cast<quint8>(code);
            const QByteArray name = QByteArray::number(code, 16);
            if (!gripsim::isBlockWrite(command)) {
                // 0x82 and 0x8A are sized by their own bytes (below); every other code by the table.
                QVERIFY2(GetFunctionInputSize(code, QByteArray(1, char(code))) == gripsim::commandSize(command), name);
            }
            const int report = gripsim::isKnownCommand(command) ? gripsim::reportSize(gripsim::reportCodeFor(command)) : 0;
            QVERIFY2(GetFunctionReturnSize(code) == report, name);
            QVERIFY2(GetReportReturnSize(code) == gripsim::reportSize(command), name);
        }
    }
    void variableInputSize()
    {
        QCOMPARE(GetFunctionInputSize(0x82, QByteArray(10, '\0')), 10);
        QCOMPARE(GetFunctionInputSize(0x8A, QByteArray::fromHex("8A0020100102")), 6);
        QCOMPARE(GetFunctionInputSize(0x82, QByteArray()), 0);
    }
    void byteFromHexstring_data()
    {
        QTest::addColumn<QString>("hex");
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("value"); // -1: not hex digits, a type mismatch
        QTest::newRow("first byte") << "1400EC" << 1 << 0x14;
        QTest::newRow("checksum") << "1400EC" << 3 << 0xEC;
        QTest::newRow("past the end") << "1400EC" << 4 << 0;
        QTest::newRow("empty string") << "" << 1 << 0;
        QTest::newRow("single trailing digit") << "14A" << 2 << 0xA;
        QTest::newRow("lower case") << "ff" << 1 << 0xFF;
        QTest::newRow("position zero") << "1400EC" << 0 << 0;
        QTest::newRow("not hex") << "ZZ" << 1 << -1;
        QTest::newRow("sign") << "-1" << 1 << -1;
    }
    void byteFromHexstring()
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
    void lz_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("padded");
        QTest::newRow("one digit") << 2 << "A" << "0A";
        QTest::newRow("longer stays") << 2 << "100" << "100";
        QTest::newRow("empty") << 2 << "" << "00";
        QTest::newRow("four") << 4 << "100" << "0100";
    }
    void lz()
    {
        QFETCH(int, length);
        QFETCH(QString, text);
        QFETCH(QString, padded);
        QCOMPARE(LZ(length, text), padded);
    }
    void frameBytes_data()
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
    void frameBytes()
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
    void frameByte_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("value");
        const QByteArray command = QByteArray::fromHex("1400EC");
        QTest::newRow("first byte") << command << 1 << 0x14;
        QTest::newRow("check byte, high bit set") << command << 3 << 0xEC;
        QTest::newRow("past the end") << command << 4 << 0;
        QTest::newRow("position zero") << command << 0 << 0;
        QTest::newRow("negative position") << command << -1 << 0;
        QTest::newRow("empty frame") << QByteArray() << 1 << 0;
    }
    void frameByte()
    {
        QFETCH(QByteArray, frame);
        QFETCH(int, n);
        QFETCH(int, value);
        QCOMPARE(int(FrameByte(frame, n)), value);
    }
    void checksum_data()
    {
        QTest::addColumn<QString>("hex");
        QTest::addColumn<int>("crc");
        QTest::newRow("timing download command") << "1400" << 0xEC;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("sums to 512") << "80FF81" << 0x00;
        QTest::newRow("defaults upload") << "240A0A1E231C000A0A1E231C00" << 0xFA;
    }
    void checksum()
    {
        QFETCH(QString, hex);
        QFETCH(int, crc);
        const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
        QCOMPARE(int(mCommBasic::CalcCRC(bytes)), crc);
        const QByteArray framed = bytes + char(crc);
        QVERIFY(mCommBasic::CheckCRC(framed));
        // Any change of one byte breaks the check.
        QByteArray broken = framed;
        broken[0] = char(broken[0] ^ 0x10);
        QVERIFY(!mCommBasic::CheckCRC(broken));
        QVERIFY(!mCommBasic::CheckCRC(QByteArray())); // nothing carries no check byte
    }
};

QTEST_GUILESS_MAIN(tst_mAppFunc)
#include "tst_mAppFunc.moc"
