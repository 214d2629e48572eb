#pragma once

#include "sim/BuildVersion.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace gripsim {

// Program memory of the grip that can be read and written: byte addresses
// kMemoryFirst..kMemoryLast.
constexpr int kMemoryFirst = 0x40;
constexpr int kMemoryLast = 0xFFF;
constexpr int kSerialLength = 10;

// The six timing values, in the order they travel on the link.
struct TimingValues
{
    quint8 shotTime = 10;
    quint8 dwellTime = 10;
    quint8 cycleTimeOpen = 30;
    quint8 loadTime = 35;
    quint8 cycleTimeClose = 28;
    quint8 firingMode = 0;

    bool operator==(const TimingValues&) const = default;
};

struct OptionValues
{
    quint8 flags = 0; // the eight switches packed into one byte
    quint8 eyeCheckMaxTime = 100;
    quint8 eyeCheckOKTime = 100;
    quint8 defaultLoadTime = 45;

    bool operator==(const OptionValues&) const = default;
};

struct RampingValues
{
    quint8 shots = 3;
    quint8 hyperTime = 100;
    quint8 hyperMode = 1;

    bool operator==(const RampingValues&) const = default;
};

struct GameTimerValues
{
    quint8 countDownTimer = 10;
    quint8 preAlert1On = 0; // the switch bytes are kept as sent (1 means on)
    quint16 preAlert1Time = 60;
    quint8 preAlert2On = 0;
    quint16 preAlert2Time = 30;

    bool operator==(const GameTimerValues&) const = default;
};

struct CounterValues
{
    quint16 counter1 = 123;
    quint16 counter2 = 45;
    quint32 total = 12345; // 31 bits on the link

    bool operator==(const CounterValues&) const = default;
};

// Everything the virtual grip remembers.
struct GripState
{
    bool bootMode = false;
    QByteArray serial = "SIM0000001"; // always kSerialLength bytes
    BuildVersion firmware{4, 0, 0};
    BuildVersion protocol{1, 1, 1};
    BuildVersion boot{1, 2, 1};
    BuildVersion hardware{1, 1, 1};
    TimingValues timing;
    OptionValues options;
    RampingValues ramping;
    GameTimerValues gameTimer;
    CounterValues counters;
    quint16 battery = 880; // raw 10-bit reading
    QByteArray memory = initialMemory(); // indexed by byte address, 0..kMemoryLast

    // The image a fresh grip holds: a pattern derived from the address, so
    // that every block reads differently.
    static QByteArray initialMemory();
    static quint8 initialMemoryByte(int address);

    // Serial text padded with spaces (or cut) to kSerialLength bytes.
    static QByteArray paddedSerial(const QString& text);

    quint8 memoryAt(int address) const;
    // Writes one byte; addresses outside the program memory are ignored.
    void setMemoryAt(int address, quint8 value);

    QJsonObject toJson() const;
    // Fills the members present in the object; the others keep their value.
    bool readJson(const QJsonObject& json, QString* error);

    bool operator==(const GripState&) const = default;
};

} // namespace gripsim
