#pragma once

#include "sim/FrameAssembler.h"
#include "sim/GripState.h"
#include "sim/Reply.h"
#include "sim/SimOptions.h"
#include "sim/TrafficLog.h"

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>

#include <functional>
#include <mutex>
#include <optional>

namespace gripsim {

// The virtual grip without any I/O: takes the host's bytes or frames, keeps
// the grip's state, injects the configured faults and records the traffic.
// Every public member is thread-safe, so a test may look at or change the
// state while a server thread serves.
class VirtualGrip
{
public:
    explicit VirtualGrip(const SimOptions& options = SimOptions());

    // Byte level: adds bytes that arrived at nowNs (monotonic ns) and answers
    // every frame they complete.
    QList<Reply> feed(const QByteArray& bytes, qint64 nowNs);
    // Drops an incomplete frame after a silence (recorded as Dropped).
    bool dropStaleInput(qint64 nowNs);
    std::optional<qint64> staleInputDeadlineNs() const;

    // Frame level: answers one complete frame (recorded as a Command).
    Reply respond(const ReceivedFrame& frame);
    // The same, stamped now, giving the bytes of the answer (all pieces, no
    // delays) or nothing when the grip stays silent.
    std::optional<QByteArray> handleFrame(const QByteArray& frame);

    // The server reports every answer it wrote, for the traffic record.
    void recordSent(const QByteArray& bytes, qint64 firstNs, qint64 lastNs);

    GripState state() const;
    void setState(const GripState& state);
    void updateState(const std::function<void(GripState&)>& change);
    // Goes up by one on every change of the state.
    quint64 stateRevision() const;

    // Faults still to come; fault rules whose count ran out are removed.
    void addFault(const FaultRule& rule);
    void addBlockFailure(const BlockFailure& failure);
    void clearFaults();
    QList<FaultRule> faults() const;
    QList<BlockFailure> blockFailures() const;

    // Delay before every answer.
    void setLatencyMs(int ms);
    int latencyMs() const;

    QList<TrafficEvent> traffic() const;
    void clearTraffic();

private:
    Reply respondLocked(const ReceivedFrame& frame);
    bool takeBlockFailure(const QByteArray& frame);
    std::optional<FaultRule> takeFault(quint8 command);
    void commit(const GripState& next);

    mutable std::mutex m_mutex;
    GripState m_state;
    quint64 m_revision = 0;
    QList<FaultRule> m_faults;
    QList<BlockFailure> m_blockFailures;
    int m_latencyMs = 0;
    FrameAssembler m_assembler;
    QRandomGenerator m_random;
    TrafficLog m_traffic;
};

} // namespace gripsim
