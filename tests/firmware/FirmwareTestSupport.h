#pragma once
// Small helpers shared by the firmware tests: grip builds, a virtual grip behind the fake port,
// byte texts and images.
#include "FakeCommPort.h"
#include "firmware/mFirmware.h"
#include "grip/cGunInfo.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QByteArray>
#include <QStringList>
#include <memory>

namespace fwtest {

// "8A 01 00" -> bytes.
inline QByteArray bytes(const char* spacedHex)
{
    return QByteArray::fromHex(QByteArray(spacedHex).replace(' ', ""));
}

inline void appendBuild(QByteArray& report, const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    const int revision = parts.value(2).toInt();
    report.append(static_cast<char>(parts.value(0).toInt()));
    report.append(static_cast<char>(parts.value(1).toInt()));
    report.append(static_cast<char>(revision & 0xFF));
    report.append(static_cast<char>(revision >> 8));
}

// Puts the given builds into the global gun information, as a report from the grip would.
inline void SetGripBuilds(const QString& firmware, const QString& boot, const QString& hardware,
                          const QString& protocol = QStringLiteral("1.1.1"))
{
    QByteArray report("\x43", 1);
    report += QByteArray(10, 'S');
    appendBuild(report, firmware);
    appendBuild(report, protocol); // the protocol build comes before the boot build on the link
    appendBuild(report, boot);
    appendBuild(report, hardware);
    report.append('\0');
    GunInfo().Comm2Obj(QString::fromLatin1(report.toHex().toUpper()));
}

// A virtual grip answering the fake port's frames.
struct SimGrip {
    explicit SimGrip(const QString& options)
        : grip(std::make_unique<gripsim::VirtualGrip>(*gripsim::SimOptions::parse(options)))
    {
    }
    void attach(FakeCommPort& port)
    {
        gripsim::VirtualGrip* g = grip.get();
        port.setResponder([g](const QByteArray& frame) { return g->handleFrame(frame).value_or(QByteArray()); });
    }
    std::unique_ptr<gripsim::VirtualGrip> grip;
};

// The command codes of the frames, in order, as "13 85 85 ...".
inline QString codes(const QList<QByteArray>& frames)
{
    QStringList list;
    for (const QByteArray& frame : frames)
        list.append(QString::fromLatin1(frame.left(1).toHex().toUpper()));
    return list.join(QLatin1Char(' '));
}

// A data line of the file format.
inline HexLine Line(int address, const QList<quint8>& data, quint8 type = 0, quint8 checksum = 0)
{
    HexLine line;
    line.ByteCount = static_cast<quint8>(data.size());
    line.AddrHi = static_cast<quint8>((address >> 8) & 0xFF);
    line.AddrLo = static_cast<quint8>(address & 0xFF);
    line.RecordType = type;
    line.Data = data;
    line.Checksum = checksum;
    return line;
}

// 16 bytes made from a seed, different for every seed.
inline QList<quint8> Pattern(int seed)
{
    QList<quint8> data;
    for (int i = 0; i < 16; ++i)
        data.append(static_cast<quint8>((seed * 31 + i * 7 + 3) & 0xFF));
    return data;
}

// The whole readable program memory as a file image: 252 lines from 0x40, then the end record.
inline FirmwareFile FullImage(int seed)
{
    FirmwareFile image;
    image.Firmware = QStringLiteral(" 1.1.70");
    image.Boot = QStringLiteral(" 1.0.0-1.2.9");
    image.Protocol = QStringLiteral(" 1.1.1");
    image.Hardware = QStringLiteral(" 2.1.0");
    for (int address = 0x40; address < 0xFFF; address += 16)
        image.Segments.append(Line(address, Pattern(seed + address)));
    image.Segments.append(Line(0, {}, 1, 0xFF));
    return image;
}

} // namespace fwtest
