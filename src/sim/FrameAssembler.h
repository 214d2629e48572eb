#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace gripsim {

// A command frame as it arrived, with the monotonic times (ns) of its code
// byte, of the first byte after the code (the end of the host's pause) and of
// its last byte.
struct ReceivedFrame
{
    QByteArray bytes;
    qint64 codeNs = 0;
    qint64 restNs = 0;
    qint64 lastNs = 0;

    qint64 pauseAfterCodeNs() const { return restNs - codeNs; }
};

// Cuts the byte stream from the host into command frames. The size of each
// frame follows from its code (for the block writes from their count byte);
// an unknown code is a frame of its own. An incomplete frame is dropped after
// a silence, so that the stream resynchronises.
class FrameAssembler
{
public:
    static constexpr qint64 kDefaultSilenceNs = 1'000'000'000;

    explicit FrameAssembler(qint64 silenceNs = kDefaultSilenceNs);

    // Adds bytes that arrived at nowNs; gives the frames they complete.
    QList<ReceivedFrame> push(const QByteArray& bytes, qint64 nowNs);

    // Drops the incomplete frame if nothing arrived for the silence time;
    // gives what was dropped.
    std::optional<ReceivedFrame> dropIfStale(qint64 nowNs);

    // When the incomplete frame will be dropped, if there is one.
    std::optional<qint64> staleDeadlineNs() const;

    bool hasPartialFrame() const { return !m_partial.bytes.isEmpty(); }

private:
    std::optional<ReceivedFrame> pushByte(char byte, qint64 nowNs);
    int expectedSize() const; // 0 while the size is not known yet

    qint64 m_silenceNs;
    ReceivedFrame m_partial;
};

} // namespace gripsim
