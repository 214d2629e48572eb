#pragma once

#include "sim/Reply.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QRandomGenerator;

namespace gripsim {

// How an injected fault spoils the grip's answer.
enum class FaultKind {
    Silent,  // no answer at all (the command is not carried out)
    Nak,     // negative answer 0x50 0x01 (the command is not carried out)
    Short,   // only the first half of the report
    Long,    // the report followed by three extra bytes
    BadSum,  // wrong check byte
    Garbage, // random bytes of the report's length, not starting with a valid code
    Pieces,  // the report in three pieces, 150 ms apart
    Delay,   // the report after a delay
};

constexpr int kCountAlways = -1;
constexpr int kPieceGapMs = 150;

// fault=KIND@CODE[*COUNT]: applies to the next COUNT answers to CODE, or to all.
struct FaultRule
{
    FaultKind kind = FaultKind::Silent;
    quint8 command = 0;
    int delayMs = 0;
    int count = kCountAlways;

    // Parses "KIND@CODE[*COUNT]", CODE in hex; KIND one of silent, nak, short,
    // long, badsum, garbage, pieces, delayMS.
    static std::optional<FaultRule> parse(const QString& text, QString* error);
    QString toString() const;

    bool operator==(const FaultRule&) const = default;
};

// failblock=ADDR[*N]: the next N reads or writes of the block at byte
// address ADDR (hex) are refused with a negative answer.
struct BlockFailure
{
    int address = 0;
    int count = 1;

    static std::optional<BlockFailure> parse(const QString& text, QString* error);
    QString toString() const;

    bool operator==(const BlockFailure&) const = default;
};

// The negative answer 0x50 0x01 with its check byte.
QByteArray negativeAnswer();

// The answer as sent: the report, spoiled by the rule if there is one, after
// the grip's latency. Silent and Nak are handled by the caller (they also
// decide whether the command is carried out) but are shaped here too.
Reply shapeReply(const QByteArray& report, quint8 command, const FaultRule* rule, int latencyMs,
                 QRandomGenerator& random);

} // namespace gripsim
