#pragma once
// A machine laid out in a temporary folder for cSystemFacts: device nodes, processes with their
// open files, lock files, users and groups, ttys and USB devices in /sys. The files belong to the
// test's own user and group; the user the facts see is written into proc/self/status, so a test
// chooses whether that user owns a node or is in its group.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

class FakeSystem {
public:
    FakeSystem() = default;

    QString root() const { return m_dir.path(); }
    QString host(const QString& path) const { return m_dir.path() + path; }
    // The owner and group every file made here has.
    static uint fileOwner() { return ::getuid(); }
    static uint fileGroup() { return ::getgid(); }

    // A file with the given content (folders made as needed).
    bool write(const QString& path, const QByteArray& content) const
    {
        QDir().mkpath(QFileInfo(host(path)).path());
        QFile file(host(path));
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
    }
    bool append(const QString& path, const QByteArray& line) const
    {
        QDir().mkpath(QFileInfo(host(path)).path());
        QFile file(host(path));
        return file.open(QIODevice::Append) && file.write(line) == line.size();
    }
    // A symbolic link at path whose text is target (relative or absolute, as the system writes it).
    bool link(const QString& path, const QString& target) const
    {
        QDir().mkpath(QFileInfo(host(path)).path());
        return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(host(path)).constData()) == 0;
    }
    bool mkdir(const QString& path) const { return QDir().mkpath(host(path)); }

    // A device node (a plain file stands in) with its permission bits.
    bool node(const QString& path, uint mode = 0660) const
    {
        return write(path, QByteArray()) && ::chmod(QFile::encodeName(host(path)).constData(), mode) == 0;
    }

    // The user the facts see: uid, the session's groups, and the name /etc/passwd gives it.
    bool user(uint uid, const QList<uint>& groups, const QString& name = QStringLiteral("player")) const
    {
        // The real, effective, saved and file-system ids, all the same.
        const auto ids = [](uint id) { return QList<QByteArray>(4, QByteArray::number(id)).join('\t'); };
        const uint primary = groups.isEmpty() ? 100000 : groups.first();
        QByteArray status = "Name:\tmarlo\nUid:\t" + ids(uid) + "\nGid:\t" + ids(primary) + "\nGroups:\t";
        for (uint group : groups)
            status += QByteArray::number(group) + ' ';
        status += "\nVmPeak:\t   1000 kB\n";
        return write(QStringLiteral("/proc/self/status"), status) &&
               append(QStringLiteral("/etc/passwd"), name.toUtf8() + ":x:" + QByteArray::number(uid) + ":" + QByteArray::number(primary) +
                                                         "::/home/" + name.toUtf8() + ":/bin/sh\n");
    }
    bool group(const QString& name, uint gid, const QStringList& members = {}) const
    {
        return append(QStringLiteral("/etc/group"), name.toUtf8() + ":x:" + QByteArray::number(gid) + ":" + members.join(',').toUtf8() + "\n");
    }

    // A running process: its short name, its program (empty: none readable) and the files it has open.
    bool process(qint64 pid, const QString& name, const QString& program = {}, const QStringList& openFiles = {}) const
    {
        const QString folder = QStringLiteral("/proc/%1").arg(pid);
        bool ok = write(folder + QStringLiteral("/comm"), name.toUtf8() + "\n") && mkdir(folder + QStringLiteral("/fd"));
        if (!program.isEmpty())
            ok = ok && link(folder + QStringLiteral("/exe"), program);
        int fd = 0;
        ok = ok && link(folder + QStringLiteral("/fd/%1").arg(fd++), QStringLiteral("/dev/null"));
        for (const QString& file : openFiles)
            ok = ok && link(folder + QStringLiteral("/fd/%1").arg(fd++), file);
        return ok;
    }

    // A tty in /sys/class/tty with its device; usbDevice (such as "1-1") puts it below that USB
    // device's interface, with the identity given.
    bool tty(const QString& name, const QString& usbDevice = {}, quint16 vendor = 0, quint16 product = 0,
             const QString& productText = {}, const QString& manufacturer = {}) const
    {
        QString device;
        if (usbDevice.isEmpty()) {
            device = QStringLiteral("/sys/devices/platform/serial8250/%1").arg(name);
            if (!mkdir(device) || !write(QStringLiteral("/sys/devices/platform/serial8250/tty/%1/type").arg(name), "4\n"))
                return false;
        } else {
            const QString usb = usbFolder(usbDevice);
            if (!usbDeviceFiles(usbDevice, vendor, product, productText, manufacturer))
                return false;
            const QString interfaceFolder = usb + QLatin1Char('/') + usbDevice + QStringLiteral(":1.0");
            device = name.startsWith(QLatin1String("ttyACM")) ? interfaceFolder : interfaceFolder + QLatin1Char('/') + name;
            if (!mkdir(device))
                return false;
            if (name.startsWith(QLatin1String("ttyACM")))
                ok(mkdir(interfaceFolder + QStringLiteral("/tty/") + name));
            if (!QFileInfo::exists(host(QStringLiteral("/sys/bus/usb/devices/%1:1.0").arg(usbDevice))))
                ok(link(QStringLiteral("/sys/bus/usb/devices/%1:1.0").arg(usbDevice),
                        QStringLiteral("../../..") + interfaceFolder.mid(4)));
        }
        const QString classEntry = QStringLiteral("/sys/class/tty/") + name;
        const QString ttyFolder = usbDevice.isEmpty() ? QStringLiteral("/sys/devices/platform/serial8250/tty/") + name
                                                      : device + QStringLiteral("/tty/") + name;
        return mkdir(ttyFolder) && link(ttyFolder + QStringLiteral("/device"), relative(ttyFolder, device)) &&
               link(classEntry, QStringLiteral("../..") + ttyFolder.mid(4)) && m_ok;
    }
    // A serial port of the chip set without a UART behind it (type 0).
    bool ttyWithoutUart(const QString& name) const
    {
        return tty(name) && write(QStringLiteral("/sys/devices/platform/serial8250/tty/%1/type").arg(name), "0\n");
    }

    // A USB device without a tty: driver is its interface's driver (empty: none), cdcAcm makes
    // its interface one of the modem class.
    bool usbAdapter(const QString& usbDevice, quint16 vendor, quint16 product, const QString& productText = {},
                    const QString& driver = {}, bool cdcAcm = false) const
    {
        if (!usbDeviceFiles(usbDevice, vendor, product, productText, QString()))
            return false;
        const QString interfaceFolder = usbFolder(usbDevice) + QLatin1Char('/') + usbDevice + QStringLiteral(":1.0");
        bool done = mkdir(interfaceFolder) &&
                    write(interfaceFolder + QStringLiteral("/bInterfaceClass"), cdcAcm ? "02\n" : "ff\n") &&
                    write(interfaceFolder + QStringLiteral("/bInterfaceSubClass"), cdcAcm ? "02\n" : "01\n") &&
                    link(QStringLiteral("/sys/bus/usb/devices/%1:1.0").arg(usbDevice), QStringLiteral("../../..") + interfaceFolder.mid(4));
        if (!driver.isEmpty())
            done = done && link(interfaceFolder + QStringLiteral("/driver"), QStringLiteral("../../../../../../bus/usb/drivers/") + driver);
        return done;
    }

