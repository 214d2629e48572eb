#include "sim/Checksum.h"

namespace gripsim {

namespace {

quint8 byteSum(const QByteArray& bytes)
{
    unsigned sum = 0;
    for (const char c : bytes)
        sum += static_cast<quint8>(c);
    return static_cast<quint8>(sum);
}

} // namespace

quint8 checksumFor(const QByteArray& bytes)
{
    return static_cast<quint8>(256u - byteSum(bytes));
}

QByteArray withChecksum(const QByteArray& bytes)
{
    QByteArray frame = bytes;
    frame.append(static_cast<char>(checksumFor(bytes)));
    return frame;
}

bool sumsToZero(const QByteArray& bytes)
{
    return byteSum(bytes) == 0;
}

} // namespace gripsim
