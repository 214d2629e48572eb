#include "sim/FrameAssembler.h"

#include "sim/Catalogue.h"

namespace gripsim {

namespace {

constexpr int kCountPosition = 3;

} // namespace

FrameAssembler::FrameAssembler(qint64 silenceNs)
    : m_silenceNs(silenceNs)
{
}

QList<ReceivedFrame> FrameAssembler::push(const QByteArray& bytes, qint64 nowNs)
{
    QList<ReceivedFrame> frames;
    for (const char byte : bytes) {
        if (auto frame = pushByte(byte, nowNs))
            frames.append(std::move(*frame));
    }
    return frames;
}

std::optional<ReceivedFrame> FrameAssembler::pushByte(char byte, qint64 nowNs)
{
    if (m_partial.bytes.isEmpty())
        m_partial.codeNs = nowNs;
    else if (m_partial.bytes.size() == 1)
        m_partial.restNs = nowNs;
    m_partial.bytes.append(byte);
    m_partial.lastNs = nowNs;
    const int expected = expectedSize();
    if (expected == 0 || m_partial.bytes.size() < expected)
        return std::nullopt;
    ReceivedFrame frame = std::move(m_partial);
    if (frame.bytes.size() == 1)
        frame.restNs = frame.codeNs;
    m_partial = {};
    return frame;
}

int FrameAssembler::expectedSize() const
{
    const auto command = static_cast<quint8>(m_partial.bytes.at(0));
    if (!isKnownCommand(command))
        return 1;
    if (!isBlockWrite(command))
        return commandSize(command);
    if (m_partial.bytes.size() <= kCountPosition)
        return 0;
    return blockWriteSize(static_cast<quint8>(m_partial.bytes.at(kCountPosition)));
}

std::optional<ReceivedFrame> FrameAssembler::dropIfStale(qint64 nowNs)
{
    if (m_partial.bytes.isEmpty() || nowNs - m_partial.lastNs < m_silenceNs)
        return std::nullopt;
    ReceivedFrame dropped = std::move(m_partial);
    m_partial = {};
    return dropped;
}

std::optional<qint64> FrameAssembler::staleDeadlineNs() const
{
    if (m_partial.bytes.isEmpty())
        return std::nullopt;
    return m_partial.lastNs + m_silenceNs;
}

} // namespace gripsim
