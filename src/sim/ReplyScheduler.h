#pragma once

#include "sim/Reply.h"

#include <QByteArray>

#include <deque>
#include <optional>

namespace gripsim {

// Orders the grip's answers in time: one answer after the other, each piece
// after its delay.
class ReplyScheduler
{
public:
    struct SentReport
    {
        QByteArray bytes;
        qint64 firstNs = 0;
        qint64 lastNs = 0;
    };

    // Queues an answer to a command whose last byte arrived at arrivalNs;
    // silence queues nothing.
    void add(const Reply& reply, qint64 arrivalNs);

    bool isEmpty() const { return m_queue.empty(); }
    // When the next piece is due.
    std::optional<qint64> nextDueNs() const;
    // The piece to write now, if one is due.
    std::optional<QByteArray> dueChunk(qint64 nowNs) const;
    // Marks the due piece as written; gives the whole answer after its last piece.
    std::optional<SentReport> chunkWritten(qint64 firstNs, qint64 lastNs);

private:
    struct Pending
    {
        Reply reply;
        int next = 0;
        qint64 dueNs = 0;
        QByteArray sent;
        qint64 firstNs = 0;
    };

    std::deque<Pending> m_queue;
};

} // namespace gripsim
