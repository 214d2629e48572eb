#include "link/cSystemFacts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// Where serial lock files are kept ("LCK..ttyUSB0"): Qt's serial port uses the first of these it
// may write, other programs (minicom, uucp, lockdev) one of the others.
const char* const kLockFolders[] = {"/var/lock", "/run/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp",
                                    "/tmp", "/var/tmp", "/var/lock/lockdev"};

// A symbolic link's target as written in it (empty when the file is no link).
QString linkText(const QString& hostPath)
{
    QByteArray buffer(4096, '\0');
    const ssize_t length = ::readlink(QFile::encodeName(hostPath).constData(), buffer.data(), static_cast<size_t>(buffer.size()));
    return length > 0 ? QFile::decodeName(buffer.left(length)) : QString();
}

std::optional<quint16> hexId(const QString& text)
{
    bool ok = false;
    const uint value = text.toUInt(&ok, 16);
    if (!ok || value > 0xFFFF)
        return std::nullopt;
    return static_cast<quint16>(value);
}

std::optional<uint> number(const QString& text)
{
    bool ok = false;
    const uint value = text.toUInt(&ok);
    return ok ? std::optional<uint>(value) : std::nullopt;
}

// One line of /etc/passwd or /etc/group split at its colons.
QList<QStringList> colonFile(const QString& text)
{
    QList<QStringList> rows;
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!line.startsWith(QLatin1Char('#')))
            rows << line.split(QLatin1Char(':'));
    }
    return rows;
}

const QDir::Filters kEverything = QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;

} // namespace

cSystemFacts::cSystemFacts(const QString& root)
{
    const QString canonical = QFileInfo(root.isEmpty() ? QStringLiteral("/") : root).canonicalFilePath();
    m_root = canonical.isEmpty() ? QDir::cleanPath(QDir(root).absolutePath()) : canonical;
    if (m_root == QLatin1String("/"))
        m_root.clear();
}

QString cSystemFacts::HostPath(const QString& systemPath) const
{
    const QString clean = QDir::cleanPath(systemPath.startsWith(QLatin1Char('/')) ? systemPath : QLatin1Char('/') + systemPath);
    return m_root + clean;
}

QString cSystemFacts::SystemPath(const QString& hostPath) const
{
    if (IsMachine())
        return hostPath;
    if (hostPath == m_root)
        return QStringLiteral("/");
    if (hostPath.startsWith(m_root + QLatin1Char('/')))
        return hostPath.mid(m_root.size());
    return QString();
}

QString cSystemFacts::readText(const QString& systemPath) const
{
    QFile file(HostPath(systemPath));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    // Files of /proc and /sys are small; a bound keeps a strange one from costing much.
    return QString::fromUtf8(file.read(1 << 20)).trimmed();
}

cSystemFacts::Node cSystemFacts::DeviceNode(const QString& path) const
{
    Node node;
    // Links are followed by hand so that a link to an absolute path stays below the root.
    QString host = HostPath(path);
    for (int hop = 0; hop < 16; ++hop) {
        const QString target = linkText(host);
        if (target.isEmpty())
            break;
        host = target.startsWith(QLatin1Char('/')) ? HostPath(target)
                                                   : QDir::cleanPath(QFileInfo(host).absolutePath() + QLatin1Char('/') + target);
    }
    const QFileInfo info(host);
    struct stat status {};
    if (!info.exists() || ::stat(QFile::encodeName(host).constData(), &status) != 0)
        return node;
    node.exists = true;
    node.canonical = SystemPath(info.canonicalFilePath());
    if (node.canonical.isEmpty())
        node.canonical = path;
    node.owner = status.st_uid;
    node.group = status.st_gid;
    node.mode = status.st_mode & 07777;
    return node;
}

std::optional<cSystemFacts::Process> cSystemFacts::ProcessInfo(qint64 pid) const
{
    const QString folder = QStringLiteral("/proc/%1").arg(pid);
    if (pid <= 0 || !QFileInfo(HostPath(folder)).isDir())
        return std::nullopt;
    Process process;
    process.pid = pid;
    process.name = readText(folder + QStringLiteral("/comm"));
    process.program = linkText(HostPath(folder + QStringLiteral("/exe")));
    process.program.remove(QStringLiteral(" (deleted)"));
    if (process.program.isEmpty()) {
        // Another user's program: its command line is still readable.
        QFile cmdline(HostPath(folder + QStringLiteral("/cmdline")));
        if (cmdline.open(QIODevice::ReadOnly))
            process.program = QString::fromLocal8Bit(cmdline.read(4096).split('\0').value(0));
    }
    return process;
}

