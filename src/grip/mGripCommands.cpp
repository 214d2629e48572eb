#include "grip/mGripCommands.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "grip/cSupports.h"
#include "grip/mCommSupportHex.h"
#include "link/cError.h"

#include <functional>
#include <optional>

namespace mGripCommands {

namespace {

// Runs one exchange of a record and tells how it ended. A refusal stays recorded in the
// grip's error record; an earlier refusal of the same command is not forgotten.
Outcome runTransfer(const std::function<void()>& exchange, const std::function<bool()>& supported)
{
    const cError before = GripError();
    GripError().Clear();
    exchange();
    if (GripError().ErrorCode() != cError::NoError)
        return Outcome::Refused;
    GripError() = before;
    // The gun information was just refreshed, so the flags follow the grip at hand.
    if (supported && !supported())
        return Outcome::Unsupported;
    return Outcome::Done;
}

// Runs body in the frame, when there is one.
template <typename F>
decltype(auto) inFrame(const std::optional<ErrorFrame>& frame, F&& body)
{
    if (!frame)
        return body();
    return PassErrors(frame->module, frame->revision, frame->procedure, body);
}

// One transfer, with the observer's work before and after it in the frame the observer names.
Outcome observedTransfer(GripRecord record, Direction direction, cTransferObserver* observer)
{
    if (!observer)
        return TransferRecord(record, direction);
    return inFrame(observer->TransferFrame(record, direction), [&] {
        observer->TransferStarting(record, direction);
        const Outcome outcome = TransferRecord(record, direction);
        observer->TransferEnded({record, direction, outcome});
        return outcome;
    });
}

// The common frame: wait pointer, a fresh error record, the boot-mode check, the transfers.
CommandResult runCommand(const QString& procedure, const QList<QPair<GripRecord, Direction>>& steps,
                         cTransferObserver* observer)
{
    const ErrorFrame own{kModule, kRevision, procedure};
    return inFrame(observer ? observer->CommandFrame(own) : own, [&] {
        WaitPointerScope wait;
        GripError().Clear();
        CommandResult result;
        result.programStarted = StartProgramIfInBootMode();
        result.bootCheckRefused = GripError().ErrorCode() != cError::NoError;
        for (const auto& step : steps)
            result.transfers.append({step.first, step.second, observedTransfer(step.first, step.second, observer)});
        return result;
    });
}

} // namespace

std::optional<ErrorFrame> cTransferObserver::CommandFrame(const ErrorFrame& own) const
{
    return own;
}

std::optional<ErrorFrame> cTransferObserver::TransferFrame(GripRecord, Direction) const
{
    return std::nullopt;
}

void cTransferObserver::TransferStarting(GripRecord, Direction) {}

bool CommandResult::refused() const
{
    if (bootCheckRefused)
        return true;
    for (const Transfer& t : transfers)
        if (t.outcome == Outcome::Refused)
            return true;
    return false;
}

QList<GripRecord> CommandResult::unsupported() const
{
    QList<GripRecord> records;
    for (const Transfer& t : transfers)
        if (t.outcome == Outcome::Unsupported && !records.contains(t.record))
            records.append(t.record);
    return records;
}

Outcome CommandResult::outcomeOf(GripRecord record) const
{
    Outcome outcome = Outcome::Done;
    for (const Transfer& t : transfers)
        if (t.record == record)
            outcome = t.outcome;
    return outcome;
}

QString RecordName(GripRecord record)
{
    switch (record) {
    case GripRecord::Timing: return QStringLiteral("timing");
    case GripRecord::Counters: return QStringLiteral("counters");
    case GripRecord::GameTimer: return QStringLiteral("gametimer");
    case GripRecord::Battery: return QStringLiteral("battery");
    case GripRecord::Options: return QStringLiteral("options");
    case GripRecord::Ramping: return QStringLiteral("ramping");
    }
    return QString();
}

bool RecordFromName(const QString& name, GripRecord& record)
{
    for (const GripRecord r : {GripRecord::Timing, GripRecord::Counters, GripRecord::GameTimer,
                               GripRecord::Battery, GripRecord::Options, GripRecord::Ramping}) {
        if (RecordName(r) == name) {
            record = r;
            return true;
        }
    }
    return false;
}

bool CanPut(GripRecord record)
{
    return record != GripRecord::Counters && record != GripRecord::Battery;
}

bool StartProgramIfInBootMode()
{
    return PassErrors(kModule, kRevision, QStringLiteral("StartProgramIfInBootMode"), [] {
        if (!mCommSupportHex::GRIPIsBootmode())
            return false;
        mCommSupportHex::GRIPStartProgram();
        return true;
    });
}

Outcome TransferRecord(GripRecord record, Direction direction)
{
    const QString procedure = QStringLiteral("TransferRecord(%1 %2)")
                                  .arg(direction == Direction::Get ? QStringLiteral("get") : QStringLiteral("put"),
                                       RecordName(record));
    return PassErrors(kModule, kRevision, procedure, [&] {
        const bool get = direction == Direction::Get;
        if (!get && !CanPut(record))
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        switch (record) {
        case GripRecord::Timing:
            return runTransfer([&] { get ? TimingRecord().Download() : TimingRecord().Upload(); }, {});
        case GripRecord::Counters:
            return runTransfer([] { CountersRecord().Download(); }, {});
        case GripRecord::GameTimer:
            return runTransfer([&] { get ? CountdownTimerRecord().Download() : CountdownTimerRecord().Upload(); }, {});
        case GripRecord::Battery:
            return runTransfer([] { BatteryRecord().Download(); }, {});
        case GripRecord::Options:
            return runTransfer([&] { get ? OptionsRecord().Download() : OptionsRecord().Upload(); },
                               [] { return Supports().Options(); });
        case GripRecord::Ramping:
            return runTransfer([&] { get ? HyperRecord().Download() : HyperRecord().Upload(); },
                               [] { return Supports().Hyper(); });
        }
        RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
    });
}

Outcome ResetCounterTransfer(quint8 selector)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ResetCounterTransfer"), [&] {
        return runTransfer([&] { CountersRecord().ResetCounter(selector); }, {});
    });
}

