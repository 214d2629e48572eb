#pragma once
// Helpers shared by the firmware tests: byte texts, a virtual grip behind the fake port, file
// images and the error a call raises.
#include "TestLink.h"
#include "base/MarloError.h"
#include "firmware/mFirmware.h"
#include "sim/VirtualGrip.h"

#include <QStringList>
#include <memory>

namespace fwtest {

// "8A 01 00" -> bytes (the blanks are skipped); data bytes -> bytes.
inline QByteArray bytes(const QByteArray& hex) { return QByteArray::fromHex(hex); }
inline QByteArray bytes(const QList<quint8>& data) { return QByteArray(reinterpret_cast<const char*>(data.constData()), data.size()); }

// A virtual grip answering the fake port's frames.
inline std::unique_ptr<gripsim::VirtualGrip> Grip(FakeCommPort& port, const QString& options)
{
    auto grip = std::make_unique<gripsim::VirtualGrip>(*gripsim::SimOptions::parse(options));
    port.setResponder([g = grip.get()](const QByteArray& frame) { return g->handleFrame(frame).value_or(QByteArray()); });
    return grip;
}

// The command codes of the frames, in order, as "13 85 85 ...".
inline QString codes(const QList<QByteArray>& frames)
{
    QStringList list;
    for (const QByteArray& frame : frames)
        list.append(QString::fromLatin1(frame.left(1).toHex().toUpper()));
    return list.join(QLatin1Char(' '));
}

// "85 85 85": a command code so many times.
inline QString Repeated(const QString& code, int times) { return QStringList(times, code).join(QLatin1Char(' ')); }

inline HexLine Line(int address, const QList<quint8>& data, quint8 type = 0, quint8 checksum = 0)
{
    return {quint8(data.size()), quint8(address & 0xFF), quint8(address >> 8), type, data, checksum};
}

// 16 bytes, different for every seed.
inline QList<quint8> Pattern(int seed)
{
    QList<quint8> data;
    for (int i = 0; i < 16; ++i)
        data.append(static_cast<quint8>(seed * 31 + i * 7 + 3));
    return data;
}

// A file image with the given lines, for boot code 1.0.0-1.2.0 and hardware 2.1.0.
inline FirmwareFile Image(const QList<HexLine>& lines)
{
    return {"1.1.80", "1.0.0-1.2.0", "1.1.1", "2.1.0", lines};
}

// The whole readable program memory (252 lines from 0x40) and the end record.
inline FirmwareFile Image(int seed)
{
    QList<HexLine> lines;
    for (int address = 0x40; address < 0xFFF; address += 16)
        lines.append(Line(address, Pattern(seed + address)));
    lines.append(Line(0, {}, 1, 0xFF));
    return Image(lines);
}

// The error a call raises (number 0 and no trail when it raises none).
template <typename Call>
MarloError ErrorOf(Call call)
{
    try { call(); } catch (const MarloError& e) { return e; }
    return MarloError(0, QString(), QStringLiteral("no error"));
}

} // namespace fwtest
