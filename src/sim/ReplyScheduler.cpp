#include "sim/ReplyScheduler.h"

#include "sim/SimClock.h"

namespace gripsim {

void ReplyScheduler::add(const Reply& reply, qint64 arrivalNs)
{
    if (reply.isSilent())
        return;
    m_queue.push_back({reply, 0, arrivalNs + reply.chunks.first().delayMs * kNsPerMs, {}, 0});
}

std::optional<qint64> ReplyScheduler::nextDueNs() const
{
    if (m_queue.empty())
        return std::nullopt;
    return m_queue.front().dueNs;
}

std::optional<QByteArray> ReplyScheduler::dueChunk(qint64 nowNs) const
{
    if (m_queue.empty() || m_queue.front().dueNs > nowNs)
        return std::nullopt;
    const Pending& head = m_queue.front();
    return head.reply.chunks.at(head.next).bytes;
}

std::optional<ReplyScheduler::SentReport> ReplyScheduler::chunkWritten(qint64 firstNs, qint64 lastNs)
{
    if (m_queue.empty())
        return std::nullopt;
    Pending& head = m_queue.front();
    if (head.next == 0)
        head.firstNs = firstNs;
    head.sent += head.reply.chunks.at(head.next).bytes;
    ++head.next;
    if (head.next < head.reply.chunks.size()) {
        head.dueNs = lastNs + head.reply.chunks.at(head.next).delayMs * kNsPerMs;
        return std::nullopt;
    }
    SentReport sent{head.sent, head.firstNs, lastNs};
    m_queue.pop_front();
    return sent;
}

} // namespace gripsim
