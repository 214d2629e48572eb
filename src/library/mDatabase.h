#pragma once
// The library file: where it lies, making it at start-up from the template, the one shared
// connection, and the one function through which every library statement runs.
//
// The record classes build their statements in SQLite's own SQL with a "?" for every value and
// bind the values themselves (Statement, Execute): no text typed or imported by a user, and no
// key read from a library made elsewhere, is ever part of the SQL that SQLite reads, whatever it
// holds. Texts and keys are bound with BoundText and stand in the SQL as "CAST(? AS TEXT)";
// dates with BoundDate; whole numbers and yes/no (0/1) as they are.
#include "base/cText.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QVariantList>
#include <functional>

class cRegistrySettings;

namespace mMain {

// Makes sure a library file exists at the path the preferences give: uses it, or copies the
// template there, or asks the user for another file (which the preferences then keep). False:
// there is no library, the program ends.
bool CheckForDB(cRegistrySettings& settings);
// The shared connection, opened on the first call. A file that is not a library is reported
// and the connection stays unopened (no retry during the run).
QSqlDatabase ConnectDB();

} // namespace mMain

namespace mDatabase {

inline const QString kModule = QStringLiteral("mDatabase");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

inline const QString kConnectionName = QStringLiteral("MarloLibrary");
inline const QString kDefaultFileName = QStringLiteral("Marlo.mdb");
inline const QString kTemplateFileName = QStringLiteral("instdbxx.tmp");

// The start-up dialogs about a missing library, in English; they are shown translated in kContext.
inline constexpr char kContext[] = "mDatabase";
inline const QString kMissingTitle = QStringLiteral(QT_TRANSLATE_NOOP("mDatabase", "Missing database"));
inline const QString kMissingText = QStringLiteral(QT_TRANSLATE_NOOP("mDatabase",
    "The Marlo-database does not exist.\r\nYou must specify a path and name for a database for "
    "Marlo to work.\r\n\r\nIf you do not have a database for Marlo you cannot continue using the "
    "program\r\nunless you reinstall the program.\r\n\r\nDo you wish to look for a database-file "
    "for Marlo?"));
inline const QString kSpecifyTitle = QStringLiteral(QT_TRANSLATE_NOOP("mDatabase", "Specify database"));
inline const QString kSpecifyPrompt =
    QStringLiteral(QT_TRANSLATE_NOOP("mDatabase", "Please specify a path for the database you wish to use..."));
inline const QString kCannotContinueTitle = QStringLiteral(QT_TRANSLATE_NOOP("mDatabase", "Missing Database"));
inline const QString kCannotContinueText =
    QStringLiteral(QT_TRANSLATE_NOOP("mDatabase", "Due to a missing database, the program cannot continue execution."));

// "Invalid use of Null": a stored null where the library expects a value.
constexpr qint32 RT_INVALID_USE_OF_NULL = 94;

// A library file for this run only (marlo-cli --db), leaving the preference DBName alone.
// Empty: none.
void SetPathOverride(const QString& path);
QString PathOverride();
// The preferences whose DBName names the library file. The shared connection is made deep inside
// a record's load or save, which is not handed them: the application object sets its own for its
// lifetime (nullptr: none, and only the override or the default file count).
void SetPreferences(const cRegistrySettings* preferences);
// The library file in force: the override, else DBName, else the default file.
QString LibraryPath();
// The template every new library is copied from: in the program's folder, else beside the
// executable or in the installed data folder.
QString TemplatePath();

// Raises a clear error when the file is not a Marlo library (missing, empty, an Access file,
// not SQLite, damaged, read-only, tables or columns missing). Never changes the file.
void VerifyLibraryFile(const QString& path);
// The same check as a text: the clear description of what is wrong, or empty; as a text to raise
// or write, and in the user's language.
cText LibraryFileProblemText(const QString& path);
QString LibraryFileProblem(const QString& path);

// The reason the shared connection could not be opened (in English), or empty.
QString OpenError();
// Closes the shared connection and forgets it (end of the run, and tests that switch files).
// Every copy of the connection must be dropped first.
void DisconnectDB();

// Whether the file at the path the shared connection opened is still that file. SQLite goes on
// writing into a file that was deleted or swapped away while it was open, and everything
// written so would vanish with it; a save therefore looks first (cApplication::SaveLibrary).
enum class LibraryFileCheck {
    Unopened, // the shared connection never opened a file: nothing to compare
    Same,     // the file the connection opened
    Deleted,  // no file at the path any more
    Replaced, // another file at the path, or the same one overwritten with what is no SQLite file
};
// The file the shared connection has open (or last had); empty when it never opened one.
QString OpenedLibraryPath();
LibraryFileCheck CheckOpenedLibraryFile();
// Raises the database error when the file is marked read-only.
void VerifyWritable(const QString& path);
// A name beside path that nothing takes, journal files included: "Marlo (2).mdb", "Marlo (3).mdb", ...
QString FreeNameBeside(const QString& path);
// Closes the shared connection (dropping its journal beside the old file), makes a new library
// at path from the template as start-up does, and opens the shared connection on it. When that
// fails, the error is raised, nothing it made is left at path, and the connection stays closed.
void ReopenOnNewLibraryFile(const QString& path);

// Fills an empty connection argument with the shared connection.
void EnsureConnection(QSqlDatabase& connection);

// One statement: SQLite's SQL with a "?" for every value, and the values in their order.
struct Statement {
    QString sql;
    QVariantList values;
};
// Executes one statement; the query is forward-only and positioned before the first row. A
// failure raises the database error naming the file and the engine's cause; the statement and
// its values are never part of it.
QSqlQuery Execute(QSqlDatabase& connection, const Statement& statement);

// A text or key as it is bound: its UTF-8 bytes, which "CAST(? AS TEXT)" makes a text. (Bound as
// UTF-16, SQLite would take a leading U+FEFF or U+FFFE for a byte-order mark and drop it or read
// the rest backwards.) Lone surrogate halves (a text cut in the middle of a character, or JSON's
// "\ud800") have no UTF-8 form, and SQLite reads the noncharacters U+FFFE and U+FFFF back as
// U+FFFD: all of them are stored as U+FFFD, the replacement character, from the start, so that
// what is stored is what reads back. Everything else, NUL included, is stored exactly; an empty
// text is stored as an empty text, never a null.
QVariant BoundText(const QString& text);
// A date as it is bound: yyyy-mm-dd, the time of day left out. A date that is not valid, or with
// a year beyond 9999, raises the database error.
QVariant BoundDate(const QDateTime& date);

// Runs body as one transaction on the connection: all of its statements take effect together
// when it ends, none when an error leaves it (or the program is killed on the way). The records
// in memory are not rolled back: after an error the caller must not save them again as they are.
void RunInTransaction(QSqlDatabase& connection, const std::function<void()>& body);

// Reading the columns of a row by name; a missing column, a null or an unconvertible value
// raises (missing column, invalid use of null, type mismatch, overflow).
bool IsNullColumn(const QSqlRecord& row, const QString& column);
QString ColumnText(const QSqlRecord& row, const QString& column);
qint32 ColumnLong(const QSqlRecord& row, const QString& column);
bool ColumnBool(const QSqlRecord& row, const QString& column);
QDateTime ColumnDate(const QSqlRecord& row, const QString& column);

} // namespace mDatabase
