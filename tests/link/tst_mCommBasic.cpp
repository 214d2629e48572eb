// One exchange with the grip, every way it can end, against the in-memory port; the real pause
// after the code byte, never shorter than asked, and the busy flag that refuses an exchange an
// event tries to start during it. Then what the exchange builds on: the catalogue sizes, reading
// a byte of a frame, and the check byte. (Building a frame's bytes, the variable sizes of the
// block writes and the hex helpers of the firmware file are pinned where they are used: the
// record, block and firmware file tests.)
#include "TestLink.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cLink.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mLinkHelp.h"
#include "sim/Catalogue.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

using namespace mAppFunc;

namespace {

// A report with its checksum appended.
QByteArray framed(const QString& hexWithoutChecksum)
{
    const QByteArray bytes = QByteArray::fromHex(hexWithoutChecksum.toLatin1());
    return bytes + char(mCommBasic::CalcCRC(bytes));
}

// The one-byte command of that code.
QByteArray command(char code) { return QByteArray(1, code); }

using Outcome = cLink::Outcome;

const QByteArray kTimingReport = framed(QStringLiteral("440A0A1E231C000A0A1E231C00"));

} // namespace

class tst_mCommBasic : public QObject {
    Q_OBJECT
private slots:
    void init() { link = std::make_unique<TestLink>(); }
    void cleanup() { link.reset(); }

