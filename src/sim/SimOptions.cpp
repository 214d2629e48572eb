#include "sim/SimOptions.h"

#include "sim/ErrorText.h"
#include "sim/GripState.h"

#include <QStringList>

#include <functional>
#include <map>

namespace gripsim {

namespace {

constexpr int kMaxBaud = 4000000;
constexpr int kMaxLatencyMs = 600000;
constexpr int kMaxBattery = 1023;

using Setter = std::function<bool(SimOptions&, const QString& value, QString* error)>;

Setter versionSetter(BuildVersion SimOptions::*member, const char* key)
{
    return [member, key](SimOptions& o, const QString& value, QString* error) {
        const auto version = BuildVersion::parse(value);
        if (!version) {
            setError(error, QStringLiteral("%1='%2': expected a version a.b.c (a, b 0-255, c 0-65535)")
                            .arg(QLatin1String(key), value));
            return false;
        }
        o.*member = *version;
        return true;
    };
}

Setter numberSetter(int SimOptions::*member, const char* key, int min, int max)
{
    return [member, key, min, max](SimOptions& o, const QString& value, QString* error) {
        bool ok = false;
        const int number = value.toInt(&ok, 10);
        if (!ok || number < min || number > max) {
            setError(error, QStringLiteral("%1='%2': expected a whole number from %3 to %4")
                            .arg(QLatin1String(key), value)
                            .arg(min)
                            .arg(max));
            return false;
        }
        o.*member = number;
        return true;
    };
}

Setter switchSetter(bool SimOptions::*member, const char* key)
{
    return [member, key](SimOptions& o, const QString& value, QString* error) {
        if (value != QLatin1String("0") && value != QLatin1String("1")) {
            setError(error, QStringLiteral("%1='%2': expected 0 or 1").arg(QLatin1String(key), value));
            return false;
        }
        o.*member = value == QLatin1String("1");
        return true;
    };
}

Setter pathSetter(QString SimOptions::*member, const char* key)
{
    return [member, key](SimOptions& o, const QString& value, QString* error) {
        if (value.isEmpty()) {
            setError(error, QStringLiteral("%1=: expected a file name").arg(QLatin1String(key)));
            return false;
        }
        o.*member = value;
        return true;
    };
}

bool setSerial(SimOptions& o, const QString& value, QString* error)
{
    bool printable = true;
    for (const QChar c : value)
        printable = printable && c.unicode() >= 0x20 && c.unicode() < 0x7F;
    if (value.isEmpty() || value.size() > kSerialLength || !printable) {
        setError(error, QStringLiteral("serial='%1': expected 1 to %2 printable ASCII characters")
                        .arg(value)
                        .arg(kSerialLength));
        return false;
    }
    o.serial = GripState::paddedSerial(value);
    return true;
}

bool addFault(SimOptions& o, const QString& value, QString* error)
{
    const auto rule = FaultRule::parse(value, error);
    if (rule)
        o.faults.append(*rule);
    return rule.has_value();
}

bool addBlockFailure(SimOptions& o, const QString& value, QString* error)
{
    const auto failure = BlockFailure::parse(value, error);
    if (failure)
        o.blockFailures.append(*failure);
    return failure.has_value();
}

const std::map<QString, Setter>& setters()
{
    static const std::map<QString, Setter> table{
        {QStringLiteral("firmware"), versionSetter(&SimOptions::firmware, "firmware")},
        {QStringLiteral("boot"), versionSetter(&SimOptions::boot, "boot")},
        {QStringLiteral("protocol"), versionSetter(&SimOptions::protocol, "protocol")},
        {QStringLiteral("hardware"), versionSetter(&SimOptions::hardware, "hardware")},
        {QStringLiteral("serial"), setSerial},
        {QStringLiteral("bootmode"), switchSetter(&SimOptions::bootMode, "bootmode")},
        {QStringLiteral("pace"), switchSetter(&SimOptions::pace, "pace")},
        {QStringLiteral("baud"), numberSetter(&SimOptions::baud, "baud", 1, kMaxBaud)},
        {QStringLiteral("latency"), numberSetter(&SimOptions::latencyMs, "latency", 0, kMaxLatencyMs)},
        {QStringLiteral("battery"), numberSetter(&SimOptions::battery, "battery", 0, kMaxBattery)},
        {QStringLiteral("state"), pathSetter(&SimOptions::stateFile, "state")},
        {QStringLiteral("link"), pathSetter(&SimOptions::linkPath, "link")},
        {QStringLiteral("fault"), addFault},
        {QStringLiteral("failblock"), addBlockFailure},
    };
    return table;
}

bool mayRepeat(const QString& key)
{
    return key == QLatin1String("fault") || key == QLatin1String("failblock");
}

bool applyItem(SimOptions& options, const QString& item, QString* error)
{
    const qsizetype eq = item.indexOf(QLatin1Char('='));
    if (eq <= 0) {
        setError(error, QStringLiteral("'%1' is not KEY=VALUE").arg(item));
        return false;
    }
    const QString key = item.left(eq).trimmed().toLower();
    const QString value = item.mid(eq + 1).trimmed();
    const auto setter = setters().find(key);
    if (setter == setters().end()) {
        setError(error, QStringLiteral("unknown key '%1' (known: firmware, boot, protocol, hardware, serial, "
                                   "bootmode, pace, baud, latency, battery, state, link, fault, failblock)")
                        .arg(key));
        return false;
    }
    if (options.givenKeys.contains(key) && !mayRepeat(key)) {
        setError(error, QStringLiteral("key '%1' given twice").arg(key));
        return false;
    }
    options.givenKeys.insert(key);
    return setter->second(options, value, error);
}

} // namespace

std::optional<SimOptions> SimOptions::parse(const QString& text, QString* error)
{
    SimOptions options;
    const QStringList items = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& item : items) {
        if (item.trimmed().isEmpty())
            continue;
        if (!applyItem(options, item.trimmed(), error))
            return std::nullopt;
    }
    return options;
}

bool SimOptions::isDeviceSpec(const QString& device)
{
    return device == QLatin1String("sim") || device.startsWith(QLatin1String("sim:"));
}

std::optional<SimOptions> SimOptions::fromDeviceSpec(const QString& device, QString* error)
{
    if (!isDeviceSpec(device)) {
        setError(error, QStringLiteral("'%1' is not a virtual grip (expected sim or sim:KEY=VALUE,...)").arg(device));
        return std::nullopt;
    }
    return parse(device.mid(4), error);
}

GripState SimOptions::initialState() const
{
    GripState state;
    state.firmware = firmware;
    state.boot = boot;
    state.protocol = protocol;
    state.hardware = hardware;
    state.serial = serial;
    state.bootMode = bootMode;
    state.battery = static_cast<quint16>(battery);
    return state;
}

void SimOptions::applyGivenTo(GripState& state) const
{
    const GripState mine = initialState();
    const auto take = [&](const char* key, auto GripState::*member) {
        if (givenKeys.contains(QLatin1String(key)))
            state.*member = mine.*member;
    };
    take("firmware", &GripState::firmware);
    take("boot", &GripState::boot);
    take("protocol", &GripState::protocol);
    take("hardware", &GripState::hardware);
    take("serial", &GripState::serial);
    take("bootmode", &GripState::bootMode);
    take("battery", &GripState::battery);
}

} // namespace gripsim
