#pragma once

#include <QByteArray>
#include <QList>

#include <mutex>

namespace gripsim {

// One entry of the grip's traffic record; times are monotonic nanoseconds.
struct TrafficEvent
{
    enum class Kind {
        Command, // a complete frame from the host
        Report,  // an answer the grip wrote
        Dropped, // an incomplete frame thrown away after a silence
    };

    Kind kind = Kind::Command;
    QByteArray bytes;
    qint64 firstNs = 0; // Command: code byte arrived; Report: first byte written
    qint64 restNs = 0;  // Command: first byte after the code arrived
    qint64 lastNs = 0;  // last byte arrived or written

    // For a command: how long the host paused after the code byte.
    qint64 pauseAfterCodeNs() const { return restNs - firstNs; }
};

// Thread-safe, bounded record of the traffic.
class TrafficLog
{
public:
    static constexpr int kMaxEvents = 100000;

    void append(TrafficEvent event);
    QList<TrafficEvent> events() const;
    void clear();

private:
    mutable std::mutex m_mutex;
    QList<TrafficEvent> m_events;
};

// The pause after the code byte of every command of more than one byte.
QList<qint64> pausesAfterCodeNs(const QList<TrafficEvent>& events);

// For every report followed by a command: the time from the report's last
// byte to that command's code byte (the host's turn-around).
QList<qint64> turnaroundsNs(const QList<TrafficEvent>& events);

} // namespace gripsim
