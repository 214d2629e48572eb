#include "sim/GripState.h"

#include "sim/ErrorText.h"

#include <QJsonValue>

namespace gripsim {

namespace {

constexpr int kMemoryBytes = kMemoryLast - kMemoryFirst + 1;

bool inMemory(int address)
{
    return address >= kMemoryFirst && address <= kMemoryLast;
}

// Reads a whole number in [0, max] if the key is present.
template <typename T>
bool readNumber(const QJsonObject& json, const char* key, qint64 max, T& out, QString* error)
{
    const QJsonValue value = json.value(QLatin1String(key));
    if (value.isUndefined())
        return true;
    const double number = value.toDouble(-1);
    if (!value.isDouble() || number < 0 || number > static_cast<double>(max) || number != static_cast<qint64>(number)) {
        setError(error, QStringLiteral("'%1' must be a whole number from 0 to %2").arg(QLatin1String(key)).arg(max));
        return false;
    }
    out = static_cast<T>(number);
    return true;
}

bool readVersion(const QJsonObject& json, const char* key, BuildVersion& out, QString* error)
{
    const QJsonValue value = json.value(QLatin1String(key));
    if (value.isUndefined())
        return true;
    const auto version = BuildVersion::parse(value.toString());
    if (!version) {
        setError(error, QStringLiteral("'%1' must be a version text a.b.c").arg(QLatin1String(key)));
        return false;
    }
    out = *version;
    return true;
}

bool readMemory(const QJsonObject& json, QByteArray& memory, QString* error)
{
    const QJsonValue value = json.value(QLatin1String("Memory"));
    if (value.isUndefined())
        return true;
    const QByteArray hex = value.toString().toLatin1();
    const QByteArray bytes = QByteArray::fromHex(hex);
    if (hex.size() != 2 * kMemoryBytes || bytes.size() != kMemoryBytes || bytes.toHex().toUpper() != hex.toUpper()) {
        setError(error, QStringLiteral("'Memory' must be %1 hex digits (bytes 0x40 to 0xFFF)").arg(2 * kMemoryBytes));
        return false;
    }
    memory.replace(kMemoryFirst, kMemoryBytes, bytes);
    return true;
}

QJsonObject timingJson(const TimingValues& t)
{
    return {{"ShotTime", t.shotTime},         {"Dwelltime", t.dwellTime},
            {"CycleTimeOpen", t.cycleTimeOpen}, {"LoadTime", t.loadTime},
            {"CycleTimeClose", t.cycleTimeClose}, {"FiringMode", t.firingMode}};
}

bool readTiming(const QJsonObject& j, TimingValues& t, QString* e)
{
    return readNumber(j, "ShotTime", 255, t.shotTime, e) && readNumber(j, "Dwelltime", 255, t.dwellTime, e)
        && readNumber(j, "CycleTimeOpen", 255, t.cycleTimeOpen, e) && readNumber(j, "LoadTime", 255, t.loadTime, e)
        && readNumber(j, "CycleTimeClose", 255, t.cycleTimeClose, e)
        && readNumber(j, "FiringMode", 255, t.firingMode, e);
}

QJsonObject optionsJson(const OptionValues& o)
{
    return {{"OptionsByte", o.flags},
            {"EyeCheckMaxTime", o.eyeCheckMaxTime},
            {"EyeCheckOKTime", o.eyeCheckOKTime},
            {"DefaultLoadTime", o.defaultLoadTime}};
}

bool readOptions(const QJsonObject& j, OptionValues& o, QString* e)
{
    return readNumber(j, "OptionsByte", 255, o.flags, e) && readNumber(j, "EyeCheckMaxTime", 255, o.eyeCheckMaxTime, e)
        && readNumber(j, "EyeCheckOKTime", 255, o.eyeCheckOKTime, e)
        && readNumber(j, "DefaultLoadTime", 255, o.defaultLoadTime, e);
}

QJsonObject rampingJson(const RampingValues& r)
{
    return {{"Shots", r.shots}, {"HyperTime", r.hyperTime}, {"HyperMode", r.hyperMode}};
}

bool readRamping(const QJsonObject& j, RampingValues& r, QString* e)
{
    return readNumber(j, "Shots", 255, r.shots, e) && readNumber(j, "HyperTime", 255, r.hyperTime, e)
        && readNumber(j, "HyperMode", 255, r.hyperMode, e);
}

QJsonObject gameTimerJson(const GameTimerValues& g)
{
    return {{"CountDownTimer", g.countDownTimer}, {"PreAlert1On", g.preAlert1On},
            {"PreAlert1Time", g.preAlert1Time},   {"PreAlert2On", g.preAlert2On},
            {"PreAlert2Time", g.preAlert2Time}};
}

bool readGameTimer(const QJsonObject& j, GameTimerValues& g, QString* e)
{
    return readNumber(j, "CountDownTimer", 255, g.countDownTimer, e)
        && readNumber(j, "PreAlert1On", 255, g.preAlert1On, e)
        && readNumber(j, "PreAlert1Time", 0xFFFF, g.preAlert1Time, e)
        && readNumber(j, "PreAlert2On", 255, g.preAlert2On, e)
        && readNumber(j, "PreAlert2Time", 0xFFFF, g.preAlert2Time, e);
}

QJsonObject countersJson(const CounterValues& c)
{
    return {{"Counter1", c.counter1}, {"Counter2", c.counter2}, {"Total", static_cast<qint64>(c.total)}};
}

bool readCounters(const QJsonObject& j, CounterValues& c, QString* e)
{
    return readNumber(j, "Counter1", 0xFFFF, c.counter1, e) && readNumber(j, "Counter2", 0xFFFF, c.counter2, e)
        && readNumber(j, "Total", 0x7FFFFFFF, c.total, e);
}

bool readSerial(const QJsonObject& json, QByteArray& serial, QString* error)
{
    const QJsonValue value = json.value(QLatin1String("Serial"));
    if (value.isUndefined())
        return true;
    const QString text = value.toString();
    if (!value.isString() || text.size() > kSerialLength) {
        setError(error, QStringLiteral("'Serial' must be a text of at most %1 characters").arg(kSerialLength));
        return false;
    }
    serial = GripState::paddedSerial(text);
    return true;
}

} // namespace

QByteArray GripState::initialMemory()
{
    QByteArray memory(kMemoryLast + 1, '\xFF');
    for (int address = kMemoryFirst; address <= kMemoryLast; ++address)
        memory[address] = static_cast<char>(initialMemoryByte(address));
    return memory;
}

quint8 GripState::initialMemoryByte(int address)
{
    return static_cast<quint8>((address & 0xFF) ^ (address >> 8) ^ 0xA5);
}

QByteArray GripState::paddedSerial(const QString& text)
{
    return text.toLatin1().left(kSerialLength).leftJustified(kSerialLength, ' ');
}

quint8 GripState::memoryAt(int address) const
{
    return inMemory(address) ? static_cast<quint8>(memory.at(address)) : 0xFF;
}

void GripState::setMemoryAt(int address, quint8 value)
{
    if (inMemory(address))
        memory[address] = static_cast<char>(value);
}

QJsonObject GripState::toJson() const
{
    return {{"BootMode", bootMode},
            {"Serial", QString::fromLatin1(serial)},
            {"FirmwareBuild", firmware.toString()},
            {"ProtocolBuild", protocol.toString()},
            {"BootBuild", boot.toString()},
            {"HardwareBuild", hardware.toString()},
            {"Timing", timingJson(timing)},
            {"Options", optionsJson(options)},
            {"Ramping", rampingJson(ramping)},
            {"GameTimer", gameTimerJson(gameTimer)},
            {"Counters", countersJson(counters)},
            {"Battery", battery},
            {"Memory", QString::fromLatin1(memory.mid(kMemoryFirst).toHex().toUpper())}};
}

bool GripState::readJson(const QJsonObject& json, QString* error)
{
    GripState next = *this;
    const QJsonValue boot = json.value(QLatin1String("BootMode"));
    if (!boot.isUndefined() && !boot.isBool()) {
        setError(error, QStringLiteral("'BootMode' must be true or false"));
        return false;
    }
    next.bootMode = boot.toBool(next.bootMode);
    const bool ok = readSerial(json, next.serial, error) && readVersion(json, "FirmwareBuild", next.firmware, error)
        && readVersion(json, "ProtocolBuild", next.protocol, error)
        && readVersion(json, "BootBuild", next.boot, error)
        && readVersion(json, "HardwareBuild", next.hardware, error)
        && readTiming(json.value(QLatin1String("Timing")).toObject(), next.timing, error)
        && readOptions(json.value(QLatin1String("Options")).toObject(), next.options, error)
        && readRamping(json.value(QLatin1String("Ramping")).toObject(), next.ramping, error)
        && readGameTimer(json.value(QLatin1String("GameTimer")).toObject(), next.gameTimer, error)
        && readCounters(json.value(QLatin1String("Counters")).toObject(), next.counters, error)
        && readNumber(json, "Battery", 1023, next.battery, error) && readMemory(json, next.memory, error);
    if (ok)
        *this = next;
    return ok;
}

} // namespace gripsim
