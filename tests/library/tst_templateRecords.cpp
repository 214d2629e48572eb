// What a setting shares with the grip's records: which field of which record each of its fields
// is copied from and into, that a copy touches nothing else, that the records' own rules apply
// on the way in, and the rate of fire both compute.
#include "GripTestSupport.h"

#include "base/mErrCodes.h"
#include "grip/cSettings.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"
#include "shell/mMain.h"

#include <QtTest>
#include <limits>

using namespace griptest;
using mTemplateRecords::tField;
using Copy = std::function<void(cSetsTemplate&, cGripSession&)>;

namespace {

// The shared fields of a setting as text, by record: timing (close, open, dwell, load, shot,
// firing mode) / game timer (game time, alert one on, its time, alert two on, its time) /
// ramping (shots, ramping time, ramping mode).
QString sharedFields(const cSetsTemplate& s)
{
    const QList<QList<qint32>> groups = {
        {s.lCycleTimeClose(), s.lCycleTimeOpen(), s.lDwellTime(), s.lLoadTime(), s.lShotTime(), s.lFiringMode()},
        {s.lGameTime(), s.bAlertOne(), s.lAlertOne(), s.bAlertTwo(), s.lAlertTwo()},
        {s.lShots(), s.lHyperTime(), s.lHyperMode()},
    };
    QStringList text;
    for (const QList<qint32>& group : groups) {
        QStringList words;
        for (const qint32 value : group)
            words.append(QString::number(value));
        text.append(words.join(QLatin1Char(' ')));
    }
    return text.join(QStringLiteral(" / "));
}

void setSharedFields(cSetsTemplate& s, const QString& text)
{
    QList<qint32> v;
    for (const QString& word : QString(text).remove(QStringLiteral("/ ")).split(QLatin1Char(' ')))
        v.append(word.toInt());
    s.setlCycleTimeClose(v[0]); s.setlCycleTimeOpen(v[1]); s.setlDwellTime(v[2]); s.setlLoadTime(v[3]);
    s.setlShotTime(v[4]); s.setlFiringMode(v[5]);
    s.setlGameTime(v[6]); s.setbAlertOne(v[7]); s.setlAlertOne(v[8]); s.setbAlertTwo(v[9]); s.setlAlertTwo(v[10]);
    s.setlShots(v[11]); s.setlHyperTime(v[12]); s.setlHyperMode(v[13]);
}

// The fields no record carries, which a copy must leave alone.
QString ownFields(const cSetsTemplate& s)
{
    return QStringLiteral("%1 %2 %3 %4").arg(int(s.bCTCLikeCTO())).arg(int(s.bExpertMode())).arg(s.sName(), s.dtDate().toString(Qt::ISODate));
}

cSetsTemplate& markedSetting(cSetsTemplate& s, const QString& shared)
{
    setSharedFields(s, shared);
    s.setbCTCLikeCTO(true);
    s.setbExpertMode(true);
    s.setsName(QStringLiteral("Field day"));
    s.setdtDate(QDateTime(QDate(2024, 5, 6), QTime(7, 8)));
    return s;
}

const QString kSetting = QStringLiteral("101 102 103 104 105 106 / 107 1 108 0 109 / 110 111 112");

constexpr float kOverflow = -1.0F;
constexpr qint32 kMax = std::numeric_limits<qint32>::max();
constexpr qint32 kMin = std::numeric_limits<qint32>::min();

} // namespace

class tst_templateRecords : public QObject {
    Q_OBJECT
private slots:
    void init() { clearPreferences(); }

    void aRecordIntoTheSetting_data()
    {
        QTest::addColumn<GripRecord>("record");
        QTest::addColumn<QString>("values");  // the record's, as fields() shows them; empty: as made
        QTest::addColumn<QString>("setting"); // the shared fields afterwards
        QTest::newRow("timing") << GripRecord::Timing << "12 9 31 40 29 6"
                                << "29 31 9 40 12 6 / 107 1 108 0 109 / 110 111 112";
        // A new setting and "Default settings" take a fresh record's values, not its defaults.
        QTest::newRow("fresh timing") << GripRecord::Timing << "" << "0 0 0 0 0 0 / 107 1 108 0 109 / 110 111 112";
        QTest::newRow("game timer") << GripRecord::GameTimer << "15 0 300 1 60"
                                    << "101 102 103 104 105 106 / 15 0 300 1 60 / 110 111 112";
        QTest::newRow("ramping") << GripRecord::Ramping << "7 120 4" << "101 102 103 104 105 106 / 107 1 108 0 109 / 7 120 4";
    }
    void aRecordIntoTheSetting()
    {
        TestLink link;
        cGripSession& session = link.session;
        QFETCH(GripRecord, record);
        QFETCH(QString, values);
        QFETCH(QString, setting);
        if (!values.isEmpty())
            setFields(session, record, values);
        cSetsTemplate s;
        markedSetting(s, kSetting);
        const QString own = ownFields(s);
        const QString recordBefore = fields(session, record);
        switch (record) {
        case GripRecord::Timing: mTemplateRecords::TimingToTemplate(session.Timing(), s); break;
        case GripRecord::GameTimer: mTemplateRecords::GameTimerToTemplate(session.CountdownTimer(), s); break;
        case GripRecord::Ramping: mTemplateRecords::RampingToTemplate(session.Hyper(), s); break;
        default: QFAIL("no such copy");
        }
        QCOMPARE(sharedFields(s), setting);
        QCOMPARE(ownFields(s), own);
        QCOMPARE(fields(session, record), recordBefore);
    }

