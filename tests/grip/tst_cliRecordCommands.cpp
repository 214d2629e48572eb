// marlo-cli's record commands: info, get, put and reset-counter, their JSON keys and their
// usage errors, against a virtual grip behind the fake port.
#include "GripTestSupport.h"

#include "cli/CliContext.h"
#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "link/cError.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using griptest::GripHarness;

namespace {

struct CliRun {
    int status = -1;
    QString out;
    QString err;
    QJsonValue json() const
    {
        const QByteArray text = out.trimmed().toUtf8();
        if (text == "null")
            return QJsonValue::Null;
        return QJsonDocument::fromJson(text).object();
    }
};

CliRun runCli(const QString& command, const QStringList& words, bool json)
{
    CliRun run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    CliContext ctx;
    ctx.words = words;
    ctx.json = json;
    ctx.out = &out;
    ctx.err = &err;
    run.status = RunRecordCommand(ctx, command);
    out.flush();
    err.flush();
    return run;
}

QStringList keysOf(const QJsonValue& value)
{
    return value.toObject().keys();
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

const QStringList kTimingKeys = {"ShotTime", "Dwelltime", "CycleTimeOpen", "LoadTime", "CycleTimeClose", "FiringMode", "ROF"};
const QStringList kOptionsKeys = {"EyeMounted", "TriggerFilterOn", "EyeCheckMaxTimeOn", "UseEye", "EyeCheckMaxTime",
                                  "DefaultLoadTime", "LoaderOn", "LedOn", "EyeCheckOKTimeOn", "EyeCheckOKTime", "CTOAdjust"};
const QStringList kRampingKeys = {"Shots", "HyperTime", "HyperMode"};
const QStringList kGameTimerKeys = {"CountDownTimer", "PreAlert1On", "PreAlert1Time", "PreAlert2On", "PreAlert2Time"};
const QStringList kCountersKeys = {"Counter1", "Counter2", "Total"};
const QStringList kBatteryKeys = {"VoltageLevel"};

} // namespace

class TstCliRecordCommands : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        griptest::clearPreferences();
        ResetTimingRecord();
        ResetCountersRecord();
        ResetCountdownTimerRecord();
        ResetBatteryRecord();
        ResetOptionsRecord();
        ResetHyperRecord();
    }

    void infoJson();
    void infoText();
    void getRecordJsonKeys_data();
    void getRecordJsonKeys();
    void getAllJson_data();
    void getAllJson();
    void getAllText();
    void getTimingText();
    void unsupportedRecordIsNull();
    void putChangesOnlyGivenFields_data();
    void putChangesOnlyGivenFields();
    void putKeepsRangeReplacements();
    void putUnsupportedRecord();
    void usageErrors_data();
    void usageErrors();
    void refusalExitsThree_data();
    void refusalExitsThree();
    void resetCounter_data();
    void resetCounter();
};

void TstCliRecordCommands::infoJson()
{
    GripHarness h(QStringLiteral("firmware=1.1.70,boot=1.2.0,protocol=1.1.3,hardware=2.1.9,serial=ABC1234567"));
    const CliRun run = runCli(QStringLiteral("info"), {}, true);
    QCOMPARE(run.status, 0);
    const QJsonObject o = run.json().toObject();
    QCOMPARE(sorted(o.keys()), sorted({"FirmwareBuild", "BootBuild", "ProtocolBuild", "HardwareBuild", "Serial", "Supports"}));
    QCOMPARE(o.value("FirmwareBuild").toString(), QStringLiteral("1.1.70"));
    QCOMPARE(o.value("BootBuild").toString(), QStringLiteral("1.2.0"));
    QCOMPARE(o.value("ProtocolBuild").toString(), QStringLiteral("1.1.3"));
    QCOMPARE(o.value("HardwareBuild").toString(), QStringLiteral("2.1.9"));
    QCOMPARE(o.value("Serial").toString(), QStringLiteral("ABC1234567"));
    const QJsonObject s = o.value("Supports").toObject();
    QCOMPARE(s.size(), 23);
    QCOMPARE(s.value("Options").toBool(), true);
    QCOMPARE(s.value("Hyper").toBool(), false);
    QCOMPARE(s.value("fmodeSniper").toBool(), true);
    QCOMPARE(s.value("fmodeBurst3").toBool(), false);
    QCOMPARE(s.value("NineVolt").toBool(), false);
    QVERIFY(s.value("fmodeClassic").isBool());
    QCOMPARE(h.codes(), QList<int>{0x13});
}

