// Reading the virtual grip's set-up text ("sim:firmware=1.1.70,pace=1,...").

#include "sim/GripState.h"
#include "sim/SimOptions.h"

#include <QtTest>

using gripsim::BlockFailure;
using gripsim::FaultKind;
using gripsim::FaultRule;
using gripsim::GripState;
using gripsim::SimOptions;

Q_DECLARE_METATYPE(FaultKind)

class TestSimOptions : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void versions_data();
    void versions();
    void scalars_data();
    void scalars();
    void faults_data();
    void faults();
    void blockFailures_data();
    void blockFailures();
    void rejected_data();
    void rejected();
    void deviceText_data();
    void deviceText();
    void givenKeysOverrideLoadedState();
};

void TestSimOptions::defaults()
{
    const auto o = SimOptions::parse(QString());
    QVERIFY(o.has_value());
    QCOMPARE(o->firmware.toString(), QStringLiteral("4.0.0"));
    QCOMPARE(o->boot.toString(), QStringLiteral("1.2.1"));
    QCOMPARE(o->protocol.toString(), QStringLiteral("1.1.1"));
    QCOMPARE(o->hardware.toString(), QStringLiteral("1.1.1"));
    QCOMPARE(o->serial, QByteArray("SIM0000001"));
    QCOMPARE(o->bootMode, false);
    QCOMPARE(o->pace, false);
    QCOMPARE(o->baud, 9600);
    QCOMPARE(o->latencyMs, 0);
    QCOMPARE(o->battery, 880);
    QVERIFY(o->stateFile.isEmpty());
    QVERIFY(o->faults.isEmpty());
    QVERIFY(o->blockFailures.isEmpty());
}

void TestSimOptions::versions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("boot");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("hardware");

    QTest::newRow("firmware and boot") << "firmware=1.1.70,boot=1.2.0" << "1.1.70" << "1.2.0" << "1.1.1" << "1.1.1";
    QTest::newRow("all four") << "protocol=2.3.4,hardware=5.6.7,firmware=0.0.0,boot=255.255.65535" << "0.0.0"
                              << "255.255.65535" << "2.3.4" << "5.6.7";
    QTest::newRow("leading zeros read as decimal") << "firmware=01.01.070" << "1.1.70" << "1.2.1" << "1.1.1" << "1.1.1";
    QTest::newRow("spaces around items") << " firmware = 2.0.20 , boot=1.1.9" << "2.0.20" << "1.1.9" << "1.1.1"
                                         << "1.1.1";
}

void TestSimOptions::versions()
{
    QFETCH(QString, text);
    QString error;
    const auto o = SimOptions::parse(text, &error);
    QVERIFY2(o.has_value(), qPrintable(error));
    QTEST(o->firmware.toString(), "firmware");
    QTEST(o->boot.toString(), "boot");
    QTEST(o->protocol.toString(), "protocol");
    QTEST(o->hardware.toString(), "hardware");
}

void TestSimOptions::scalars_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("serial");
    QTest::addColumn<bool>("bootMode");
    QTest::addColumn<bool>("pace");
    QTest::addColumn<int>("baud");
    QTest::addColumn<int>("latency");
    QTest::addColumn<int>("battery");
    QTest::addColumn<QString>("stateFile");

    QTest::newRow("serial of ten") << "serial=ABC1234567" << QByteArray("ABC1234567") << false << false << 9600 << 0
                                   << 880 << "";
    QTest::newRow("short serial padded") << "serial=AB" << QByteArray("AB        ") << false << false << 9600 << 0
                                         << 880 << "";
    QTest::newRow("boot mode and pace") << "bootmode=1,pace=1,baud=19200" << QByteArray("SIM0000001") << true << true
                                        << 19200 << 0 << 880 << "";
    QTest::newRow("switches off") << "bootmode=0,pace=0" << QByteArray("SIM0000001") << false << false << 9600 << 0
                                  << 880 << "";
    QTest::newRow("latency, battery, state") << "latency=25,battery=1023,state=/tmp/g.json"
                                             << QByteArray("SIM0000001") << false << false << 9600 << 25 << 1023
                                             << "/tmp/g.json";
    QTest::newRow("keys in capitals") << "BAUD=4800,Battery=0" << QByteArray("SIM0000001") << false << false << 4800
                                      << 0 << 0 << "";
}

