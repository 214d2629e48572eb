// marlo-cli ports against a machine laid out in a folder ($MARLO_SYSTEM_ROOT): the listing as
// text and JSON, devices named on the command line (exit 1 when one cannot be used, its name
// escaped), the virtual grip, and wrong usage.
#include "CliRunner.h"
#include "FakeSystem.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

// An FTDI adapter on ttyUSB0 kept by a stale lock file and a chip-set port ttyS0 that is ready.
// (Every problem the port doctor finds, and its text, is pinned by the doctor's own tests.)
void layOut(FakeSystem& system)
{
    const uint dialout = FakeSystem::fileGroup();
    const uint player = FakeSystem::fileOwner() + 1000;
    QVERIFY(system.group(QStringLiteral("dialout"), dialout));
    QVERIFY(system.user(player, {player, dialout}));
    QVERIFY(system.tty(QStringLiteral("ttyUSB0"), QStringLiteral("1-1"), 0x0403, 0x6001, QStringLiteral("FT232R USB UART"), QStringLiteral("FTDI")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyUSB0"), 0660));
    QVERIFY(system.write(QStringLiteral("/var/lock/LCK..ttyUSB0"), "       999\n"));
    QVERIFY(system.tty(QStringLiteral("ttyS0")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyS0"), 0660));
}

const QString kReady = QStringLiteral("  ready: nothing stands in the way\n");
const QString kSerial = QStringLiteral("/dev/ttyS0\n") + kReady;
const QString kUsb = QStringLiteral(
    "/dev/ttyUSB0 - FT232R USB UART (FTDI, USB 0403:6001)\n"
    "  - /dev/ttyUSB0 is locked by the lock file /var/lock/LCK..ttyUSB0, but the process it names (999) no longer "
    "runs: a program ended without removing it. Remove it with 'rm /var/lock/LCK..ttyUSB0' ('sudo rm "
    "/var/lock/LCK..ttyUSB0' if another user made it) and try again.\n");
const QString kSim = QStringLiteral("sim - Virtual grip (demo)\n") + kReady;
const QString kRefused = QStringLiteral("marlo-cli ports: a device named cannot be used as it stands (what to do is printed above)\n");

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
        QTest::newRow("every port") << QStringList{"ports"} << 0 << kSerial + kUsb + kSim << QString();
        // One line, one array of objects; vendor and product are four lower-case hex digits or null.
        QTest::newRow("every port, JSON") << QStringList{"--json", "ports"} << 0
            << "[{\"description\":\"\",\"path\":\"/dev/ttyS0\",\"problems\":[],\"product\":null,\"vendor\":null},"
               "{\"description\":\"FT232R USB UART\",\"path\":\"/dev/ttyUSB0\",\"problems\":[\"" + kUsb.section("  - ", 1).chopped(1) +
                   "\"],\"product\":\"6001\",\"vendor\":\"0403\"},{\"description\":\"Virtual grip (demo)\",\"path\":\"sim\","
                   "\"problems\":[],\"product\":null,\"vendor\":null}]\n"
            << QString();
        QTest::newRow("a bare name") << QStringList{"ports", "ttyS0"} << 0 << QStringLiteral("ttyS0\n") + kReady << QString();
        QTest::newRow("the virtual grip by name") << QStringList{"ports", "sim:firmware=1.1.70"} << 0
                                                  << QStringLiteral("sim:firmware=1.1.70 - Virtual grip (demo)\n") + kReady << QString();
        QTest::newRow("a kept port by name") << QStringList{"ports", "/dev/ttyUSB0"} << 1 << kUsb << kRefused;
        QTest::newRow("an option") << QStringList{"ports", "--all"} << 2 << QString()
                                   << "marlo-cli ports: unknown option '--all' (ports takes device names only)\n";
        QTest::newRow("an empty name") << QStringList{"ports", " "} << 2 << QString() << "marlo-cli ports: a device name is empty\n";
        QTest::newRow("a missing port with a hostile name, and a ready one") << QStringList{"ports", "/dev/x\x1b[2J", "sim"} << 1
            << QStringLiteral("/dev/x\\x1b[2J\n  - The serial port /dev/x\\x1b[2J does not exist. Check the "
                              "device in the options, and that the grip's cable or USB adapter is plugged in.\n") + kSim
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
