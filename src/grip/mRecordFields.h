#pragma once
// The fields of the grip's records by the names the program shows them under outside the window:
// marlo-cli's "Name:" lines, its JSON keys and put options (--Name), and the entries of the grip
// history. Each field reads and writes its record in a session; one table serves them all, so
// that a name means the same value everywhere.
#include "grip/mGripCommands.h"

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>
#include <optional>

class cGripSession;

namespace mRecordFields {

// One field of a record. Its name is the record's property name.
struct tField {
    enum Kind {
        Byte,     // a whole number the grip carries in a byte (0..255)
        Word,     // a whole number the grip carries in 16 bits (0..65535)
        Switch,   // 0 or 1
        ReadOnly, // shown by get, never put
    };
    QString name;
    Kind kind;
    QVariant (*get)(cGripSession&);
    // Answers the value the record kept (a setter that keeps its value in range says which).
    qint32 (*set)(cGripSession&, qint32) = nullptr;
    // The editor's usual range: a value outside it is sent as given, with a note.
    std::optional<QPair<qint32, qint32>> usual = std::nullopt;
};

struct tTable {
    mGripCommands::GripRecord record;
    QList<tField> fields; // in the order get shows them
};

// A record's values by name, in the order of its fields.
using tValues = QList<QPair<QString, QVariant>>;

// Every record, in the order marlo-cli's usage and messages list them.
const QList<tTable>& Tables();
const QList<tField>& FieldsOf(mGripCommands::GripRecord record);
// What the session's record holds, field by field.
tValues Values(cGripSession& session, mGripCommands::GripRecord record);
// Values as one JSON object (numbers stay numbers, yes/no booleans).
QJsonObject ToJson(const tValues& values);
// Sets each field of the session's record that values holds as a number or a yes/no; the other
// fields, and the read-only ones, stay as they are.
void FromJson(cGripSession& session, mGripCommands::GripRecord record, const QJsonObject& values);

} // namespace mRecordFields
