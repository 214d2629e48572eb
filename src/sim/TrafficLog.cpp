#include "sim/TrafficLog.h"

namespace gripsim {

void TrafficLog::append(TrafficEvent event)
{
    std::lock_guard lock(m_mutex);
    if (m_events.size() >= kMaxEvents)
        m_events.removeFirst();
    m_events.append(std::move(event));
}

QList<TrafficEvent> TrafficLog::events() const
{
    std::lock_guard lock(m_mutex);
    return m_events;
}

void TrafficLog::clear()
{
    std::lock_guard lock(m_mutex);
    m_events.clear();
}

QList<qint64> pausesAfterCodeNs(const QList<TrafficEvent>& events)
{
    QList<qint64> pauses;
    for (const auto& event : events) {
        if (event.kind == TrafficEvent::Kind::Command && event.bytes.size() > 1)
            pauses.append(event.pauseAfterCodeNs());
    }
    return pauses;
}

QList<qint64> turnaroundsNs(const QList<TrafficEvent>& events)
{
    QList<qint64> turnarounds;
    const TrafficEvent* lastReport = nullptr;
    for (const auto& event : events) {
        if (event.kind == TrafficEvent::Kind::Report) {
            lastReport = &event;
        } else if (event.kind == TrafficEvent::Kind::Command && lastReport) {
            turnarounds.append(event.firstNs - lastReport->lastNs);
            lastReport = nullptr;
        }
    }
    return turnarounds;
}

} // namespace gripsim
