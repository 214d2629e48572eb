#include "sim/SimClock.h"

#include <chrono>

namespace gripsim {

qint64 monotonicNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace gripsim
