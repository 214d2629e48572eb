#include "link/mAppFunc.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"

namespace mAppFunc {

qint32 GetFunctionInputSize(qint32 code, const QByteArray& frame)
{
    switch (code) {
    case CMD_BOOTMODE:
    case CMD_DL_GUNINFO:
    case CMD_DL_TIMING:
    case CMD_DL_COUNTERS:
    case CMD_DL_COUNTDOWN:
    case CMD_DL_BATTERY:
    case CMD_DL_OPTIONS:
    case CMD_DL_HYPER:
    case CMD_STOP_PROGRAM:
    case CMD_START_PROGRAM:
    case CMD_0x86:
    case CMD_0x87: return 2;
    case CMD_UL_TIMING: return 14;
    case CMD_RESET_COUNTER: return 6;
    case CMD_UL_COUNTDOWN: return 9;
    case CMD_UL_OPTIONS: return 6;
    case CMD_UL_HYPER: return 5;
    case CMD_READ_BLOCK: return 4;
    case CMD_WRITE_BLOCK:
    case CMD_WRITE_BLOCK_OLD: return static_cast<qint32>(frame.size());
    default: return 0;
    }
}

qint32 GetFunctionReturnSize(qint32 code)
{
    if (code < CMD_BOOTMODE || code > CMD_WRITE_BLOCK_OLD)
        return 0;
    switch (code) {
    case CMD_BOOTMODE: return GetReportReturnSize(REP_BOOTMODE);
    case CMD_DL_GUNINFO: return GetReportReturnSize(REP_GUNINFO);
    case CMD_DL_TIMING: return GetReportReturnSize(REP_TIMING);
    case CMD_DL_COUNTERS: return GetReportReturnSize(REP_COUNTERS);
    case CMD_DL_COUNTDOWN: return GetReportReturnSize(REP_COUNTDOWN);
    case CMD_DL_BATTERY: return GetReportReturnSize(REP_BATTERY);
    case CMD_DL_OPTIONS: return GetReportReturnSize(REP_OPTIONS);
    case CMD_DL_HYPER: return GetReportReturnSize(REP_HYPER);
    case CMD_UL_TIMING:
    case CMD_RESET_COUNTER:
    case CMD_UL_COUNTDOWN:
    case CMD_UL_OPTIONS:
    case CMD_UL_HYPER:
    case CMD_WRITE_BLOCK:
    case CMD_0x86:
    case CMD_0x87:
    case CMD_WRITE_BLOCK_OLD: return GetReportReturnSize(REP_ACK);
    case CMD_STOP_PROGRAM: return GetReportReturnSize(REP_STOPPED);
    case CMD_START_PROGRAM: return GetReportReturnSize(REP_STARTED);
    case CMD_READ_BLOCK: return GetReportReturnSize(REP_BLOCK);
    default: return 0;
    }
}

qint32 GetReportReturnSize(qint32 code)
{
    switch (code) {
    case REP_BOOTMODE: return 3;
    case REP_ACK: return 2;
    case REP_GUNINFO: return 28;
    case REP_TIMING: return 14;
    case REP_COUNTERS: return 10;
    case REP_COUNTDOWN: return 9;
    case REP_BATTERY: return 4;
    case REP_OPTIONS: return 6;
    case REP_HYPER: return 5;
    case REP_NEGATIVE: return 2;
    case REP_STOPPED: return 2;
    case REP_STARTED: return 2;
    case REP_BLOCK: return 18;
    default: return 0; // 0x96 and 0x97 are known codes without a size
    }
}

quint8 FrameByte(const QByteArray& frame, qint32 n)
{
    if (n < 1 || n > frame.size())
        return 0;
    return static_cast<quint8>(frame.at(n - 1));
}

QByteArray FrameBytes(std::initializer_list<qint32> values)
{
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(values.size()));
    for (const qint32 value : values) {
        if (value < 0 || value > 255)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        bytes.append(static_cast<char>(value));
    }
    return bytes;
}

quint8 GetByteFromHexstring(const QString& hex, qint32 n)
{
    if (n < 1)
        return 0;
    const qsizetype start = 2 * static_cast<qsizetype>(n) - 2;
    if (start >= hex.size())
        return 0;
    return static_cast<quint8>(HexValue(hex.mid(start, 2)));
}

QString LZ(qint32 length, const QString& text)
{
    if (text.size() >= length)
        return text;
    return QString(length - text.size(), QLatin1Char('0')) + text;
}

qint32 HexValue(const QString& text)
{
    bool ok = false;
    const uint value = text.toUInt(&ok, 16);
    if (!ok || text.isEmpty() || text.size() > 8 || text.startsWith(QLatin1Char('+')) ||
        text.startsWith(QLatin1Char('-')) || text.contains(QLatin1Char(' ')))
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    return static_cast<qint32>(value);
}

QString BytesToHex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

} // namespace mAppFunc
