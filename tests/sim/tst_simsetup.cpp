// How the virtual grip is set up: the device text ("sim:firmware=1.1.70,pace=1,...") and its
// state kept in a JSON file across runs, and which of the two wins.

#include "SimTestSupport.h"
#include "TestFiles.h"

#include "sim/GripState.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"
#include "sim/StateFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

using gripsim::GripState;
using gripsim::PtyServer;
using gripsim::SimOptions;
using gripsim::StateFile;

namespace {

// Every member away from its default.
GripState changedState()
{
    GripState s;
    s.bootMode = true;
    s.serial = "XY12345678";
    s.firmware = {1, 1, 70};
    s.protocol = {2, 3, 4};
    s.boot = {1, 2, 0};
    s.hardware = {9, 8, 700};
    s.timing = {1, 2, 3, 4, 5, 16};
    s.options = {0x81, 7, 8, 126};
    s.ramping = {9, 200, 8};
    s.gameTimer = {99, 1, 65535, 2, 1};
    s.counters = {65535, 1, 0x7FFFFFFF};
    s.battery = 1023;
    for (int a = gripsim::kMemoryFirst; a <= gripsim::kMemoryLast; a += 7)
        s.setMemoryAt(a, quint8(a * 13));
    return s;
}

// The options as KEY=VALUE items in a fixed order.
QStringList items(const SimOptions& o)
{
    QStringList list{"firmware=" + o.firmware.toString(), "boot=" + o.boot.toString(),
                     "protocol=" + o.protocol.toString(), "hardware=" + o.hardware.toString(),
                     "serial=" + QString::fromLatin1(o.serial), QStringLiteral("bootmode=%1").arg(o.bootMode),
                     QStringLiteral("pace=%1").arg(o.pace), QStringLiteral("baud=%1").arg(o.baud),
                     QStringLiteral("latency=%1").arg(o.latencyMs), QStringLiteral("battery=%1").arg(o.battery),
                     "state=" + o.stateFile, "link=" + o.linkPath};
    for (const auto& fault : o.faults)
        list << "fault=" + fault.toString();
    for (const auto& failure : o.blockFailures)
        list << "failblock=" + failure.toString();
    return list;
}

// The items that differ from the defaults.
QString changes(const SimOptions& o)
{
    const QStringList defaults = items(SimOptions());
    QStringList changed;
    for (const QString& item : items(o)) {
        if (!defaults.contains(item))
            changed << item;
    }
    return changed.join(QLatin1Char(','));
}

} // namespace

class TestSimSetup : public QObject {
    Q_OBJECT

private slots:
    // The device text.
    void parse_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("result"); // changes() of the options, or "error: " and part of the message

        QTest::newRow("plain") << "sim" << "";
        QTest::newRow("all builds") << "sim:protocol=2.3.4,hardware=5.6.7,firmware=0.0.0,boot=255.255.65535"
                                    << "firmware=0.0.0,boot=255.255.65535,protocol=2.3.4,hardware=5.6.7";
        QTest::newRow("decimal") << "sim:firmware=01.01.070" << "firmware=1.1.70";
        QTest::newRow("spaces") << "sim: firmware = 2.0.20 , boot=1.1.9" << "firmware=2.0.20,boot=1.1.9";
        QTest::newRow("serial") << "sim:serial=ABC1234567" << "serial=ABC1234567";
        QTest::newRow("short serial") << "sim:serial=AB" << "serial=AB        ";
        QTest::newRow("switches on") << "sim:bootmode=1,pace=1,baud=19200" << "bootmode=1,pace=1,baud=19200";
        QTest::newRow("numbers, paths") << "sim:latency=25,battery=1023,state=/tmp/g.json,link=/tmp/grip"
                                        << "latency=25,battery=1023,state=/tmp/g.json,link=/tmp/grip";
        QTest::newRow("every fault kind")
            << "sim:fault=silent@14,fault=nak@24*2,fault=short@13,fault=long@15*1,fault=badsum@85*3,"
               "fault=garbage@11,fault=pieces@8A,fault=delay800@14*1"
            << "fault=silent@14,fault=nak@24*2,fault=short@13,fault=long@15*1,fault=badsum@85*3,"
               "fault=garbage@11,fault=pieces@8a,fault=delay800@14*1";
        QTest::newRow("fault code as 0x") << "sim:fault=NAK@0x8a" << "fault=nak@8a";
        QTest::newRow("block failures") << "sim:failblock=40*3,failblock=0x200,failblock=F50*2"
                                        << "failblock=40*3,failblock=200*1,failblock=f50*2";

