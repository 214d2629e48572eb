// marlo-cli's record commands: info, get, put and reset-counter, their JSON keys and their
// usage errors, against a virtual grip behind the fake port.
#include "GripTestSupport.h"

#include "cli/CliContext.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace griptest;

namespace {

struct CliRun {
    int status = -1;
    QString out;
    QString err;
    QJsonObject json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
};

CliRun runCli(cGripSession& session, const QString& command, const QStringList& words, bool json = true)
{
    CliRun run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    CliContext ctx{words, json, QString(), &out, &err, &session};
    run.status = RunRecordCommand(ctx, command);
    out.flush();
    err.flush();
    return run;
}

QString keys(const QJsonValue& value)
{
    QStringList list = value.toObject().keys();
    list.sort();
    return list.join(QLatin1Char(' '));
}

} // namespace

class TstCliRecordCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { clearPreferences(); }

    void info()
    {
        GripHarness h(QStringLiteral("firmware=1.1.70,boot=1.2.0,protocol=1.1.3,hardware=2.1.9,serial=ABC1234567"));
        const CliRun run = runCli(h.session, QStringLiteral("info"), {});
        QCOMPARE(run.status, 0);
        QJsonObject o = run.json();
        const QJsonObject flags = o.take(QStringLiteral("Supports")).toObject();
        QCOMPARE(QJsonDocument(o).toJson(QJsonDocument::Compact),
                 QByteArray(R"({"BootBuild":"1.2.0","FirmwareBuild":"1.1.70","HardwareBuild":"2.1.9","ProtocolBuild":"1.1.3","Serial":"ABC1234567"})"));
        QCOMPARE(flags.size(), 23);
        QVERIFY(flags.value("Options").toBool() && !flags.value("Hyper").toBool() && flags.value("fmodeClassic").isBool());
        QCOMPARE(h.codes(), QList<int>{0x13});
    }

    void getAll()
    {
        GripHarness h(QStringLiteral("battery=1023"));
        const CliRun run = runCli(h.session, QStringLiteral("get"), {QStringLiteral("all")});
        QCOMPARE(run.status, 0);
        const QJsonObject o = run.json();
        QStringList records;
        for (const QString& record : o.keys())
            records.append(record + QStringLiteral(": ") + keys(o[record]));
        QCOMPARE(records, (QStringList{
            "battery: VoltageLevel", "counters: Counter1 Counter2 Total",
            "gametimer: CountDownTimer PreAlert1On PreAlert1Time PreAlert2On PreAlert2Time",
            "options: CTOAdjust DefaultLoadTime EyeCheckMaxTime EyeCheckMaxTimeOn EyeCheckOKTime EyeCheckOKTimeOn "
            "EyeMounted LedOn LoaderOn TriggerFilterOn UseEye",
            "ramping: HyperMode HyperTime Shots",
            "timing: CycleTimeClose CycleTimeOpen Dwelltime FiringMode LoadTime ROF ShotTime"}));
        // Values as the grip holds them, floats as short decimals.
        QCOMPARE(o["timing"]["ROF"].toDouble(), 9.71);
        QCOMPARE(o["counters"]["Total"].toInt(), 12345);
        QCOMPARE(o["battery"]["VoltageLevel"].toDouble(), 6.52588);
        QCOMPARE(o["gametimer"]["PreAlert1On"].toBool(), false);
    }

    void unsupported()
    {
        // Not exchanged, with a note: null in JSON, left out of the text.
        GripHarness h(QStringLiteral("firmware=1.1.69"));
        const CliRun all = runCli(h.session, QStringLiteral("get"), {QStringLiteral("all")});
        QVERIFY(all.status == 0 && all.json()["options"].isNull() && all.json()["ramping"].isNull());
        QVERIFY(all.err.contains(QStringLiteral("options: not supported by the grip's firmware 1.1.69 (needs 1.1.70 or newer)")));
        const CliRun text = runCli(h.session, QStringLiteral("get"), {QStringLiteral("all")}, false);
        QVERIFY(text.out.startsWith(QStringLiteral("[timing]\n")) && text.out.contains(QStringLiteral("\n\n[battery]\n")) &&
                !text.out.contains(QStringLiteral("[options]")));
        h.link.port.frames.clear();
        const CliRun put = runCli(h.session, QStringLiteral("put"), {"options", "--LedOn", "1"});
        QCOMPARE(put.status, 0);
        QCOMPARE(put.out, QStringLiteral("null\n"));
        QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13}));
        QCOMPARE(runCli(h.session, QStringLiteral("get"), {QStringLiteral("timing")}, false).out,
                 QStringLiteral("ShotTime:       10\nDwelltime:      10\nCycleTimeOpen:  30\nLoadTime:       35\n"
                                "CycleTimeClose: 28\nFiringMode:     0\nROF:            9.71\n"));
    }

    void put_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QJsonValue>("kept");
        QTest::addColumn<QString>("note");
        QTest::newRow("timing") << "timing" << QStringList{"--ShotTime", "12"} << "ShotTime" << QJsonValue(12) << "";
        QTest::newRow("timing, unusual") << "timing" << QStringList{"--ShotTime=50"} << "ShotTime" << QJsonValue(50)
                                         << "ShotTime 50 is outside the usual range 1..20; it is sent as given";
        QTest::newRow("options switch") << "options" << QStringList{"--LedOn", "1"} << "LedOn" << QJsonValue(true) << "";
        QTest::newRow("options range") << "options" << QStringList{"--DefaultLoadTime", "127"} << "DefaultLoadTime"
                                       << QJsonValue(45) << "DefaultLoadTime 127 is out of range; the record keeps 45";
        QTest::newRow("ramping") << "ramping" << QStringList{"--HyperMode", "16"} << "HyperMode" << QJsonValue(16) << "";
        QTest::newRow("game timer word") << "gametimer" << QStringList{"--PreAlert1Time", "300"} << "PreAlert1Time" << QJsonValue(300) << "";
    }

    void put()
    {
        QFETCH(QString, record);
        QFETCH(QStringList, options);
        QFETCH(QString, field);
        QFETCH(QJsonValue, kept);
        QFETCH(QString, note);
        GripHarness h;
        // Values unlike any default, so a field taken from anywhere but the grip shows.
        h.grip.updateState([](gripsim::GripState& s) {
            s.timing = {11, 12, 33, 44, 55, 4};
            s.options = {0x51, 150, 160, 70};
            s.ramping = {9, 99, 2};
            s.gameTimer = {25, 1, 500, 1, 700};
        });
        QJsonObject expected = runCli(h.session, QStringLiteral("get"), {record}).json();
        expected.insert(field, kept);
        const int get = h.codes().last();
        const CliRun run = runCli(h.session, QStringLiteral("put"), QStringList{record} + options);
        QCOMPARE(run.status, 0);
        QCOMPARE(run.json(), expected); // read back from the grip after the put
        QCOMPARE(run.err.trimmed(), note.isEmpty() ? QString() : QStringLiteral("note: ") + note);
        // Downloaded first, uploaded, read back.
        QCOMPARE(h.codes().mid(4), (QList<int>{0x13, 0x11, 0x13, get, 0x13, get + 0x10, 0x13, get}));
    }

    void exitStatus_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("refused"); // the command the grip refuses
        QTest::addColumn<int>("status");  // 2: a usage error, before anything reaches the grip
        QTest::addColumn<QString>("message");
        QTest::newRow("get unknown") << "get" << QStringList{"timings"} << 0 << 2 << "get needs one of timing|";
        QTest::newRow("put counters") << "put" << QStringList{"counters", "--Counter1", "1"} << 0 << 2 << "counters cannot be put";
        QTest::newRow("put nothing") << "put" << QStringList{"timing"} << 0 << 2 << "needs at least one of --ShotTime";
        QTest::newRow("byte") << "put" << QStringList{"timing", "--ShotTime", "1", "--LoadTime", "256"} << 0 << 2
                              << "--LoadTime 256 does not fit the grip's byte (0..255)";
        QTest::newRow("switch") << "put" << QStringList{"options", "--LedOn", "2"} << 0 << 2 << "--LedOn takes 0 or 1, not 2";
        QTest::newRow("reset 4") << "reset-counter" << QStringList{"4"} << 0 << 2 << "reset-counter needs 1, 2 or 3";
        QTest::newRow("refused: get all") << "get" << QStringList{"all"} << 0x17 << 3 << "refused";
        QTest::newRow("refused: put, get") << "put" << QStringList{"timing", "--ShotTime", "5"} << 0x14 << 3 << "refused";
        QTest::newRow("refused: put") << "put" << QStringList{"gametimer", "--CountDownTimer", "5"} << 0x26 << 3 << "refused";
        QTest::newRow("refused: reset") << "reset-counter" << QStringList{"1"} << 0x25 << 3 << "refused";
    }

    void exitStatus()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, words);
        QFETCH(int, refused);
        QFETCH(int, status);
        QFETCH(QString, message);
        GripHarness h;
        h.replies[refused] = refusal(refused);
        try {
            const CliRun run = runCli(h.session, command, words);
            QCOMPARE(run.status, status);
            QVERIFY2(run.err.contains(message), qPrintable(run.err));
        } catch (const CliUsageError& e) {
            QCOMPARE(status, 2);
            QVERIFY2(e.message().contains(message), qPrintable(e.message()));
            QVERIFY(h.link.port.frames.isEmpty());
        }
    }

    void resetCounter()
    {
        // The counters are read first, so that newer firmware is sent the other counter's value.
        GripHarness h;
        const CliRun run = runCli(h.session, QStringLiteral("reset-counter"), {QStringLiteral("2")});
        QCOMPARE(run.status, 0);
        QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13, 0x15, 0x13, 0x25, 0x13, 0x15}));
        QCOMPARE(h.payloads(0x25), QStringList{"257B000000"});
        QCOMPARE(run.out, QStringLiteral("{\"Counter1\":123,\"Counter2\":0,\"Total\":12345}\n"));
    }
};

QTEST_GUILESS_MAIN(TstCliRecordCommands)
#include "tst_cliRecordCommands.moc"