    void intoTheGripsRecords_data()
    {
        QTest::addColumn<Copy>("copy");
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("records"); // timing | game timer | ramping afterwards
        // Before: timing 1 2 3 4 5 0, game timer 5 0 6 0 7, ramping 8 9 10; the setting holds
        // other values in every field, so each row shows the one place its fields go.
        const QString setting = QStringLiteral("29 31 9 40 12 6 / 15 1 300 1 60 / 7 120 4");
        const auto whole = [&](const char* name, const Copy& copy, const QString& records, const QString& from = QString()) {
            QTest::newRow(name) << copy << (from.isEmpty() ? setting : from) << records;
        };
        whole("timing", [](cSetsTemplate& s, cGripSession& g) { mTemplateRecords::TemplateToTiming(s, g.Timing()); },
              "12 9 31 40 29 6 | 5 0 6 0 7 | 8 9 10");
        whole("game timer", [](cSetsTemplate& s, cGripSession& g) { mTemplateRecords::TemplateToGameTimer(s, g.CountdownTimer()); },
              "1 2 3 4 5 0 | 15 1 300 1 60 | 8 9 10");
        const Copy ramping = [](cSetsTemplate& s, cGripSession& g) { mTemplateRecords::TemplateToRamping(s, g.Hyper()); };
        whole("ramping", ramping, "1 2 3 4 5 0 | 5 0 6 0 7 | 7 120 4");
        // The record's range rules apply: shots and ramping time out of 1..255 become 3 and 100.
        whole("ramping out of range", ramping, "1 2 3 4 5 0 | 5 0 6 0 7 | 3 100 0",
              QStringLiteral("29 31 9 40 12 6 / 15 1 300 1 60 / 0 256 0"));
        const auto field = [&](const char* name, tField f, const QString& records) {
            whole(name, [f](cSetsTemplate& s, cGripSession& g) { mTemplateRecords::FieldToGripRecord(s, f, g); }, records);
        };
        field("lShotTime", tField::lShotTime, "12 2 3 4 5 0 | 5 0 6 0 7 | 8 9 10");
        field("lDwellTime", tField::lDwellTime, "1 9 3 4 5 0 | 5 0 6 0 7 | 8 9 10");
        field("lCycleTimeOpen", tField::lCycleTimeOpen, "1 2 31 4 5 0 | 5 0 6 0 7 | 8 9 10");
        field("lLoadTime", tField::lLoadTime, "1 2 3 40 5 0 | 5 0 6 0 7 | 8 9 10");
        field("lCycleTimeClose", tField::lCycleTimeClose, "1 2 3 4 29 0 | 5 0 6 0 7 | 8 9 10");
        field("lFiringMode", tField::lFiringMode, "1 2 3 4 5 6 | 5 0 6 0 7 | 8 9 10");
        field("lGameTime", tField::lGameTime, "1 2 3 4 5 0 | 15 0 6 0 7 | 8 9 10");
        field("bAlertOne", tField::bAlertOne, "1 2 3 4 5 0 | 5 1 6 0 7 | 8 9 10");
        field("lAlertOne", tField::lAlertOne, "1 2 3 4 5 0 | 5 0 300 0 7 | 8 9 10");
        field("bAlertTwo", tField::bAlertTwo, "1 2 3 4 5 0 | 5 0 6 1 7 | 8 9 10");
        field("lAlertTwo", tField::lAlertTwo, "1 2 3 4 5 0 | 5 0 6 0 60 | 8 9 10");
        field("lShots", tField::lShots, "1 2 3 4 5 0 | 5 0 6 0 7 | 7 9 10");
        field("lHyperTime", tField::lHyperTime, "1 2 3 4 5 0 | 5 0 6 0 7 | 8 120 10");
        field("lHyperMode", tField::lHyperMode, "1 2 3 4 5 0 | 5 0 6 0 7 | 8 9 4");
    }
    // A whole record, or one field, copied from the setting into the grip's records: only its own
    // record changes, and the setting is only read.
    void intoTheGripsRecords()
    {
        QFETCH(Copy, copy);
        QFETCH(QString, setting);
        QFETCH(QString, records);
        TestLink link;
        cGripSession& session = link.session;
        setFields(session, GripRecord::Timing, QStringLiteral("1 2 3 4 5 0"));
        setFields(session, GripRecord::GameTimer, QStringLiteral("5 0 6 0 7"));
        setFields(session, GripRecord::Ramping, QStringLiteral("8 9 10"));
        cSetsTemplate s;
        markedSetting(s, setting);
        copy(s, session);
        QCOMPARE(QStringList({fields(session, GripRecord::Timing), fields(session, GripRecord::GameTimer), fields(session, GripRecord::Ramping)})
                     .join(QStringLiteral(" | ")),
                 records);
        QCOMPARE(sharedFields(s), setting);
    }

