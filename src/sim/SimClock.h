#pragma once

#include <QtGlobal>

namespace gripsim {

// Nanoseconds on the monotonic clock (CLOCK_MONOTONIC). All timestamps of the
// virtual grip use this clock, so they can be compared across threads.
qint64 monotonicNs();

constexpr qint64 kNsPerMs = 1'000'000;

} // namespace gripsim
