// One exchange with the grip, every way it can end, against the in-memory port.
#include "TestLink.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cLink.h"
#include "link/cLinkSettings.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mLinkHelp.h"

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

// Settings that the test changes between exchanges.
class ChangingSettings : public cLinkSettings {
public:
    QString device;
    qint32 port = 1;
    QString line = QStringLiteral("9600,N,8,1");
    qint32 inputMode = cCommControl::InputModeBinary;

    QString CommDevice() const override { return device; }
    qint32 CommPort() const override { return port; }
    QString CommSettings() const override { return line; }
    qint32 CommInputMode() const override { return inputMode; }
    bool CommLogToFile() const override { return false; }
    bool CommLogToConsole() const override { return false; }
    QString CommLogFile() const override { return QString(); }
};

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
        QTest::newRow("read block") << QByteArray::fromHex("850020") << QByteArray("\x85") << QByteArray::fromHex("00205B");
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
        QByteArray badSum = kTimingReport;
        badSum[13] = char(badSum[13] ^ 0x01);
        QTest::newRow("bad checksum: returned all the same") << badSum << badSum << int(Outcome::BadChecksum);
        // The negative answer is two bytes long by the catalogue: what follows it is left behind.
        QTest::newRow("negative answer: returned unchecked")
            << framed(QStringLiteral("5001")) << QByteArray::fromHex("5001") << int(Outcome::WrongLength);
        QTest::newRow("short answer: returned as it stands")
            << kTimingReport.left(5) << kTimingReport.left(5) << int(Outcome::WrongLength);
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
    void longAnswerLeavesNothingForTheNextExchange()
    {
        link->port.setResponder([](const QByteArray&) { return kTimingReport + QByteArray::fromHex("010203"); });
        QCOMPARE(link->link.CommHexData(command(0x14), true), kTimingReport);
        QCOMPARE(int(link->link.LastOutcome()), int(Outcome::WrongLength));
        // The extra bytes are stale input for the next exchange, which throws them away first.
        link->port.setResponder([](const QByteArray&) { return kTimingReport; });
        QCOMPARE(link->link.CommHexData(command(0x14), true), kTimingReport);
        QCOMPARE(int(link->link.LastOutcome()), int(Outcome::Ok));
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
    void silentGripTimesOutWithinTwoSeconds()
    {
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(link->link.CommHexData(command(0x14), true), QByteArray());
        const qint64 elapsed = timer.elapsed();
        QCOMPARE(int(link->link.LastOutcome()), int(Outcome::Timeout));
        QVERIFY2(elapsed >= 900 && elapsed <= 2600, qPrintable(QString::number(elapsed)));
        // The wait let events run and slept between looks at the port.
        QVERIFY(link->ui.eventRuns > 0);
        QVERIFY(link->port.waitedMs > 800);
        QVERIFY(!link->port.PortOpen());
    }
    void busyGuardRefusesSecondExchange()
    {
        int refusals = 0;
        bool busyAfterRefusal = true;
        qsizetype framesBefore = -1;
        link->ui.onProcessEvents = [&] {
            if (refusals > 0)
                return;
            framesBefore = link->port.frames.size();
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
        link->link.CommHexData(command(0x14), true); // the grip stays silent: the wait runs events
        QCOMPARE(refusals, 1);
        // The refusal clears the flag although the first exchange was still waiting (kept so).
        QVERIFY(!busyAfterRefusal);
        QCOMPARE(link->port.frames.size(), framesBefore); // the refused exchange sent nothing
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
    void settingsAreAskedAtEveryOpening_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("device") << "device" << "/dev/ttyUSB0" << "sim";
        QTest::newRow("no device: the port number") << "device" << "sim" << "";
        QTest::newRow("port number") << "port" << "1" << "4";
        QTest::newRow("line settings") << "line" << "9600,N,8,1" << "19200,E,7,2";
        QTest::newRow("input mode") << "inputMode" << "1" << "0";
    }
    void settingsAreAskedAtEveryOpening()
    {
        QFETCH(QString, setting);
        QFETCH(QString, first);
        QFETCH(QString, second);
        // What a change in the options does: the next exchange opens the port with the new value.
        ChangingSettings settings;
        cLink changing(&link->port, settings);
        changing.SetSleepFunction([](qint32) {});
        link->port.setResponder([](const QByteArray&) { return kTimingReport; });
        const auto set = [&](const QString& value) {
            if (setting == QLatin1String("device"))
                settings.device = value;
            else if (setting == QLatin1String("port"))
                settings.port = value.toInt();
            else if (setting == QLatin1String("line"))
                settings.line = value;
            else
                settings.inputMode = value.toInt();
        };
        const auto used = [&] {
            const FakeCommPort& port = link->port;
            return setting == QLatin1String("device") ? port.device()
                   : setting == QLatin1String("port") ? QString::number(port.CommPort())
                   : setting == QLatin1String("line") ? port.Settings()
                                                      : QString::number(port.InputMode());
        };
        for (const QString& value : {first, second}) {
            set(value);
            QCOMPARE(changing.CommHexData(command(0x14), true), kTimingReport);
            QCOMPARE(used(), value);
        }
    }

private:
    std::unique_ptr<TestLink> link;
};

QTEST_GUILESS_MAIN(tst_mCommBasic)
#include "tst_mCommBasic.moc"