void TstCliRecordCommands::infoText()
{
    GripHarness h(QStringLiteral("firmware=4.0.5"));
    const CliRun run = runCli(QStringLiteral("info"), {}, false);
    QCOMPARE(run.status, 0);
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5 + 23);
    QVERIFY(lines.contains(QStringLiteral("FirmwareBuild:           4.0.5")));
    QVERIFY(lines.contains(QStringLiteral("NineVolt:                1")));
    // Aligned on the colon: every value starts in the same column.
    const int column = lines.first().indexOf(QLatin1String("4.0.5"));
    for (const QString& line : lines)
        QVERIFY2(line.at(column - 1) == QLatin1Char(' ') && line.at(column) != QLatin1Char(' '), qPrintable(line));
}

void TstCliRecordCommands::getRecordJsonKeys_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<int>("code");
    QTest::newRow("timing") << "timing" << kTimingKeys << 0x14;
    QTest::newRow("options") << "options" << kOptionsKeys << 0x18;
    QTest::newRow("ramping") << "ramping" << kRampingKeys << 0x19;
    QTest::newRow("gametimer") << "gametimer" << kGameTimerKeys << 0x16;
    QTest::newRow("counters") << "counters" << kCountersKeys << 0x15;
    QTest::newRow("battery") << "battery" << kBatteryKeys << 0x17;
}

void TstCliRecordCommands::getRecordJsonKeys()
{
    QFETCH(QString, record);
    QFETCH(QStringList, keys);
    QFETCH(int, code);
    GripHarness h;
    const CliRun run = runCli(QStringLiteral("get"), {record}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(sorted(keysOf(run.json())), sorted(keys));
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13, code}));
    QVERIFY(run.err.isEmpty());
}

void TstCliRecordCommands::getAllJson_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QStringList>("nulls");
    QTest::newRow("4.0.0") << "4.0.0" << QStringList{};
    QTest::newRow("1.1.70") << "1.1.70" << QStringList{"ramping"};
    QTest::newRow("1.1.4") << "1.1.4" << QStringList{"options", "ramping"};
}

void TstCliRecordCommands::getAllJson()
{
    QFETCH(QString, firmware);
    QFETCH(QStringList, nulls);
    GripHarness h(QStringLiteral("firmware=") + firmware + QStringLiteral(",battery=1023"));
    const CliRun run = runCli(QStringLiteral("get"), {QStringLiteral("all")}, true);
    QCOMPARE(run.status, 0);
    const QJsonObject o = run.json().toObject();
    QCOMPARE(sorted(o.keys()), sorted({"timing", "options", "ramping", "gametimer", "counters", "battery"}));
    const QHash<QString, QStringList> keys = {{"timing", kTimingKeys}, {"options", kOptionsKeys}, {"ramping", kRampingKeys},
                                              {"gametimer", kGameTimerKeys}, {"counters", kCountersKeys}, {"battery", kBatteryKeys}};
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        if (nulls.contains(it.key()))
            QVERIFY2(o.value(it.key()).isNull(), qPrintable(it.key()));
        else
            QCOMPARE(sorted(keysOf(o.value(it.key()))), sorted(it.value()));
    }
    for (const QString& name : nulls)
        QVERIFY2(run.err.contains(name + QStringLiteral(": not supported")), qPrintable(run.err));
    // Values as the grip holds them.
    QCOMPARE(o.value("timing").toObject().value("CycleTimeOpen").toInt(), 30);
    QCOMPARE(o.value("timing").toObject().value("ROF").toDouble(), 9.71);
    QCOMPARE(o.value("counters").toObject().value("Counter1").toInt(), 123);
    QCOMPARE(o.value("counters").toObject().value("Total").toInt(), 12345);
    QCOMPARE(o.value("battery").toObject().value("VoltageLevel").toDouble(), 6.52588);
    QCOMPARE(o.value("gametimer").toObject().value("PreAlert1On").toBool(), false);
}

