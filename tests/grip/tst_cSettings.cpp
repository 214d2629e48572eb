// The timing record: its frames on the link, the reading of its report, the rate of fire.
#include "GripTestSupport.h"

#include "grip/cSettings.h"
#include "link/cError.h"
#include "link/mErrCodes.h"

#include <QtTest>

using griptest::GripHarness;

class TstCSettings : public QObject {
    Q_OBJECT

private slots:
    void uploadPayload_data();
    void uploadPayload();
    void downloadReport_data();
    void downloadReport();
    void rateOfFire_data();
    void rateOfFire();
    void rateOfFireOverflow_data();
    void rateOfFireOverflow();
    void valueThatDoesNotFitIsNotSent_data();
    void valueThatDoesNotFitIsNotSent();
    void newRecordAndDefaults();
    void recordStoresUnclampedValues();
    void globalRecordIsKept();
};

void TstCSettings::uploadPayload_data()
{
    QTest::addColumn<QList<int>>("values"); // CycleTimeOpen, CycleTimeClose, ShotTime, Dwelltime, LoadTime, FiringMode
    QTest::addColumn<QString>("payload");
    QTest::newRow("fresh record") << QList<int>{0, 0, 0, 0, 0, 0} << QStringLiteral("24000000000000000000000000");
    QTest::newRow("defaults") << QList<int>{30, 28, 10, 10, 35, 0} << QStringLiteral("240A0A1E231C000A0A1E231C00");
    QTest::newRow("link order differs from property order")
        << QList<int>{3, 5, 1, 2, 4, 6} << QStringLiteral("24010203040506010203040506");
    QTest::newRow("largest byte values") << QList<int>{255, 254, 253, 252, 251, 16}
                                         << QStringLiteral("24FDFCFFFBFE10FDFCFFFBFE10");
}

void TstCSettings::uploadPayload()
{
    QFETCH(QList<int>, values);
    QFETCH(QString, payload);
    GripHarness h;
    cSettings record;
    record.Assign(values[0], values[1], values[2], values[3], values[4], values[5]);
    record.Upload();
    QCOMPARE(h.payloads(0x24), QStringList{payload});
    // The grip refreshes its gun information first, then the upload goes out.
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x24}));
    const gripsim::TimingValues onGrip = h.grip.state().timing;
    QCOMPARE(int(onGrip.cycleTimeOpen), values[0]);
    QCOMPARE(int(onGrip.cycleTimeClose), values[1]);
    QCOMPARE(int(onGrip.shotTime), values[2]);
    QCOMPARE(int(onGrip.dwellTime), values[3]);
    QCOMPARE(int(onGrip.loadTime), values[4]);
    QCOMPARE(int(onGrip.firingMode), values[5]);
}

void TstCSettings::downloadReport_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QList<int>>("expected"); // ShotTime, Dwelltime, CycleTimeOpen, LoadTime, CycleTimeClose, FiringMode
    QTest::newRow("documented example") << QStringLiteral("440A0A1E231C000A0A1E231C00")
                                        << QList<int>{10, 10, 30, 35, 28, 0};
    QTest::newRow("only the first block counts") << QStringLiteral("44010203040506FFFFFFFFFFFF")
                                                 << QList<int>{1, 2, 3, 4, 5, 6};
    QTest::newRow("bytes read as 0..255") << QStringLiteral("44FF80017F0010000000000000")
                                          << QList<int>{255, 128, 1, 127, 0, 16};
}

void TstCSettings::downloadReport()
{
    QFETCH(QString, report);
    QFETCH(QList<int>, expected);
    GripHarness h;
    h.replies[0x14] = griptest::framed(report);
    cSettings record;
    record.Download();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x14}));
    QCOMPARE(record.ShotTime(), expected[0]);
    QCOMPARE(record.Dwelltime(), expected[1]);
    QCOMPARE(record.CycleTimeOpen(), expected[2]);
    QCOMPARE(record.LoadTime(), expected[3]);
    QCOMPARE(record.CycleTimeClose(), expected[4]);
    QCOMPARE(record.FiringMode(), expected[5]);
    QCOMPARE(GripError().ErrorCode(), cError::NoError);
}

void TstCSettings::rateOfFire_data()
{
    QTest::addColumn<int>("shot");
    QTest::addColumn<int>("dwell");
    QTest::addColumn<int>("open");
    QTest::addColumn<int>("load");
    QTest::addColumn<int>("close");
    QTest::addColumn<float>("rof");
    QTest::newRow("all zero") << 0 << 0 << 0 << 0 << 0 << 0.0f;
    QTest::newRow("shot time alone is no cycle") << 20 << 0 << 0 << 0 << 0 << 0.0f;
    QTest::newRow("one ms each") << 1 << 1 << 1 << 1 << 1 << 250.0f;
    QTest::newRow("shot time not counted") << 19 << 1 << 1 << 1 << 1 << 250.0f;
    QTest::newRow("defaults") << 10 << 10 << 30 << 35 << 28 << 9.71f;
    QTest::newRow("negative sum") << 0 << -5 << 1 << 1 << 1 << 0.0f;
    // 1000/320*100 = 312.5 exactly: half to even gives 312, not 313.
    QTest::newRow("tie rounds to even (320 ms)") << 0 << 20 << 100 << 100 << 100 << 3.12f;
    // 1000/64*100 = 1562.5: 1562.
    QTest::newRow("tie rounds to even (64 ms)") << 0 << 16 << 16 << 16 << 16 << 15.62f;
    QTest::newRow("third of a ms rounds") << 0 << 1 << 1 << 1 << 0 << 333.33f;
}

