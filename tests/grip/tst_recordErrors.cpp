// What each record does with a grip that answers wrongly: its own error for anything but its
// expected report, a quiet record of a negative answer, and its values left as they were.
#include "GripTestSupport.h"

#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "link/cError.h"
#include "link/mErrCodes.h"

#include <QtTest>
#include <functional>

using griptest::GripHarness;

namespace {

struct Operation {
    int command;         // the record's command code
    int number;          // its own error number
    QString message;
    QString module;      // the class name in the error's trail
    QString procedure;
    std::function<void()> run;
    std::function<QString()> snapshot; // the record's values, to see that they stay
};

// One record object per kind, fresh for each row.
struct Records {
    cSettings timing;
    cOptions options;
    cHyper hyper;
    cCountdownTimer timer;
    cCounters counters;
    cBattery battery;
};

Operation operation(const QString& name, Records& r)
{
    using namespace mErrCodes;
    auto timing = [&r] {
        return QStringLiteral("%1 %2 %3 %4 %5 %6").arg(r.timing.ShotTime()).arg(r.timing.Dwelltime())
            .arg(r.timing.CycleTimeOpen()).arg(r.timing.LoadTime()).arg(r.timing.CycleTimeClose()).arg(r.timing.FiringMode());
    };
    auto options = [&r] {
        return QStringLiteral("%1 %2 %3 %4").arg(r.options.LedOn()).arg(r.options.EyeCheckMaxTime())
            .arg(r.options.EyeCheckOKTime()).arg(r.options.DefaultLoadTime());
    };
    auto hyper = [&r] { return QStringLiteral("%1 %2 %3").arg(r.hyper.Shots()).arg(r.hyper.HyperTime()).arg(r.hyper.HyperMode()); };
    auto timer = [&r] {
        return QStringLiteral("%1 %2 %3 %4 %5").arg(r.timer.CountDownTimer()).arg(r.timer.PreAlert1On())
            .arg(r.timer.PreAlert1Time()).arg(r.timer.PreAlert2On()).arg(r.timer.PreAlert2Time());
    };
    auto counters = [&r] { return QStringLiteral("%1 %2 %3").arg(r.counters.Counter1()).arg(r.counters.Counter2()).arg(r.counters.Total()); };
    auto battery = [&r] { return QString::number(r.battery.VoltageLevel()); };

    if (name == QLatin1String("timing get"))
        return {0x14, ERR_DL_TIMING, MSG_DL_TIMING, "cSettings", "Download", [&r] { r.timing.Download(); }, timing};
    if (name == QLatin1String("timing put"))
        return {0x24, ERR_UL_TIMING, MSG_UL_TIMING, "cSettings", "Upload", [&r] { r.timing.Upload(); }, timing};
    if (name == QLatin1String("options get"))
        return {0x18, ERR_DL_OPTIONS, MSG_DL_OPTIONS, "cOptions", "Download", [&r] { r.options.Download(); }, options};
    if (name == QLatin1String("options put"))
        return {0x28, ERR_UL_OPTIONS, MSG_UL_OPTIONS, "cOptions", "Upload", [&r] { r.options.Upload(); }, options};
    if (name == QLatin1String("ramping get"))
        return {0x19, ERR_DL_HYPER, MSG_DL_HYPER, "cHyper", "Download", [&r] { r.hyper.Download(); }, hyper};
    if (name == QLatin1String("ramping put"))
        return {0x29, ERR_UL_HYPER, MSG_UL_HYPER, "cHyper", "Upload", [&r] { r.hyper.Upload(); }, hyper};
    if (name == QLatin1String("gametimer get"))
        return {0x16, ERR_DL_COUNTDOWN, MSG_DL_COUNTDOWN, "cCountDownTimer", "Download", [&r] { r.timer.Download(); }, timer};
    if (name == QLatin1String("gametimer put"))
        return {0x26, ERR_UL_COUNTDOWN, MSG_UL_COUNTDOWN, "cCountDownTimer", "Upload", [&r] { r.timer.Upload(); }, timer};
    if (name == QLatin1String("counters get"))
        return {0x15, ERR_DL_COUNTERS, MSG_DL_COUNTERS, "cCounters", "Download", [&r] { r.counters.Download(); }, counters};
    if (name == QLatin1String("counter reset"))
        // The counter being reset is zeroed before the exchange; the others must stay.
        return {0x25, ERR_RESET_COUNTER, ResetCounterMessage(2), "cCounters", "ResetCounter(2)",
                [&r] { r.counters.ResetCounter(2); },
                [&r] { return QStringLiteral("%1 %2").arg(r.counters.Counter1()).arg(r.counters.Total()); }};
    if (name == QLatin1String("battery get"))
        return {0x17, ERR_DL_BATTERY, MSG_DL_BATTERY, "cBattery", "Download", [&r] { r.battery.Download(); }, battery};
    qFatal("unknown operation");
}

const QStringList kOperations = {"timing get", "timing put", "options get", "options put", "ramping get", "ramping put",
                                 "gametimer get", "gametimer put", "counters get", "counter reset", "battery get"};

bool isGet(int command) { return command < 0x20; }

} // namespace

class TstRecordErrors : public QObject {
    Q_OBJECT

private slots:
    void init() { griptest::clearPreferences(); }
    void unexpectedAnswers_data();
    void unexpectedAnswers();
    void negativeAnswerIsRecordedNotRaised_data();
    void negativeAnswerIsRecordedNotRaised();
    void unknownReportCodeFailsInTheLink_data();
    void unknownReportCodeFailsInTheLink();
};

