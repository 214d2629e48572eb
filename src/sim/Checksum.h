#pragma once

#include <QByteArray>

namespace gripsim {

// The link's check byte: the value that makes all bytes of a frame add up to
// 0 modulo 256.
quint8 checksumFor(const QByteArray& bytes);

// The bytes with their check byte appended.
QByteArray withChecksum(const QByteArray& bytes);

// True when all bytes add up to 0 modulo 256.
bool sumsToZero(const QByteArray& bytes);

} // namespace gripsim