void TstCliRecordCommands::getAllText()
{
    GripHarness h(QStringLiteral("firmware=1.1.70"));
    const CliRun run = runCli(QStringLiteral("get"), {QStringLiteral("all")}, false);
    QCOMPARE(run.status, 0);
    QVERIFY(run.out.startsWith(QStringLiteral("[timing]\n")));
    QVERIFY(run.out.contains(QStringLiteral("\n[counters]\n")));
    QVERIFY(run.out.contains(QStringLiteral("\n[options]\n")));
    QVERIFY(!run.out.contains(QStringLiteral("[ramping]")));
    QVERIFY(run.err.contains(QStringLiteral("ramping: not supported by the grip's firmware 1.1.70")));
}

void TstCliRecordCommands::getTimingText()
{
    GripHarness h;
    const CliRun run = runCli(QStringLiteral("get"), {QStringLiteral("timing")}, false);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QStringLiteral("ShotTime:       10\n"
                                     "Dwelltime:      10\n"
                                     "CycleTimeOpen:  30\n"
                                     "LoadTime:       35\n"
                                     "CycleTimeClose: 28\n"
                                     "FiringMode:     0\n"
                                     "ROF:            9.71\n"));
}

void TstCliRecordCommands::unsupportedRecordIsNull()
{
    GripHarness h(QStringLiteral("firmware=2.0.20"));
    const CliRun run = runCli(QStringLiteral("get"), {QStringLiteral("ramping")}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QStringLiteral("null\n"));
    QVERIFY(run.err.contains(QStringLiteral("needs 4.0.0 or newer")));
    QVERIFY(!h.codes().contains(0x19));
}

void TstCliRecordCommands::putChangesOnlyGivenFields_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QJsonValue>("printed");
    QTest::newRow("timing shot time") << "timing" << QStringList{"--ShotTime", "12"} << "ShotTime" << QJsonValue(12);
    QTest::newRow("timing firing mode") << "timing" << QStringList{"--FiringMode=16"} << "FiringMode" << QJsonValue(16);
    QTest::newRow("options LED") << "options" << QStringList{"--LedOn", "1"} << "LedOn" << QJsonValue(true);
    QTest::newRow("options eye time") << "options" << QStringList{"--EyeCheckOKTime", "7"} << "EyeCheckOKTime" << QJsonValue(7);
    QTest::newRow("ramping mode") << "ramping" << QStringList{"--HyperMode", "16"} << "HyperMode" << QJsonValue(16);
    QTest::newRow("game timer alert") << "gametimer" << QStringList{"--PreAlert1Time", "300"} << "PreAlert1Time" << QJsonValue(300);
    QTest::newRow("game timer switch off") << "gametimer" << QStringList{"--PreAlert2On", "0"} << "PreAlert2On" << QJsonValue(false);
}

void TstCliRecordCommands::putChangesOnlyGivenFields()
{
    QFETCH(QString, record);
    QFETCH(QStringList, options);
    QFETCH(QString, field);
    QFETCH(QJsonValue, printed);
    GripHarness h;
    // The grip holds values that differ from every default, so a field taken from anywhere
    // but the grip shows.
    h.grip.updateState([](gripsim::GripState& s) {
        s.timing = {11, 12, 33, 44, 55, 4};
        s.options = {0x51, 150, 160, 70};
        s.ramping = {9, 99, 2};
        s.gameTimer = {25, 1, 500, 1, 700};
    });
    const gripsim::GripState before = h.grip.state();
    const CliRun run = runCli(QStringLiteral("put"), QStringList{record} + options, true);
    QCOMPARE(run.status, 0);
    const QJsonObject o = run.json().toObject();
    QCOMPARE(o.value(field), printed);

    gripsim::GripState expected = before;
    if (field == QLatin1String("ShotTime")) expected.timing.shotTime = 12;
    if (field == QLatin1String("FiringMode")) expected.timing.firingMode = 16;
    if (field == QLatin1String("LedOn")) expected.options.flags |= 0x08;
    if (field == QLatin1String("EyeCheckOKTime")) expected.options.eyeCheckOKTime = 7;
    if (field == QLatin1String("HyperMode")) expected.ramping.hyperMode = 16;
    if (field == QLatin1String("PreAlert1Time")) expected.gameTimer.preAlert1Time = 300;
    if (field == QLatin1String("PreAlert2On")) expected.gameTimer.preAlert2On = 0;
    const gripsim::GripState after = h.grip.state();
    QVERIFY(after.timing == expected.timing);
    QVERIFY(after.options == expected.options);
    QVERIFY(after.ramping == expected.ramping);
    QVERIFY(after.gameTimer == expected.gameTimer);
    // Downloaded first, uploaded, read back.
    const int get = h.codes().at(3);
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13, get, 0x13, get + 0x10, 0x13, get}));
}

