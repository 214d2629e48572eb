#pragma once
// What every marlo-cli command gets: its words, the global options, the output streams, the
// session with the grip and the application object (library and preferences).
// Commands throw MarloError for failures (exit 1) and CliUsageError for wrong usage (exit 2);
// a grip that refused (negative answer recorded in the session's cError) makes the command return
// ExitRefused; diff returns ExitDiffers when the grip holds other values than the template.
#include <QCoreApplication>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QVariant>
#include <memory>
#include <stdexcept>

class cApplication;
class cGripSession;
class cSetsTemplate;

// What marlo-cli says to people (not its JSON, field names or the words of its commands), in the
// user's language: CliTexts::tr("...").
struct CliTexts {
    Q_DECLARE_TR_FUNCTIONS(CliTexts)
};

enum CliExit { ExitOk = 0, ExitError = 1, ExitUsage = 2, ExitRefused = 3, ExitDiffers = 4 };

class CliUsageError : public std::runtime_error {
public:
    explicit CliUsageError(const QString& message) : std::runtime_error(message.toStdString()) {}
    QString message() const { return QString::fromStdString(what()); }
};

struct CliContext {
    QStringList words;   // the words after the command name (e.g. "timing", "--ShotTime", "12")
    bool json = false;   // --json
    QString db;          // --db PATH (empty: the library of the preferences)
    QTextStream* out = nullptr;
    QTextStream* err = nullptr;
    cGripSession* session = nullptr; // the grip the commands talk to (main makes it)
    cApplication* application = nullptr; // the library and the preferences (main makes it)
};

// Text from options, files or the library as it may go to the terminal: control characters
// (escape sequences, line breaks, NUL, bidirectional overrides) come out escaped, as \x1b, \n,
// \u202e, so that no text can move the cursor, recolour the terminal or fake a line.
QString CliText(const QString& text);
// The same for a message of the program: its CR LF line breaks stay line breaks.
QString CliLines(const QString& text);

// One named value of a record, in display order.
using CliField = QPair<QString, QVariant>;
using CliFields = QList<CliField>;

// Prints a record: "Name: value" lines aligned on the colon, or (with --json) one JSON object.
void PrintFields(CliContext& ctx, const CliFields& fields);
// The JSON object of a record's fields (numbers stay numbers, booleans booleans).
QJsonObject FieldsToJson(const CliFields& fields);
// Prints one JSON value (object, array or null) on one line.
void PrintJson(CliContext& ctx, const QJsonValue& value);
// Parses "--Name value" options against the allowed names; unknown or repeated names and values
// that are not whole numbers are usage errors. Answers the given options in the order given.
QList<QPair<QString, qint32>> ParseIntegerOptions(const QStringList& words, const QStringList& allowed);
// Says on stderr that the grip refused, and answers ExitRefused; answers ExitOk when it did not.
int RefusalStatus(CliContext& ctx);

// The command groups (one file each).
int RunLinkCommand(CliContext& ctx, const QString& command);      // bootmode, start-program, stop-program
int RunRecordCommand(CliContext& ctx, const QString& command);    // info, get, put, reset-counter
// The usage lines of get and put, made from the fields of the records.
QString RecordCommandsUsage();
int RunFirmwareCommand(CliContext& ctx);                          // firmware read|write FILE
int RunLibraryCommand(CliContext& ctx);                           // library list|show|export|import|delete
int RunDiffCommand(CliContext& ctx);                              // diff ID
// The template of the library (of --db) that an ID or a number of "library list" names; raises
// when there is none, answers nothing when the library cannot be read (the reason is shown).
std::shared_ptr<cSetsTemplate> FindLibraryTemplate(CliContext& ctx, const QString& which);
int RunPortsCommand(CliContext& ctx);                             // ports [DEVICE...]
int RunHistoryCommand(CliContext& ctx);                           // history [--serial S]