void TstCSettings::rateOfFire()
{
    QFETCH(int, shot);
    QFETCH(int, dwell);
    QFETCH(int, open);
    QFETCH(int, load);
    QFETCH(int, close);
    QFETCH(float, rof);
    cSettings record;
    record.setShotTime(shot);
    record.setDwelltime(dwell);
    record.setCycleTimeOpen(open);
    record.setLoadTime(load);
    record.setCycleTimeClose(close);
    QCOMPARE(record.ROF(), rof);
}

void TstCSettings::rateOfFireOverflow_data()
{
    QTest::addColumn<int>("dwell");
    QTest::addColumn<int>("open");
    QTest::newRow("a term beyond 16 bits") << 0 << 40000;
    QTest::newRow("the sum beyond 16 bits") << 20000 << 20000;
}

void TstCSettings::rateOfFireOverflow()
{
    QFETCH(int, dwell);
    QFETCH(int, open);
    cSettings record;
    record.setDwelltime(dwell);
    record.setCycleTimeOpen(open);
    try {
        (void)record.ROF();
        QFAIL("no overflow");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_OVERFLOW);
        QCOMPARE(e.Trail().first().module, QStringLiteral("cSettings"));
        QCOMPARE(e.Trail().first().procedure, QStringLiteral("ROF"));
    }
}

void TstCSettings::valueThatDoesNotFitIsNotSent_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("value");
    QTest::newRow("ShotTime 256") << "ShotTime" << 256;
    QTest::newRow("LoadTime 1000") << "LoadTime" << 1000;
    QTest::newRow("FiringMode -1") << "FiringMode" << -1;
}

void TstCSettings::valueThatDoesNotFitIsNotSent()
{
    QFETCH(QString, field);
    QFETCH(int, value);
    GripHarness h;
    const gripsim::TimingValues before = h.grip.state().timing;
    cSettings record;
    record.AssignDefaults();
    if (field == QLatin1String("ShotTime"))
        record.setShotTime(value);
    else if (field == QLatin1String("LoadTime"))
        record.setLoadTime(value);
    else
        record.setFiringMode(value);
    try {
        record.Upload();
        QFAIL("the upload went through");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_INVALID_CALL);
        QCOMPARE(e.Trail().last().module, QStringLiteral("cSettings"));
        QCOMPARE(e.Trail().last().procedure, QStringLiteral("Upload"));
    }
    QVERIFY(h.payloads(0x24).isEmpty());
    QVERIFY(h.grip.state().timing == before);
}

void TstCSettings::newRecordAndDefaults()
{
    cSettings record;
    QCOMPARE(record.ShotTime(), 0);
    QCOMPARE(record.CycleTimeOpen(), 0);
    QCOMPARE(record.FiringMode(), 0);
    record.AssignDefaults();
    QCOMPARE(record.CycleTimeOpen(), 30);
    QCOMPARE(record.CycleTimeClose(), 28);
    QCOMPARE(record.ShotTime(), 10);
    QCOMPARE(record.Dwelltime(), 10);
    QCOMPARE(record.LoadTime(), 35);
    QCOMPARE(record.FiringMode(), cSettings::DefaultFiringMode());
    QCOMPARE((QList<int>{cSettings::CycleTimeOpenMin(), cSettings::CycleTimeCloseMin(), cSettings::ShotTimeMin(),
                         cSettings::DwelltimeMin(), cSettings::LoadTimeMin()}),
             (QList<int>{1, 1, 1, 1, 1}));
    QCOMPARE((QList<int>{cSettings::CycleTimeOpenMax(), cSettings::CycleTimeCloseMax(), cSettings::ShotTimeMax(),
                         cSettings::DwelltimeMax(), cSettings::LoadTimeMax()}),
             (QList<int>{75, 75, 20, 20, 75}));
}

void TstCSettings::recordStoresUnclampedValues()
{
    cSettings record;
    record.setShotTime(50);
    QCOMPARE(record.ShotTime(), 50);
    record.setCycleTimeOpen(0);
    QCOMPARE(record.CycleTimeOpen(), 0);
}

void TstCSettings::globalRecordIsKept()
{
    ResetTimingRecord();
    TimingRecord().setShotTime(12);
    QCOMPARE(TimingRecord().ShotTime(), 12);
    QCOMPARE(&TimingRecord(), &TimingRecord());
    ResetTimingRecord();
    QCOMPARE(TimingRecord().ShotTime(), 0);
}

QTEST_GUILESS_MAIN(TstCSettings)
#include "tst_cSettings.moc"
