#pragma once
// The library file: where it lies, making it at start-up from the template, the one shared
// connection, and the one function through which every library statement runs.
//
// The record classes write their statements in the Jet dialect the library has always used
// ("DELETE * FROM", #mm-dd-yyyy# dates, True/False, double-quoted texts). Execute() translates
// each statement with a tokenizer into SQLite's dialect and hands every literal it finds (texts,
// keys, dates, numbers, True/False) to SQLite as a bound value, so no text typed or imported by
// a user is ever part of the SQL that SQLite reads, whatever it holds.
//
// Keys go between single quotes. A well-formed key (a GUID) holds no quote, so its statements
// are exactly the classic ones; a key from a library made elsewhere gets its single quotes
// doubled (JetKey), so whatever it holds it stays one literal. The translation also refuses a
// second statement, comments and characters no library statement has.
#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QVariantList>
#include <functional>

namespace mMain {

// Makes sure a library file exists at the configured path: uses it, or copies the template
// there, or asks the user for another file. False: there is no library, the program ends.
bool CheckForDB();
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

// The start-up dialogs about a missing library.
inline const QString kMissingTitle = QStringLiteral("Missing database");
inline const QString kMissingText = QStringLiteral(
    "The Marlo-database does not exist.\r\nYou must specify a path and name for a database for "
    "Marlo to work.\r\n\r\nIf you do not have a database for Marlo you cannot continue using the "
    "program\r\nunless you reinstall the program.\r\n\r\nDo you wish to look for a database-file "
    "for Marlo?");
inline const QString kSpecifyTitle = QStringLiteral("Specify database");
inline const QString kSpecifyPrompt =
    QStringLiteral("Please specify a path for the database you wish to use...");
inline const QString kCannotContinueTitle = QStringLiteral("Missing Database");
inline const QString kCannotContinueText =
    QStringLiteral("Due to a missing database, the program cannot continue execution.");

// "Invalid use of Null": a stored null where the library expects a value.
constexpr qint32 RT_INVALID_USE_OF_NULL = 94;

// A library file for this run only (marlo-cli --db), leaving the preference DBName alone.
// Empty: none.
void SetPathOverride(const QString& path);
QString PathOverride();
// The library file in force: the override, else DBName, else the default file.
QString LibraryPath();
// The template every new library is copied from: in the program's folder, else beside the
// executable or in the installed data folder.
QString TemplatePath();

// Raises a clear error when the file is not a Marlo library (missing, empty, an Access file,
// not SQLite, damaged, read-only, tables or columns missing). Never changes the file.
void VerifyLibraryFile(const QString& path);
// The same check as a text: the clear description of what is wrong, or empty.
QString LibraryFileProblem(const QString& path);

// The reason the shared connection could not be opened, or empty.
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

// A statement in SQLite's dialect: its literals are "?" in sql, their values in order in values.
struct SqliteStatement {
    QString sql;
    QVariantList values;
};
// Translates one Jet statement into SQLite's dialect. Raises a syntax error for an unterminated
// literal, a bad date or number, a comment, a second statement or an unexpected character.
SqliteStatement TranslateJetSql(const QString& statement);
// Translates and executes one statement; the query is forward-only and positioned before the
// first row. A failure raises the database error naming the file and the engine's cause; the
// statement is never part of it.
QSqlQuery Execute(QSqlDatabase& connection, const QString& statement);

// Runs body as one transaction on the connection: all of its statements take effect together
// when it ends, none when an error leaves it (or the program is killed on the way). The records
// in memory are not rolled back: after an error the caller must not save them again as they are.
void RunInTransaction(QSqlDatabase& connection, const std::function<void()>& body);

// Pieces of Jet statements.
QString JetText(const QString& text);        // "text" with every double quote doubled
QString JetKey(const QString& key);          // a key for '...': single quotes doubled (none in a GUID)
QString JetDate(const QDateTime& date);      // mm-dd-yyyy (date only)
QString JetBool(bool value);                 // True / False
QString JetLong(qint32 value);               // decimal

// Reading the columns of a row by name; a missing column, a null or an unconvertible value
// raises (missing column, invalid use of null, type mismatch, overflow).
bool IsNullColumn(const QSqlRecord& row, const QString& column);
QString ColumnText(const QSqlRecord& row, const QString& column);
qint32 ColumnLong(const QSqlRecord& row, const QString& column);
bool ColumnBool(const QSqlRecord& row, const QString& column);
QDateTime ColumnDate(const QSqlRecord& row, const QString& column);

} // namespace mDatabase
