#include "link/mSerialDevices.h"

#include "link/cPortDoctor.h"
#include "link/cSerialPort.h"
#include "link/cSystemFacts.h"

#include <QCoreApplication>
#include <QSerialPortInfo>
#include <algorithm>

namespace mSerialDevices {

QList<PortEntry> AvailablePorts()
{
    QList<PortEntry> ports;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        PortEntry port;
        port.path = info.systemLocation();
        port.description = info.description().trimmed();
        port.manufacturer = info.manufacturer().trimmed();
        if (info.hasVendorIdentifier())
            port.vendor = info.vendorIdentifier();
        if (info.hasProductIdentifier())
            port.product = info.productIdentifier();
        ports.append(port);
    }
    std::sort(ports.begin(), ports.end(), [](const PortEntry& a, const PortEntry& b) { return a.path < b.path; });
    return ports;
}

QString DisplayText(const PortEntry& port)
{
    const auto hex = [](quint16 id) { return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0')); };
    QStringList known;
    if (!port.manufacturer.isEmpty() && port.manufacturer != port.description)
        known << port.manufacturer;
    if (port.vendor && port.product)
        known << QStringLiteral("USB %1:%2").arg(hex(*port.vendor), hex(*port.product));
    else if (port.vendor)
        known << QCoreApplication::translate("mSerialDevices", "USB vendor %1").arg(hex(*port.vendor));
    QString text = port.path;
    if (!port.description.isEmpty())
        text += QStringLiteral(" - ") + port.description;
    if (!known.isEmpty())
        text += QStringLiteral(" (") + known.join(QStringLiteral(", ")) + QStringLiteral(")");
    return text;
}

QString PortPath(qint32 commPort)
{
    return QStringLiteral("/dev/ttyS%1").arg(commPort - 1);
}

bool IsVirtualGrip(const QString& device)
{
    return device == kVirtualGrip || device.startsWith(kVirtualGrip + QLatin1Char(':'));
}

QString EffectivePath(const QString& device, qint32 commPort)
{
    const QString trimmed = device.trimmed();
    if (trimmed.isEmpty())
        return PortPath(commPort);
    if (IsVirtualGrip(trimmed))
        return QString();
    return trimmed;
}

QString Diagnosis(const QString& path)
{
    const cSystemFacts machine;
    return cPortDoctor(machine).Sentences(path).join(QLatin1Char('\n'));
}

} // namespace mSerialDevices
