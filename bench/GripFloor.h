#pragma once
// The floor the protocol sets for what the virtual grip saw, and where the time above it went:
// per exchange the 100 ms pause after the code byte plus the wire time of command and report
// (10 bits a byte at the paced baud rate).
#include "sim/TrafficLog.h"

#include <QList>

namespace benchfloor {

constexpr double kPauseMs = 100.0;

inline double wireMs(qsizetype bytes, int baud)
{
    return static_cast<double>(bytes) * 10.0 * 1000.0 / baud;
}

// Every command (the gun-information refreshes and the boot-mode query included) with its pause,
// and every report.
inline double floorMs(const QList<gripsim::TrafficEvent>& traffic, int baud, int& exchanges)
{
    double total = 0.0;
    exchanges = 0;
    for (const gripsim::TrafficEvent& event : traffic) {
        if (event.kind == gripsim::TrafficEvent::Kind::Command) {
            total += kPauseMs + wireMs(event.bytes.size(), baud);
            ++exchanges;
        } else if (event.kind == gripsim::TrafficEvent::Kind::Report) {
            total += wireMs(event.bytes.size(), baud);
        }
    }
    return total;
}

// From the grip's own time stamps: the host's pause after the code byte beyond 100 ms, the
// grip's pacing beyond the wire time, and the host's turn-around from the end of a report to the
// next command.
struct Breakdown {
    double pauseExcessMs = 0.0;
    double gripExcessMs = 0.0;
    double turnaroundMs = 0.0;
};

inline Breakdown breakdown(const QList<gripsim::TrafficEvent>& traffic, int baud)
{
    Breakdown b;
    const gripsim::TrafficEvent* lastCommand = nullptr;
    const gripsim::TrafficEvent* lastReport = nullptr;
    for (const gripsim::TrafficEvent& event : traffic) {
        if (event.kind == gripsim::TrafficEvent::Kind::Command) {
            b.pauseExcessMs += static_cast<double>(event.pauseAfterCodeNs()) / 1e6 - kPauseMs - wireMs(1, baud);
            if (lastReport)
                b.turnaroundMs += static_cast<double>(event.firstNs - lastReport->lastNs) / 1e6;
            lastCommand = &event;
        } else if (event.kind == gripsim::TrafficEvent::Kind::Report && lastCommand) {
            b.gripExcessMs += static_cast<double>(event.lastNs - lastCommand->lastNs) / 1e6 - wireMs(event.bytes.size(), baud);
            lastReport = &event;
        }
    }
    return b;
}

// The median of a list of times (the list is copied).
inline double median(QList<double> times)
{
    std::sort(times.begin(), times.end());
    return times.isEmpty() ? 0.0 : times.at(times.size() / 2);
}

} // namespace benchfloor