        QTest::newRow("similar name") << "simulator" << "error: not a virtual grip";
        QTest::newRow("unknown key") << "sim:colour=red" << "error: unknown key 'colour'";
        QTest::newRow("no value") << "sim:firmware" << "error: not KEY=VALUE";
        QTest::newRow("key twice") << "sim:firmware=1.1.70,firmware=4.0.0" << "error: twice";
        QTest::newRow("version 4.0") << "sim:firmware=4.0" << "error: firmware='4.0'";
        QTest::newRow("revision 65536") << "sim:protocol=1.1.65536" << "error: protocol='1.1.65536'";
        QTest::newRow("serial of 11") << "sim:serial=ABCDEFGHIJK" << "error: serial";
        QTest::newRow("switch 2") << "sim:bootmode=2" << "error: 0 or 1";
        QTest::newRow("battery 1024") << "sim:battery=1024" << "error: battery='1024'";
        QTest::newRow("empty path") << "sim:state=" << "error: state=";
        QTest::newRow("fault without code") << "sim:fault=nak" << "error: KIND@CODE";
        QTest::newRow("unknown fault") << "sim:fault=explode@14" << "error: unknown fault kind";
        QTest::newRow("unknown code") << "sim:fault=nak@12" << "error: not a command code";
        QTest::newRow("code above FF") << "sim:fault=nak@114" << "error: not a command code";
        QTest::newRow("count 0") << "sim:fault=nak@14*0" << "error: count '0'";
        QTest::newRow("block not hex") << "sim:failblock=xyz*2" << "error: hex byte address";
    }
    void parse()
    {
        QFETCH(QString, device);
        QFETCH(QString, result);

        QString error;
        const auto options = SimOptions::fromDeviceSpec(device, &error);
        if (result.startsWith(QLatin1String("error: "))) {
            QVERIFY(!options.has_value());
            QVERIFY2(error.contains(result.mid(7)), qPrintable(error));
        } else {
            QVERIFY2(options.has_value(), qPrintable(error));
            QCOMPARE(changes(*options), result);
        }
    }
    // The state file.
    void roundTrip()
    {
        QTemporaryDir dir;
        const StateFile file(dir.filePath(QStringLiteral("grip.json")));
        QString error;
        QVERIFY2(file.save(changedState(), &error), qPrintable(error));
        GripState loaded;
        QVERIFY2(file.load(loaded, &error), qPrintable(error));
        QVERIFY(loaded == changedState());
        // Readable by people: the records' own names.
        QFile saved(file.path());
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QJsonObject json = QJsonDocument::fromJson(saved.readAll()).object();
        QCOMPARE(json.value(QStringLiteral("FirmwareBuild")).toString(), QStringLiteral("1.1.70"));
        QCOMPARE(json.value(QStringLiteral("Counters")).toObject().value(QStringLiteral("Counter1")).toInt(), 65535);
    }
    void refused_data()
    {
        QTest::addColumn<QByteArray>("content"); // empty: no file at all
        QTest::addColumn<QString>("mentions");

        QTest::newRow("missing") << QByteArray() << "cannot read";
        QTest::newRow("not JSON") << QByteArray("firmware=4.0.0") << "not a JSON object";
        QTest::newRow("version") << QByteArray(R"({"BootBuild": "1.2"})") << "BootBuild";
        QTest::newRow("byte 256") << QByteArray(R"({"Timing": {"LoadTime": 256}})") << "LoadTime";
        QTest::newRow("text for a number") << QByteArray(R"({"GameTimer": {"PreAlert1Time": "60"}})") << "PreAlert1Time";
        QTest::newRow("boot mode 1") << QByteArray(R"({"BootMode": 1})") << "BootMode";
        QTest::newRow("memory too short") << QByteArray(R"({"Memory": "00FF"})") << "Memory";
    }
    void refused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, mentions);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grip.json"));
        if (!content.isEmpty())
            writeFile(path, content);
        GripState state = changedState();
        QString error;
        QVERIFY(!StateFile(path).load(state, &error));
        QVERIFY2(error.contains(mentions), qPrintable(error));
        QVERIFY(state == changedState());
        // A server given such a file does not start, and says why (a missing file it makes).
        if (!content.isEmpty()) {
            PtyServer server(simtest::options(QStringLiteral("state=") + path));
            QVERIFY(!server.start(&error));
            QVERIFY2(error.contains(mentions), qPrintable(error));
        }
    }
    void givenKeysWinOverTheFile_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<bool>("bootMode");
        QTest::addColumn<int>("battery");

        // The file holds firmware 1.1.70, boot mode, battery 1023.
        QTest::newRow("nothing given") << "" << "1.1.70" << true << 1023;
        QTest::newRow("firmware") << "firmware=4.0.5" << "4.0.5" << true << 1023;
        QTest::newRow("boot mode, battery") << "bootmode=0,battery=500" << "1.1.70" << false << 500;
    }
    void givenKeysWinOverTheFile()
    {
        QFETCH(QString, setup);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grip.json"));
        QVERIFY(StateFile(path).save(changedState(), nullptr));
        PtyServer server(simtest::options(setup + QStringLiteral(",state=") + path));
        QVERIFY(server.start());
        const GripState state = server.grip().state();
        QTEST(state.firmware.toString(), "firmware");
        QTEST(state.bootMode, "bootMode");
        QTEST(int(state.battery), "battery");
        QCOMPARE(state.timing, changedState().timing); // never given: from the file
        // A change made while serving is in the file once the server stops.
        server.grip().updateState([](GripState& s) { s.counters.counter1 = 7; });
        server.stop();
        GripState saved;
        QVERIFY(StateFile(path).load(saved, nullptr));
        QCOMPARE(int(saved.counters.counter1), 7);
        QVERIFY(saved == server.grip().state());
    }
};

QTEST_GUILESS_MAIN(TestSimSetup)
#include "tst_simsetup.moc"
