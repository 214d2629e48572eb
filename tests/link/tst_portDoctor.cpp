// What stands in the way of a serial device, read from a machine laid out in a folder: a missing
// device, an adapter that brltty or no driver took, the device's group and the user's, a program
// that holds the device or its lock file, a stale lock file, ModemManager and a modem-class
// device; a healthy device and the virtual grip have nothing in the way. Then the list of ports.
#include "FakeSystem.h"

#include "link/cPortDoctor.h"
#include "link/cSystemFacts.h"

#include <QtTest>
#include <functional>

using Kind = cPortDoctor::Problem::Kind;
using Scene = std::function<void(FakeSystem&)>;
Q_DECLARE_METATYPE(Scene)

namespace {

const uint kDialout = FakeSystem::fileGroup();
// A user who does not own the files made here.
const uint kPlayer = FakeSystem::fileOwner() + 1000;

// A machine with an FTDI adapter on /dev/ttyUSB0 (group dialout, 0660) and a user in dialout.
void healthy(FakeSystem& system)
{
    QVERIFY(system.group(QStringLiteral("dialout"), kDialout));
    QVERIFY(system.user(kPlayer, {kPlayer, kDialout}));
    QVERIFY(system.tty(QStringLiteral("ttyUSB0"), QStringLiteral("1-1"), 0x0403, 0x6001, QStringLiteral("FT232R USB UART"), QStringLiteral("FTDI")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyUSB0"), 0660));
}

// The same with an Arduino-like modem-class device on /dev/ttyACM0.
void withAcm(FakeSystem& system)
{
    healthy(system);
    QVERIFY(system.tty(QStringLiteral("ttyACM0"), QStringLiteral("1-2"), 0x2341, 0x0043, QStringLiteral("Arduino Uno")));
    QVERIFY(system.node(QStringLiteral("/dev/ttyACM0"), 0660));
}

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::NotFound: return QStringLiteral("NotFound");
    case Kind::NoDeviceForAdapter: return QStringLiteral("NoDeviceForAdapter");
    case Kind::ClaimedByBrltty: return QStringLiteral("ClaimedByBrltty");
    case Kind::PermissionDenied: return QStringLiteral("PermissionDenied");
    case Kind::NeedsNewLogin: return QStringLiteral("NeedsNewLogin");
    case Kind::HeldByProgram: return QStringLiteral("HeldByProgram");
    case Kind::StaleLock: return QStringLiteral("StaleLock");
    case Kind::ModemManager: return QStringLiteral("ModemManager");
    }
    return QStringLiteral("?");
}

} // namespace

class tst_portDoctor : public QObject {
    Q_OBJECT

private slots:
    void diagnosis_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QString>("device");
        QTest::addColumn<QStringList>("kinds");    // the problems found, in order
        QTest::addColumn<QStringList>("phrases");  // what the sentences must say, in any of them

