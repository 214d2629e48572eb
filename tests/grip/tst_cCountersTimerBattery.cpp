// The game timer, the counters (with both forms of the counter reset) and the battery reading.
#include "GripTestSupport.h"

#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "link/cError.h"
#include "link/mErrCodes.h"

#include <QtTest>

using griptest::GripHarness;

class TstCCountersTimerBattery : public QObject {
    Q_OBJECT

private slots:
    void timerUploadPayload_data();
    void timerUploadPayload();
    void timerDownload_data();
    void timerDownload();
    void timerValueThatDoesNotFitIsNotSent();
    void timerAssignDefaultsHasNoEffect();

    void countersDownload_data();
    void countersDownload();
    void resetCounterForms_data();
    void resetCounterForms();
    void resetAgainstVirtualGrip_data();
    void resetAgainstVirtualGrip();
    void resetZeroesEvenWhenRefused();

    void batteryDownload_data();
    void batteryDownload();
};

void TstCCountersTimerBattery::timerUploadPayload_data()
{
    QTest::addColumn<int>("timer");
    QTest::addColumn<bool>("on1");
    QTest::addColumn<int>("time1");
    QTest::addColumn<bool>("on2");
    QTest::addColumn<int>("time2");
    QTest::addColumn<QString>("payload");
    QTest::newRow("new record") << 0 << false << 0 << false << 0 << "2600000000000000";
    QTest::newRow("documented example") << 10 << true << 300 << false << 60 << "260A012C01003C00";
    QTest::newRow("16-bit times, low byte first") << 255 << false << 65535 << true << 256 << "26FF00FFFF010001";
    QTest::newRow("times cut to 16 bits") << 1 << false << 65536 + 2 << false << 70000 << "2601000200007011";
}

void TstCCountersTimerBattery::timerUploadPayload()
{
    QFETCH(int, timer);
    QFETCH(bool, on1);
    QFETCH(int, time1);
    QFETCH(bool, on2);
    QFETCH(int, time2);
    QFETCH(QString, payload);
    GripHarness h;
    cCountdownTimer record;
    record.setCountDownTimer(timer);
    record.setPreAlert1On(on1);
    record.setPreAlert1Time(time1);
    record.setPreAlert2On(on2);
    record.setPreAlert2Time(time2);
    record.Upload();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x26}));
    QCOMPARE(h.payloads(0x26), QStringList{payload});
    QCOMPARE(int(h.grip.state().gameTimer.countDownTimer), timer);
    QCOMPARE(int(h.grip.state().gameTimer.preAlert1Time), time1 & 0xFFFF);
}

void TstCCountersTimerBattery::timerDownload_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("timer");
    QTest::addColumn<bool>("on1");
    QTest::addColumn<int>("time1");
    QTest::addColumn<bool>("on2");
    QTest::addColumn<int>("time2");
    QTest::newRow("documented example: switch byte 2 is off") << "460A022C01013C00" << 10 << false << 300 << true << 60;
    QTest::newRow("switch byte 0xFF is off") << "4614FF0000FFFFFF" << 20 << false << 0 << false << 65535;
    QTest::newRow("both on") << "46FF01FFFF01FF00" << 255 << true << 65535 << true << 255;
}

void TstCCountersTimerBattery::timerDownload()
{
    QFETCH(QString, report);
    QFETCH(int, timer);
    QFETCH(bool, on1);
    QFETCH(int, time1);
    QFETCH(bool, on2);
    QFETCH(int, time2);
    GripHarness h;
    h.replies[0x16] = griptest::framed(report);
    cCountdownTimer record;
    record.Download();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x16}));
    QCOMPARE(record.CountDownTimer(), timer);
    QCOMPARE(record.PreAlert1On(), on1);
    QCOMPARE(record.PreAlert1Time(), time1);
    QCOMPARE(record.PreAlert2On(), on2);
    QCOMPARE(record.PreAlert2Time(), time2);
}

void TstCCountersTimerBattery::timerValueThatDoesNotFitIsNotSent()
{
    GripHarness h;
    cCountdownTimer record;
    record.setCountDownTimer(256);
    try {
        record.Upload();
        QFAIL("the upload went through");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_INVALID_CALL);
        // The error names the class with the program's own spelling.
        QCOMPARE(e.Trail().last().module, QStringLiteral("cCountDownTimer"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("Upload"));
    }
    QVERIFY(h.payloads(0x26).isEmpty());
}

void TstCCountersTimerBattery::timerAssignDefaultsHasNoEffect()
{
    cCountdownTimer record;
    QCOMPARE(record.CountDownTimer(), 0);
    record.AssignDefaults();
    QCOMPARE(record.CountDownTimer(), 0);
    QCOMPARE(record.PreAlert1Time(), 0);
    QCOMPARE(record.PreAlert1On(), false);
}

void TstCCountersTimerBattery::countersDownload_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("counter1");
    QTest::addColumn<int>("counter2");
    QTest::addColumn<int>("total");
    QTest::newRow("documented example, top bit dropped") << "450A00FFFF01020380" << 10 << 65535 << 197121;
    QTest::newRow("largest total") << "4500000000FFFFFFFF" << 0 << 0 << 0x7FFFFFFF;
    QTest::newRow("little-endian words") << "452C0100010000007F" << 300 << 256 << 0x7F000000;
}

