#include "sim/Fault.h"

#include "sim/Catalogue.h"
#include "sim/Checksum.h"
#include "sim/ErrorText.h"

#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>
#include <array>

namespace gripsim {

namespace {

constexpr int kMaxDelayMs = 600000;
constexpr int kLongExtraBytes = 3;
constexpr int kPieceCount = 3;

struct KindName
{
    FaultKind kind;
    const char* name;
};

constexpr std::array<KindName, 7> kKindNames{{
    {FaultKind::Silent, "silent"},
    {FaultKind::Nak, "nak"},
    {FaultKind::Short, "short"},
    {FaultKind::Long, "long"},
    {FaultKind::BadSum, "badsum"},
    {FaultKind::Garbage, "garbage"},
    {FaultKind::Pieces, "pieces"},
}};

std::optional<int> parseHex(QString text, int max)
{
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        text = text.mid(2);
    bool ok = false;
    const int value = text.toInt(&ok, 16);
    if (!ok || text.isEmpty() || text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('-'))
        || value > max)
        return std::nullopt;
    return value;
}

// The count of "TARGET*COUNT", if one was given; item names the whole text in the message.
bool readCount(const QString& text, const QString& item, int* count, QString* error)
{
    if (text.isEmpty())
        return true;
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!ok || value < 1) {
        setError(error, QStringLiteral("%1: count '%2' is not a positive number").arg(item, text));
        return false;
    }
    *count = value;
    return true;
}

// "TARGET[*COUNT]" into its two parts; the count is empty when not given.
bool splitCount(const QString& text, QString* target, QString* count)
{
    const QStringList parts = text.split(QLatin1Char('*'));
    if (parts.size() > 2)
        return false;
    *target = parts[0];
    *count = parts.size() == 2 ? parts[1] : QString();
    return parts.size() == 1 || !count->isEmpty();
}

bool parseKind(const QString& text, FaultRule* rule)
{
    for (const auto& entry : kKindNames) {
        if (text == QLatin1String(entry.name)) {
            rule->kind = entry.kind;
            return true;
        }
    }
    if (!text.startsWith(QLatin1String("delay")))
        return false;
    bool ok = false;
    const int ms = text.mid(5).toInt(&ok, 10);
    if (!ok || ms < 0 || ms > kMaxDelayMs || text.size() == 5)
        return false;
    rule->kind = FaultKind::Delay;
    rule->delayMs = ms;
    return true;
}

QString kindName(const FaultRule& rule)
{
    if (rule.kind == FaultKind::Delay)
        return QStringLiteral("delay%1").arg(rule.delayMs);
    for (const auto& entry : kKindNames) {
        if (entry.kind == rule.kind)
            return QLatin1String(entry.name);
    }
    return {};
}

QByteArray garbageFor(int size, quint8 command, QRandomGenerator& random)
{
    QByteArray bytes(size, '\0');
    for (auto& b : bytes)
        b = static_cast<char>(random.bounded(256));
    quint8 first = 0;
    do {
        first = static_cast<quint8>(random.bounded(256));
    } while (first == reportCodeFor(command) || first == code::Negative);
    bytes[0] = static_cast<char>(first);
    return bytes;
}

QList<ReplyChunk> inPieces(const QByteArray& report)
{
    QList<ReplyChunk> chunks;
    const int pieceSize = (report.size() + kPieceCount - 1) / kPieceCount;
    for (int pos = 0; pos < report.size(); pos += pieceSize)
        chunks.append({chunks.isEmpty() ? 0 : kPieceGapMs, report.mid(pos, pieceSize)});
    return chunks;
}

QList<ReplyChunk> spoil(const QByteArray& report, quint8 command, FaultKind kind, int delayMs,
                        QRandomGenerator& random)
{
    switch (kind) {
    case FaultKind::Silent:
        return {};
    case FaultKind::Nak:
        return {{0, negativeAnswer()}};
    case FaultKind::Short:
        return {{0, report.left(std::max<qsizetype>(1, report.size() / 2))}};
    case FaultKind::Long:
        return {{0, report + QByteArray(kLongExtraBytes, '\0')}};
    case FaultKind::BadSum: {
        QByteArray bad = report;
        bad[bad.size() - 1] = static_cast<char>(static_cast<quint8>(bad.back()) + 1);
        return {{0, bad}};
    }
    case FaultKind::Garbage:
        return {{0, garbageFor(report.size(), command, random)}};
    case FaultKind::Pieces:
        return inPieces(report);
    case FaultKind::Delay:
        return {{delayMs, report}};
    }
    return {{0, report}};
}

} // namespace

std::optional<FaultRule> FaultRule::parse(const QString& text, QString* error)
{
    const QStringList parts = text.split(QLatin1Char('@'));
    const QString syntax = QStringLiteral("fault '%1' is not KIND@CODE[*COUNT]").arg(text);
    if (parts.size() != 2) {
        setError(error, syntax);
        return std::nullopt;
    }
    FaultRule rule;
    if (!parseKind(parts[0].toLower(), &rule)) {
        setError(error, QStringLiteral("unknown fault kind '%1' (silent, nak, short, long, badsum, "
                                       "garbage, pieces, delayMS)")
                            .arg(parts[0]));
        return std::nullopt;
    }
    QString codeText, countText;
    if (!splitCount(parts[1], &codeText, &countText)) {
        setError(error, syntax);
        return std::nullopt;
    }
    const auto command = parseHex(codeText, 0xFF);
    if (!command || !isKnownCommand(static_cast<quint8>(*command))) {
        setError(error, QStringLiteral("fault '%1': '%2' is not a command code of the grip (hex)")
                            .arg(text, codeText));
        return std::nullopt;
    }
    rule.command = static_cast<quint8>(*command);
    if (!readCount(countText, QStringLiteral("fault '%1'").arg(text), &rule.count, error))
        return std::nullopt;
    return rule;
}

QString FaultRule::toString() const
{
    QString text = QStringLiteral("%1@%2").arg(kindName(*this)).arg(command, 2, 16, QLatin1Char('0'));
    if (count != kCountAlways)
        text += QStringLiteral("*%1").arg(count);
    return text;
}

std::optional<BlockFailure> BlockFailure::parse(const QString& text, QString* error)
{
    QString addressText, countText;
    if (!splitCount(text, &addressText, &countText)) {
        setError(error, QStringLiteral("failblock '%1' is not ADDR[*N]").arg(text));
        return std::nullopt;
    }
    const auto address = parseHex(addressText, 0xFFFF);
    if (!address) {
        setError(error, QStringLiteral("failblock '%1': '%2' is not a hex byte address").arg(text, addressText));
        return std::nullopt;
    }
    BlockFailure failure;
    failure.address = *address;
    if (!readCount(countText, QStringLiteral("failblock '%1'").arg(text), &failure.count, error))
        return std::nullopt;
    return failure;
}

QString BlockFailure::toString() const
{
    return QStringLiteral("%1*%2").arg(address, 0, 16).arg(count);
}

QByteArray negativeAnswer()
{
    QByteArray bytes;
    bytes.append(static_cast<char>(code::Negative));
    bytes.append(static_cast<char>(kNegativeError));
    return withChecksum(bytes);
}

Reply shapeReply(const QByteArray& report, quint8 command, const FaultRule* rule, int latencyMs,
                 QRandomGenerator& random)
{
    Reply reply;
    if (rule)
        reply.chunks = spoil(report, command, rule->kind, rule->delayMs, random);
    else
        reply.chunks = {{0, report}};
    if (!reply.chunks.isEmpty())
        reply.chunks.first().delayMs += latencyMs;
    return reply;
}

} // namespace gripsim