    void wireFrames_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("codeByte");
        QTest::addColumn<QByteArray>("rest");
        QTest::newRow("download timing") << QByteArray("\x14") << QByteArray("\x14") << QByteArray("\xEC");
        QTest::newRow("short command padded with zeros")
            << QByteArray::fromHex("2401") << QByteArray("\x24") << QByteArray::fromHex("01DB0000000000000000000000");
        QTest::newRow("long command cut at the input size")
            << QByteArray::fromHex("14AABB") << QByteArray("\x14") << QByteArray("\xAA");
    }
    void wireFrames()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, codeByte);
        QFETCH(QByteArray, rest);
        // A negative answer padded to the expected size ends the wait at once.
        link->port.setResponder([](const QByteArray& frame) {
            return QByteArray("\x50\x01").leftJustified(GetFunctionReturnSize(static_cast<quint8>(frame.at(0))), '\0');
        });
        link->link.CommHexData(command, true);
        QCOMPARE(link->port.writes.size(), 2);
        QCOMPARE(link->port.writes[0], codeByte);
        QCOMPARE(link->port.writes[1], rest);
        // The pause comes between the code byte and the rest, and only there.
        QCOMPARE(link->sleeps, QList<qint32>{100});
        QCOMPARE(link->port.opens, 1);
        QCOMPARE(link->port.closes, 1);
        QVERIFY(!link->link.CommBusy());
    }
    void outcomes_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<int>("outcome");
        QTest::newRow("ok") << kTimingReport << kTimingReport << int(Outcome::Ok);
        // The extra bytes are stale input, which the next exchange throws away first.
        QTest::newRow("long answer: cut at the report's size")
            << kTimingReport + QByteArray::fromHex("010203") << kTimingReport << int(Outcome::WrongLength);
        QByteArray badSum = kTimingReport;
        badSum[13] = char(badSum[13] ^ 0x01);
        QTest::newRow("bad checksum: returned all the same") << badSum << badSum << int(Outcome::BadChecksum);
        // The negative answer is two bytes long by the catalogue: what follows it is left behind.
        QTest::newRow("negative answer: returned unchecked")
            << framed(QStringLiteral("5001")) << QByteArray::fromHex("5001") << int(Outcome::WrongLength);
    }
    void outcomes()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, report);
        QFETCH(int, outcome);
        link->port.setResponder([&](const QByteArray&) { return answer; });
        QCOMPARE(link->link.CommHexData(command(0x14), true), report);
        QCOMPARE(int(link->link.LastOutcome()), outcome);
        QVERIFY(!link->port.PortOpen());
        QVERIFY(!link->link.CommBusy());
    }
    void unknownReportCodeFails()
    {
        // A code the catalogue does not know is handed over as it came, for the record to refuse as
        // damaged data; the help is the one for damaged data.
        link->port.setResponder([](const QByteArray&) { return QByteArray::fromHex("990102"); });
        QCOMPARE(link->link.CommHexData(command(0x14), true), QByteArray::fromHex("990102"));
        QCOMPARE(int(link->link.LastOutcome()), int(Outcome::UnknownReport));
        QVERIFY(!link->link.CommBusy());
        const MarloError error(mErrCodes::ERR_DL_TIMING, QString(), mErrCodes::MSG_DL_TIMING);
        QVERIFY(mLinkHelp::WhatToDo(error, link->link).contains(mErrCodes::HELP_CHECKSUM.first()));
    }
    // An event that runs during the real pause after the code byte tries an exchange of its own.
    void busyGuardRefusesSecondExchange()
    {
        int refusals = 0;
        bool busyAfterRefusal = true;
        qsizetype writesBefore = -1;
        const auto second = [&] {
            writesBefore = link->port.writes.size();
            try {
                link->link.CommHexData(command(0x15), true);
            } catch (const MarloError& e) {
                ++refusals;
                QCOMPARE(e.Number(), mErrCodes::ERR_COMM_BUSY);
                QCOMPARE(e.Description(), QStringLiteral("Marlo is already communicating with the grip.\r\n\r\nTry again..."));
                QCOMPARE(e.Source(), QString());
            }
            busyAfterRefusal = link->link.CommBusy();
        };
        QElapsedTimer clock;
        clock.start();
        link->link.SetSleepFunction(nullptr);
        link->port.setResponder([](const QByteArray&) { return kTimingReport; });
        QTimer::singleShot(30, second);
        QCOMPARE(link->link.CommHexData(command(0x14), true), kTimingReport); // the first exchange went on
        QCOMPARE(writesBefore, 1); // only the code byte had gone out
        QVERIFY(clock.nsecsElapsed() >= 100 * 1000000LL); // the pause is never short
        QCOMPARE(refusals, 1);
        // The refusal clears the flag although the first exchange was still going on (kept so).
        QVERIFY(!busyAfterRefusal);
        QCOMPARE(link->port.frames.size(), 1); // the refused exchange sent nothing
        QCOMPARE(link->port.writes.size(), 2);
        QVERIFY(!link->link.CommBusy());
    }
    void portFailureGivesEmptyReport()
    {
        link->port.setOpenFailure(QStringLiteral("Permission denied opening /dev/ttyS0"));
        QCOMPARE(link->link.CommHexData(command(0x14), true), QByteArray());
        QCOMPARE(int(link->link.LastOutcome()), int(Outcome::PortFailed));
        QCOMPARE(link->link.LastOpenError(), QStringLiteral("Permission denied opening /dev/ttyS0"));
        QVERIFY(link->port.writes.isEmpty());
        QVERIFY(!link->link.CommBusy());
        // The link is usable again once the port opens.
        link->port.setOpenFailure(std::nullopt);
        link->port.setResponder([](const QByteArray&) { return kTimingReport; });
        QCOMPARE(link->link.CommHexData(command(0x14), true), kTimingReport);
    }
    void tooShortCommand()
    {
        try {
            link->link.CommHexData(QByteArray(), true);
            QFAIL("no error for a command without a code");
        } catch (const MarloError& e) {
            QCOMPARE(e.Number(), mErrCodes::ERR_NOT_ENOUGH_DATA);
            QCOMPARE(e.Source(), QStringLiteral("CommHexData"));
            QCOMPARE(e.Description(), QStringLiteral("There were not enough data in the communication input."));
            QCOMPARE(e.Trail().first().module + '.' + e.Trail().first().procedure, QStringLiteral("mCommBasic.CommHexData"));
        }
        QVERIFY(!link->link.CommBusy());
        QCOMPARE(link->port.opens, 0);
    }
    // What a change in the options does: the next exchange opens the port with the new values.
    void settingsAreAskedAtEveryOpening()
    {
        link->port.setResponder([](const QByteArray&) { return kTimingReport; });
        const QList<QStringList> steps = {
            {"/dev/ttyUSB0", "1", "9600,N,8,1", "1"}, {"sim", "4", "19200,E,7,2", "0"}, {"", "1", "9600,N,8,1", "1"}};
        for (const QStringList& values : steps) {
            link->prefs.overrideCommDevice(values[0]);
            link->prefs.setCommPort(values[1].toInt());
            link->prefs.setCommSettings(values[2]);
            link->prefs.setCommInputMode(values[3].toInt());
            QCOMPARE(link->link.CommHexData(command(0x14), true), kTimingReport);
            const FakeCommPort& port = link->port;
            QCOMPARE((QStringList{port.device(), QString::number(port.CommPort()), port.Settings(), QString::number(port.InputMode())}),
                     values);
        }
    }

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
    void frameByte_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("value");
        const QByteArray command = QByteArray::fromHex("1400EC");
        QTest::newRow("check byte, high bit set") << command << 3 << 0xEC;
        QTest::newRow("past the end") << command << 4 << 0;
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

private:
    std::unique_ptr<TestLink> link;
};

QTEST_GUILESS_MAIN(tst_mCommBasic)
#include "tst_mCommBasic.moc"
