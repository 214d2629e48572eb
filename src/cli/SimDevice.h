#pragma once
// Starts the built-in virtual grip when the device is "sim" or "sim:KEY=VALUE,...": it serves a
// pseudo-terminal from a thread of this process for the rest of the run.
#include <QString>

namespace SimDevice {

// Checks the options of a "sim..." device text; answers an error message, or empty when valid.
QString Validate(const QString& device);
// Installs the resolver that the serial port uses for "sim..." devices.
void InstallResolver();
// Stops the virtual grip (saving its state file, if any).
void Stop();

} // namespace SimDevice