void TestSimOptions::scalars()
{
    QFETCH(QString, text);
    QString error;
    const auto o = SimOptions::parse(text, &error);
    QVERIFY2(o.has_value(), qPrintable(error));
    QTEST(o->serial, "serial");
    QTEST(o->bootMode, "bootMode");
    QTEST(o->pace, "pace");
    QTEST(o->baud, "baud");
    QTEST(o->latencyMs, "latency");
    QTEST(o->battery, "battery");
    QTEST(o->stateFile, "stateFile");
}

void TestSimOptions::faults_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index");
    QTest::addColumn<FaultKind>("kind");
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<int>("count");

    QTest::newRow("silent always") << "fault=silent@14" << 0 << FaultKind::Silent << 0x14 << 0 << -1;
    QTest::newRow("nak twice") << "fault=nak@24*2" << 0 << FaultKind::Nak << 0x24 << 0 << 2;
    QTest::newRow("short") << "fault=short@13" << 0 << FaultKind::Short << 0x13 << 0 << -1;
    QTest::newRow("long") << "fault=long@15*1" << 0 << FaultKind::Long << 0x15 << 0 << 1;
    QTest::newRow("badsum") << "fault=badsum@85*3" << 0 << FaultKind::BadSum << 0x85 << 0 << 3;
    QTest::newRow("garbage") << "fault=garbage@11" << 0 << FaultKind::Garbage << 0x11 << 0 << -1;
    QTest::newRow("pieces") << "fault=pieces@8A" << 0 << FaultKind::Pieces << 0x8A << 0 << -1;
    QTest::newRow("delay") << "fault=delay800@14*1" << 0 << FaultKind::Delay << 0x14 << 800 << 1;
    QTest::newRow("code with 0x, lower case") << "fault=NAK@0x8a" << 0 << FaultKind::Nak << 0x8A << 0 << -1;
    QTest::newRow("second of two") << "fault=silent@14*1,fault=delay50@82" << 1 << FaultKind::Delay << 0x82 << 50
                                   << -1;
}

void TestSimOptions::faults()
{
    QFETCH(QString, text);
    QFETCH(int, index);
    QString error;
    const auto o = SimOptions::parse(text, &error);
    QVERIFY2(o.has_value(), qPrintable(error));
    QVERIFY(o->faults.size() > index);
    const FaultRule rule = o->faults.at(index);
    QTEST(rule.kind, "kind");
    QTEST(int(rule.command), "command");
    QTEST(rule.delayMs, "delayMs");
    QTEST(rule.count, "count");
    // The rule's own text reads back the same.
    QCOMPARE(FaultRule::parse(rule.toString(), nullptr), std::optional<FaultRule>(rule));
}

void TestSimOptions::blockFailures_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("addresses");
    QTest::addColumn<QList<int>>("counts");

    QTest::newRow("one block, three times") << "failblock=40*3" << QList<int>{0x40} << QList<int>{3};
    QTest::newRow("count defaults to one") << "failblock=0x200" << QList<int>{0x200} << QList<int>{1};
    QTest::newRow("two blocks") << "failblock=F50*2,failblock=ff0*1" << QList<int>{0xF50, 0xFF0} << QList<int>{2, 1};
}

void TestSimOptions::blockFailures()
{
    QFETCH(QString, text);
    QFETCH(QList<int>, addresses);
    QFETCH(QList<int>, counts);
    QString error;
    const auto o = SimOptions::parse(text, &error);
    QVERIFY2(o.has_value(), qPrintable(error));
    QCOMPARE(o->blockFailures.size(), addresses.size());
    for (int i = 0; i < addresses.size(); ++i) {
        QCOMPARE(o->blockFailures.at(i).address, addresses.at(i));
        QCOMPARE(o->blockFailures.at(i).count, counts.at(i));
    }
}

