// The grip-command frame: the boot-mode check, the order of the exchanges of get all and put
// all, the skipped records, refusals and the wait pointer.
#include "GripTestSupport.h"

#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "grip/mGripCommands.h"
#include "link/cError.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <QtTest>

using griptest::GripHarness;
using namespace mGripCommands;

Q_DECLARE_METATYPE(mGripCommands::GripRecord)

namespace {

void resetRecords()
{
    ResetTimingRecord();
    ResetCountersRecord();
    ResetCountdownTimerRecord();
    ResetBatteryRecord();
    ResetOptionsRecord();
    ResetHyperRecord();
}

} // namespace

class TstGripCommands : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        griptest::clearPreferences();
        resetRecords();
    }

    void getAllOrder_data();
    void getAllOrder();
    void putAllOrder_data();
    void putAllOrder();
    void singleRecord_data();
    void singleRecord();
    void getAllFillsTheRecords();
    void putAllReachesTheGrip();
    void refusalEndsOnlyItsTransfer();
    void earlierRefusalIsNotForgotten();
    void resetCounterFrame_data();
    void resetCounterFrame();
    void errorRestoresThePointer();
    void countersCannotBePut();
    void recordNames();
};

void TstGripCommands::getAllOrder_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QList<int>>("codes");
    QTest::addColumn<QList<GripRecord>>("unsupported");
    QTest::addColumn<bool>("started");
    QTest::newRow("4.0.0")
        << "firmware=4.0.0"
        << QList<int>{0x13, 0x11, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x18, 0x13, 0x19}
        << QList<GripRecord>{} << false;
    QTest::newRow("1.1.70: no ramping")
        << "firmware=1.1.70"
        << QList<int>{0x13, 0x11, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x18, 0x13}
        << QList<GripRecord>{GripRecord::Ramping} << false;
    QTest::newRow("1.1.69: no options, no ramping")
        << "firmware=1.1.69"
        << QList<int>{0x13, 0x11, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x13}
        << QList<GripRecord>{GripRecord::Options, GripRecord::Ramping} << false;
    QTest::newRow("boot mode: the program is started first")
        << "firmware=4.0.0,bootmode=1"
        << QList<int>{0x13, 0x11, 0x13, 0x83, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x18, 0x13, 0x19}
        << QList<GripRecord>{} << true;
}

void TstGripCommands::getAllOrder()
{
    QFETCH(QString, options);
    QFETCH(QList<int>, codes);
    QFETCH(QList<GripRecord>, unsupported);
    QFETCH(bool, started);
    GripHarness h(options);
    const CommandResult result = GetAll();
    QCOMPARE(h.codes(), codes);
    QCOMPARE(result.unsupported(), unsupported);
    QCOMPARE(result.programStarted, started);
    QVERIFY(!result.refused());
    QCOMPARE(result.transfers.size(), 6);
    const QList<GripRecord> order = {GripRecord::Timing, GripRecord::Counters, GripRecord::GameTimer,
                                     GripRecord::Battery, GripRecord::Options, GripRecord::Ramping};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(result.transfers[i].record, order[i]);
        QCOMPARE(result.transfers[i].direction, Direction::Get);
    }
    QVERIFY(!h.grip.state().bootMode);
}

void TstGripCommands::putAllOrder_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QList<int>>("codes");
    QTest::newRow("4.0.0") << "firmware=4.0.0" << QList<int>{0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29};
    QTest::newRow("2.0.20") << "firmware=2.0.20" << QList<int>{0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13};
    QTest::newRow("1.1.4") << "firmware=1.1.4" << QList<int>{0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x13};
    QTest::newRow("boot mode") << "bootmode=1" << QList<int>{0x13, 0x11, 0x13, 0x83, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29};
}

void TstGripCommands::putAllOrder()
{
    QFETCH(QString, options);
    QFETCH(QList<int>, codes);
    GripHarness h(options);
    TimingRecord().AssignDefaults();
    const CommandResult result = PutAll();
    QCOMPARE(h.codes(), codes);
    QCOMPARE(result.transfers.size(), 4);
    QVERIFY(!result.refused());
}

