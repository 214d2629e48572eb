// The grip records: their frames and reports, the rate of fire, the counter reset, the options
// and ramping values kept in the preferences with their range rules, and what each record does
// with a grip that answers wrongly.
#include "GripTestSupport.h"

#include "base/cRegistrySettings.h"
#include "base/mErrCodes.h"
#include "grip/mGripReport.h"
#include "link/cError.h"

#include <QtTest>

using namespace griptest;
using namespace mErrCodes;

namespace {

// One section of the preferences as "key=value" words.
QString storedSection(const QString& section)
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
    store.beginGroup(section);
    QStringList words;
    for (const QString& key : store.childKeys())
        words.append(key + QLatin1Char('=') + store.value(key).toString());
    return words.join(QLatin1Char(' '));
}

struct Operation {
    GripRecord record;
    int command; // 0x25: the reset of counter 2
    qint32 number;
    QString message;
    QString where;  // the class and procedure the error names
    QString values; // what the record holds before (as fields() shows it)
};

const QList<Operation>& operations()
{
    static const QList<Operation> list = {
        {GripRecord::Timing, 0x14, ERR_DL_TIMING, MSG_DL_TIMING, "cSettings.Download", "10 10 30 35 28 0"},
        {GripRecord::Timing, 0x24, ERR_UL_TIMING, MSG_UL_TIMING, "cSettings.Upload", "10 10 30 35 28 0"},
        {GripRecord::Options, 0x18, ERR_DL_OPTIONS, MSG_DL_OPTIONS, "cOptions.Download", "1 0 0 0 5 6 0 1 0 7 0"},
        {GripRecord::Options, 0x28, ERR_UL_OPTIONS, MSG_UL_OPTIONS, "cOptions.Upload", "1 0 0 0 5 6 0 1 0 7 0"},
        {GripRecord::Ramping, 0x19, ERR_DL_HYPER, MSG_DL_HYPER, "cHyper.Download", "9 8 4"},
        {GripRecord::Ramping, 0x29, ERR_UL_HYPER, MSG_UL_HYPER, "cHyper.Upload", "9 8 4"},
        {GripRecord::GameTimer, 0x16, ERR_DL_COUNTDOWN, MSG_DL_COUNTDOWN, "cCountDownTimer.Download", "7 1 8 0 9"},
        {GripRecord::GameTimer, 0x26, ERR_UL_COUNTDOWN, MSG_UL_COUNTDOWN, "cCountDownTimer.Upload", "7 1 8 0 9"},
        {GripRecord::Counters, 0x15, ERR_DL_COUNTERS, MSG_DL_COUNTERS, "cCounters.Download", "11 22"},
        {GripRecord::Counters, 0x25, ERR_RESET_COUNTER, ResetCounterMessage(2), "cCounters.ResetCounter(2)", "11 22"},
        {GripRecord::Battery, 0x17, ERR_DL_BATTERY, MSG_DL_BATTERY, "cBattery.Download", ""},
    };
    return list;
}

} // namespace

class TstGripRecords : public QObject {
    Q_OBJECT

private slots:
    void init() { clearPreferences(); }

    void exchange_data()
    {
        QTest::addColumn<GripRecord>("record");
        QTest::addColumn<QString>("way");    // put, get, both (the report carries the same bytes), new (put as made)
        QTest::addColumn<QString>("values"); // as fields() shows them
        QTest::addColumn<QString>("frame");  // the upload as sent, or (get) the report as received
        QTest::newRow("timing defaults") << GripRecord::Timing << "both" << "10 10 30 35 28 0" << "240A0A1E231C000A0A1E231C00";
        QTest::newRow("timing first block") << GripRecord::Timing << "get" << "255 2 3 4 5 6" << "44FF02030405060A0A1E231C00";
        QTest::newRow("timer example") << GripRecord::GameTimer << "put" << "10 1 300 0 60" << "260A012C01003C00";
        QTest::newRow("timer switch 2 is off") << GripRecord::GameTimer << "get" << "10 0 300 1 60" << "460A022C01013C00";
        QTest::newRow("timer 16-bit cut") << GripRecord::GameTimer << "put" << "1 0 65538 0 70000" << "2601000200007011";
        QTest::newRow("timer largest") << GripRecord::GameTimer << "both" << "255 1 65535 1 256" << "26FF01FFFF010001";
        QTest::newRow("counters example") << GripRecord::Counters << "get" << "10 65535 197121" << "450A00FFFF01020380";
        QTest::newRow("battery full") << GripRecord::Battery << "get" << "6.526" << "47FF03";
        QTest::newRow("options new") << GripRecord::Options << "new" << "0 0 0 0 100 45 0 0 0 100 0" << "280064642D";
        QTest::newRow("options FF") << GripRecord::Options << "both" << "1 1 1 1 1 3 1 1 1 2 1" << "28FF010203";
        QTest::newRow("options AA") << GripRecord::Options << "both" << "0 0 0 0 9 126 1 1 1 8 1" << "28AA09087E";
        QTest::newRow("options CC") << GripRecord::Options << "both" << "0 1 0 1 100 45 0 1 0 100 1" << "28CC64642D";
        QTest::newRow("options F0") << GripRecord::Options << "both" << "0 0 1 1 100 45 0 0 1 100 1" << "28F064642D";
        QTest::newRow("options load 7F") << GripRecord::Options << "get" << "1 0 0 0 127 45 0 0 0 127 0" << "48017F7F7F";
        QTest::newRow("ramping new") << GripRecord::Ramping << "new" << "3 100 1" << "29036401";
        QTest::newRow("ramping given") << GripRecord::Ramping << "both" << "10 255 16" << "290AFF10";
        QTest::newRow("ramping zeros") << GripRecord::Ramping << "get" << "3 100 0" << "49000000";
    }

