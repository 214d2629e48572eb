// marlo-cli ports against a machine laid out in a folder ($MARLO_SYSTEM_ROOT): the listing as
// text and JSON, devices named on the command line (exit 1 when one cannot be used), the virtual
// grip, and wrong usage.
#include "CliRunner.h"
#include "FakeSystem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// An FTDI adapter on ttyUSB0 kept by a stale lock file, an Arduino on ttyACM0 that ModemManager
// probes, a chip-set port ttyS0 that is ready, and a CH340 adapter that brltty took.
void layOut(FakeSystem& system)
{
    const uint dialout = FakeSystem::fileGroup();
    const uint player = FakeSystem::fileOwner() + 1000;
    QVERIFY(system.group(QStringLiteral("dialout"), dialout));
    QVERIFY(system.user(player, {player, dialout}));
    QVERIFY(system.tty(QStringLiteral("ttyUSB0"), QStringLiteral("1-1"), 0x0403, 0x6001, QStringLiteral("FT232R USB UART"), QStringLiteral("FTDI")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyUSB0"), 0660));
    QVERIFY(system.write(QStringLiteral("/var/lock/LCK..ttyUSB0"), "       999\n"));
    QVERIFY(system.tty(QStringLiteral("ttyACM0"), QStringLiteral("1-2"), 0x2341, 0x0043, QStringLiteral("Arduino Uno")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyACM0"), 0660));
    QVERIFY(system.process(800, QStringLiteral("ModemManager"), QStringLiteral("/usr/sbin/ModemManager")));
    QVERIFY(system.tty(QStringLiteral("ttyS0")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyS0"), 0660));
    QVERIFY(system.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QStringLiteral("USB Serial"), QStringLiteral("usbfs")));
    QVERIFY(system.process(612, QStringLiteral("brltty"), QStringLiteral("/usr/bin/brltty")));
}

const QString kAcm = QStringLiteral(
    "/dev/ttyACM0 - Arduino Uno (USB 2341:0043)\n"
    "  - ModemManager (process 800) is running: it probes /dev/ttyACM0 as a possible modem whenever it appears, "
    "sending it bytes and keeping it busy for several seconds. Stop it with 'sudo systemctl stop ModemManager' "
    "('sudo systemctl disable ModemManager' keeps it off), or let it leave the device alone with a udev rule such as "
    "ATTRS{idVendor}==\"2341\", ATTRS{idProduct}==\"0043\", ENV{ID_MM_DEVICE_IGNORE}=\"1\" in "
    "/etc/udev/rules.d/99-marlo.rules, then run 'sudo udevadm control --reload' and plug the device in again.\n");
const QString kReady = QStringLiteral("  ready: nothing stands in the way\n");
const QString kSerial = QStringLiteral("/dev/ttyS0\n") + kReady;
const QString kUsb = QStringLiteral(
    "/dev/ttyUSB0 - FT232R USB UART (FTDI, USB 0403:6001)\n"
    "  - /dev/ttyUSB0 is locked by the lock file /var/lock/LCK..ttyUSB0, but the process it names (999) no longer "
    "runs: a program ended without removing it. Remove it with 'rm /var/lock/LCK..ttyUSB0' ('sudo rm "
    "/var/lock/LCK..ttyUSB0' if another user made it) and try again.\n");
const QString kBrlttyText = QStringLiteral(
    "A USB serial adapter (QinHeng CH340, USB 1a86:7523) is plugged in but has no serial device: brltty, the "
    "Braille display service (process 612), took it over. If no Braille display is used here, remove brltty with "
    "'sudo apt remove brltty'; otherwise keep it off serial adapters with 'sudo systemctl mask "
    "brltty-udev.service' and 'sudo systemctl stop brltty-udev.service brltty.service'. Then unplug the adapter and "
    "plug it in again.");
const QString kAdapter = QStringLiteral("/sys/bus/usb/devices/1-3 - USB Serial (USB 1a86:7523)\n  - ") + kBrlttyText + QLatin1Char('\n');
const QString kSim = QStringLiteral("sim - Virtual grip (demo)\n") + kReady;
const QString kMissing = QStringLiteral(
    "/dev/ttyUSB7\n"
    "  - The serial port /dev/ttyUSB7 does not exist. Check the device in the options, and that the grip's cable or "
    "USB adapter is plugged in.\n  - ") + kBrlttyText + QLatin1Char('\n');
const QString kRefused = QStringLiteral("marlo-cli ports: a device named cannot be used as it stands (what to do is printed above)\n");

QJsonObject entry(const QString& path, const QString& description, const QJsonValue& vendor, const QJsonValue& product,
                  const QStringList& problems)
{
    return QJsonObject{{"path", path}, {"description", description}, {"vendor", vendor}, {"product", product},
                       {"problems", QJsonArray::fromStringList(problems)}};
}

} // namespace

class tst_cliPorts : public QObject {
    Q_OBJECT

private slots:
    void listing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");  // the start of stderr
        QTest::newRow("every port") << QStringList{"ports"} << 0 << kAcm + kSerial + kUsb + kAdapter + kSim << QString();
        QTest::newRow("a ready port by name") << QStringList{"ports", "/dev/ttyS0"} << 0 << kSerial << QString();
        QTest::newRow("a bare name") << QStringList{"ports", "ttyS0"} << 0 << QStringLiteral("ttyS0\n") + kReady << QString();
        QTest::newRow("the virtual grip by name") << QStringList{"ports", "sim:firmware=1.1.70"} << 0
                                                  << QStringLiteral("sim:firmware=1.1.70 - Virtual grip (demo)\n") + kReady << QString();
        QTest::newRow("a kept port by name") << QStringList{"ports", "/dev/ttyUSB0"} << 1 << kUsb << kRefused;
        QTest::newRow("a missing port and a ready one") << QStringList{"ports", "/dev/ttyUSB7", "sim"} << 1 << kMissing + kSim << kRefused;
        QTest::newRow("an option") << QStringList{"ports", "--all"} << 2 << QString()
                                   << "marlo-cli ports: unknown option '--all' (ports takes device names only)\n";
        QTest::newRow("an empty name") << QStringList{"ports", " "} << 2 << QString() << "marlo-cli ports: a device name is empty\n";
        QTest::newRow("a hostile name") << QStringList{"ports", "/dev/x\x1b[2J"} << 1
                                        << QStringLiteral("/dev/x\\x1b[2J\n  - The serial port /dev/x\\x1b[2J does not exist. Check the "
                                                          "device in the options, and that the grip's cable or USB adapter is plugged in.\n")
                                        << kRefused;
    }
    void listing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QString, err);
        FakeSystem system;
        layOut(system);
        const CliRun run = runIn(system, arguments);
        QVERIFY2(run.out == out, qPrintable(run.out));
        QVERIFY2(run.err.startsWith(err), qPrintable(run.err));
        QCOMPARE(run.status, status);
    }

    void json_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QJsonArray>("expected");
        const QJsonValue none(QJsonValue::Null);
        const QJsonObject sim = entry("sim", "Virtual grip (demo)", none, none, {});
        QTest::newRow("every port") << QStringList{"--json", "ports"}
                                    << QJsonArray{entry("/dev/ttyACM0", "Arduino Uno", "2341", "0043", {kAcm.section("  - ", 1).chopped(1)}),
                                                  entry("/dev/ttyS0", "", none, none, {}),
                                                  entry("/dev/ttyUSB0", "FT232R USB UART", "0403", "6001", {kUsb.section("  - ", 1).chopped(1)}),
                                                  entry("/sys/bus/usb/devices/1-3", "USB Serial", "1a86", "7523", {kBrlttyText}),
                                                  sim};
        QTest::newRow("the virtual grip") << QStringList{"--json", "ports", "sim"} << QJsonArray{sim};
    }
    // One array of objects; vendor and product are four lower-case hex digits or null.
    void json()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QJsonArray, expected);
        FakeSystem system;
        layOut(system);
        const CliRun run = runIn(system, arguments);
        QCOMPARE(run.status, 0);
        QVERIFY2(run.out.endsWith(QLatin1Char('\n')) && run.out.count(QLatin1Char('\n')) == 1, qPrintable(run.out));
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(run.out.toUtf8(), &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(run.out));
        QVERIFY(document.isArray());
        QCOMPARE(document.array().size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i)
            QCOMPARE(document.array().at(i).toObject(), expected.at(i).toObject());
    }

private:
    static CliRun runIn(const FakeSystem& system, const QStringList& arguments)
    {
        QTemporaryDir home;
        qputenv("MARLO_SYSTEM_ROOT", system.root().toLocal8Bit());
        CliRun run = RunCli(QDir(home.path()), home.path(), arguments);
        qunsetenv("MARLO_SYSTEM_ROOT");
        return run;
    }
};

QTEST_GUILESS_MAIN(tst_cliPorts)
#include "tst_cliPorts.moc"
