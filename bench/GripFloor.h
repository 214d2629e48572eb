#pragma once
// The floor the protocol sets for what the virtual grip saw, and where the time above it went:
// per exchange the 100 ms pause after the code byte plus the wire time of command and report
// (10 bits a byte at the paced baud rate), and the 500 ms pause before each retried block write.
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"
#include "sim/TrafficLog.h"

#include <QByteArray>
#include <QList>
#include <QTextStream>
#include <algorithm>
#include <memory>

namespace benchfloor {

constexpr double kPauseMs = 100.0;
constexpr double kRetryPauseMs = 500.0;

inline double wireMs(qsizetype bytes, int baud)
{
    return static_cast<double>(bytes) * 10.0 * 1000.0 / baud;
}

struct Floor {
    double ms = 0.0;       // the protocol's floor
    double pacedMs = 0.0;  // without the commands' wire time, which a pseudo-terminal does not
                           // impose (only the grip's answers are paced): the stricter floor
    int exchanges = 0;
    int retries = 0;
    // From the grip's own time stamps: the host's turn-around from the end of a report to the
    // next command, its pauses after the code byte beyond 100 ms, and the grip's pacing beyond
    // the wire time of its reports.
    double turnaroundMs = 0.0;
    double pauseExcessMs = 0.0;
    double gripExcessMs = 0.0;
    double minPauseMs = 1e9; // after the code byte, as the grip saw it
    double maxPauseMs = 0.0;
};

// A block write that repeats the one before is a retry, which the transfer precedes with its
// pause (a read retries at once).
inline Floor FloorOf(const QList<gripsim::TrafficEvent>& traffic, int baud)
{
    Floor f;
    double commandWire = 0.0;
    QByteArray previous;
    const gripsim::TrafficEvent* lastCommand = nullptr;
    const gripsim::TrafficEvent* lastReport = nullptr;
    for (const gripsim::TrafficEvent& event : traffic) {
        if (event.kind == gripsim::TrafficEvent::Kind::Command) {
            f.ms += kPauseMs + wireMs(event.bytes.size(), baud);
            commandWire += wireMs(event.bytes.size(), baud);
            ++f.exchanges;
            const quint8 code = static_cast<quint8>(event.bytes.at(0));
            if ((code == 0x82 || code == 0x8A) && event.bytes == previous) {
                f.ms += kRetryPauseMs;
                ++f.retries;
            }
            previous = event.bytes;
            const double pause = static_cast<double>(event.pauseAfterCodeNs()) / 1e6 - wireMs(1, baud);
            f.pauseExcessMs += pause - kPauseMs;
            f.minPauseMs = std::min(f.minPauseMs, pause);
            f.maxPauseMs = std::max(f.maxPauseMs, pause);
            if (lastReport)
                f.turnaroundMs += static_cast<double>(event.firstNs - lastReport->lastNs) / 1e6;
            lastCommand = &event;
        } else if (event.kind == gripsim::TrafficEvent::Kind::Report) {
            f.ms += wireMs(event.bytes.size(), baud);
            if (lastCommand)
                f.gripExcessMs += static_cast<double>(event.lastNs - lastCommand->lastNs) / 1e6 - wireMs(event.bytes.size(), baud);
            lastReport = &event;
        }
    }
    f.pacedMs = f.ms - commandWire;
    return f;
}

// The virtual grip on a pseudo-terminal with the given options, serving; nothing (and a line on
// out naming the benchmark) when it cannot start.
inline std::unique_ptr<gripsim::PtyServer> StartGrip(const QString& options, QTextStream& out, const QString& bench)
{
    QString error;
    const auto parsed = gripsim::SimOptions::parse(options, &error);
    auto server = parsed ? std::make_unique<gripsim::PtyServer>(*parsed) : nullptr;
    if (!server || !server->start(&error)) {
        out << bench << ": cannot start the virtual grip: " << error << '\n';
        return nullptr;
    }
    return server;
}

// One result line for repeated runs of the same work: the median run against its floors, and
// where its time above the stricter floor went.
inline void PrintRuns(QTextStream& out, const QString& what, const QList<double>& times, const QList<Floor>& floors,
                      int baud, double goal)
{
    QList<qsizetype> order;
    for (qsizetype i = 0; i < times.size(); ++i)
        order.append(i);
    std::sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return times[a] < times[b]; });
    const qsizetype mid = order.at(order.size() / 2);
    const Floor& f = floors.at(mid);
    const double ratio = times[mid] / f.ms;
    out << QStringLiteral("%1 %2 ms (median of %3, best %4 ms), floor %5 ms (%6 exchanges at %7 baud), ratio %8 "
                          "(goal <= %9)%10; against the stricter floor without the unpaced command bytes (%11 ms) %12; "
                          "above the floor: pauses %13 ms, grip %14 ms, host turn-around %15 ms\n")
               .arg(what).arg(times[mid], 0, 'f', 1).arg(times.size()).arg(times[order.first()], 0, 'f', 1)
               .arg(f.ms, 0, 'f', 1).arg(f.exchanges).arg(baud).arg(ratio, 0, 'f', 3).arg(goal, 0, 'f', 2)
               .arg(ratio <= goal ? QString() : QStringLiteral(" OVER GOAL")).arg(f.pacedMs, 0, 'f', 1)
               .arg(times[mid] / f.pacedMs, 0, 'f', 3).arg(f.pauseExcessMs, 0, 'f', 1).arg(f.gripExcessMs, 0, 'f', 1)
               .arg(f.turnaroundMs, 0, 'f', 1);
}

} // namespace benchfloor