    void rateOfFire_data()
    {
        QTest::addColumn<QList<qint32>>("cycle"); // dwell, cycle open, load, cycle close
        QTest::addColumn<float>("record");        // the timing record's; kOverflow: error 6
        QTest::addColumn<float>("setting");       // a library setting's
        QTest::newRow("all zero") << QList<qint32>{0, 0, 0, 0} << 0.0F << 0.0F;
        QTest::newRow("negative sum") << QList<qint32>{-5, 1, 1, 1} << 0.0F << 0.0F;
        QTest::newRow("negative term, positive sum") << QList<qint32>{-10, 20, 0, 0} << 100.0F << 100.0F;
        // 1000 / sum * 100 exactly half-way: to the even neighbour, never up.
        QTest::newRow("312.5 to even") << QList<qint32>{20, 100, 100, 100} << 3.12F << 3.12F;
        QTest::newRow("sum at the 16-bit top") << QList<qint32>{32767, 0, 0, 0} << 0.03F << 0.03F;
        QTest::newRow("term over 16 bits") << QList<qint32>{0, 40000, 0, 0} << kOverflow << 0.02F;
        QTest::newRow("sum over 16 bits") << QList<qint32>{20000, 20000, 0, 0} << kOverflow << 0.02F;
        // 16 bits checks every partial sum; the wide sum only ends at 30000.
        QTest::newRow("partial sum over 16 bits") << QList<qint32>{30000, 30000, -30000, 0} << kOverflow << 0.03F;
        QTest::newRow("wide tie to even") << QList<qint32>{50000, 50000, 50000, 50000} << kOverflow << 0.0F;
        QTest::newRow("wide sum of one ms") << QList<qint32>{kMax, kMin, 1, 1} << kOverflow << 1000.0F;
        // 2^32 + 1000 ms: summed in 32 bits it would wrap to one second.
        QTest::newRow("wide sum past 32 bits") << QList<qint32>{kMax, kMax, 1002, 0} << kOverflow << 0.0F;
    }
    // One formula for the grip's timing record (16-bit sums, overflow beyond) and for a library
    // setting (wide sums, so that any stored row reads, with no error reported). The shot time
    // would change every row if it were counted.
    void rateOfFire()
    {
        QFETCH(QList<qint32>, cycle);
        QFETCH(float, record);
        QFETCH(float, setting);
        cSettings timing;
        timing.Assign(cycle[1], cycle[3], 77, cycle[0], cycle[2], 0);
        float shown = 0.0F;
        const std::optional<MarloError> error = errorOf([&] { shown = timing.ROF(); });
        QCOMPARE(error ? error->Number() : 0, record == kOverflow ? int(mErrCodes::RT_OVERFLOW) : 0);
        if (!error)
            QCOMPARE(shown, record);
        ScriptedUi ui;
        mMain::SetUserInterface(&ui);
        cSetsTemplate s;
        s.setlShotTime(77);
        s.setlDwellTime(cycle[0]);
        s.setlCycleTimeOpen(cycle[1]);
        s.setlLoadTime(cycle[2]);
        s.setlCycleTimeClose(cycle[3]);
        shown = s.ROF();
        mMain::SetUserInterface(nullptr);
        QCOMPARE(shown, setting);
        QVERIFY(ui.errors.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_templateRecords)
#include "tst_templateRecords.moc"