void TstRecordErrors::unexpectedAnswers_data()
{
    QTest::addColumn<QString>("op");
    QTest::addColumn<QString>("answer");
    // A silent or cut-off answer costs the link's whole wait (1 to 2 s): each operation gets
    // one of the two, in turn.
    bool silent = true;
    for (const QString& op : kOperations) {
        for (const char* answer : {"wrong report", "bad check byte", "spoiled data, known code", silent ? "silence" : "cut short"})
            QTest::newRow(qPrintable(op + QStringLiteral(": ") + QLatin1String(answer))) << op << QString::fromLatin1(answer);
        silent = !silent;
    }
}

void TstRecordErrors::unexpectedAnswers()
{
    QFETCH(QString, op);
    QFETCH(QString, answer);
    GripHarness h;
    Records records;
    records.timing.AssignDefaults();
    records.timer.setCountDownTimer(7);
    records.counters.setCounter1(11);
    records.options.setLedOn(true);
    records.hyper.setShots(9);
    const Operation o = operation(op, records);
    const QString before = o.snapshot();

    if (answer == QLatin1String("wrong report")) {
        // A whole, intact report, but not the one this command is answered with (longer than
        // the expected one, so the link does not wait out its time).
        h.replies[o.command] = h.grip.handleFrame(griptest::framed(QStringLiteral("13"))).value_or(QByteArray());
    } else if (answer == QLatin1String("cut short")) {
        h.fault(gripsim::FaultKind::Short, static_cast<quint8>(o.command));
    } else if (answer == QLatin1String("bad check byte")) {
        h.fault(gripsim::FaultKind::BadSum, static_cast<quint8>(o.command));
    } else if (answer == QLatin1String("spoiled data, known code")) {
        // As many bytes as expected, starting with the expected code but not summing to zero.
        const QByteArray good = h.grip.handleFrame(o.command == 0x25 ? griptest::framed("2500000000")
                                                   : isGet(o.command) ? griptest::framed(QString::number(o.command, 16))
                                                                      : QByteArray()).value_or(QByteArray());
        QByteArray spoiled = isGet(o.command) ? good : griptest::framed(QStringLiteral("42"));
        spoiled[spoiled.size() - 1] = static_cast<char>(spoiled.back() ^ 0x5A);
        h.replies[o.command] = spoiled;
    } else {
        h.replies[o.command] = QByteArray();
    }

    try {
        o.run();
        QFAIL("no error");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), o.number);
        QCOMPARE(e.Description(), o.message);
        QCOMPARE(e.Source(), QString());
        QCOMPARE(e.Trail().first().module, o.module);
        QCOMPARE(e.Trail().first().procedure, o.procedure);
    }
    QCOMPARE(o.snapshot(), before);
    QCOMPARE(GripError().ErrorCode(), cError::NoError);
    QVERIFY(!mCommBasic::bCommBusy);
}

void TstRecordErrors::negativeAnswerIsRecordedNotRaised_data()
{
    QTest::addColumn<QString>("op");
    for (const QString& op : kOperations)
        QTest::newRow(qPrintable(op)) << op;
}

void TstRecordErrors::negativeAnswerIsRecordedNotRaised()
{
    QFETCH(QString, op);
    GripHarness h;
    Records records;
    records.timing.AssignDefaults();
    records.counters.setCounter1(11);
    const Operation o = operation(op, records);
    const QString before = o.snapshot();
    const gripsim::GripState gripBefore = h.grip.state();
    h.fault(gripsim::FaultKind::Nak, static_cast<quint8>(o.command));
    o.run();
    QCOMPARE(GripError().ErrorCode(), 1);
    QCOMPARE(GripError().Description(), QStringLiteral("Checksum error."));
    QCOMPARE(o.snapshot(), before);
    QVERIFY(h.grip.state() == gripBefore); // a refused command is not carried out
}

void TstRecordErrors::unknownReportCodeFailsInTheLink_data()
{
    QTest::addColumn<QString>("op");
    for (const QString& op : kOperations)
        QTest::newRow(qPrintable(op)) << op;
}

void TstRecordErrors::unknownReportCodeFailsInTheLink()
{
    // Bytes that start with a code no report has: the link cannot tell how long the report is
    // and fails while reading it, before the record sees anything. The error still comes out
    // through the record, and the record keeps its values.
    QFETCH(QString, op);
    GripHarness h;
    Records records;
    records.timing.AssignDefaults();
    const Operation o = operation(op, records);
    const QString before = o.snapshot();
    const int size = mAppFunc::GetFunctionReturnSize(o.command);
    QByteArray garbage(size, '\x5A');
    garbage[0] = '\xEE';
    h.replies[o.command] = garbage;
    try {
        o.run();
        QFAIL("no error");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_INVALID_CALL);
        QCOMPARE(e.Trail().first().module, QStringLiteral("mCommBasic"));
        QCOMPARE(e.Trail().last().module, o.module);
        QCOMPARE(e.Trail().last().procedure, o.procedure);
    }
    QCOMPARE(o.snapshot(), before);
    QVERIFY(!mCommBasic::bCommBusy);
}

QTEST_GUILESS_MAIN(TstRecordErrors)
#include "tst_recordErrors.moc"
