#include "sim/VirtualGrip.h"

#include "sim/Catalogue.h"
#include "sim/GripProtocol.h"
#include "sim/SimClock.h"

namespace gripsim {

namespace {

constexpr quint32 kRandomSeed = 0x6d61726c;

bool isBlockExchange(quint8 command)
{
    return command == code::ReadBlock || isBlockWrite(command);
}

} // namespace

VirtualGrip::VirtualGrip(const SimOptions& options)
    : m_state(options.initialState())
    , m_faults(options.faults)
    , m_blockFailures(options.blockFailures)
    , m_latencyMs(options.latencyMs)
    , m_random(kRandomSeed)
{
}

QList<Reply> VirtualGrip::feed(const QByteArray& bytes, qint64 nowNs)
{
    std::lock_guard lock(m_mutex);
    QList<Reply> replies;
    for (const auto& frame : m_assembler.push(bytes, nowNs))
        replies.append(respondLocked(frame));
    return replies;
}

bool VirtualGrip::dropStaleInput(qint64 nowNs)
{
    std::lock_guard lock(m_mutex);
    const auto dropped = m_assembler.dropIfStale(nowNs);
    if (dropped) {
        m_traffic.append({TrafficEvent::Kind::Dropped, dropped->bytes, dropped->codeNs, dropped->restNs,
                          dropped->lastNs});
    }
    return dropped.has_value();
}

std::optional<qint64> VirtualGrip::staleInputDeadlineNs() const
{
    std::lock_guard lock(m_mutex);
    return m_assembler.staleDeadlineNs();
}

Reply VirtualGrip::respond(const ReceivedFrame& frame)
{
    std::lock_guard lock(m_mutex);
    return respondLocked(frame);
}

std::optional<QByteArray> VirtualGrip::handleFrame(const QByteArray& frame)
{
    const qint64 now = monotonicNs();
    const Reply reply = respond({frame, now, now, now});
    if (reply.isSilent())
        return std::nullopt;
    return reply.bytes();
}

Reply VirtualGrip::respondLocked(const ReceivedFrame& frame)
{
    m_traffic.append({TrafficEvent::Kind::Command, frame.bytes, frame.codeNs, frame.restNs, frame.lastNs});
    GripState next = m_state;
    const auto report = answerCommand(next, frame.bytes);
    if (!report)
        return {};
    const quint8 command = static_cast<quint8>(frame.bytes.at(0));
    if (takeBlockFailure(frame.bytes))
        return shapeReply(negativeAnswer(), command, nullptr, m_latencyMs, m_random);
    const auto rule = takeFault(command);
    // A refused or unheard command is not carried out; any other fault spoils
    // only the answer on its way back.
    const bool carriedOut = !rule || (rule->kind != FaultKind::Silent && rule->kind != FaultKind::Nak);
    if (carriedOut)
        commit(next);
    return shapeReply(*report, command, rule ? &*rule : nullptr, m_latencyMs, m_random);
}

bool VirtualGrip::takeBlockFailure(const QByteArray& frame)
{
    if (!isBlockExchange(static_cast<quint8>(frame.at(0))))
        return false;
    const int address = blockByteAddress(frame);
    for (auto it = m_blockFailures.begin(); it != m_blockFailures.end(); ++it) {
        if (it->address != address)
            continue;
        if (--it->count <= 0)
            m_blockFailures.erase(it);
        return true;
    }
    return false;
}

std::optional<FaultRule> VirtualGrip::takeFault(quint8 command)
{
    for (auto it = m_faults.begin(); it != m_faults.end(); ++it) {
        if (it->command != command)
            continue;
        const FaultRule rule = *it;
        if (it->count != kCountAlways && --it->count <= 0)
            m_faults.erase(it);
        return rule;
    }
    return std::nullopt;
}

void VirtualGrip::commit(const GripState& next)
{
    if (next == m_state)
        return;
    m_state = next;
    ++m_revision;
}

void VirtualGrip::recordSent(const QByteArray& bytes, qint64 firstNs, qint64 lastNs)
{
    m_traffic.append({TrafficEvent::Kind::Report, bytes, firstNs, firstNs, lastNs});
}

GripState VirtualGrip::state() const
{
    std::lock_guard lock(m_mutex);
    return m_state;
}

void VirtualGrip::setState(const GripState& state)
{
    std::lock_guard lock(m_mutex);
    commit(state);
}

void VirtualGrip::updateState(const std::function<void(GripState&)>& change)
{
    std::lock_guard lock(m_mutex);
    GripState next = m_state;
    change(next);
    commit(next);
}

quint64 VirtualGrip::stateRevision() const
{
    std::lock_guard lock(m_mutex);
    return m_revision;
}

void VirtualGrip::addFault(const FaultRule& rule)
{
    std::lock_guard lock(m_mutex);
    m_faults.append(rule);
}

void VirtualGrip::addBlockFailure(const BlockFailure& failure)
{
    std::lock_guard lock(m_mutex);
    m_blockFailures.append(failure);
}

void VirtualGrip::clearFaults()
{
    std::lock_guard lock(m_mutex);
    m_faults.clear();
    m_blockFailures.clear();
}

QList<FaultRule> VirtualGrip::faults() const
{
    std::lock_guard lock(m_mutex);
    return m_faults;
}

QList<BlockFailure> VirtualGrip::blockFailures() const
{
    std::lock_guard lock(m_mutex);
    return m_blockFailures;
}

void VirtualGrip::setLatencyMs(int ms)
{
    std::lock_guard lock(m_mutex);
    m_latencyMs = ms;
}

int VirtualGrip::latencyMs() const
{
    std::lock_guard lock(m_mutex);
    return m_latencyMs;
}

QList<TrafficEvent> VirtualGrip::traffic() const
{
    return m_traffic.events();
}

void VirtualGrip::clearTraffic()
{
    m_traffic.clear();
}

} // namespace gripsim