    void exchange()
    {
        QFETCH(GripRecord, record);
        QFETCH(QString, way);
        QFETCH(QString, values);
        QFETCH(QString, frame);
        GripHarness h;
        const int get = 0x14 + int(record); // the get commands 0x14..0x19 follow the record order
        if (way != QLatin1String("get")) {
            if (way == QLatin1String("new"))
                QCOMPARE(fields(h.session, record), values);
            else
                setFields(h.session, record, values);
            QCOMPARE(mGripCommands::TransferRecord(h.session, record, Direction::Put), mGripCommands::Outcome::Done);
            QCOMPARE(h.codes(), (QList<int>{0x13, get + 0x10})); // the gun information first
            QCOMPARE(h.payloads(get + 0x10), QStringList{frame});
            clearPreferences();
        }
        if (way == QLatin1String("get") || way == QLatin1String("both")) {
            // A fresh session over the same link: what it holds comes from the report alone.
            cGripSession fresh(h.link.link);
            h.replies[get] = framed(char(get + 0x30) + QByteArray::fromHex(frame.mid(2).toLatin1()));
            mGripCommands::TransferRecord(fresh, record, Direction::Get);
            QCOMPARE(h.codes().last(), get);
            QCOMPARE(fields(fresh, record), values);
        }
    }

