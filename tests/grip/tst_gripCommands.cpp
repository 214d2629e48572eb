// The grip-command frame: the boot-mode check, the order of the exchanges of get all, put all
// and the counter reset, the skipped records, refusals and the wait pointer.
#include "GripTestSupport.h"

#include "base/mErrCodes.h"
#include "link/cError.h"
#include "shell/mMain.h"

#include <QtTest>

using namespace griptest;
using namespace mGripCommands;

class TstGripCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { resetRecords(); }

    void order_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("codes");
        QTest::addColumn<QString>("unsupported");
        QTest::newRow("get 4.0.0") << "get" << "firmware=4.0.0" << "13 11 13 14 13 15 13 16 13 17 13 18 13 19" << "";
        QTest::newRow("get 1.1.69") << "get" << "firmware=1.1.69" << "13 11 13 14 13 15 13 16 13 17 13 13" << "options ramping";
        QTest::newRow("get boot mode") << "get" << "bootmode=1" << "13 11 13 83 13 14 13 15 13 16 13 17 13 18 13 19" << "";
        QTest::newRow("put 2.0.20") << "put" << "firmware=2.0.20" << "13 11 13 24 13 26 13 28 13" << "ramping";
        QTest::newRow("put 1.1.4 boot mode") << "put" << "firmware=1.1.4,bootmode=1" << "13 11 13 83 13 24 13 26 13 13"
                                             << "options ramping";
        QTest::newRow("reset boot mode") << "reset" << "firmware=1.1.70,bootmode=1" << "13 11 13 83 13 25" << "";
    }

    void order()
    {
        QFETCH(QString, command);
        QFETCH(QString, options);
        QFETCH(QString, codes);
        QFETCH(QString, unsupported);
        GripHarness h(options);
        const CommandResult result = command == QLatin1String("get") ? GetAll()
                                     : command == QLatin1String("put") ? PutAll() : ResetCounter(3);
        QStringList sent, skipped;
        for (const int code : h.codes())
            sent.append(QString::number(code, 16));
        for (const GripRecord record : result.unsupported())
            skipped.append(RecordName(record));
        QCOMPARE(sent.join(QLatin1Char(' ')), codes);
        QCOMPARE(skipped.join(QLatin1Char(' ')), unsupported);
        QCOMPARE(result.programStarted, options.contains(QLatin1String("bootmode")));
        QVERIFY(!result.refused());
        // The wait pointer went on and off once, outermost around the whole command; no message.
        QCOMPARE(h.link.ui.busyPointer.count(false), 1);
        QCOMPARE(h.link.ui.busyPointer.last(), false);
        QVERIFY(h.link.ui.messages.isEmpty());
    }

    void refusals()
    {
        GripHarness h;
        h.replies[0x26] = refusal(0x26);
        CommandResult result = PutAll();
        QCOMPARE(result.outcomeOf(GripRecord::Timing), Outcome::Done);
        QCOMPARE(result.outcomeOf(GripRecord::GameTimer), Outcome::Refused);
        QCOMPARE(result.outcomeOf(GripRecord::Ramping), Outcome::Done); // the rest still goes
        QVERIFY(h.codes().contains(0x29));
        QVERIFY(result.refused());
        // A refused boot-mode query is not forgotten when the transfers go well.
        h.replies = {{0x11, refusal(0x11)}};
        result = GetRecord(GripRecord::Timing);
        QVERIFY(result.bootCheckRefused && result.refused());
        QCOMPARE(result.outcomeOf(GripRecord::Timing), Outcome::Done);
        QCOMPARE(GripError().ErrorCode(), 1);
        h.replies.clear();
        GetRecord(GripRecord::Timing); // a new command starts with a clean error record
        QCOMPARE(GripError().ErrorCode(), cError::NoError);
    }

    void errorStopsTheCommand()
    {
        GripHarness h;
        h.replies[0x15] = framed(QStringLiteral("42")) + QByteArray(8, '\0'); // an acknowledgement, as long as the report
        const MarloError e = errorOf([] { GetAll(); }).value();
        QCOMPARE(e.Number(), mErrCodes::ERR_DL_COUNTERS);
        QCOMPARE(e.Trail().last().module + QLatin1Char('.') + e.Trail().last().procedure, QStringLiteral("mGripCommands.GetAll"));
        QVERIFY(!h.codes().contains(0x16));
        QCOMPARE(mMain::MousePointerDepth(), 0); // the wait pointer is back
        // Counters and battery are only read.
        QCOMPARE(errorOf([] { PutRecord(GripRecord::Battery); }).value().Number(), mErrCodes::RT_INVALID_CALL);
        QVERIFY(!h.codes().contains(0x17));
    }
};

QTEST_GUILESS_MAIN(TstGripCommands)
#include "tst_gripCommands.moc"
