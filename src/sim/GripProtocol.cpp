#include "sim/GripProtocol.h"

#include "sim/Catalogue.h"
#include "sim/Checksum.h"
#include "sim/Fault.h"
#include "sim/GripState.h"

#include <initializer_list>

namespace gripsim {

namespace {

const BuildVersion kOptionsFirmware{1, 1, 70};
const BuildVersion kRampingFirmware{4, 0, 0};
const BuildVersion kLastSelectorFirmware{1, 1, 70};
const BuildVersion kLastOldBootCode{1, 2, 0};

quint8 at(const QByteArray& frame, int index)
{
    return static_cast<quint8>(frame.at(index));
}

quint16 wordAt(const QByteArray& frame, int index)
{
    return static_cast<quint16>(at(frame, index) | (at(frame, index + 1) << 8));
}

void appendByte(QByteArray& bytes, int value)
{
    bytes.append(static_cast<char>(value & 0xFF));
}

void appendWord(QByteArray& bytes, int value)
{
    appendByte(bytes, value);
    appendByte(bytes, value >> 8);
}

QByteArray bytesOf(std::initializer_list<quint8> values)
{
    QByteArray bytes;
    for (const quint8 v : values)
        appendByte(bytes, v);
    return bytes;
}

void appendVersion(QByteArray& bytes, const BuildVersion& version)
{
    appendByte(bytes, version.majorNo);
    appendByte(bytes, version.minorNo);
    appendWord(bytes, version.revisionNo);
}

// A report: its code, the data, the check byte.
QByteArray report(quint8 reportCode, const QByteArray& data = {})
{
    QByteArray bytes(1, static_cast<char>(reportCode));
    bytes += data;
    return withChecksum(bytes);
}

QByteArray ack()
{
    return report(code::Ack);
}

QByteArray gunInfoData(const GripState& s)
{
    QByteArray data = s.serial.left(kSerialLength).leftJustified(kSerialLength, ' ');
    appendVersion(data, s.firmware);
    appendVersion(data, s.protocol);
    appendVersion(data, s.boot);
    appendVersion(data, s.hardware);
    return data;
}

QByteArray timingData(const TimingValues& t)
{
    const QByteArray block =
        bytesOf({t.shotTime, t.dwellTime, t.cycleTimeOpen, t.loadTime, t.cycleTimeClose, t.firingMode});
    return block + block;
}

QByteArray countersData(const CounterValues& c)
{
    QByteArray data;
    appendWord(data, c.counter1);
    appendWord(data, c.counter2);
    appendWord(data, static_cast<int>(c.total & 0xFFFF));
    appendWord(data, static_cast<int>((c.total >> 16) & 0x7FFF));
    return data;
}

QByteArray gameTimerData(const GameTimerValues& g)
{
    QByteArray data;
    appendByte(data, g.countDownTimer);
    appendByte(data, g.preAlert1On);
    appendWord(data, g.preAlert1Time);
    appendByte(data, g.preAlert2On);
    appendWord(data, g.preAlert2Time);
    return data;
}

QByteArray optionsData(const OptionValues& o)
{
    return bytesOf({o.flags, o.eyeCheckMaxTime, o.eyeCheckOKTime, o.defaultLoadTime});
}

QByteArray rampingData(const RampingValues& r)
{
    return bytesOf({r.shots, r.hyperTime, r.hyperMode});
}

QByteArray bootQuery(const GripState& s)
{
    return report(0x41, QByteArray(1, s.bootMode ? '\x01' : '\x00'));
}

QByteArray putTiming(GripState& s, const QByteArray& f)
{
    // The values come twice; the grip takes the first block.
    s.timing = {at(f, 1), at(f, 2), at(f, 3), at(f, 4), at(f, 5), at(f, 6)};
    return ack();
}

QByteArray resetCounter(GripState& s, const QByteArray& f)
{
    if (firmwareResetsBySelector(s)) {
        const quint8 selector = at(f, 1);
        if (selector & 0x01)
            s.counters.counter1 = 0;
        if (selector & 0x02)
            s.counters.counter2 = 0;
    } else {
        s.counters.counter1 = wordAt(f, 1);
        s.counters.counter2 = wordAt(f, 3);
    }
    return ack();
}

QByteArray putGameTimer(GripState& s, const QByteArray& f)
{
    s.gameTimer = {at(f, 1), at(f, 2), wordAt(f, 3), at(f, 5), wordAt(f, 6)};
    return ack();
}

QByteArray putOptions(GripState& s, const QByteArray& f)
{
    s.options = {at(f, 1), at(f, 2), at(f, 3), at(f, 4)};
    return ack();
}

QByteArray putRamping(GripState& s, const QByteArray& f)
{
    s.ramping = {at(f, 1), at(f, 2), at(f, 3)};
    return ack();
}

QByteArray readBlock(const GripState& s, const QByteArray& f)
{
    const int address = blockByteAddress(f);
    QByteArray data;
    for (int i = 0; i < kBlockSize; ++i)
        appendByte(data, s.memoryAt(address + i));
    return report(0x95, data);
}

bool blockWriteCheckPasses(const GripState& s, const QByteArray& f)
{
    return bootCodeIsOld(s) ? sumsToZero(f) : sumsToZero(f.mid(1));
}

QByteArray writeBlock(GripState& s, const QByteArray& f)
{
    const quint8 expected = bootCodeIsOld(s) ? code::WriteBlockOld : code::WriteBlock;
    if (at(f, 0) != expected || !blockWriteCheckPasses(s, f))
        return negativeAnswer();
    const int address = blockByteAddress(f);
    const int count = at(f, 3);
    for (int i = 0; i < count; ++i)
        s.setMemoryAt(address + i, at(f, 4 + i));
    return ack();
}

bool frameHasItsSize(const QByteArray& f)
{
    const quint8 command = at(f, 0);
    if (isBlockWrite(command))
        return f.size() >= 4 && f.size() == blockWriteSize(at(f, 3));
    return f.size() == commandSize(command);
}

bool servedInApplication(const GripState& s, quint8 command)
{
    switch (command) {
    case code::BootQuery: case code::GunInfo: case code::GetTiming: case code::GetCounters:
    case code::GetGameTimer: case code::GetBattery: case code::PutTiming: case code::ResetCounter:
    case code::PutGameTimer: case code::StopProgram: case code::StartProgram:
        return true;
    case code::GetOptions: case code::PutOptions:
        return firmwareHasOptions(s);
    case code::GetRamping: case code::PutRamping:
        return firmwareHasRamping(s);
    default:
        return false;
    }
}

bool servedInBoot(quint8 command)
{
    switch (command) {
    case code::BootQuery: case code::GunInfo: case code::StopProgram: case code::StartProgram:
    case code::ReadBlock: case code::WriteBlock: case code::WriteBlockOld: case code::Plain86:
    case code::Plain87:
        return true;
    default:
        return false;
    }
}

QByteArray carryOut(GripState& s, const QByteArray& f)
{
    switch (at(f, 0)) {
    case code::BootQuery: return bootQuery(s);
    case code::GunInfo: return report(0x43, gunInfoData(s));
    case code::GetTiming: return report(0x44, timingData(s.timing));
    case code::GetCounters: return report(0x45, countersData(s.counters));
    case code::GetGameTimer: return report(0x46, gameTimerData(s.gameTimer));
    case code::GetBattery: {
        QByteArray data;
        appendWord(data, s.battery);
        return report(0x47, data);
    }
    case code::GetOptions: return report(0x48, optionsData(s.options));
    case code::GetRamping: return report(0x49, rampingData(s.ramping));
    case code::PutTiming: return putTiming(s, f);
    case code::ResetCounter: return resetCounter(s, f);
    case code::PutGameTimer: return putGameTimer(s, f);
    case code::PutOptions: return putOptions(s, f);
    case code::PutRamping: return putRamping(s, f);
    case code::StopProgram:
        s.bootMode = true;
        return report(0x91);
    case code::StartProgram:
        s.bootMode = false;
        return report(0x93);
    case code::ReadBlock: return readBlock(s, f);
    default: return ack(); // 0x86, 0x87
    }
}

} // namespace

bool firmwareHasOptions(const GripState& state)
{
    return state.firmware >= kOptionsFirmware;
}

bool firmwareHasRamping(const GripState& state)
{
    return state.firmware >= kRampingFirmware;
}

bool firmwareResetsBySelector(const GripState& state)
{
    return state.firmware <= kLastSelectorFirmware;
}

bool bootCodeIsOld(const GripState& state)
{
    return state.boot <= kLastOldBootCode;
}

int blockByteAddress(const QByteArray& frame)
{
    return frame.size() < 3 ? 0 : 2 * ((at(frame, 1) << 8) | at(frame, 2));
}

std::optional<QByteArray> answerCommand(GripState& state, const QByteArray& frame)
{
    if (frame.isEmpty() || !isKnownCommand(at(frame, 0)) || !frameHasItsSize(frame))
        return std::nullopt;
    const quint8 command = at(frame, 0);
    const bool served = state.bootMode ? servedInBoot(command) : servedInApplication(state, command);
    if (!served)
        return std::nullopt;
    if (isBlockWrite(command))
        return writeBlock(state, frame);
    if (!sumsToZero(frame))
        return negativeAnswer();
    return carryOut(state, frame);
}

} // namespace gripsim