void TstGripCommands::singleRecord_data()
{
    QTest::addColumn<GripRecord>("record");
    QTest::addColumn<bool>("put");
    QTest::addColumn<int>("code");
    QTest::newRow("get timing") << GripRecord::Timing << false << 0x14;
    QTest::newRow("get counters") << GripRecord::Counters << false << 0x15;
    QTest::newRow("get game timer") << GripRecord::GameTimer << false << 0x16;
    QTest::newRow("get battery") << GripRecord::Battery << false << 0x17;
    QTest::newRow("get options") << GripRecord::Options << false << 0x18;
    QTest::newRow("get ramping") << GripRecord::Ramping << false << 0x19;
    QTest::newRow("put timing") << GripRecord::Timing << true << 0x24;
    QTest::newRow("put game timer") << GripRecord::GameTimer << true << 0x26;
    QTest::newRow("put options") << GripRecord::Options << true << 0x28;
    QTest::newRow("put ramping") << GripRecord::Ramping << true << 0x29;
}

void TstGripCommands::singleRecord()
{
    QFETCH(GripRecord, record);
    QFETCH(bool, put);
    QFETCH(int, code);
    GripHarness h;
    const CommandResult result = put ? PutRecord(record) : GetRecord(record);
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13, code}));
    QCOMPARE(result.transfers.size(), 1);
    QCOMPARE(result.outcomeOf(record), Outcome::Done);
    // The wait pointer went on and off once, outermost around the whole command.
    QVERIFY(!h.link.ui.busyPointer.isEmpty());
    QCOMPARE(h.link.ui.busyPointer.first(), true);
    QCOMPARE(h.link.ui.busyPointer.last(), false);
    QCOMPARE(h.link.ui.busyPointer.count(false), 1);
    QCOMPARE(mMain::MousePointerDepth(), 0);
    // No confirmation is shown by the core.
    QVERIFY(h.link.ui.messages.isEmpty());
}

void TstGripCommands::getAllFillsTheRecords()
{
    GripHarness h(QStringLiteral("battery=1023"));
    h.grip.updateState([](gripsim::GripState& s) {
        s.timing = {12, 13, 31, 36, 29, 16};
        s.counters = {300, 2, 99999};
        s.gameTimer = {15, 1, 300, 0, 45};
        s.options = {0x81, 150, 120, 60};
        s.ramping = {5, 90, 8};
    });
    GetAll();
    QCOMPARE(TimingRecord().ShotTime(), 12);
    QCOMPARE(TimingRecord().Dwelltime(), 13);
    QCOMPARE(TimingRecord().CycleTimeOpen(), 31);
    QCOMPARE(TimingRecord().LoadTime(), 36);
    QCOMPARE(TimingRecord().CycleTimeClose(), 29);
    QCOMPARE(TimingRecord().FiringMode(), 16);
    QCOMPARE(CountersRecord().Counter1(), 300);
    QCOMPARE(CountersRecord().Total(), 99999);
    QCOMPARE(CountdownTimerRecord().CountDownTimer(), 15);
    QCOMPARE(CountdownTimerRecord().PreAlert1On(), true);
    QCOMPARE(CountdownTimerRecord().PreAlert1Time(), 300);
    QCOMPARE(CountdownTimerRecord().PreAlert2Time(), 45);
    QVERIFY(qAbs(BatteryRecord().VoltageLevel() - 6.526f) < 0.001f);
    QCOMPARE(OptionsRecord().EyeMounted(), true);
    QCOMPARE(OptionsRecord().CTOAdjust(), true);
    QCOMPARE(OptionsRecord().LoaderOn(), false);
    QCOMPARE(OptionsRecord().EyeCheckMaxTime(), 150);
    QCOMPARE(OptionsRecord().EyeCheckOKTime(), 120);
    QCOMPARE(OptionsRecord().DefaultLoadTime(), 60);
    QCOMPARE(HyperRecord().Shots(), 5);
    QCOMPARE(HyperRecord().HyperTime(), 90);
    QCOMPARE(HyperRecord().HyperMode(), 8);
}

void TstGripCommands::putAllReachesTheGrip()
{
    GripHarness h;
    TimingRecord().Assign(40, 41, 11, 12, 50, 4);
    CountdownTimerRecord().setCountDownTimer(20);
    CountdownTimerRecord().setPreAlert2On(true);
    CountdownTimerRecord().setPreAlert2Time(600);
    OptionsRecord().setUseEye(true);
    OptionsRecord().setDefaultLoadTime(70);
    HyperRecord().setShots(6);
    PutAll();
    const gripsim::GripState s = h.grip.state();
    QVERIFY(s.timing == (gripsim::TimingValues{11, 12, 40, 50, 41, 4}));
    QVERIFY(s.gameTimer == (gripsim::GameTimerValues{20, 0, 0, 1, 600}));
    QVERIFY(s.options == (gripsim::OptionValues{0x40, 100, 100, 70}));
    QVERIFY(s.ramping == (gripsim::RampingValues{6, 100, 1}));
}

