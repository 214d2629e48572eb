#pragma once
// The grip commands as the front ends run them: the wait pointer, the boot-mode check (starting
// the grip's program when it sits in its boot code), then the transfers of the records. No
// confirmation is shown here: the front end decides, from what these procedures answer, and does
// its own work with each record as the command reports it (cTransferObserver).
#include "base/MarloError.h"

#include <QList>
#include <QString>
#include <optional>

class cGripSession;

namespace mGripCommands {

inline const QString kModule = QStringLiteral("mGripCommands");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

enum class GripRecord { Timing, Counters, GameTimer, Battery, Options, Ramping };
enum class Direction { Get, Put };
enum class Outcome {
    Done,        // exchanged
    Unsupported, // the grip's firmware lacks the record: nothing was exchanged
    Refused,     // the grip gave a negative answer (recorded in the session's error record)
};

struct Transfer {
    GripRecord record;
    Direction direction;
    Outcome outcome;
};

struct CommandResult {
    bool programStarted = false; // the grip sat in its boot code and its program was started
    bool bootCheckRefused = false; // the grip refused the boot-mode query or the program start
    QList<Transfer> transfers;   // in the order they ran

    // Any negative answer during the command.
    bool refused() const;
    // The records left out because the firmware does not support them.
    QList<GripRecord> unsupported() const;
    // The outcome of the last transfer of the record (Done when it did not take part).
    Outcome outcomeOf(GripRecord record) const;
};

// Follows a command transfer by transfer, for a front end that does its own work with each
// record as soon as it has been exchanged, before the next one is: the window copies the timing
// into its setting before the counters are read, so that a command failing part-way leaves
// exactly the records before the failure shown. It also names the frames the command's errors
// carry, so that a front end's error trail reads as its own procedures.
class cTransferObserver {
public:
    virtual ~cTransferObserver() = default;
    // The frame around the whole command: the core's own (own: "GetAll", "PutRecord(timing)", ...)
    // unless the observer renames it, or drops it where a procedure of the front end frames the
    // command already.
    virtual std::optional<ErrorFrame> CommandFrame(const ErrorFrame& own) const;
    // The frame around one transfer together with the observer's work before and after it; none
    // by default. The transfer's own frame ("TransferRecord(get timing)") stays inside it.
    virtual std::optional<ErrorFrame> TransferFrame(GripRecord record, Direction direction) const;
    // Just before the record is exchanged, in the transfer's frame: a put sends what the record
    // holds when this returns.
    virtual void TransferStarting(GripRecord record, Direction direction);
    // Just after, in the transfer's frame, before the next record is exchanged: how it ended (a
    // refused get left the record as it was). An error ends the command without this call.
    virtual void TransferEnded(const Transfer& transfer) = 0;
};

// The record's name as the command line and JSON use it: timing, counters, gametimer, battery,
// options, ramping.
QString RecordName(GripRecord record);
// The record for a name; false when there is none.
bool RecordFromName(const QString& name, GripRecord& record);
// Only these can be put to the grip (counters and battery are read-only).
bool CanPut(GripRecord record);

// The commands on the session's grip, each transfer reported to the observer when one is given.
// Get all: timing, counters, game timer, battery, options, ramping.
CommandResult GetAll(cGripSession& session, cTransferObserver* observer = nullptr);
// Put all: timing, game timer, options, ramping.
CommandResult PutAll(cGripSession& session, cTransferObserver* observer = nullptr);
CommandResult GetRecord(cGripSession& session, GripRecord record, cTransferObserver* observer = nullptr);
// Gets the records given, in that order, in one command (one boot-mode check).
CommandResult GetRecords(cGripSession& session, const QList<GripRecord>& records, cTransferObserver* observer = nullptr);
CommandResult PutRecord(cGripSession& session, GripRecord record, cTransferObserver* observer = nullptr);
// Counter reset: selector 1, 2 or 3 (both).
CommandResult ResetCounter(cGripSession& session, quint8 selector);

// Checks, before anything is sent, that every value of the records fits what the record carries
// on the wire (a byte each, the alert times a 16-bit word): a value that does not fit raises the
// error its command would raise, so that a put never writes some records and then fails on a
// later one. PutAll and PutRecord run it first.
void CheckPut(cGripSession& session, const QList<GripRecord>& records);

// Records in the session's history (when it has one) what the grip holds of the settings among
// these records (timing, game timer, options, ramping) after a command exchanged them, with the
// grip's serial number and firmware version as the session knows them: one entry, no exchange.
// The commands above record by themselves. A history that cannot be written or read never stops
// a command: the problem is told once through the user-interface services.
void RecordHistory(cGripSession& session, const QList<GripRecord>& records);
// The title of what is told about the history, in the user's language.
QString HistoryTitle();

// The pieces, for front ends that run several steps in one command (e.g. get, change, put):
// the boot-mode check (true when the program had to be started) and one transfer without it.
bool StartProgramIfInBootMode(cGripSession& session);
Outcome TransferRecord(cGripSession& session, GripRecord record, Direction direction);
Outcome ResetCounterTransfer(cGripSession& session, quint8 selector);

} // namespace mGripCommands
