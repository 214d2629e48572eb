#pragma once

#include <QByteArray>
#include <QList>

namespace gripsim {

// One piece of an answer: sent after waiting delayMs (counted from the end of
// the previous piece, or from the arrival of the command for the first one).
struct ReplyChunk
{
    int delayMs = 0;
    QByteArray bytes;

    bool operator==(const ReplyChunk&) const = default;
};

// What the grip sends back for one command; no chunks means silence.
struct Reply
{
    QList<ReplyChunk> chunks;

    bool isSilent() const { return chunks.isEmpty(); }

    QByteArray bytes() const
    {
        QByteArray all;
        for (const auto& chunk : chunks)
            all += chunk.bytes;
        return all;
    }
};

} // namespace gripsim