    // Which report the records take as data: whole by its code's size, with a sound check byte
    // unless the exchange did not check it; a negative answer whatever its shape.
    void reportType_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<bool>("checked"); // the exchange checked the check byte
        QTest::addColumn<int>("type");
        const QByteArray timing = framed(QStringLiteral("440A0A1E231C000A0A1E231C00"));
        QByteArray spoiled = timing;
        spoiled[3] = char(spoiled[3] ^ 0x01);
        // Cut off, though what is left adds up: only its length tells.
        const QByteArray cut = framed(timing.left(7));
        const int none = mGripReport::NotAReport;
        QTest::newRow("whole and sound") << timing << true << 0x44;
        QTest::newRow("spoiled") << spoiled << true << none;
        QTest::newRow("spoiled, not checked") << spoiled << false << 0x44;
        QTest::newRow("cut off, adds up") << cut << true << none;
        QTest::newRow("one byte too many") << timing + '\0' << true << none;
        QTest::newRow("nothing") << QByteArray() << true << none;
        QTest::newRow("unknown code") << framed(QStringLiteral("990102")) << true << none;
        QTest::newRow("acknowledgement") << framed(QStringLiteral("42")) << true << 0x42;
        QTest::newRow("negative answer") << framed(QStringLiteral("5001")) << true << 0x50;
        QTest::newRow("negative answer, padded and spoiled") << QByteArray::fromHex("50010203040506") << true << 0x50;
    }

    void reportType()
    {
        QFETCH(QByteArray, report);
        QFETCH(bool, checked);
        QFETCH(int, type);
        tExchangeOptions options;
        options.checkChecksum = checked;
        QCOMPARE(mGripReport::ReportType(report, options), type);
    }

    void resetCounter_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<int>("selector");
        QTest::addColumn<QString>("payload");
        QTest::addColumn<QString>("after"); // the counters, from 300 and 65535
        QTest::newRow("1.1.70, 2: selector") << "1.1.70" << 2 << "2502000000" << "300 0 0";
        QTest::newRow("1.1.71, 2: values") << "1.1.71" << 2 << "252C010000" << "300 0 0";
        QTest::newRow("4.0.0, 1") << "4.0.0" << 1 << "250000FFFF" << "0 65535 0";
        QTest::newRow("4.0.0, 0: none") << "4.0.0" << 0 << "252C01FFFF" << "300 65535 0";
    }

    void resetCounter()
    {
        QFETCH(QString, firmware);
        QFETCH(int, selector);
        QFETCH(QString, payload);
        QFETCH(QString, after);
        GripHarness h(QStringLiteral("firmware=") + firmware);
        setFields(h.session, GripRecord::Counters, QStringLiteral("300 65535"));
        h.session.Counters().ResetCounter(h.session, static_cast<quint8>(selector));
        QCOMPARE(h.codes(), (QList<int>{0x13, 0x25}));
        QCOMPARE(h.payloads(0x25), QStringList{payload});
        QCOMPARE(fields(h.session, GripRecord::Counters), after);
    }

    void ranges_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("text"); // given to the setter when a number, and put in the store
        QTest::addColumn<int>("kept");
        QTest::newRow("EyeCheckMaxTime 256") << "EyeCheckMaxTime" << "256" << 100;
        QTest::newRow("EyeCheckOKTime -1") << "EyeCheckOKTime" << "-1" << 100;
        QTest::newRow("EyeCheckOKTime 255") << "EyeCheckOKTime" << "255" << 255;
        QTest::newRow("Shots 255") << "Shots" << "255" << 255;
        QTest::newRow("Shots 256") << "Shots" << "256" << 3;
        QTest::newRow("HyperTime 300") << "HyperTime" << "300" << 100;
        QTest::newRow("HyperMode 0") << "HyperMode" << "0" << 0;
        QTest::newRow("HyperMode empty: no number reads as the default") << "HyperMode" << "" << 1;
    }

    void ranges()
    {
        QFETCH(QString, property);
        QFETCH(QString, text);
        QFETCH(int, kept);
        cOptions o;
        cHyper r;
        struct Rule { QString section; std::function<qint32(qint32)> set; std::function<qint32()> get; };
        const QHash<QString, Rule> rules = {
            {"EyeCheckMaxTime", {"Options", [&](qint32 v) { return o.setEyeCheckMaxTime(v); }, [&] { return o.EyeCheckMaxTime(); }}},
            {"EyeCheckOKTime", {"Options", [&](qint32 v) { return o.setEyeCheckOKTime(v); }, [&] { return o.EyeCheckOKTime(); }}},
            {"Shots", {"Hyper", [&](qint32 v) { return r.setShots(v); }, [&] { return r.Shots(); }}},
            {"HyperTime", {"Hyper", [&](qint32 v) { return r.setHyperTime(v); }, [&] { return r.HyperTime(); }}},
            {"HyperMode", {"Hyper", [&](qint32 v) { return r.setHyperMode(v); }, [&] { return r.HyperMode(); }}}};
        const Rule rule = rules.value(property);
        bool number = false;
        const qint32 given = text.toInt(&number);
        if (number) {
            QCOMPARE(rule.set(given), kept); // the setter answers what it stored
            QCOMPARE(storedSection(rule.section), property + QLatin1Char('=') + QString::number(kept));
        }
        // Out of range in the store, or no number, it reads as the default too, without an error.
        cRegistrySettings::SaveSetting(rule.section, property, text);
        QCOMPARE(rule.get(), kept);
    }

    void keysInTheStore()
    {
        // A download goes through the properties into the preferences, under the program's keys.
        GripHarness h;
        h.replies[0x18] = framed(QStringLiteral("48A5010203"));
        h.replies[0x19] = framed(QStringLiteral("49056408"));
        mGripCommands::TransferRecord(h.session, GripRecord::Options, Direction::Get);
        mGripCommands::TransferRecord(h.session, GripRecord::Ramping, Direction::Get);
        QCOMPARE(storedSection(QStringLiteral("Options")),
                 QStringLiteral("CTOAdjust=True DefaultLoadTime=3 EyeCheckMax=False EyeCheckMaxTime=1 EyeCheckOK=True "
                                "EyeCheckOKTime=2 EyeMounted=True LED=False Loader=False TriggerFilter=True UseEye=False"));
        QCOMPARE(storedSection(QStringLiteral("Hyper")), QStringLiteral("HyperMode=8 HyperTime=100 Shots=5"));
    }

    void assignDefaults()
    {
        // Only the timing record assigns; the others keep what they hold, as they always have.
        GripHarness h;
        setFields(h.session, GripRecord::GameTimer, QStringLiteral("7 1 8 0 9"));
        setFields(h.session, GripRecord::Options, QStringLiteral("1 0 0 0 5 6 0 1 0 7 0"));
        setFields(h.session, GripRecord::Ramping, QStringLiteral("7 8 4"));
        h.session.CountdownTimer().AssignDefaults();
        h.session.Options().AssignDefaults();
        h.session.Hyper().AssignDefaults();
        h.session.Timing().AssignDefaults();
        QCOMPARE(fields(h.session, GripRecord::GameTimer) + '/' + fields(h.session, GripRecord::Options) + '/' + fields(h.session, GripRecord::Ramping) + '/' +
                     fields(h.session, GripRecord::Timing), QStringLiteral("7 1 8 0 9/1 0 0 0 5 6 0 1 0 7 0/7 8 4/10 10 30 35 28 0"));
    }

    void errors_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("values"); // instead of the usual ones: one that does not fit a byte
        for (int op = 0; op < operations().size(); ++op) {
            const Operation& o = operations()[op];
            const QString name = QStringLiteral("%1 %2: ").arg(mGripCommands::RecordName(o.record)).arg(o.command, 0, 16);
            for (const char* answer : {"wrong report", "spoiled", "refused"})
                QTest::newRow(qPrintable(name + QLatin1String(answer))) << op << answer << "";
        }
        // A silent grip and a cut-off report each cost the link's whole wait (1 to 2 s).
        QTest::newRow("timing 14: silence") << 0 << "silence" << "";
        QTest::newRow("counters 25: cut short") << 9 << "cut short" << "";
        QTest::newRow("timing 24: ShotTime 256") << 1 << "" << "256 0 0 0 0 0";
        QTest::newRow("timing 24: ShotTime -1") << 1 << "" << "-1 0 0 0 0 0";
        QTest::newRow("ramping 29: HyperMode 256") << 5 << "" << "3 100 256";
        QTest::newRow("gametimer 26: timer 256") << 7 << "" << "256 0 0 0 0";
    }

    void errors()
    {
        QFETCH(int, op);
        QFETCH(QString, answer);
        QFETCH(QString, values);
        const Operation& o = operations()[op];
        GripHarness h;
        setFields(h.session, o.record, values.isEmpty() ? o.values : values);
        // The counter being reset is zeroed before the exchange and stays so; the rest stays.
        const QString after = o.command == 0x25 ? QStringLiteral("11 0 0") : fields(h.session, o.record);
        if (answer == QLatin1String("wrong report")) // whole and sound, but another command's
            h.replies[o.command] = h.grip.handleFrame(framed(QStringLiteral("13"))).value_or(QByteArray());
        else if (answer == QLatin1String("refused"))
            h.replies[o.command] = refusal(o.command);
        else if (!answer.isEmpty())
            h.fault(answer == QLatin1String("spoiled") ? gripsim::FaultKind::BadSum
                    : answer == QLatin1String("silence") ? gripsim::FaultKind::Silent : gripsim::FaultKind::Short, o.command);
        const auto e = errorOf([&] {
            if (o.command == 0x25)
                h.session.Counters().ResetCounter(h.session, 2);
            else
                mGripCommands::TransferRecord(h.session, o.record, o.command < 0x20 ? Direction::Get : Direction::Put);
        });
        QCOMPARE(fields(h.session, o.record), after);
        if (answer == QLatin1String("refused")) { // recorded, not raised
            QVERIFY(!e);
            QCOMPARE(h.session.GripError().ErrorCode(), 1);
            return;
        }
        QVERIFY(e);
        QCOMPARE(h.session.GripError().ErrorCode(), cError::NoError);
        if (!values.isEmpty()) { // the pad routine's error, and nothing sent
            QCOMPARE(e->Number(), RT_INVALID_CALL);
            QVERIFY(h.payloads(o.command).isEmpty());
            return;
        }
        QCOMPARE(e->Number(), o.number);
        QCOMPARE(e->Description(), o.message);
        QCOMPARE(e->Source(), QString());
        QCOMPARE(e->origin(), o.where);
    }
};

QTEST_GUILESS_MAIN(TstGripRecords)
#include "tst_gripRecords.moc"