void TestSimOptions::rejected_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("unknown key") << "colour=red" << "unknown key 'colour'";
    QTest::newRow("no value") << "firmware" << "not KEY=VALUE";
    QTest::newRow("no key") << "=1" << "not KEY=VALUE";
    QTest::newRow("two-part version") << "firmware=4.0" << "firmware='4.0'";
    QTest::newRow("four-part version") << "boot=4.0.0.1" << "boot='4.0.0.1'";
    QTest::newRow("major above 255") << "hardware=256.0.0" << "hardware";
    QTest::newRow("revision above 65535") << "protocol=1.1.65536" << "protocol";
    QTest::newRow("negative field") << "firmware=1.-1.0" << "firmware";
    QTest::newRow("text in version") << "firmware=1.a.0" << "firmware";
    QTest::newRow("serial too long") << "serial=ABCDEFGHIJK" << "serial";
    QTest::newRow("empty serial") << "serial=" << "serial";
    QTest::newRow("serial not ASCII") << QString::fromUtf8("serial=GRÜN") << "serial";
    QTest::newRow("bootmode 2") << "bootmode=2" << "0 or 1";
    QTest::newRow("pace yes") << "pace=yes" << "0 or 1";
    QTest::newRow("baud 0") << "baud=0" << "baud";
    QTest::newRow("baud text") << "baud=fast" << "baud";
    QTest::newRow("negative latency") << "latency=-5" << "latency";
    QTest::newRow("battery above 10 bits") << "battery=1024" << "battery";
    QTest::newRow("empty state file") << "state=" << "state";
    QTest::newRow("key twice") << "firmware=1.1.70,firmware=4.0.0" << "twice";
    QTest::newRow("fault without code") << "fault=nak" << "KIND@CODE";
    QTest::newRow("fault unknown kind") << "fault=explode@14" << "unknown fault kind";
    QTest::newRow("fault unknown code") << "fault=nak@12" << "not a command code";
    QTest::newRow("fault code not hex") << "fault=nak@zz" << "not a command code";
    QTest::newRow("fault code too big") << "fault=nak@114" << "not a command code";
    QTest::newRow("fault count zero") << "fault=nak@14*0" << "count";
    QTest::newRow("fault count empty") << "fault=nak@14*" << "KIND@CODE";
    QTest::newRow("delay without time") << "fault=delay@14" << "unknown fault kind";
    QTest::newRow("delay not a number") << "fault=delayx@14" << "unknown fault kind";
    QTest::newRow("failblock not hex") << "failblock=xyz*2" << "hex byte address";
    QTest::newRow("failblock count bad") << "failblock=40*-1" << "count";
    QTest::newRow("failblock two stars") << "failblock=40*1*2" << "ADDR";
}

void TestSimOptions::rejected()
{
    QFETCH(QString, text);
    QFETCH(QString, mentions);
    QString error;
    QVERIFY(!SimOptions::parse(text, &error).has_value());
    QVERIFY2(error.contains(mentions), qPrintable(error));
}

void TestSimOptions::deviceText_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("isSim");
    QTest::addColumn<bool>("parses");
    QTest::addColumn<QString>("firmware");

    QTest::newRow("plain sim") << "sim" << true << true << "4.0.0";
    QTest::newRow("sim with options") << "sim:firmware=1.1.70,boot=1.2.0" << true << true << "1.1.70";
    QTest::newRow("sim with empty options") << "sim:" << true << true << "4.0.0";
    QTest::newRow("sim with bad options") << "sim:firmware=x" << true << false << "";
    QTest::newRow("a real port") << "/dev/ttyUSB0" << false << false << "";
    QTest::newRow("similar name") << "simulator" << false << false << "";
}

void TestSimOptions::deviceText()
{
    QFETCH(QString, device);
    QFETCH(bool, isSim);
    QFETCH(bool, parses);
    QCOMPARE(SimOptions::isDeviceSpec(device), isSim);
    QString error;
    const auto o = SimOptions::fromDeviceSpec(device, &error);
    QCOMPARE(o.has_value(), parses);
    if (parses)
        QTEST(o->firmware.toString(), "firmware");
    else
        QVERIFY(!error.isEmpty());
}

void TestSimOptions::givenKeysOverrideLoadedState()
{
    const auto o = SimOptions::parse(QStringLiteral("firmware=1.1.70,serial=NEW,pace=1"));
    QVERIFY(o.has_value());
    GripState loaded;
    loaded.firmware = {2, 0, 20};
    loaded.boot = {1, 0, 5};
    loaded.serial = "OLD0000000";
    loaded.battery = 17;
    o->applyGivenTo(loaded);
    QCOMPARE(loaded.firmware.toString(), QStringLiteral("1.1.70"));
    QCOMPARE(loaded.serial, QByteArray("NEW       "));
    QCOMPARE(loaded.boot.toString(), QStringLiteral("1.0.5")); // not given: kept
    QCOMPARE(int(loaded.battery), 17);                         // not given: kept
}

QTEST_GUILESS_MAIN(TestSimOptions)
#include "tst_simoptions.moc"