private:
    static QString usbFolder(const QString& usbDevice) { return QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb1/") + usbDevice; }

    bool usbDeviceFiles(const QString& usbDevice, quint16 vendor, quint16 product, const QString& productText,
                        const QString& manufacturer) const
    {
        const QString usb = usbFolder(usbDevice);
        if (QFileInfo::exists(host(usb + QStringLiteral("/idVendor"))))
            return true;
        const auto hex = [](quint16 id) { return QByteArray::number(id, 16).rightJustified(4, '0') + '\n'; };
        bool done = write(usb + QStringLiteral("/idVendor"), hex(vendor)) && write(usb + QStringLiteral("/idProduct"), hex(product)) &&
                    link(QStringLiteral("/sys/bus/usb/devices/") + usbDevice, QStringLiteral("../../..") + usb.mid(4));
        if (!productText.isEmpty())
            done = done && write(usb + QStringLiteral("/product"), productText.toUtf8() + '\n');
        if (!manufacturer.isEmpty())
            done = done && write(usb + QStringLiteral("/manufacturer"), manufacturer.toUtf8() + '\n');
        return done;
    }
    // The link text that leads from folder `from` to `to` (both system paths below /sys).
    static QString relative(const QString& from, const QString& to) { return QDir(from).relativeFilePath(to); }
    void ok(bool done) const { m_ok = m_ok && done; }

    QTemporaryDir m_dir;
    mutable bool m_ok = true;
};