QList<qint64> cSystemFacts::pids() const
{
    QList<qint64> pids;
    for (const QString& entry : QDir(HostPath(QStringLiteral("/proc"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        if (isPid && pid > 0)
            pids << pid;
    }
    std::sort(pids.begin(), pids.end());
    return pids;
}

QList<cSystemFacts::Process> cSystemFacts::ProcessesNamed(const QString& name) const
{
    // Only the short names are read of every process; the rest of the ones that match.
    QList<Process> found;
    for (qint64 pid : pids()) {
        if (readText(QStringLiteral("/proc/%1/comm").arg(pid)) == name) {
            if (const auto process = ProcessInfo(pid))
                found << *process;
        }
    }
    return found;
}

qint64 cSystemFacts::OwnPid() const
{
    return IsMachine() ? QCoreApplication::applicationPid() : 0;
}

QList<cSystemFacts::Process> cSystemFacts::ProcessesHolding(const QString& canonicalDevice) const
{
    QList<Process> holders;
    if (canonicalDevice.isEmpty())
        return holders;
    const qint64 self = OwnPid();
    for (qint64 pid : pids()) {
        if (pid == self)
            continue;
        // Another user's open files cannot be read: those holders stay unknown here (their
        // lock file may still name them).
        const QDir fds(HostPath(QStringLiteral("/proc/%1/fd").arg(pid)));
        for (const QString& fd : fds.entryList(kEverything)) {
            if (linkText(fds.filePath(fd)) == canonicalDevice) {
                if (const auto process = ProcessInfo(pid))
                    holders << *process;
                break;
            }
        }
    }
    return holders;
}

cSystemFacts::Identity cSystemFacts::User() const
{
    Identity identity;
    const QString status = readText(QStringLiteral("/proc/self/status"));
    std::optional<uint> uid;
    std::optional<uint> gid;
    QList<uint> groups;
    for (const QString& line : status.split(QLatin1Char('\n'))) {
        const QStringList fields = line.split(QLatin1Char('\t'), Qt::SkipEmptyParts).join(QLatin1Char(' ')).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (fields.isEmpty())
            continue;
        // "Uid:  real effective saved filesystem"; the effective one decides access.
        if (fields[0] == QLatin1String("Uid:") && fields.size() >= 3)
            uid = number(fields[2]);
        else if (fields[0] == QLatin1String("Gid:") && fields.size() >= 3)
            gid = number(fields[2]);
        else if (fields[0] == QLatin1String("Groups:")) {
            for (qsizetype i = 1; i < fields.size(); ++i) {
                if (const auto group = number(fields[i]))
                    groups << *group;
            }
        }
    }
    if (!uid || !gid)
        return identity;
    identity.known = true;
    identity.uid = *uid;
    identity.groups = QList<uint>{*gid} + groups;
    identity.userName = UserName(*uid);
    identity.primaryGroup = PrimaryGroupOf(identity.userName).value_or(*gid);
    return identity;
}

QString cSystemFacts::GroupName(uint gid) const
{
    for (const QStringList& row : colonFile(readText(QStringLiteral("/etc/group")))) {
        if (row.size() >= 3 && number(row[2]) == gid)
            return row[0];
    }
    return QString();
}

QString cSystemFacts::UserName(uint uid) const
{
    for (const QStringList& row : colonFile(readText(QStringLiteral("/etc/passwd")))) {
        if (row.size() >= 4 && number(row[2]) == uid)
            return row[0];
    }
    return QString();
}

QStringList cSystemFacts::GroupMembers(uint gid) const
{
    for (const QStringList& row : colonFile(readText(QStringLiteral("/etc/group")))) {
        if (row.size() >= 4 && number(row[2]) == gid)
            return row[3].split(QLatin1Char(','), Qt::SkipEmptyParts);
    }
    return {};
}

std::optional<uint> cSystemFacts::PrimaryGroupOf(const QString& userName) const
{
    if (userName.isEmpty())
        return std::nullopt;
    for (const QStringList& row : colonFile(readText(QStringLiteral("/etc/passwd")))) {
        if (row.size() >= 4 && row[0] == userName)
            return number(row[3]);
    }
    return std::nullopt;
}

bool cSystemFacts::Accessible(const QString& path) const
{
    return ::access(QFile::encodeName(HostPath(path)).constData(), R_OK | W_OK) == 0;
}

QList<cSystemFacts::LockFile> cSystemFacts::LockFiles(const QString& deviceName) const
{
    QList<LockFile> locks;
    if (deviceName.isEmpty() || deviceName.contains(QLatin1Char('/')))
        return locks;
    QSet<QString> seen;
    for (const char* folder : kLockFolders) {
        const QString path = QString::fromLatin1(folder) + QStringLiteral("/LCK..") + deviceName;
        const QFileInfo info(HostPath(path));
        if (!info.isFile() || seen.contains(info.canonicalFilePath()))
            continue;
        seen.insert(info.canonicalFilePath());
        LockFile lock;
        lock.path = path;
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray head = file.read(64);
            // Text lock files hold "      1234\n" (Qt adds the program and host on more lines);
            // the oldest programs wrote the number as four bytes.
            bool ok = false;
            const qint64 pid = head.split('\n').value(0).trimmed().toLongLong(&ok);
            if (ok && pid > 0) {
                lock.pid = pid;
            } else if (head.size() == 4) {
                qint32 binary = 0;
                std::memcpy(&binary, head.constData(), sizeof binary);
                if (binary > 0)
                    lock.pid = binary;
            }
        }
        locks << lock;
    }
    return locks;
}

QList<cSystemFacts::Tty> cSystemFacts::SerialTtys() const
{
    QList<Tty> ttys;
    const QString classFolder = QStringLiteral("/sys/class/tty");
    for (const QString& name : QDir(HostPath(classFolder)).entryList(kEverything, QDir::Name)) {
        const QString base = classFolder + QLatin1Char('/') + name;
        const QFileInfo device(HostPath(base + QStringLiteral("/device")));
        if (!device.exists())
            continue;
        // A serial port of the chip set without a UART behind it says type 0.
        if (readText(base + QStringLiteral("/type")) == QLatin1String("0"))
            continue;
        Tty tty;
        tty.name = name;
        tty.path = QStringLiteral("/dev/") + name;
        // The USB device is a few folders above the tty's device (its interface, then the device).
        QString folder = SystemPath(device.canonicalFilePath());
        for (int up = 0; up < 4 && folder.size() > 1; ++up) {
            if (QFileInfo::exists(HostPath(folder + QStringLiteral("/idVendor")))) {
                tty.vendor = hexId(readText(folder + QStringLiteral("/idVendor")));
                tty.product = hexId(readText(folder + QStringLiteral("/idProduct")));
                tty.description = readText(folder + QStringLiteral("/product"));
                tty.manufacturer = readText(folder + QStringLiteral("/manufacturer"));
                break;
            }
            folder = QFileInfo(folder).path();
        }
        ttys << tty;
    }
    return ttys;
}

QList<cSystemFacts::UsbDevice> cSystemFacts::UsbDevices() const
{
    QList<UsbDevice> devices;
    const QString busFolder = QStringLiteral("/sys/bus/usb/devices");
    const QStringList entries = QDir(HostPath(busFolder)).entryList(kEverything, QDir::Name);
    for (const QString& name : entries) {
        const QString base = busFolder + QLatin1Char('/') + name;
        if (name.contains(QLatin1Char(':')))
            continue;
        const auto vendor = hexId(readText(base + QStringLiteral("/idVendor")));
        const auto product = hexId(readText(base + QStringLiteral("/idProduct")));
        if (!vendor || !product)
            continue;
        UsbDevice device;
        device.name = name;
        device.vendor = *vendor;
        device.product = *product;
        device.description = readText(base + QStringLiteral("/product"));
        device.manufacturer = readText(base + QStringLiteral("/manufacturer"));
        for (const QString& interfaceName : entries) {
            if (!interfaceName.startsWith(name + QLatin1Char(':')))
                continue;
            const QString interfaceFolder = busFolder + QLatin1Char('/') + interfaceName;
            const QString driver = linkText(HostPath(interfaceFolder + QStringLiteral("/driver")));
            if (!driver.isEmpty())
                device.drivers << QFileInfo(driver).fileName();
            if (readText(interfaceFolder + QStringLiteral("/bInterfaceClass")) == QLatin1String("02") &&
                readText(interfaceFolder + QStringLiteral("/bInterfaceSubClass")) == QLatin1String("02"))
                device.cdcAcm = true;
            // A USB serial driver puts its tty beside the interface's files, the modem driver
            // one folder further down ("tty/ttyACM0").
            const QDir interfaceDir(HostPath(interfaceFolder));
            for (const QString& child : interfaceDir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
                if (child == QLatin1String("tty"))
                    device.ttys << QDir(interfaceDir.filePath(child)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
                else if (child.startsWith(QLatin1String("tty")))
                    device.ttys << child;
            }
        }
        devices << device;
    }
    return devices;
}