CommandResult GetAll(cTransferObserver* observer)
{
    return runCommand(QStringLiteral("GetAll"),
                      {{GripRecord::Timing, Direction::Get},
                       {GripRecord::Counters, Direction::Get},
                       {GripRecord::GameTimer, Direction::Get},
                       {GripRecord::Battery, Direction::Get},
                       {GripRecord::Options, Direction::Get},
                       {GripRecord::Ramping, Direction::Get}},
                      observer);
}

void CheckPut(const QList<GripRecord>& records)
{
    PassErrors(kModule, kRevision, QStringLiteral("CheckPut"), [&] {
        // Building a record's command checks its values and sends nothing.
        for (const GripRecord record : records) {
            switch (record) {
            case GripRecord::Timing: TimingRecord().Obj2Comm(); break;
            case GripRecord::GameTimer: CountdownTimerRecord().Obj2Comm(); break;
            case GripRecord::Options: OptionsRecord().Obj2Comm(); break;
            case GripRecord::Ramping: HyperRecord().Obj2Comm(); break;
            case GripRecord::Counters:
            case GripRecord::Battery: break;
            }
        }
    });
}

CommandResult PutAll(cTransferObserver* observer)
{
    CheckPut({GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping});
    return runCommand(QStringLiteral("PutAll"),
                      {{GripRecord::Timing, Direction::Put},
                       {GripRecord::GameTimer, Direction::Put},
                       {GripRecord::Options, Direction::Put},
                       {GripRecord::Ramping, Direction::Put}},
                      observer);
}

CommandResult GetRecord(GripRecord record, cTransferObserver* observer)
{
    return runCommand(QStringLiteral("GetRecord(%1)").arg(RecordName(record)), {{record, Direction::Get}}, observer);
}

CommandResult PutRecord(GripRecord record, cTransferObserver* observer)
{
    if (CanPut(record))
        CheckPut({record});
    return runCommand(QStringLiteral("PutRecord(%1)").arg(RecordName(record)), {{record, Direction::Put}}, observer);
}

CommandResult ResetCounter(quint8 selector)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ResetCounter(%1)").arg(selector), [&] {
        WaitPointerScope wait;
        GripError().Clear();
        CommandResult result;
        result.programStarted = StartProgramIfInBootMode();
        result.bootCheckRefused = GripError().ErrorCode() != cError::NoError;
        result.transfers.append({GripRecord::Counters, Direction::Put, ResetCounterTransfer(selector)});
        return result;
    });
}

} // namespace mGripCommands