void TstCliRecordCommands::putKeepsRangeReplacements()
{
    GripHarness h;
    CliRun run = runCli(QStringLiteral("put"), {"options", "--DefaultLoadTime", "127", "--UseEye", "1"}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().toObject().value("DefaultLoadTime").toInt(), 45);
    QCOMPARE(run.json().toObject().value("UseEye").toBool(), true);
    QVERIFY(run.err.contains(QStringLiteral("DefaultLoadTime 127 is out of range; the record keeps 45")));
    QCOMPARE(int(h.grip.state().options.defaultLoadTime), 45);

    run = runCli(QStringLiteral("put"), {"ramping", "--Shots", "0"}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().toObject().value("Shots").toInt(), 3);
    QCOMPARE(int(h.grip.state().ramping.shots), 3);

    // Timing values are sent as given, with a note when outside the editor's limits.
    run = runCli(QStringLiteral("put"), {"timing", "--ShotTime", "50"}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(int(h.grip.state().timing.shotTime), 50);
    QVERIFY(run.err.contains(QStringLiteral("ShotTime 50 is outside the usual range 1..20")));
}

void TstCliRecordCommands::putUnsupportedRecord()
{
    GripHarness h(QStringLiteral("firmware=1.1.69"));
    const CliRun run = runCli(QStringLiteral("put"), {"options", "--LedOn", "1"}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QStringLiteral("null\n"));
    QVERIFY(run.err.contains(QStringLiteral("options: not supported")));
    QVERIFY(!h.codes().contains(0x18));
    QVERIFY(!h.codes().contains(0x28));
}

void TstCliRecordCommands::usageErrors_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    QTest::newRow("get without record") << "get" << QStringList{} << "get needs exactly one of";
    QTest::newRow("get unknown record") << "get" << QStringList{"timings"} << "get needs one of timing|";
    QTest::newRow("get two words") << "get" << QStringList{"timing", "all"} << "get needs exactly one of";
    QTest::newRow("info with words") << "info" << QStringList{"now"} << "info takes no arguments";
    QTest::newRow("put without record") << "put" << QStringList{} << "put needs one of";
    QTest::newRow("put all") << "put" << QStringList{"all", "--ShotTime", "1"} << "put needs one of";
    QTest::newRow("put counters") << "put" << QStringList{"counters", "--Counter1", "1"} << "counters cannot be put";
    QTest::newRow("put battery") << "put" << QStringList{"battery"} << "battery cannot be put";
    QTest::newRow("put nothing") << "put" << QStringList{"timing"} << "needs at least one of --ShotTime";
    QTest::newRow("byte too big") << "put" << QStringList{"timing", "--ShotTime", "256"} << "--ShotTime 256 does not fit the grip's byte (0..255)";
    QTest::newRow("negative byte") << "put" << QStringList{"ramping", "--HyperMode", "-1"} << "--HyperMode -1 does not fit";
    QTest::newRow("game timer too big") << "put" << QStringList{"gametimer", "--CountDownTimer", "300"} << "--CountDownTimer 300 does not fit";
    QTest::newRow("alert time too big") << "put" << QStringList{"gametimer", "--PreAlert1Time", "65536"} << "does not fit the grip's 16 bits";
    QTest::newRow("options time too big") << "put" << QStringList{"options", "--EyeCheckMaxTime", "1000"} << "--EyeCheckMaxTime 1000 does not fit";
    QTest::newRow("switch 2") << "put" << QStringList{"options", "--LedOn", "2"} << "--LedOn takes 0 or 1, not 2";
    QTest::newRow("option of another record") << "put" << QStringList{"timing", "--Shots", "3"} << "unknown option --Shots";
    QTest::newRow("not a number") << "put" << QStringList{"timing", "--ShotTime", "ten"} << "needs a whole number";
    QTest::newRow("given twice") << "put" << QStringList{"timing", "--ShotTime", "1", "--ShotTime", "2"} << "given twice";
    QTest::newRow("one bad among good") << "put" << QStringList{"timing", "--ShotTime", "1", "--LoadTime", "999"} << "--LoadTime 999";
    QTest::newRow("reset nothing") << "reset-counter" << QStringList{} << "reset-counter needs 1, 2 or 3";
    QTest::newRow("reset 0") << "reset-counter" << QStringList{"0"} << "reset-counter needs 1, 2 or 3";
    QTest::newRow("reset 4") << "reset-counter" << QStringList{"4"} << "reset-counter needs 1, 2 or 3";
    QTest::newRow("reset two") << "reset-counter" << QStringList{"1", "2"} << "reset-counter needs 1, 2 or 3";
}

