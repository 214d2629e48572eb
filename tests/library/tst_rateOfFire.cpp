// The rate of fire, one formula for the grip's timing record (16-bit sums, overflow beyond) and
// for a library setting (wide sums, so that any stored row reads): both records, both ways.
#include "ScriptedUi.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "grip/cSettings.h"
#include "library/cSetsTemplate.h"
#include "shell/mMain.h"

#include <QtTest>
#include <limits>
#include <optional>

namespace {

constexpr float kOverflow = -1.0F;
constexpr qint32 kMax = std::numeric_limits<qint32>::max();
constexpr qint32 kMin = std::numeric_limits<qint32>::min();

// The error number a call raised, or nothing.
std::optional<int> errorNumberOf(const std::function<void()>& run)
{
    try {
        run();
    } catch (const MarloError& e) {
        return e.Number();
    }
    return std::nullopt;
}

} // namespace

class tst_rateOfFire : public QObject {
    Q_OBJECT

private slots:
    void rateOfFire_data()
    {
        QTest::addColumn<QList<qint32>>("cycle");  // dwell, cycle open, load, cycle close
        QTest::addColumn<float>("record");         // the timing record's; kOverflow: error 6
        QTest::addColumn<float>("library");        // a library setting's
        QTest::newRow("all zero") << QList<qint32>{0, 0, 0, 0} << 0.0F << 0.0F;
        QTest::newRow("one ms each") << QList<qint32>{1, 1, 1, 1} << 250.0F << 250.0F;
        QTest::newRow("defaults") << QList<qint32>{10, 30, 35, 28} << 9.71F << 9.71F;
        QTest::newRow("negative sum") << QList<qint32>{-5, 1, 1, 1} << 0.0F << 0.0F;
        QTest::newRow("negative term, positive sum") << QList<qint32>{-10, 20, 0, 0} << 100.0F << 100.0F;
        // 1000 / sum * 100 exactly half-way: to the even neighbour, never up.
        QTest::newRow("312.5 to even") << QList<qint32>{20, 100, 100, 100} << 3.12F << 3.12F;
        QTest::newRow("62.5 to even") << QList<qint32>{400, 400, 400, 400} << 0.62F << 0.62F;
        QTest::newRow("1562.5 to even") << QList<qint32>{16, 16, 16, 16} << 15.62F << 15.62F;
        QTest::newRow("sum at the 16-bit top") << QList<qint32>{32767, 0, 0, 0} << 0.03F << 0.03F;
        QTest::newRow("sum at the 16-bit bottom") << QList<qint32>{-32768, 0, 0, 0} << 0.0F << 0.0F;
        QTest::newRow("term over 16 bits") << QList<qint32>{0, 40000, 0, 0} << kOverflow << 0.02F;
        QTest::newRow("last term over 16 bits") << QList<qint32>{0, 0, 0, 32768} << kOverflow << 0.03F;
        QTest::newRow("term under 16 bits") << QList<qint32>{-32769, 0, 0, 0} << kOverflow << 0.0F;
        QTest::newRow("sum over 16 bits") << QList<qint32>{20000, 20000, 0, 0} << kOverflow << 0.02F;
        // 16 bits checks every partial sum; the wide sum only ends at 30000.
        QTest::newRow("partial sum over 16 bits") << QList<qint32>{30000, 30000, -30000, 0} << kOverflow << 0.03F;
        QTest::newRow("wide tie to even") << QList<qint32>{50000, 50000, 50000, 50000} << kOverflow << 0.0F;
        QTest::newRow("largest whole numbers") << QList<qint32>{kMax, kMax, kMax, kMax} << kOverflow << 0.0F;
        QTest::newRow("smallest whole numbers") << QList<qint32>{kMin, kMin, kMin, kMin} << kOverflow << 0.0F;
        QTest::newRow("wide sum of one ms") << QList<qint32>{kMax, kMin, 1, 1} << kOverflow << 1000.0F;
    }

    void rateOfFire()
    {
        QFETCH(QList<qint32>, cycle);
        QFETCH(float, record);
        QFETCH(float, library);
        using A = cSettings::Arithmetic;
        const qint32 dwell = cycle[0], open = cycle[1], load = cycle[2], close = cycle[3];

        // The grip's timing record, through the formula and through its own ROF. The shot time
        // is set to a value that would change every row if it were counted.
        cSettings timing;
        timing.Assign(open, close, 77, dwell, load, 0);
        float shared = 0.0F, own = 0.0F;
        const auto sharedError = errorNumberOf([&] { shared = cSettings::RateOfFire(dwell, open, load, close, A::SixteenBit); });
        const auto ownError = errorNumberOf([&] { own = timing.ROF(); });
        if (record == kOverflow) {
            QCOMPARE(sharedError, std::optional<int>(mErrCodes::RT_OVERFLOW));
            QCOMPARE(ownError, std::optional<int>(mErrCodes::RT_OVERFLOW));
        } else {
            QCOMPARE(sharedError, std::nullopt);
            QCOMPARE(ownError, std::nullopt);
            QCOMPARE(shared, record);
            QCOMPARE(own, record);
        }

        // A library setting never fails on a row: wide arithmetic, no error reported.
        QCOMPARE(cSettings::RateOfFire(dwell, open, load, close, A::Wide), library);
        ScriptedUi ui;
        mMain::SetUserInterface(&ui);
        cSetsTemplate setting;
        setting.setlShotTime(77);
        setting.setlDwellTime(dwell);
        setting.setlCycleTimeOpen(open);
        setting.setlLoadTime(load);
        setting.setlCycleTimeClose(close);
        const float stored = setting.ROF();
        mMain::SetUserInterface(nullptr);
        QCOMPARE(stored, library);
        QVERIFY(ui.errors.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_rateOfFire)
#include "tst_rateOfFire.moc"
