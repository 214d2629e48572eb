#pragma once

#include "sim/BuildVersion.h"
#include "sim/Fault.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace gripsim {

struct GripState;

// How the virtual grip is set up, from a text such as
// "firmware=1.1.70,boot=1.2.0,serial=ABC1234567,pace=1,state=/tmp/g.json".
struct SimOptions
{
    BuildVersion firmware{4, 0, 0};
    BuildVersion boot{1, 2, 1};
    BuildVersion protocol{1, 1, 1};
    BuildVersion hardware{1, 1, 1};
    QByteArray serial = "SIM0000001"; // padded with spaces to 10 bytes
    bool bootMode = false;
    bool pace = false;
    int baud = 9600;
    int latencyMs = 0;
    QString stateFile;
    QString linkPath; // a symbolic link to the device, made while serving
    int battery = 880;
    QList<FaultRule> faults;
    QList<BlockFailure> blockFailures;

    // The keys given in the text, so that a state file can be loaded first
    // and only what was asked for on this run overrides it.
    QSet<QString> givenKeys;

    // Parses KEY=VALUE items separated by commas; an empty text gives the
    // defaults. Unknown keys and bad values are refused with a message.
    static std::optional<SimOptions> parse(const QString& text, QString* error = nullptr);

    // "sim" or "sim:KEY=VALUE,...".
    static bool isDeviceSpec(const QString& device);
    static std::optional<SimOptions> fromDeviceSpec(const QString& device, QString* error = nullptr);

    // A fresh grip as these options describe it.
    GripState initialState() const;
    // Overrides the state with the values whose keys were given.
    void applyGivenTo(GripState& state) const;
};

} // namespace gripsim
