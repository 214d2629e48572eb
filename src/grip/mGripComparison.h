#pragma once
// What the grip holds beside what a put would send it, value by value: the records are read from
// the grip into a scratch session on the same link, so that no record of the program's session
// changes and the next put sends exactly what it would have sent. The desktop program compares
// everything Put writes, marlo-cli a library template's values; both show what this answers.
#include "grip/mGripCommands.h"

#include <QList>
#include <QString>
#include <QVariant>

class cGripSession;

namespace mGripComparison {

inline const QString kModule = QStringLiteral("mGripComparison");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// One value of a record, named as get and put name it (ShotTime, PreAlert1On, ...): a number, or
// a switch as a bool.
struct tValue {
    mGripCommands::GripRecord record;
    QString name;
    QVariant grip;
    QVariant put;
    bool Differs() const { return grip != put; }
};

struct tComparison {
    QList<tValue> values;                           // record by record, each in the order get shows it
    QList<mGripCommands::GripRecord> unsupported;   // left out: the grip's firmware lacks them
    bool refused = false;                           // the grip refused (its answer is in the session's error record)

    qsizetype Differences() const;
    // Nothing refused and nothing differs.
    bool Same() const { return !refused && Differences() == 0; }
};

// What Put all writes: timing, game timer, options, ramping.
QList<mGripCommands::GripRecord> PutRecords();
// What a library template holds of the grip's values: the five times and the firing mode (timing),
// the game time and both alerts (game timer).
QList<mGripCommands::GripRecord> TemplateRecords();

// Reads the records from the grip (with the boot-mode check) into a scratch session on the
// session's link and compares them with what put holds. The session's records stay as they are;
// a refusal of the grip goes into its error record. Each transfer is reported to the observer.
tComparison Compare(cGripSession& session, cGripSession& put, const QList<mGripCommands::GripRecord>& records,
                    mGripCommands::cTransferObserver* observer = nullptr);

// The one-line summary: "3 values differ", "1 value differs" or "The grip holds these settings".
QString Summary(const tComparison& comparison);

} // namespace mGripComparison
