#pragma once
// The built-in virtual grip as a device of the front ends: "sim" or "sim:KEY=VALUE,..." starts a
// virtual grip that serves a pseudo-terminal from a thread of this process for the rest of the
// run, and the device text resolves to that pseudo-terminal's path.
#include <QString>

namespace SimDevice {

// True for "sim" and "sim:...".
bool IsSimDevice(const QString& device);
// Checks the options of a "sim..." device text; answers an error message, or empty when valid.
QString Validate(const QString& device);
// The pseudo-terminal serving the device, starting the virtual grip on first use (or again when
// the device text changed). Empty, with the reason in *error, when it cannot start.
QString Resolve(const QString& device, QString* error);
// Stops the virtual grip (saving its state file, if any).
void Stop();

} // namespace SimDevice
