#pragma once
// What the system shows any user about its serial devices, read below a root folder: "/" for
// this machine, a folder of their own for the tests (which lay out the same files there). The
// device nodes in /dev, the ttys and USB devices in /sys, the processes in /proc (their names,
// programs and open files), the user's groups (/proc/self/status, /etc/passwd, /etc/group) and
// the serial lock files (/var/lock, /run/lock and the other folders programs use).
// Paths given and answered are the system's ("/dev/ttyUSB0"), never the folder below the root.
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

class cSystemFacts {
public:
    // root: the folder that stands for "/" (empty means "/").
    explicit cSystemFacts(const QString& root = QStringLiteral("/"));

    // True when the facts are this machine's own (the root is "/").
    bool IsMachine() const { return m_root.isEmpty(); }
    // The file below the root for a system path.
    QString HostPath(const QString& systemPath) const;
    // The system path of a file below the root (empty when it lies outside the root).
    QString SystemPath(const QString& hostPath) const;

    struct Node {
        bool exists = false;
        QString canonical;  // the node the path leads to, symbolic links followed (system path)
        uint owner = 0;
        uint group = 0;
        uint mode = 0;      // permission bits (0660)
    };
    Node DeviceNode(const QString& path) const;

    struct Process {
        qint64 pid = 0;
        QString name;     // its short name (/proc/<pid>/comm)
        QString program;  // where its program lies (/proc/<pid>/exe, else its first word); may be empty
    };
    std::optional<Process> ProcessInfo(qint64 pid) const;
    // The processes whose name is exactly name ("ModemManager", "brltty").
    QList<Process> ProcessesNamed(const QString& name) const;
    // The processes that have the device open (their open files that lead to it), this one excluded.
    QList<Process> ProcessesHolding(const QString& canonicalDevice) const;
    // This program's own process on this machine (0 with a test root, whose processes are made up).
    qint64 OwnPid() const;

    struct Identity {
        bool known = false;  // /proc/self/status could be read
        uint uid = 0;        // effective user
        QList<uint> groups;  // effective group and supplementary groups of this session
        QString userName;    // from /etc/passwd, empty when not listed
        uint primaryGroup = 0;
    };
    Identity User() const;
    // Names from /etc/group and /etc/passwd; empty when not listed.
    QString GroupName(uint gid) const;
    QString UserName(uint uid) const;
    // The users /etc/group lists as members of the group gid.
    QStringList GroupMembers(uint gid) const;
    // The primary group /etc/passwd gives a user (nullopt when not listed).
    std::optional<uint> PrimaryGroupOf(const QString& userName) const;
    // The current user may read and write the file (the system's own answer, ACLs included).
    bool Accessible(const QString& path) const;

    struct LockFile {
        QString path;          // system path, "/var/lock/LCK..ttyUSB0"
        std::optional<qint64> pid;  // the process it names, if it names one
    };
    // Serial lock files of the device, one per file (a folder that links to another counts once).
    QList<LockFile> LockFiles(const QString& deviceName) const;

    struct Tty {
        QString name;        // ttyUSB0
        QString path;        // /dev/ttyUSB0
        QString description; // the USB device's product text, if any
        QString manufacturer;
        std::optional<quint16> vendor;
        std::optional<quint16> product;
    };
    // The ttys with a device behind them (/sys/class/tty/*/device), serial ports without a UART
    // (type 0) left out; by name.
    QList<Tty> SerialTtys() const;

    struct UsbDevice {
        QString name;        // 1-1.2
        quint16 vendor = 0;
        quint16 product = 0;
        QString description; // product text
        QString manufacturer;
        QStringList drivers; // the driver of each interface that has one
        QStringList ttys;    // the ttys its interfaces made
        bool cdcAcm = false; // an interface of the modem class (CDC ACM)
    };
    // The USB devices (/sys/bus/usb/devices), root hubs included; by name.
    QList<UsbDevice> UsbDevices() const;

private:
    QString readText(const QString& systemPath) const;
    QList<qint64> pids() const;

    QString m_root;  // without a trailing slash; empty for "/"
};