        QTest::newRow("healthy device") << Scene(healthy) << "/dev/ttyUSB0" << QStringList{} << QStringList{};
        QTest::newRow("a bare name means the device in /dev") << Scene(healthy) << "ttyUSB0" << QStringList{} << QStringList{};
        QTest::newRow("the virtual grip") << Scene([](FakeSystem& s) {
            // Nothing of the machine matters to it, however broken.
            QVERIFY(s.process(612, QStringLiteral("brltty")));
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523));
        }) << "sim" << QStringList{} << QStringList{};
        QTest::newRow("the virtual grip with options") << Scene(healthy) << "sim:firmware=1.1.70,pace=1" << QStringList{} << QStringList{};
        QTest::newRow("no device given") << Scene(healthy) << "  " << QStringList{} << QStringList{};

        QTest::newRow("missing device") << Scene(healthy) << "/dev/ttyUSB1" << QStringList{"NotFound"}
                                        << QStringList{"The serial port /dev/ttyUSB1 does not exist.", "plugged in"};
        QTest::newRow("missing device, CH340 taken by brltty") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QStringLiteral("USB Serial"), QStringLiteral("usbfs")));
            QVERIFY(s.process(612, QStringLiteral("brltty"), QStringLiteral("/usr/bin/brltty")));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound", "ClaimedByBrltty"}
           << QStringList{"QinHeng CH340, USB 1a86:7523", "brltty", "(process 612)", "sudo apt remove brltty",
                          "sudo systemctl mask brltty-udev.service", "unplug the adapter and plug it in again"};
        QTest::newRow("CH340 taken directly, brltty gone") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QString(), QStringLiteral("usbfs")));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound", "NoDeviceForAdapter"}
           << QStringList{"QinHeng CH340, USB 1a86:7523", "through usbfs", "sudo apt remove brltty"};
        QTest::newRow("CP210x without a driver") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x10c4, 0xea60));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound", "NoDeviceForAdapter"}
           << QStringList{"Silicon Labs CP210x, USB 10c4:ea60", "no driver took it", "sudo modprobe cp210x"};
        QTest::newRow("modem-class device taken by another driver") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x2e8a, 0x000a, QStringLiteral("Pico"), QStringLiteral("usbtmc"), true));
        }) << "/dev/ttyACM0" << QStringList{"NotFound", "NoDeviceForAdapter"}
           << QStringList{"Pico, USB 2e8a:000a", "the driver usbtmc took it instead of cdc_acm"};
        QTest::newRow("an adapter with its device is no problem") << Scene(healthy) << "/dev/ttyUSB1" << QStringList{"NotFound"}
                                                                 << QStringList{};
        QTest::newRow("a missing chip-set port is not the adapter's") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523));
        }) << "/dev/ttyS3" << QStringList{"NotFound"} << QStringList{};
        QTest::newRow("a USB device of no serial kind is no problem") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-4"), 0x046d, 0xc52b, QStringLiteral("USB Receiver"), QStringLiteral("usbhid")));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound"} << QStringList{};

        QTest::newRow("not in the device's group") << Scene([](FakeSystem& s) {
            QVERIFY(s.group(QStringLiteral("dialout"), kDialout));
            QVERIFY(s.user(kPlayer, {kPlayer}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyUSB0"), 0660));
        }) << "/dev/ttyUSB0" << QStringList{"PermissionDenied"}
           << QStringList{"Permission denied: /dev/ttyUSB0 belongs to the group 'dialout' (mode 0660)",
                          "sudo usermod -aG dialout $USER", "log out and in again"};
        QTest::newRow("added to the group, session older") << Scene([](FakeSystem& s) {
            QVERIFY(s.group(QStringLiteral("dialout"), kDialout, {QStringLiteral("someone"), QStringLiteral("player")}));
            QVERIFY(s.user(kPlayer, {kPlayer}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyUSB0"), 0660));
        }) << "/dev/ttyUSB0" << QStringList{"NeedsNewLogin"}
           << QStringList{"which you were added to after this session began", "Log out and in again", "newgrp dialout"};
        QTest::newRow("only its owner may") << Scene([](FakeSystem& s) {
            QVERIFY(s.group(QStringLiteral("dialout"), kDialout));
            QVERIFY(s.user(kPlayer, {kPlayer, kDialout}));
            QVERIFY(s.append(QStringLiteral("/etc/passwd"), "keeper:x:" + QByteArray::number(FakeSystem::fileOwner()) + ":0::/:/bin/sh\n"));
            QVERIFY(s.node(QStringLiteral("/dev/ttyS0"), 0600));
        }) << "/dev/ttyS0" << QStringList{"PermissionDenied"}
           << QStringList{"only keeper may use /dev/ttyS0 (mode 0600), not its group 'dialout'",
                          "KERNEL==\"ttyS0\", GROUP=\"dialout\", MODE=\"0660\"", "sudo chmod 666 /dev/ttyS0"};
        QTest::newRow("its owner may") << Scene([](FakeSystem& s) {
            QVERIFY(s.user(FakeSystem::fileOwner(), {kPlayer}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyS0"), 0600));
        }) << "/dev/ttyS0" << QStringList{} << QStringList{};
        QTest::newRow("the administrator may") << Scene([](FakeSystem& s) {
            QVERIFY(s.user(0, {0}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyS0"), 0600));
        }) << "/dev/ttyS0" << QStringList{} << QStringList{};
        QTest::newRow("open to everyone") << Scene([](FakeSystem& s) {
            QVERIFY(s.user(kPlayer, {kPlayer}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyS0"), 0666));
        }) << "/dev/ttyS0" << QStringList{} << QStringList{};
        QTest::newRow("read-only for the group") << Scene([](FakeSystem& s) {
            QVERIFY(s.group(QStringLiteral("uucp"), kDialout));
            QVERIFY(s.user(kPlayer, {kPlayer, kDialout}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyS0"), 0640));
        }) << "/dev/ttyS0" << QStringList{"PermissionDenied"} << QStringList{"not its group 'uucp'"};

        QTest::newRow("held open by a program") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.process(4242, QStringLiteral("minicom"), QStringLiteral("/usr/bin/minicom"), {QStringLiteral("/dev/ttyUSB0")}));
            QVERIFY(s.process(4300, QStringLiteral("bash"), QStringLiteral("/usr/bin/bash"), {QStringLiteral("/dev/pts/0")}));
        }) << "/dev/ttyUSB0" << QStringList{"HeldByProgram"}
           << QStringList{"/dev/ttyUSB0 is in use by minicom (process 4242, /usr/bin/minicom).", "kill 4242"};
        QTest::newRow("held open, reached by its stable name") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.link(QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R-if00-port0"), QStringLiteral("../../ttyUSB0")));
            QVERIFY(s.process(4242, QStringLiteral("screen"), QString(), {QStringLiteral("/dev/ttyUSB0")}));
        }) << "/dev/serial/by-id/usb-FTDI_FT232R-if00-port0" << QStringList{"HeldByProgram"}
           << QStringList{"is in use by screen (process 4242)."};
        QTest::newRow("held through its lock file") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.process(4242, QStringLiteral("minicom"), QStringLiteral("/usr/bin/minicom")));
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyUSB0"), "      4242\n"));
        }) << "/dev/ttyUSB0" << QStringList{"HeldByProgram"}
           << QStringList{"locked by minicom (process 4242, /usr/bin/minicom) through the lock file /var/lock/LCK..ttyUSB0"};
        QTest::newRow("holder and its lock file: said once") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.process(4242, QStringLiteral("marlo"), QStringLiteral("/usr/bin/marlo"), {QStringLiteral("/dev/ttyUSB0")}));
            QVERIFY(s.write(QStringLiteral("/run/lock/LCK..ttyUSB0"), "4242\nmarlo\nfield-laptop\n"));
        }) << "/dev/ttyUSB0" << QStringList{"HeldByProgram"} << QStringList{"in use by marlo (process 4242"};
        QTest::newRow("stale lock file") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyUSB0"), "       999\n"));
        }) << "/dev/ttyUSB0" << QStringList{"StaleLock"}
           << QStringList{"locked by the lock file /var/lock/LCK..ttyUSB0, but the process it names (999) no longer runs",
                          "rm /var/lock/LCK..ttyUSB0"};
        QTest::newRow("stale lock file of the oldest kind") << Scene([](FakeSystem& s) {
            healthy(s);
            const qint32 pid = 31337;
            QVERIFY(s.write(QStringLiteral("/run/lock/LCK..ttyUSB0"), QByteArray(reinterpret_cast<const char*>(&pid), sizeof pid)));
        }) << "/dev/ttyUSB0" << QStringList{"StaleLock"} << QStringList{"/run/lock/LCK..ttyUSB0", "(31337) no longer runs"};
        QTest::newRow("empty lock file of a killed run") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/run/lock/LCK..ttyUSB0"), QByteArray()));
        }) << "/dev/ttyUSB0" << QStringList{"StaleLock"} << QStringList{"which names no process"};
        QTest::newRow("lock folder linked to another: one lock file") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/run/lock/LCK..ttyUSB0"), "999\n"));
            QVERIFY(s.link(QStringLiteral("/var/lock"), QStringLiteral("../run/lock")));
        }) << "/dev/ttyUSB0" << QStringList{"StaleLock"} << QStringList{"/var/lock/LCK..ttyUSB0"};
        QTest::newRow("lock file named after the stable name") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.link(QStringLiteral("/dev/serial/by-id/usb-FTDI-port0"), QStringLiteral("/dev/ttyUSB0")));
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..serial_by-id_usb-FTDI-port0"), "999\n"));
        }) << "/dev/serial/by-id/usb-FTDI-port0" << QStringList{"StaleLock"} << QStringList{"LCK..serial_by-id_usb-FTDI-port0"};
        QTest::newRow("another device's lock file is no problem") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyUSB1"), "999\n"));
        }) << "/dev/ttyUSB0" << QStringList{} << QStringList{};

        QTest::newRow("ModemManager and a ttyACM device") << Scene([](FakeSystem& s) {
            withAcm(s);
            QVERIFY(s.process(800, QStringLiteral("ModemManager"), QStringLiteral("/usr/sbin/ModemManager")));
        }) << "/dev/ttyACM0" << QStringList{"ModemManager"}
           << QStringList{"ModemManager (process 800) is running: it probes /dev/ttyACM0", "sudo systemctl stop ModemManager",
                          "sudo systemctl disable ModemManager",
                          "ATTRS{idVendor}==\"2341\", ATTRS{idProduct}==\"0043\", ENV{ID_MM_DEVICE_IGNORE}=\"1\""};
        QTest::newRow("ModemManager, ttyACM without USB identity") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.node(QStringLiteral("/dev/ttyACM3"), 0660));
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        }) << "/dev/ttyACM3" << QStringList{"ModemManager"} << QStringList{"KERNEL==\"ttyACM3\", ENV{ID_MM_DEVICE_IGNORE}=\"1\""};
        QTest::newRow("ModemManager leaves ttyUSB alone") << Scene([](FakeSystem& s) {
            withAcm(s);
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        }) << "/dev/ttyUSB0" << QStringList{} << QStringList{};
        QTest::newRow("ttyACM without ModemManager") << Scene(withAcm) << "/dev/ttyACM0" << QStringList{} << QStringList{};

        QTest::newRow("everything at once, in order") << Scene([](FakeSystem& s) {
            withAcm(s);
            QVERIFY(s.user(kPlayer + 1, {kPlayer + 1}, QStringLiteral("guest")));
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyACM0"), "999\n"));
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        }) << "/dev/ttyACM0" << QStringList{"PermissionDenied", "StaleLock", "ModemManager"} << QStringList{};
    }

    void diagnosis()
    {
        QFETCH(Scene, scene);
        QFETCH(QString, device);
        QFETCH(QStringList, kinds);
        QFETCH(QStringList, phrases);
        FakeSystem system;
        scene(system);
        const cSystemFacts facts(system.root());
        const cPortDoctor doctor(facts);
        QStringList found;
        for (const cPortDoctor::Problem& problem : doctor.Diagnose(device))
            found << kindName(problem.kind);
        const QString text = doctor.Sentences(device).join(QLatin1Char('\n'));
        QVERIFY2(found == kinds, qPrintable(found.join(',') + QStringLiteral("\n") + text));
        for (const QString& phrase : phrases)
            QVERIFY2(text.contains(phrase), qPrintable(QStringLiteral("missing: %1\nin: %2").arg(phrase, text)));
        // Nothing of the test folder leaks into what the user reads.
        QVERIFY2(!text.contains(system.root()), qPrintable(text));
    }

    // The serial ports: ttys with a device (a chip-set port without a UART left out), in natural
    // order, then the adapters without a device, then the virtual grip; each with its diagnosis.
    void ports()
    {
        FakeSystem system;
        healthy(system);
        QVERIFY(system.tty(QStringLiteral("ttyUSB10"), QStringLiteral("1-5"), 0x067b, 0x2303, QStringLiteral("USB-Serial Controller"), QStringLiteral("Prolific")));
        QVERIFY(system.node(QStringLiteral("/dev/ttyUSB10"), 0660));
        QVERIFY(system.tty(QStringLiteral("ttyS1")));
        QVERIFY(system.ttyWithoutUart(QStringLiteral("ttyS2")));
        QVERIFY(system.tty(QStringLiteral("ttyACM0"), QStringLiteral("1-2"), 0x2341, 0x0043, QStringLiteral("Arduino Uno")));
        QVERIFY(system.node(QStringLiteral("/dev/ttyACM0"), 0660));
        QVERIFY(system.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QStringLiteral("USB Serial"), QStringLiteral("usbfs")));
        QVERIFY(system.usbAdapter(QStringLiteral("1-4"), 0x046d, 0xc52b, QStringLiteral("USB Receiver"), QStringLiteral("usbhid")));
        QVERIFY(system.process(612, QStringLiteral("brltty")));
        QVERIFY(system.process(800, QStringLiteral("ModemManager")));

        const cSystemFacts facts(system.root());
        const QList<cPortDoctor::Port> ports = cPortDoctor(facts).Ports();
        struct Expected {
            QString path, description;
            int vendor, product;  // -1: unknown
            QStringList kinds;
        };
        const QList<Expected> expected = {
            {"/dev/ttyACM0", "Arduino Uno", 0x2341, 0x0043, {"ModemManager"}},
            {"/dev/ttyS1", "", -1, -1, {"NotFound"}},
            {"/dev/ttyUSB0", "FT232R USB UART", 0x0403, 0x6001, {}},
            {"/dev/ttyUSB10", "USB-Serial Controller", 0x067b, 0x2303, {}},
            {"/sys/bus/usb/devices/1-3", "USB Serial", 0x1a86, 0x7523, {"ClaimedByBrltty"}},
            {"sim", "Virtual grip (demo)", -1, -1, {}},
        };
        QCOMPARE(ports.size(), expected.size());
        for (qsizetype i = 0; i < ports.size(); ++i) {
            const cPortDoctor::Port& port = ports[i];
            QCOMPARE(port.path, expected[i].path);
            QCOMPARE(port.description, expected[i].description);
            QCOMPARE(port.vendor ? int(*port.vendor) : -1, expected[i].vendor);
            QCOMPARE(port.product ? int(*port.product) : -1, expected[i].product);
            QStringList kinds;
            for (const cPortDoctor::Problem& problem : port.problems)
                kinds << kindName(problem.kind);
            QCOMPARE(kinds, expected[i].kinds);
        }
    }

    // The user as /proc/self/status gives it: the effective ids decide, and the session's groups
    // are the effective group and the supplementary ones.
    void identity_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<bool>("known");
        QTest::addColumn<uint>("uid");
        QTest::addColumn<QList<uint>>("groups");
        QTest::newRow("a user in groups") << QByteArray("Name:\tbash\nUid:\t1000\t1000\t1000\t1000\nGid:\t1000\t1000\t1000\t1000\nGroups:\t20 27 1000 \n")
                                          << true << 1000u << QList<uint>{1000, 20, 27, 1000};
        QTest::newRow("effective, not real") << QByteArray("Uid:\t1000\t0\t0\t0\nGid:\t1000\t5\t5\t5\nGroups:\n") << true << 0u << QList<uint>{5};
        QTest::newRow("no status") << QByteArray("<none>") << false << 0u << QList<uint>{};
        QTest::newRow("garbage") << QByteArray("Uid:\tx\nGid:\t\n") << false << 0u << QList<uint>{};
    }
    void identity()
    {
        QFETCH(QByteArray, status);
        QFETCH(bool, known);
        QFETCH(uint, uid);
        QFETCH(QList<uint>, groups);
        FakeSystem system;
        if (status != "<none>")
            QVERIFY(system.write(QStringLiteral("/proc/self/status"), status));
        const cSystemFacts::Identity user = cSystemFacts(system.root()).User();
        QCOMPARE(user.known, known);
        if (known) {
            QCOMPARE(user.uid, uid);
            QCOMPARE(user.groups, groups);
        }
    }

    // A user whose status cannot be read is judged by what the system lets this test do.
    void unknownUserAsksTheSystem()
    {
        FakeSystem system;
        QVERIFY(system.node(QStringLiteral("/dev/ttyS0"), 0600));
        const cSystemFacts facts(system.root());
        QVERIFY(cPortDoctor(facts).Diagnose(QStringLiteral("/dev/ttyS0")).isEmpty());
    }

    void paths_data()
    {
        QTest::addColumn<QString>("system");
        QTest::addColumn<QString>("below");  // the host path, below the root
        QTest::newRow("device") << "/dev/ttyUSB0" << "/dev/ttyUSB0";
        QTest::newRow("dots are folded") << "/dev/../etc/group" << "/etc/group";
        QTest::newRow("no leading slash") << "proc/1/comm" << "/proc/1/comm";
    }
    void paths()
    {
        QFETCH(QString, system);
        QFETCH(QString, below);
        FakeSystem fake;
        const cSystemFacts facts(fake.root());
        QVERIFY(!facts.IsMachine());
        const QString root = QFileInfo(fake.root()).canonicalFilePath();
        QCOMPARE(facts.HostPath(system), root + below);
        QCOMPARE(facts.SystemPath(root + below), below);
        QCOMPARE(facts.SystemPath(QStringLiteral("/elsewhere") + below), QString());
        QVERIFY(cSystemFacts().IsMachine());
        QCOMPARE(cSystemFacts().HostPath(system), below);
    }
};

QTEST_GUILESS_MAIN(tst_portDoctor)
#include "tst_portDoctor.moc"