void TstGripCommands::refusalEndsOnlyItsTransfer()
{
    GripHarness h;
    h.fault(gripsim::FaultKind::Nak, 0x16);
    const CommandResult result = GetAll();
    QVERIFY(result.refused());
    QCOMPARE(result.outcomeOf(GripRecord::GameTimer), Outcome::Refused);
    QCOMPARE(result.outcomeOf(GripRecord::Timing), Outcome::Done);
    QCOMPARE(result.outcomeOf(GripRecord::Ramping), Outcome::Done);
    QVERIFY(h.codes().contains(0x19)); // the later records were still exchanged
    QCOMPARE(GripError().ErrorCode(), 1);
}

void TstGripCommands::earlierRefusalIsNotForgotten()
{
    GripHarness h;
    h.fault(gripsim::FaultKind::Nak, 0x11); // the boot-mode query
    const CommandResult result = GetRecord(GripRecord::Timing);
    QVERIFY(result.bootCheckRefused);
    QVERIFY(result.refused());
    QCOMPARE(result.outcomeOf(GripRecord::Timing), Outcome::Done);
    QCOMPARE(GripError().ErrorCode(), 1);
    // A new command starts with a clean error record.
    GetRecord(GripRecord::Timing);
    QCOMPARE(GripError().ErrorCode(), 0);
}

void TstGripCommands::resetCounterFrame_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("selector");
    QTest::addColumn<QString>("payload");
    QTest::newRow("old firmware") << "firmware=1.1.70" << 1 << "2501000000";
    QTest::newRow("new firmware, values as held") << "firmware=1.1.71" << 2 << "2500000000";
    QTest::newRow("boot mode") << "firmware=1.1.70,bootmode=1" << 3 << "2503000000";
}

void TstGripCommands::resetCounterFrame()
{
    QFETCH(QString, options);
    QFETCH(int, selector);
    QFETCH(QString, payload);
    GripHarness h(options);
    const CommandResult result = ResetCounter(static_cast<quint8>(selector));
    QList<int> codes = {0x13, 0x11};
    if (result.programStarted)
        codes << 0x13 << 0x83;
    codes << 0x13 << 0x25;
    QCOMPARE(h.codes(), codes);
    QCOMPARE(h.payloads(0x25), QStringList{payload});
    QCOMPARE(result.outcomeOf(GripRecord::Counters), Outcome::Done);
}

void TstGripCommands::errorRestoresThePointer()
{
    GripHarness h;
    h.replies[0x15] = griptest::framed(QStringLiteral("42"));
    h.replies[0x15] += QByteArray(8, '\0'); // as long as a counters report, so no wait
    try {
        GetAll();
        QFAIL("no error");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::ERR_DL_COUNTERS);
        QCOMPARE(e.Trail().last().module, QStringLiteral("mGripCommands"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("GetAll"));
    }
    QCOMPARE(mMain::MousePointerDepth(), 0);
    QCOMPARE(h.link.ui.busyPointer.last(), false);
    QVERIFY(!h.codes().contains(0x16)); // the command stops at the failing record
}

void TstGripCommands::countersCannotBePut()
{
    GripHarness h;
    QVERIFY(!CanPut(GripRecord::Counters));
    QVERIFY(!CanPut(GripRecord::Battery));
    QVERIFY_THROWS_EXCEPTION(MarloError, PutRecord(GripRecord::Battery));
    QVERIFY(!h.codes().contains(0x17));
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void TstGripCommands::recordNames()
{
    const QStringList names = {"timing", "counters", "gametimer", "battery", "options", "ramping"};
    for (const QString& name : names) {
        GripRecord record = GripRecord::Timing;
        QVERIFY(RecordFromName(name, record));
        QCOMPARE(RecordName(record), name);
    }
    GripRecord record = GripRecord::Battery;
    QVERIFY(!RecordFromName(QStringLiteral("all"), record));
    QVERIFY(!RecordFromName(QStringLiteral("Timing"), record));
}

QTEST_GUILESS_MAIN(TstGripCommands)
#include "tst_gripCommands.moc"