void TstCCountersTimerBattery::countersDownload()
{
    QFETCH(QString, report);
    QFETCH(int, counter1);
    QFETCH(int, counter2);
    QFETCH(int, total);
    GripHarness h;
    h.replies[0x15] = griptest::framed(report);
    cCounters record;
    record.Download();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x15}));
    QCOMPARE(record.Counter1(), counter1);
    QCOMPARE(record.Counter2(), counter2);
    QCOMPARE(record.Total(), total);
}

void TstCCountersTimerBattery::resetCounterForms_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("counter1");
    QTest::addColumn<int>("counter2");
    QTest::addColumn<int>("selector");
    QTest::addColumn<QString>("payload");
    QTest::addColumn<int>("after1");
    QTest::addColumn<int>("after2");
    QTest::newRow("1.1.70 selector 2") << "1.1.70" << 300 << 5 << 2 << "2502000000" << 300 << 0;
    QTest::newRow("1.1.4 selector 1") << "1.1.4" << 300 << 5 << 1 << "2501000000" << 0 << 5;
    QTest::newRow("1.1.70 selector 3") << "1.1.70" << 7 << 8 << 3 << "2503000000" << 0 << 0;
    QTest::newRow("1.1.71 selector 2 sends values") << "1.1.71" << 300 << 5 << 2 << "252C010000" << 300 << 0;
    QTest::newRow("4.0.0 selector 1") << "4.0.0" << 300 << 65535 << 1 << "250000FFFF" << 0 << 65535;
    QTest::newRow("4.0.0 selector 3") << "4.0.0" << 300 << 65535 << 3 << "2500000000" << 0 << 0;
    QTest::newRow("4.0.0 selector 0 changes nothing") << "4.0.0" << 1 << 2 << 0 << "2501000200" << 1 << 2;
    QTest::newRow("selector's upper bits ignored") << "4.0.0" << 1 << 2 << 5 << "2500000200" << 0 << 2;
}

void TstCCountersTimerBattery::resetCounterForms()
{
    QFETCH(QString, firmware);
    QFETCH(int, counter1);
    QFETCH(int, counter2);
    QFETCH(int, selector);
    QFETCH(QString, payload);
    QFETCH(int, after1);
    QFETCH(int, after2);
    GripHarness h(QStringLiteral("firmware=") + firmware);
    cCounters record;
    record.setCounter1(counter1);
    record.setCounter2(counter2);
    record.ResetCounter(static_cast<quint8>(selector));
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x25}));
    QCOMPARE(h.payloads(0x25), QStringList{payload});
    QCOMPARE(record.Counter1(), after1);
    QCOMPARE(record.Counter2(), after2);
}

void TstCCountersTimerBattery::resetAgainstVirtualGrip_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("selector");
    QTest::addColumn<int>("after1");
    QTest::addColumn<int>("after2");
    QTest::newRow("old firmware, counter 1") << "1.1.70" << 1 << 0 << 45;
    QTest::newRow("old firmware, counter 2") << "1.1.70" << 2 << 123 << 0;
    QTest::newRow("new firmware, counter 1") << "4.0.0" << 1 << 0 << 45;
    QTest::newRow("new firmware, counter 2") << "4.0.0" << 2 << 123 << 0;
    QTest::newRow("new firmware, both") << "4.0.0" << 3 << 0 << 0;
}

void TstCCountersTimerBattery::resetAgainstVirtualGrip()
{
    // The grip starts at 123 and 45. Downloading first gives newer firmware the real values.
    QFETCH(QString, firmware);
    QFETCH(int, selector);
    QFETCH(int, after1);
    QFETCH(int, after2);
    GripHarness h(QStringLiteral("firmware=") + firmware);
    cCounters record;
    record.Download();
    record.ResetCounter(static_cast<quint8>(selector));
    QCOMPARE(int(h.grip.state().counters.counter1), after1);
    QCOMPARE(int(h.grip.state().counters.counter2), after2);
    QCOMPARE(h.grip.state().counters.total, 12345u);
}

void TstCCountersTimerBattery::resetZeroesEvenWhenRefused()
{
    GripHarness h;
    h.replies[0x25] = griptest::framed(QStringLiteral("5001"));
    cCounters record;
    record.setCounter1(10);
    record.setCounter2(20);
    record.ResetCounter(1);
    QCOMPARE(GripError().ErrorCode(), 1);
    QCOMPARE(record.Counter1(), 0);
    QCOMPARE(record.Counter2(), 20);
}

void TstCCountersTimerBattery::batteryDownload_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<double>("volts");
    QTest::newRow("full scale") << "47FF03" << 6.526;
    QTest::newRow("nothing") << "470000" << 0.0;
    QTest::newRow("one step") << "470100" << 0.00638;
    QTest::newRow("low byte first") << "470002" << 3.266;
}

void TstCCountersTimerBattery::batteryDownload()
{
    QFETCH(QString, report);
    QFETCH(double, volts);
    GripHarness h;
    h.replies[0x17] = griptest::framed(report);
    cBattery record;
    QCOMPARE(record.VoltageLevel(), 0.0f);
    record.Download();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x17}));
    QVERIFY2(qAbs(record.VoltageLevel() - volts) < 0.0005,
             qPrintable(QString::number(record.VoltageLevel(), 'f', 6)));
}

QTEST_GUILESS_MAIN(TstCCountersTimerBattery)
#include "tst_cCountersTimerBattery.moc"
