#pragma once
// The serial devices a user can choose from: the ports present on this machine with what is
// known about them, the path a port number stands for, and whether the current user may open a
// device (on Linux, serial devices belong to the group "dialout").
#include <QList>
#include <QString>
#include <optional>

namespace mSerialDevices {

inline const QString kModule = QStringLiteral("mSerialDevices");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// The device text of the built-in virtual grip.
inline const QString kVirtualGrip = QStringLiteral("sim");

struct PortEntry {
    QString path;         // /dev/ttyUSB0
    QString description;  // "FT232R USB UART"
    QString manufacturer; // "FTDI"
    std::optional<quint16> vendor;
    std::optional<quint16> product;
};

// The serial ports present now, by path.
QList<PortEntry> AvailablePorts();

// "/dev/ttyUSB0 - FT232R USB UART (FTDI, USB 0403:6001)"; only the path when nothing is known. In
// the user's language.
QString DisplayText(const PortEntry& port);

// The path the port number N stands for when no device is named: /dev/ttyS(N-1).
QString PortPath(qint32 commPort);

// True for "sim" and "sim:KEY=VALUE,...".
bool IsVirtualGrip(const QString& device);

// The path that opening will use for a device text and a port number (empty device: the port
// number decides); empty for the virtual grip, which has no path before it starts.
QString EffectivePath(const QString& device, qint32 commPort);

// Everything that stands in the way of the device on this machine (cPortDoctor's sentences, one
// problem a line); empty when nothing does, for the virtual grip and for no device.
QString Diagnosis(const QString& path);

} // namespace mSerialDevices
