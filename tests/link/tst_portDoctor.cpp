// What stands in the way of a serial device, read from a machine laid out in a folder: a missing
// device, an adapter that brltty or no driver took, the device's group and the user's, a program
// that holds the device or its lock file, a stale lock file, ModemManager and a modem-class
// device; a healthy device and the virtual grip have nothing in the way. Then the list of ports,
// the user as the system gives it, and which path a device text and a port number stand for.
#include "FakeSystem.h"

#include "link/cPortDoctor.h"
#include "link/cSystemFacts.h"
#include "link/mSerialDevices.h"

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

// The kinds' names, in the order of the kinds.
const QStringList kKindNames = {"NotFound",      "NoDeviceForAdapter", "ClaimedByBrltty", "PermissionDenied",
                                "NeedsNewLogin", "HeldByProgram",      "StaleLock",       "ModemManager"};
QString kindName(Kind kind) { return kKindNames.value(int(kind), QStringLiteral("?")); }

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

        QTest::newRow("the virtual grip") << Scene([](FakeSystem& s) {
            // Nothing of the machine matters to it, however broken.
            QVERIFY(s.process(612, QStringLiteral("brltty")));
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523));
        }) << "sim" << QStringList{} << QStringList{};
        QTest::newRow("no device given") << Scene(healthy) << "  " << QStringList{} << QStringList{};

        QTest::newRow("CH340 taken directly, brltty gone") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QString(), QStringLiteral("usbfs")));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound", "NoDeviceForAdapter"}
           << QStringList{"QinHeng CH340, USB 1a86:7523", "through usbfs", "sudo apt remove brltty"};
        QTest::newRow("CH340 taken by brltty") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QString(), QStringLiteral("usbfs")));
            QVERIFY(s.process(612, QStringLiteral("brltty")));
        }) << "/dev/ttyUSB1" << QStringList{"NotFound", "ClaimedByBrltty"}
           << QStringList{"brltty, the Braille display service (process 612)", "sudo systemctl mask brltty-udev.service"};
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
        QTest::newRow("a missing chip-set port is not the adapter's") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523));
        }) << "/dev/ttyS3" << QStringList{"NotFound"} << QStringList{};

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
        QTest::newRow("empty lock file of a killed run") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/run/lock/LCK..ttyUSB0"), QByteArray()));
        }) << "/dev/ttyUSB0" << QStringList{"StaleLock"} << QStringList{"which names no process"};
        QTest::newRow("lock file named after the stable name") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.link(QStringLiteral("/dev/serial/by-id/usb-FTDI-port0"), QStringLiteral("/dev/ttyUSB0")));
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..serial_by-id_usb-FTDI-port0"), "999\n"));
        }) << "/dev/serial/by-id/usb-FTDI-port0" << QStringList{"StaleLock"} << QStringList{"LCK..serial_by-id_usb-FTDI-port0"};
        QTest::newRow("another device's lock file is no problem") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyUSB1"), "999\n"));
        }) << "/dev/ttyUSB0" << QStringList{} << QStringList{};

        QTest::newRow("ModemManager, ttyACM without USB identity") << Scene([](FakeSystem& s) {
            healthy(s);
            QVERIFY(s.node(QStringLiteral("/dev/ttyACM3"), 0660));
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        }) << "/dev/ttyACM3" << QStringList{"ModemManager"} << QStringList{"KERNEL==\"ttyACM3\", ENV{ID_MM_DEVICE_IGNORE}=\"1\""};
        QTest::newRow("ttyACM without ModemManager") << Scene(withAcm) << "/dev/ttyACM0" << QStringList{} << QStringList{};

        QTest::newRow("everything at once, in order") << Scene([](FakeSystem& s) {
            withAcm(s);
            QVERIFY(s.user(kPlayer + 1, {kPlayer + 1}, QStringLiteral("guest")));
            QVERIFY(s.write(QStringLiteral("/var/lock/LCK..ttyACM0"), "999\n"));
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        }) << "/dev/ttyACM0" << QStringList{"PermissionDenied", "StaleLock", "ModemManager"}
           << QStringList{"sudo systemctl stop ModemManager",
                          "ATTRS{idVendor}==\"2341\", ATTRS{idProduct}==\"0043\", ENV{ID_MM_DEVICE_IGNORE}=\"1\""};
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

    // The serial ports in natural order: a chip-set port without a UART and a USB device of no
    // serial kind are left out. (Their descriptions and problems: the listing of marlo-cli ports.)
    void ports()
    {
        FakeSystem system;
        healthy(system);
        QVERIFY(system.tty(QStringLiteral("ttyUSB10"), QStringLiteral("1-5"), 0x067b, 0x2303));
        QVERIFY(system.tty(QStringLiteral("ttyS1")));
        QVERIFY(system.ttyWithoutUart(QStringLiteral("ttyS2")));
        QVERIFY(system.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QStringLiteral("USB Serial"), QStringLiteral("usbfs")));
        QVERIFY(system.usbAdapter(QStringLiteral("1-4"), 0x046d, 0xc52b, QStringLiteral("USB Receiver"), QStringLiteral("usbhid")));
        const cSystemFacts facts(system.root());
        QStringList paths;
        for (const cPortDoctor::Port& port : cPortDoctor(facts).Ports())
            paths << port.path;
        QCOMPARE(paths, (QStringList{"/dev/ttyS1", "/dev/ttyUSB0", "/dev/ttyUSB10", "/sys/bus/usb/devices/1-3", "sim"}));
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
        QTest::newRow("garbage") << QByteArray("Uid:\tx\nGid:\t\n") << false << 0u << QList<uint>{};
    }
    void identity()
    {
        QFETCH(QByteArray, status);
        QFETCH(bool, known);
        QFETCH(uint, uid);
        QFETCH(QList<uint>, groups);
        FakeSystem system;
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

    void effectivePath_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("path");
        QTest::newRow("no device: port 4") << "  " << 4 << "/dev/ttyS3";
        QTest::newRow("a path") << "/dev/ttyUSB0" << 1 << "/dev/ttyUSB0";
        QTest::newRow("virtual grip with options") << "sim:firmware=1.1.70" << 2 << "";
        QTest::newRow("a name that only begins with sim") << "simple" << 1 << "simple";
    }
    void effectivePath()
    {
        QFETCH(QString, device);
        QFETCH(int, port);
        QFETCH(QString, path);
        QCOMPARE(mSerialDevices::EffectivePath(device, port), path);
    }
};

QTEST_GUILESS_MAIN(tst_portDoctor)
#include "tst_portDoctor.moc"
