#include "grip/mGripCommands.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "base/mServices.h"
#include "grip/cGripHistory.h"
#include "grip/cGripSession.h"
#include "grip/mCommSupportHex.h"
#include "grip/mRecordFields.h"

#include <QCoreApplication>
#include <QStringList>
#include <functional>
#include <optional>

namespace mGripCommands {

namespace {

// Runs one exchange of a record and tells how it ended. A refusal stays recorded in the
// session's error record; an earlier refusal of the same command is not forgotten.
Outcome runTransfer(cError& refusal, const std::function<void()>& exchange, const std::function<bool()>& supported)
{
    const cError before = refusal;
    refusal.Clear();
    exchange();
    if (refusal.ErrorCode() != cError::NoError)
        return Outcome::Refused;
    refusal = before;
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
Outcome observedTransfer(cGripSession& session, GripRecord record, Direction direction, cTransferObserver* observer)
{
    if (!observer)
        return TransferRecord(session, record, direction);
    return inFrame(observer->TransferFrame(record, direction), [&] {
        observer->TransferStarting(record, direction);
        const Outcome outcome = TransferRecord(session, record, direction);
        observer->TransferEnded({record, direction, outcome});
        return outcome;
    });
}

// The common frame: wait pointer, a fresh error record, the boot-mode check, the transfers.
CommandResult runCommand(cGripSession& session, const QString& procedure, const QList<QPair<GripRecord, Direction>>& steps,
                         cTransferObserver* observer)
{
    const ErrorFrame own{kModule, kRevision, procedure};
    return inFrame(observer ? observer->CommandFrame(own) : own, [&] {
        WaitPointerScope wait;
        session.GripError().Clear();
        CommandResult result;
        result.programStarted = StartProgramIfInBootMode(session);
        result.bootCheckRefused = session.GripError().ErrorCode() != cError::NoError;
        QList<GripRecord> exchanged;
        for (const auto& step : steps) {
            result.transfers.append({step.first, step.second, observedTransfer(session, step.first, step.second, observer)});
            if (result.transfers.last().outcome == Outcome::Done)
                exchanged.append(step.first);
        }
        RecordHistory(session, exchanged);
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

QString HistoryTitle()
{
    return QCoreApplication::translate("mGripCommands", "Grip history");
}

void RecordHistory(cGripSession& session, const QList<GripRecord>& records)
{
    cGripHistory* history = session.History();
    if (!history)
        return;
    cGripHistory::tEntry entry;
    // The settings are the records that can be put; counters and battery are not kept.
    for (const GripRecord record : records)
        if (CanPut(record))
            entry.values.insert(RecordName(record), mRecordFields::ToJson(mRecordFields::Values(session, record)));
    if (entry.values.isEmpty())
        return;
    entry.time = QDateTime::currentDateTime();
    entry.serial = session.GunInfo().Serial();
    entry.firmware = session.GunInfo().FirmwareBuild();
    history->Record(entry);
    const QString problem = history->TakeProblem();
    if (!problem.isEmpty())
        mMain::UI().showMessage(problem, HistoryTitle(), MsgIcon::Exclamation);
}

bool StartProgramIfInBootMode(cGripSession& session)
{
    return PassErrors(kModule, kRevision, QStringLiteral("StartProgramIfInBootMode"), [&] {
        if (!mCommSupportHex::GRIPIsBootmode(session))
            return false;
        mCommSupportHex::GRIPStartProgram(session);
        return true;
    });
}

Outcome TransferRecord(cGripSession& session, GripRecord record, Direction direction)
{
    const QString procedure = QStringLiteral("TransferRecord(%1 %2)")
                                  .arg(direction == Direction::Get ? QStringLiteral("get") : QStringLiteral("put"),
                                       RecordName(record));
    return PassErrors(kModule, kRevision, procedure, [&] {
        const bool get = direction == Direction::Get;
        if (!get && !CanPut(record))
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        // Both directions of a record in one call, for the records that have them.
        const auto both = [&](auto& rec) { get ? rec.Download(session) : rec.Upload(session); };
        cError& refusal = session.GripError();
        switch (record) {
        case GripRecord::Timing:
            return runTransfer(refusal, [&] { both(session.Timing()); }, {});
        case GripRecord::Counters:
            return runTransfer(refusal, [&] { session.Counters().Download(session); }, {});
        case GripRecord::GameTimer:
            return runTransfer(refusal, [&] { both(session.CountdownTimer()); }, {});
        case GripRecord::Battery:
            return runTransfer(refusal, [&] { session.Battery().Download(session); }, {});
        case GripRecord::Options:
            return runTransfer(refusal, [&] { both(session.Options()); }, [&] { return session.Supports().Options(); });
        case GripRecord::Ramping:
            return runTransfer(refusal, [&] { both(session.Hyper()); }, [&] { return session.Supports().Hyper(); });
        }
        RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
    });
}

Outcome ResetCounterTransfer(cGripSession& session, quint8 selector)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ResetCounterTransfer"), [&] {
        return runTransfer(session.GripError(), [&] { session.Counters().ResetCounter(session, selector); }, {});
    });
}

CommandResult GetAll(cGripSession& session, cTransferObserver* observer)
{
    return runCommand(session, QStringLiteral("GetAll"),
                      {{GripRecord::Timing, Direction::Get},
                       {GripRecord::Counters, Direction::Get},
                       {GripRecord::GameTimer, Direction::Get},
                       {GripRecord::Battery, Direction::Get},
                       {GripRecord::Options, Direction::Get},
                       {GripRecord::Ramping, Direction::Get}},
                      observer);
}

void CheckPut(cGripSession& session, const QList<GripRecord>& records)
{
    PassErrors(kModule, kRevision, QStringLiteral("CheckPut"), [&] {
        // Building a record's command checks its values and sends nothing.
        for (const GripRecord record : records) {
            switch (record) {
            case GripRecord::Timing: session.Timing().Obj2Comm(); break;
            case GripRecord::GameTimer: session.CountdownTimer().Obj2Comm(); break;
            case GripRecord::Options: session.Options().Obj2Comm(); break;
            case GripRecord::Ramping: session.Hyper().Obj2Comm(); break;
            case GripRecord::Counters:
            case GripRecord::Battery: break;
            }
        }
    });
}

CommandResult PutAll(cGripSession& session, cTransferObserver* observer)
{
    CheckPut(session, {GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping});
    return runCommand(session, QStringLiteral("PutAll"),
                      {{GripRecord::Timing, Direction::Put},
                       {GripRecord::GameTimer, Direction::Put},
                       {GripRecord::Options, Direction::Put},
                       {GripRecord::Ramping, Direction::Put}},
                      observer);
}

CommandResult GetRecord(cGripSession& session, GripRecord record, cTransferObserver* observer)
{
    return runCommand(session, QStringLiteral("GetRecord(%1)").arg(RecordName(record)), {{record, Direction::Get}}, observer);
}

CommandResult GetRecords(cGripSession& session, const QList<GripRecord>& records, cTransferObserver* observer)
{
    QList<QPair<GripRecord, Direction>> steps;
    QStringList names;
    for (const GripRecord record : records) {
        steps.append({record, Direction::Get});
        names.append(RecordName(record));
    }
    return runCommand(session, QStringLiteral("GetRecords(%1)").arg(names.join(QLatin1Char(' '))), steps, observer);
}

CommandResult PutRecord(cGripSession& session, GripRecord record, cTransferObserver* observer)
{
    if (CanPut(record))
        CheckPut(session, {record});
    return runCommand(session, QStringLiteral("PutRecord(%1)").arg(RecordName(record)), {{record, Direction::Put}}, observer);
}

CommandResult ResetCounter(cGripSession& session, quint8 selector)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ResetCounter(%1)").arg(selector), [&] {
        WaitPointerScope wait;
        session.GripError().Clear();
        CommandResult result;
        result.programStarted = StartProgramIfInBootMode(session);
        result.bootCheckRefused = session.GripError().ErrorCode() != cError::NoError;
        result.transfers.append({GripRecord::Counters, Direction::Put, ResetCounterTransfer(session, selector)});
        return result;
    });
}

} // namespace mGripCommands