void TstCliRecordCommands::usageErrors()
{
    QFETCH(QString, command);
    QFETCH(QStringList, words);
    QFETCH(QString, message);
    GripHarness h;
    try {
        runCli(command, words, true);
        QFAIL("no usage error");
    } catch (const CliUsageError& e) {
        QVERIFY2(e.message().contains(message), qPrintable(e.message()));
    }
    QVERIFY(h.link.port.frames.isEmpty()); // nothing reached the grip
}

void TstCliRecordCommands::refusalExitsThree_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("refusedCode");
    QTest::newRow("get timing") << "get" << QStringList{"timing"} << 0x14;
    QTest::newRow("get all, battery refused") << "get" << QStringList{"all"} << 0x17;
    QTest::newRow("put: download refused") << "put" << QStringList{"timing", "--ShotTime", "5"} << 0x14;
    QTest::newRow("put: upload refused") << "put" << QStringList{"gametimer", "--CountDownTimer", "5"} << 0x26;
    QTest::newRow("reset refused") << "reset-counter" << QStringList{"1"} << 0x25;
    QTest::newRow("info refused") << "info" << QStringList{} << 0x13;
}

void TstCliRecordCommands::refusalExitsThree()
{
    QFETCH(QString, command);
    QFETCH(QStringList, words);
    QFETCH(int, refusedCode);
    GripHarness h;
    h.fault(gripsim::FaultKind::Nak, static_cast<quint8>(refusedCode));
    const gripsim::GripState before = h.grip.state();
    const CliRun run = runCli(command, words, true);
    QCOMPARE(run.status, 3);
    QVERIFY(run.err.contains(QStringLiteral("refused")));
    QVERIFY(h.grip.state() == before);
}

void TstCliRecordCommands::resetCounter_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("payload");
    QTest::addColumn<int>("counter1");
    QTest::addColumn<int>("counter2");
    QTest::newRow("old firmware, 1") << "1.1.70" << "1" << "2501000000" << 0 << 45;
    QTest::newRow("old firmware, 3") << "1.1.70" << "3" << "2503000000" << 0 << 0;
    QTest::newRow("new firmware, 2: counter 1 kept") << "4.0.0" << "2" << "257B000000" << 123 << 0;
    QTest::newRow("new firmware, 1: counter 2 kept") << "4.0.0" << "1" << "2500002D00" << 0 << 45;
}

void TstCliRecordCommands::resetCounter()
{
    QFETCH(QString, firmware);
    QFETCH(QString, selector);
    QFETCH(QString, payload);
    QFETCH(int, counter1);
    QFETCH(int, counter2);
    GripHarness h(QStringLiteral("firmware=") + firmware);
    const CliRun run = runCli(QStringLiteral("reset-counter"), {selector}, true);
    QCOMPARE(run.status, 0);
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x11, 0x13, 0x15, 0x13, 0x25, 0x13, 0x15}));
    QCOMPARE(h.payloads(0x25), QStringList{payload});
    QCOMPARE(int(h.grip.state().counters.counter1), counter1);
    QCOMPARE(int(h.grip.state().counters.counter2), counter2);
    const QJsonObject o = run.json().toObject();
    QCOMPARE(o.value("Counter1").toInt(), counter1);
    QCOMPARE(o.value("Counter2").toInt(), counter2);
    QCOMPARE(o.value("Total").toInt(), 12345);
}

QTEST_GUILESS_MAIN(TstCliRecordCommands)
#include "tst_cliRecordCommands.moc"
