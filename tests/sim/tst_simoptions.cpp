// Reading the virtual grip's device text ("sim:firmware=1.1.70,pace=1,...").

#include "sim/SimOptions.h"

#include <QtTest>

using gripsim::SimOptions;

namespace {

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

class TestSimOptions : public QObject {
    Q_OBJECT

private slots:
    void parse_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("result"); // changes() of the options, or "error: " and part of the message

        QTest::newRow("plain") << "sim" << "";
        QTest::newRow("empty") << "sim:" << "";
        QTest::newRow("all builds") << "sim:protocol=2.3.4,hardware=5.6.7,firmware=0.0.0,boot=255.255.65535"
                                    << "firmware=0.0.0,boot=255.255.65535,protocol=2.3.4,hardware=5.6.7";
        QTest::newRow("decimal") << "sim:firmware=01.01.070" << "firmware=1.1.70";
        QTest::newRow("spaces") << "sim: firmware = 2.0.20 , boot=1.1.9" << "firmware=2.0.20,boot=1.1.9";
        QTest::newRow("serial") << "sim:serial=ABC1234567" << "serial=ABC1234567";
        QTest::newRow("short serial") << "sim:serial=AB" << "serial=AB        ";
        QTest::newRow("switches on") << "sim:bootmode=1,pace=1,baud=19200" << "bootmode=1,pace=1,baud=19200";
        QTest::newRow("numbers, paths") << "sim:latency=25,battery=1023,state=/tmp/g.json,link=/tmp/grip"
                                        << "latency=25,battery=1023,state=/tmp/g.json,link=/tmp/grip";
        QTest::newRow("capitals") << "sim:BAUD=4800,Battery=0" << "baud=4800,battery=0";
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
        QTest::newRow("major 256") << "sim:hardware=256.0.0" << "error: hardware='256.0.0'";
        QTest::newRow("revision 65536") << "sim:protocol=1.1.65536" << "error: protocol='1.1.65536'";
        QTest::newRow("text field") << "sim:firmware=1.a.0" << "error: firmware";
        QTest::newRow("serial of 11") << "sim:serial=ABCDEFGHIJK" << "error: serial";
        QTest::newRow("serial not ASCII") << QString::fromUtf8("sim:serial=GRÜN") << "error: serial";
        QTest::newRow("switch 2") << "sim:bootmode=2" << "error: 0 or 1";
        QTest::newRow("baud 0") << "sim:baud=0" << "error: baud='0'";
        QTest::newRow("battery 1024") << "sim:battery=1024" << "error: battery='1024'";
        QTest::newRow("empty path") << "sim:state=" << "error: state=";
        QTest::newRow("fault without code") << "sim:fault=nak" << "error: KIND@CODE";
        QTest::newRow("unknown fault") << "sim:fault=explode@14" << "error: unknown fault kind";
        QTest::newRow("unknown code") << "sim:fault=nak@12" << "error: not a command code";
        QTest::newRow("code above FF") << "sim:fault=nak@114" << "error: not a command code";
        QTest::newRow("count 0") << "sim:fault=nak@14*0" << "error: count '0'";
        QTest::newRow("delay without time") << "sim:fault=delay@14" << "error: unknown fault kind";
        QTest::newRow("block not hex") << "sim:failblock=xyz*2" << "error: hex byte address";
        QTest::newRow("block two counts") << "sim:failblock=40*1*2" << "error: ADDR[*N]";
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
};

QTEST_GUILESS_MAIN(TestSimOptions)
#include "tst_simoptions.moc"
