#pragma once

#include <QByteArray>

#include <optional>

namespace gripsim {

struct GripState;

// The grip's firmware and boot code as a pure function: carries out one
// complete command frame on the state and gives the report to send, or
// nothing when the grip stays silent (unknown code, a command the current
// mode or firmware does not serve, a frame of the wrong size).
std::optional<QByteArray> answerCommand(GripState& state, const QByteArray& frame);

// Feature thresholds of the grip's firmware.
bool firmwareHasOptions(const GripState& state);
bool firmwareHasRamping(const GripState& state);
// Old firmware takes a selector in the counter reset, newer one the values.
bool firmwareResetsBySelector(const GripState& state);
// Old boot code writes blocks with 0x8A and a check byte over the whole
// frame; newer boot code uses 0x82 and leaves the code byte out of the check.
bool bootCodeIsOld(const GripState& state);

// Byte address of a block command's word address (bytes 2 and 3, high first).
int blockByteAddress(const QByteArray& frame);

} // namespace gripsim
