#include "link/cPortDoctor.h"

#include "link/mSerialDevices.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QSet>
#include <algorithm>

namespace {

// ---- the sentences -----------------------------------------------------------------------------

const char* const kNotFound = QT_TRANSLATE_NOOP("cPortDoctor",
    "The serial port %1 does not exist. Check the device in the options, and that the grip's cable or USB "
    "adapter is plugged in.");
const char* const kBrltty = QT_TRANSLATE_NOOP("cPortDoctor",
    "A USB serial adapter (%1) is plugged in but has no serial device: brltty, the Braille display service "
    "(process %2), took it over. If no Braille display is used here, remove brltty with 'sudo apt remove brltty'; "
    "otherwise keep it off serial adapters with 'sudo systemctl mask brltty-udev.service' and 'sudo systemctl stop "
    "brltty-udev.service brltty.service'. Then unplug the adapter and plug it in again.");
const char* const kUsbfs = QT_TRANSLATE_NOOP("cPortDoctor",
    "A USB serial adapter (%1) is plugged in but has no serial device: a program uses it directly (through usbfs), "
    "which keeps its serial driver away. Close that program (brltty, the Braille display service, does this with "
    "many adapters: 'sudo apt remove brltty' if no Braille display is used), then unplug the adapter and plug it "
    "in again.");
const char* const kNoDriver = QT_TRANSLATE_NOOP("cPortDoctor",
    "A USB serial adapter (%1) is plugged in but has no serial device: no driver took it. Load its driver with "
    "'sudo modprobe %2', then unplug the adapter and plug it in again.");
const char* const kOtherDriver = QT_TRANSLATE_NOOP("cPortDoctor",
    "A USB serial adapter (%1) is plugged in but has no serial device: the driver %2 took it instead of %3. "
    "Unplug the adapter and plug it in again; if that does not help, 'sudo modprobe %3' loads the serial driver.");
const char* const kGroupDenied = QT_TRANSLATE_NOOP("cPortDoctor",
    "Permission denied: %1 belongs to the group '%2' (mode %3), and you are not in it. Add yourself with "
    "'sudo usermod -aG %2 $USER', then log out and in again.");
const char* const kNewLogin = QT_TRANSLATE_NOOP("cPortDoctor",
    "Permission denied: %1 belongs to the group '%2', which you were added to after this session began. Log out "
    "and in again (or restart the computer) so that it takes effect; 'newgrp %2' does it for one terminal.");
const char* const kOwnerOnly = QT_TRANSLATE_NOOP("cPortDoctor",
    "Permission denied: only %2 may use %1 (mode %3), not its group '%4'. Let the group 'dialout' use it with a "
    "udev rule such as KERNEL==\"%5\", GROUP=\"dialout\", MODE=\"0660\" in /etc/udev/rules.d/99-marlo.rules, or "
    "run 'sudo chmod 666 %1', which lasts until the device is plugged in again.");
const char* const kDenied = QT_TRANSLATE_NOOP("cPortDoctor",
    "Permission denied: you may not read and write %1. Serial devices usually belong to the group 'dialout': add "
    "yourself with 'sudo usermod -aG dialout $USER', then log out and in again.");
const char* const kHeldOpen = QT_TRANSLATE_NOOP("cPortDoctor",
    "%1 is in use by %2. Close that program, or end it with 'kill %3', and try again.");
const char* const kHeldByLock = QT_TRANSLATE_NOOP("cPortDoctor",
    "%1 is locked by %2 through the lock file %4. Close that program, or end it with 'kill %3', and try again.");
const char* const kStaleLock = QT_TRANSLATE_NOOP("cPortDoctor",
    "%1 is locked by the lock file %2, but the process it names (%3) no longer runs: a program ended without "
    "removing it. Remove it with 'rm %2' ('sudo rm %2' if another user made it) and try again.");
const char* const kStaleLockNoPid = QT_TRANSLATE_NOOP("cPortDoctor",
    "%1 is locked by the lock file %2, which names no process: a program ended without removing it. Remove it "
    "with 'rm %2' ('sudo rm %2' if another user made it) and try again.");
const char* const kModemManager = QT_TRANSLATE_NOOP("cPortDoctor",
    "ModemManager (process %1) is running: it probes %2 as a possible modem whenever it appears, sending it "
    "bytes and keeping it busy for several seconds. Stop it with 'sudo systemctl stop ModemManager' ('sudo "
    "systemctl disable ModemManager' keeps it off), or let it leave the device alone with a udev rule such as %3 "
    "in /etc/udev/rules.d/99-marlo.rules, then run 'sudo udevadm control --reload' and plug the device in again.");
// Who holds a device: a program's name, its process and where its program lies.
const char* const kWhoFull = QT_TRANSLATE_NOOP("cPortDoctor", "%1 (process %2, %3)");
const char* const kWhoNamed = QT_TRANSLATE_NOOP("cPortDoctor", "%1 (process %2)");
const char* const kWhoUnnamed = QT_TRANSLATE_NOOP("cPortDoctor", "process %1");
const char* const kVirtualGrip = QT_TRANSLATE_NOOP("cPortDoctor", "Virtual grip (demo)");

// A sentence with what fills its %1, %2, ...: shown in the user's language, English in JSON.
cText sentence(const char* source, QList<cText> arguments = {})
{
    return cText(cPortDoctor::kContext, source, std::move(arguments));
}

QString number(qint64 value) { return QString::number(value); }

// ---- known USB serial chips ---------------------------------------------------------------------

struct Chip {
    quint16 vendor;
    quint16 product;
    const char* name;
    const char* driver;
};

const Chip kChips[] = {
    {0x1a86, 0x7523, "QinHeng CH340", "ch341"},
    {0x1a86, 0x5523, "QinHeng CH341", "ch341"},
    {0x0403, 0x6001, "FTDI FT232R", "ftdi_sio"},
    {0x0403, 0x6010, "FTDI FT2232", "ftdi_sio"},
    {0x0403, 0x6011, "FTDI FT4232", "ftdi_sio"},
    {0x0403, 0x6014, "FTDI FT232H", "ftdi_sio"},
    {0x0403, 0x6015, "FTDI FT-X", "ftdi_sio"},
    {0x067b, 0x2303, "Prolific PL2303", "pl2303"},
    {0x067b, 0x23a3, "Prolific PL2303GC", "pl2303"},
    {0x10c4, 0xea60, "Silicon Labs CP210x", "cp210x"},
    {0x10c4, 0xea70, "Silicon Labs CP2105", "cp210x"},
    {0x0557, 0x2008, "ATEN UC-232A", "pl2303"},
};

const Chip* findChip(quint16 vendor, quint16 product)
{
    for (const Chip& chip : kChips) {
        if (chip.vendor == vendor && chip.product == product)
            return &chip;
    }
    return nullptr;
}

QString hex4(quint16 id)
{
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

QString modeText(uint mode)
{
    return QStringLiteral("%1").arg(mode, 4, 8, QLatin1Char('0'));
}

cText who(const cSystemFacts::Process& process)
{
    if (process.name.isEmpty())
        return sentence(kWhoUnnamed, {number(process.pid)});
    if (process.program.isEmpty())
        return sentence(kWhoNamed, {process.name, number(process.pid)});
    return sentence(kWhoFull, {process.name, number(process.pid), process.program});
}

// "/dev/ttyUSB10" after "/dev/ttyUSB9": the number at the end counts as a number.
bool naturalLess(const QString& a, const QString& b)
{
    const auto split = [](const QString& text) {
        qsizetype digits = text.size();
        while (digits > 0 && text.at(digits - 1).isDigit())
            --digits;
        return std::pair<QString, qulonglong>(text.left(digits), text.mid(digits).toULongLong());
    };
    const auto [stemA, numberA] = split(a);
    const auto [stemB, numberB] = split(b);
    if (stemA != stemB)
        return stemA < stemB;
    if (numberA != numberB)
        return numberA < numberB;
    return a < b;
}

} // namespace

QString cPortDoctor::ChipName(quint16 vendor, quint16 product)
{
    const Chip* chip = findChip(vendor, product);
    return chip ? QString::fromLatin1(chip->name) : QString();
}

QString cPortDoctor::ChipDriver(quint16 vendor, quint16 product)
{
    const Chip* chip = findChip(vendor, product);
    return chip ? QString::fromLatin1(chip->driver) : QString();
}

QStringList cPortDoctor::Sentences(const QString& device) const
{
    QStringList sentences;
    for (const Problem& problem : Diagnose(device))
        sentences << problem.text.Shown();
    return sentences;
}

QList<cPortDoctor::Problem> cPortDoctor::Diagnose(const QString& device) const
{
    const QString trimmed = device.trimmed();
    if (trimmed.isEmpty() || mSerialDevices::IsVirtualGrip(trimmed))
        return {};
    // A bare name means the device of that name in /dev, as the serial port takes it.
    const QString path = trimmed.startsWith(QLatin1Char('/')) ? trimmed : QStringLiteral("/dev/") + trimmed;
    const cSystemFacts::Node node = m_facts.DeviceNode(path);
    QList<Problem> problems;
    if (!node.exists) {
        problems << Problem{Problem::Kind::NotFound, sentence(kNotFound, {path})};
        // A USB serial device may be missing because its adapter is plugged in without one.
        const QString name = QFileInfo(path).fileName();
        if (name.startsWith(QLatin1String("ttyUSB")) || name.startsWith(QLatin1String("ttyACM")) ||
            path.startsWith(QLatin1String("/dev/serial/"))) {
            for (const Port& adapter : AdaptersWithoutDevice())
                problems << adapter.problems;
        }
        return problems;
    }
    if (const auto denied = permissionProblem(path, node))
        problems << *denied;
    problems << holderProblems(path, node);
    if (const auto modemManager = modemManagerProblem(path, node))
        problems << *modemManager;
    return problems;
}

std::optional<cPortDoctor::Problem> cPortDoctor::permissionProblem(const QString& path, const cSystemFacts::Node& node) const
{
    using Kind = Problem::Kind;
    const cSystemFacts::Identity user = m_facts.User();
    if (!user.known) {
        if (m_facts.Accessible(path))
            return std::nullopt;
        return Problem{Kind::PermissionDenied, sentence(kDenied, {path})};
    }
    if (user.uid == 0)
        return std::nullopt;
    const bool isOwner = node.owner == user.uid;
    const bool inGroup = user.groups.contains(node.group);
    const uint bits = isOwner ? (node.mode >> 6) & 06 : inGroup ? (node.mode >> 3) & 06 : node.mode & 06;
    if (bits == 06)
        return std::nullopt;
    // On this machine the system has the last word: an access list may let the user in.
    if (m_facts.IsMachine() && m_facts.Accessible(path))
        return std::nullopt;
    QString group = m_facts.GroupName(node.group);
    if (group.isEmpty())
        group = QString::number(node.group);
    const bool groupMay = ((node.mode >> 3) & 06) == 06;
    if (!isOwner && groupMay && !inGroup) {
        const bool listed = !user.userName.isEmpty() && (m_facts.GroupMembers(node.group).contains(user.userName) ||
                                                         m_facts.PrimaryGroupOf(user.userName) == node.group);
        if (listed)
            return Problem{Kind::NeedsNewLogin, sentence(kNewLogin, {path, group})};
        return Problem{Kind::PermissionDenied, sentence(kGroupDenied, {path, group, modeText(node.mode)})};
    }
    if (!isOwner && !groupMay) {
        QString owner = m_facts.UserName(node.owner);
        if (owner.isEmpty())
            owner = QString::number(node.owner);
        const QString kernelName = QFileInfo(node.canonical).fileName();
        return Problem{Kind::PermissionDenied, sentence(kOwnerOnly, {path, owner, modeText(node.mode), group, kernelName})};
    }
    return Problem{Kind::PermissionDenied, sentence(kDenied, {path})};
}

QList<cPortDoctor::Problem> cPortDoctor::holderProblems(const QString& path, const cSystemFacts::Node& node) const
{
    using Kind = Problem::Kind;
    QList<Problem> problems;
    QSet<qint64> named;
    for (const cSystemFacts::Process& holder : m_facts.ProcessesHolding(node.canonical)) {
        named.insert(holder.pid);
        problems << Problem{Kind::HeldByProgram, sentence(kHeldOpen, {path, who(holder), number(holder.pid)})};
    }
    // The lock file is named after the device as it was given ("serial_by-id_...") or after the
    // device it leads to ("ttyUSB0"), depending on the program that made it.
    QStringList names;
    QString given = path;
    if (given.startsWith(QLatin1String("/dev/")))
        given = given.mid(5);
    names << given.replace(QLatin1Char('/'), QLatin1Char('_'));
    const QString kernelName = QFileInfo(node.canonical).fileName();
    if (!names.contains(kernelName))
        names << kernelName;
    const qint64 self = m_facts.OwnPid();
    for (const QString& name : names) {
        for (const cSystemFacts::LockFile& lock : m_facts.LockFiles(name)) {
            if (lock.pid && *lock.pid == self)
                continue;
            const auto owner = lock.pid ? m_facts.ProcessInfo(*lock.pid) : std::nullopt;
            if (owner) {
                if (!named.contains(owner->pid)) {
                    named.insert(owner->pid);
                    problems << Problem{Kind::HeldByProgram, sentence(kHeldByLock, {path, who(*owner), number(owner->pid), lock.path})};
                }
            } else if (lock.pid) {
                problems << Problem{Kind::StaleLock, sentence(kStaleLock, {path, lock.path, number(*lock.pid)})};
            } else {
                problems << Problem{Kind::StaleLock, sentence(kStaleLockNoPid, {path, lock.path})};
            }
        }
    }
    return problems;
}

std::optional<cPortDoctor::Problem> cPortDoctor::modemManagerProblem(const QString& path, const cSystemFacts::Node& node) const
{
    const QString kernelName = QFileInfo(node.canonical).fileName();
    if (!kernelName.startsWith(QLatin1String("ttyACM")))
        return std::nullopt;
    const QList<cSystemFacts::Process> running = m_facts.ProcessesNamed(QStringLiteral("ModemManager"));
    if (running.isEmpty())
        return std::nullopt;
    // The rule names the device by its USB identity where known, so that it holds whatever
    // number the device gets next time.
    QString rule = QStringLiteral("KERNEL==\"%1\", ENV{ID_MM_DEVICE_IGNORE}=\"1\"").arg(kernelName);
    for (const cSystemFacts::Tty& tty : m_facts.SerialTtys()) {
        if (tty.name == kernelName && tty.vendor && tty.product)
            rule = QStringLiteral("ATTRS{idVendor}==\"%1\", ATTRS{idProduct}==\"%2\", ENV{ID_MM_DEVICE_IGNORE}=\"1\"")
                       .arg(hex4(*tty.vendor), hex4(*tty.product));
    }
    return Problem{Problem::Kind::ModemManager, sentence(kModemManager, {number(running.first().pid), path, rule})};
}

cPortDoctor::Problem cPortDoctor::adapterProblem(const cSystemFacts::UsbDevice& device) const
{
    using Kind = Problem::Kind;
    QString chip = ChipName(device.vendor, device.product);
    if (chip.isEmpty())
        chip = device.description.isEmpty() ? QStringLiteral("USB") : device.description;
    const QString adapter = QStringLiteral("%1, USB %2:%3").arg(chip, hex4(device.vendor), hex4(device.product));
    const QList<cSystemFacts::Process> brltty = m_facts.ProcessesNamed(QStringLiteral("brltty"));
    if (!brltty.isEmpty())
        return Problem{Kind::ClaimedByBrltty, sentence(kBrltty, {adapter, number(brltty.first().pid)})};
    if (device.drivers.contains(QLatin1String("usbfs")))
        return Problem{Kind::NoDeviceForAdapter, sentence(kUsbfs, {adapter})};
    QString driver = ChipDriver(device.vendor, device.product);
    if (driver.isEmpty())
        driver = QStringLiteral("cdc_acm");
    if (!device.drivers.isEmpty())
        return Problem{Kind::NoDeviceForAdapter, sentence(kOtherDriver, {adapter, device.drivers.first(), driver})};
    return Problem{Kind::NoDeviceForAdapter, sentence(kNoDriver, {adapter, driver})};
}

QList<cPortDoctor::Port> cPortDoctor::AdaptersWithoutDevice() const
{
    QList<Port> adapters;
    for (const cSystemFacts::UsbDevice& device : m_facts.UsbDevices()) {
        const bool serial = findChip(device.vendor, device.product) || device.cdcAcm;
        if (!serial || !device.ttys.isEmpty())
            continue;
        Port port;
        port.path = QStringLiteral("/sys/bus/usb/devices/") + device.name;
        port.description = device.description.isEmpty() ? ChipName(device.vendor, device.product) : device.description;
        port.manufacturer = device.manufacturer;
        port.vendor = device.vendor;
        port.product = device.product;
        port.problems << adapterProblem(device);
        adapters << port;
    }
    return adapters;
}

QList<cPortDoctor::Port> cPortDoctor::Ports() const
{
    QList<Port> ports;
    for (const cSystemFacts::Tty& tty : m_facts.SerialTtys())
        ports << Port{tty.path, tty.description, tty.manufacturer, tty.vendor, tty.product, {}};
    if (m_facts.IsMachine()) {
        // Qt's own view adds the names it gives devices and the ports it finds elsewhere.
        for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
            auto known = std::find_if(ports.begin(), ports.end(), [&](const Port& port) { return port.path == info.systemLocation(); });
            if (known == ports.end()) {
                if (QFileInfo::exists(QStringLiteral("/sys/class/tty/") + info.portName()))
                    continue; // left out above on purpose (no UART behind it)
                ports << Port{info.systemLocation(), {}, {}, {}, {}, {}};
                known = ports.end() - 1;
            }
            if (!info.description().trimmed().isEmpty())
                known->description = info.description().trimmed();
            if (!info.manufacturer().trimmed().isEmpty())
                known->manufacturer = info.manufacturer().trimmed();
            if (!known->vendor && info.hasVendorIdentifier())
                known->vendor = info.vendorIdentifier();
            if (!known->product && info.hasProductIdentifier())
                known->product = info.productIdentifier();
        }
    }
    std::sort(ports.begin(), ports.end(), [](const Port& a, const Port& b) { return naturalLess(a.path, b.path); });
    for (Port& port : ports)
        port.problems = Diagnose(port.path);
    ports << AdaptersWithoutDevice();
    ports << Port{mSerialDevices::kVirtualGrip, QString::fromUtf8(kVirtualGrip), {}, {}, {}, {}};
    return ports;
}
