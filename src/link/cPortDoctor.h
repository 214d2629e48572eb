#pragma once
// What stands in the way of using a serial device, as sentences that say what to do: a device
// that does not exist (and a USB serial adapter that has no device because brltty took it or no
// driver did), permission denied (the device's group, such as dialout, and how to join it), a
// program that holds the device or a stale lock file that keeps it, and ModemManager probing a
// modem-class device (ttyACM). Also the list of the serial ports of the machine with the same
// diagnosis for each. Everything is read through cSystemFacts, below its root folder.
#include "base/cText.h"
#include "link/cSystemFacts.h"

#include <QList>
#include <QString>
#include <optional>

class cPortDoctor {
public:
    static inline const QString kModule = QStringLiteral("cPortDoctor");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    // The translation context of the sentences.
    static constexpr const char* kContext = "cPortDoctor";

    struct Problem {
        enum class Kind {
            NotFound,           // no such device
            NoDeviceForAdapter, // a USB serial adapter without a device: no driver took it
            ClaimedByBrltty,    // a USB serial adapter without a device: brltty took it
            PermissionDenied,   // the device's mode and group keep this user out
            NeedsNewLogin,      // the user was added to the device's group, but this session is older
            HeldByProgram,      // a running program has the device open or holds its lock file
            StaleLock,          // a lock file whose program no longer runs
            ModemManager,       // ModemManager runs and probes modem-class devices
        };
        Kind kind;
        cText text; // English in JSON, in the user's language where it is shown
    };

    struct Port {
        QString path;         // /dev/ttyUSB0; "sim" for the virtual grip; the USB device's folder
                              // in /sys for an adapter without a device
        QString description;  // what the system says; the virtual grip's is the program's own, in
                              // English (shown translated in kContext)
        QString manufacturer;
        std::optional<quint16> vendor;
        std::optional<quint16> product;
        QList<Problem> problems;
    };

    explicit cPortDoctor(const cSystemFacts& facts) : m_facts(facts) {}

    // What stands in the way of the device (a path, or "sim[:...]" for the virtual grip, which
    // has nothing in the way); empty when nothing does, or when no device is given.
    QList<Problem> Diagnose(const QString& device) const;
    // The same as sentences, in the user's language.
    QStringList Sentences(const QString& device) const;

    // The serial ports of the machine (from /sys, and what QSerialPortInfo knows when the facts
    // are this machine's), then the USB serial adapters that have no device, then the virtual
    // grip; each with its diagnosis.
    QList<Port> Ports() const;

    // The adapters of a known kind of USB serial chip, or of the modem class, that made no tty.
    QList<Port> AdaptersWithoutDevice() const;

    // The name of a known USB serial chip ("QinHeng CH340") and its kernel driver ("ch341"),
    // empty when the pair is not known.
    static QString ChipName(quint16 vendor, quint16 product);
    static QString ChipDriver(quint16 vendor, quint16 product);

private:
    std::optional<Problem> permissionProblem(const QString& path, const cSystemFacts::Node& node) const;
    QList<Problem> holderProblems(const QString& path, const cSystemFacts::Node& node) const;
    std::optional<Problem> modemManagerProblem(const QString& path, const cSystemFacts::Node& node) const;
    Problem adapterProblem(const cSystemFacts::UsbDevice& device) const;

    const cSystemFacts& m_facts;
};
