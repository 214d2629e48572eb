#include "library/mDatabase.h"

#include "base/cRegistrySettings.h"
#include "base/mErrCodes.h"
#include "base/mErrorReport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlError>
#include <QStringList>
#include <QUrl>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <sys/stat.h>

using mErrCodes::RT_DATABASE;

namespace mDatabase {
namespace {

const QString kCheckConnectionName = QStringLiteral("MarloLibraryCheck");

// Which file a path names: its device and inode. A file deleted and made anew, or another file
// moved to the path, has another inode even where it has the same name, size and time.
struct FileIdentity {
    bool exists = false;
    quint64 device = 0;
    quint64 inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

// The identity of the file at path; error: errno when there is none (ENOENT: no such file).
FileIdentity identityOf(const QString& path, int* error = nullptr)
{
    FileIdentity identity;
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) == 0) {
        identity.exists = true;
        identity.device = static_cast<quint64>(info.st_dev);
        identity.inode = static_cast<quint64>(info.st_ino);
    } else if (error) {
        *error = errno;
    }
    return identity;
}

struct State {
    QString pathOverride;
    const cRegistrySettings* preferences = nullptr;
    bool connectionMade = false;
    cText openError;
    // The file the shared connection opened, as it was when it was opened.
    QString openedPath;
    FileIdentity openedFile;
};

State& state()
{
    static State s;
    return s;
}

// The columns every library has, as the record classes read and write them.
const QStringList& templateColumns()
{
    static const QStringList columns = {
        QStringLiteral("ID"), QStringLiteral("ParentID"), QStringLiteral("Version"),
        QStringLiteral("lShotTime"), QStringLiteral("lDwellTime"), QStringLiteral("lCycleTimeOpen"),
        QStringLiteral("lLoadTime"), QStringLiteral("lCycleTimeClose"), QStringLiteral("lGameTime"),
        QStringLiteral("lFiringMode"), QStringLiteral("sName"), QStringLiteral("dtDate"),
        QStringLiteral("bCTCLikeCTO"), QStringLiteral("bExpertMode"), QStringLiteral("bAlertOne"),
        QStringLiteral("bAlertTwo"), QStringLiteral("lAlertOne"), QStringLiteral("lAlertTwo")};
    return columns;
}

const QStringList& userVarColumns()
{
    static const QStringList columns = {QStringLiteral("ID"), QStringLiteral("ParentID"),
                                        QStringLiteral("Version"), QStringLiteral("sName"),
                                        QStringLiteral("sValue")};
    return columns;
}

// The file test of the start-up check: only a plain file counts as present.
bool fileExists(const QString& path)
{
    return !path.isEmpty() && QFileInfo(path).isFile();
}

const char* const kIsAFolder = QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is a folder: give the path of a library file.");
const char* const kNotOpen = QT_TRANSLATE_NOOP("mDatabase", "The library is not open.");

cText text(const char* source, QList<cText> arguments = {})
{
    return cText(kContext, source, std::move(arguments));
}

// A sentence about a library file, which fills its %1; more fill %2, ...
cText fileProblem(const QString& path, const char* sentence, QList<cText> more = {})
{
    more.prepend(QDir::toNativeSeparators(path));
    return text(sentence, std::move(more));
}

[[noreturn]] void raiseFile(const QString& path, const char* sentence, QList<cText> more = {})
{
    RaiseError(RT_DATABASE, kModule, fileProblem(path, sentence, std::move(more)));
}

cText madeFromTemplateProblem(const QString& path, const QString& templateFile, const QString& cause)
{
    return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" could not be made from the template \"%2\": %3"),
                       {QDir::toNativeSeparators(templateFile), cause});
}

// What the engine said went wrong, without the statement (Qt's driver text only says which step
// failed).
QString engineCause(const QSqlError& error)
{
    const QString cause = error.databaseText().trimmed();
    return cause.isEmpty() ? error.text().trimmed() : cause;
}

// The file a connection works on: the one the shared connection opened, or the connection's own.
QString connectionFile(const QSqlDatabase& connection)
{
    if (connection.connectionName() == kConnectionName && !state().openedPath.isEmpty())
        return state().openedPath;
    return connection.databaseName();
}

// A failed statement as the user reads it: the file, whether it was read or written, and why.
[[noreturn]] void raiseStatementFailure(const QSqlDatabase& connection, const QString& statement, const QSqlError& error)
{
    const bool reading = statement.trimmed().startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive);
    raiseFile(connectionFile(connection),
              reading ? QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" could not be read: %2.")
                      : QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" could not be written: %2."),
              {engineCause(error)});
}


// The ID of the row a value that cannot be read lies in, to name it; empty when the row has
// none (or the value is the ID).
QString keyOfRow(const QSqlRecord& row, const QString& column)
{
    const int id = row.indexOf(QStringLiteral("ID"));
    if (id < 0 || row.value(id).isNull() || column == QLatin1String("ID"))
        return {};
    const QString key = row.value(id).toString();
    return key.size() > 80 ? key.left(80) + QStringLiteral("...") : key;
}

QVariant columnValue(const QSqlRecord& row, const QString& column)
{
    const int index = row.indexOf(column);
    if (index < 0)
        RaiseError(RT_DATABASE, kModule,
                   text(QT_TRANSLATE_NOOP("mDatabase", "Item cannot be found in the collection corresponding to the requested "
                                                       "name or ordinal (column %1)."),
                        {column}));
    const QVariant value = row.value(index);
    if (value.isNull()) {
        const QString key = keyOfRow(row, column);
        RaiseError(RT_INVALID_USE_OF_NULL, kModule,
                   key.isEmpty() ? text(QT_TRANSLATE_NOOP("mDatabase", "Invalid use of Null (column %1)."), {column})
                                 : text(QT_TRANSLATE_NOOP("mDatabase", "Invalid use of Null (column %1 of the row with ID %2)."), {column, key}));
    }
    return value;
}

// Reads one column; a value that does not convert (a type mismatch, a number too large) is
// reported with its column and the row's ID.
template <typename F>
auto readColumn(const QSqlRecord& row, const QString& column, F read)
{
    try {
        return read(columnValue(row, column));
    } catch (const MarloError& e) {
        if (e.Number() == RT_INVALID_USE_OF_NULL || e.Number() == RT_DATABASE)
            throw;
        const QString key = keyOfRow(row, column);
        //: An error's message, then where the value lies.
        RaiseError(e.Number(), kModule,
                   key.isEmpty() ? text(QT_TRANSLATE_NOOP("mDatabase", "%1 (column %2)"), {e.DescriptionText(), column})
                                 : text(QT_TRANSLATE_NOOP("mDatabase", "%1 (column %2 of the row with ID %3)"),
                                        {e.DescriptionText(), column, key}));
    }
}

qint32 wholeNumber(double number)
{
    if (!std::isfinite(number))
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    // Whole numbers round half to even, as the language's conversion did.
    const double rounded = std::nearbyint(number);
    if (rounded < -2147483648.0 || rounded > 2147483647.0)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<qint32>(rounded);
}

double numberOf(const QVariant& value)
{
    switch (value.metaType().id()) {
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Double:
        return value.toDouble();
    default:
        break;
    }
    bool ok = false;
    const double number = value.toString().trimmed().toDouble(&ok);
    if (!ok)
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    return number;
}

// A file the user marked read-only is refused even where the account could write it anyway.
cText readOnlyProblem(const QString& path)
{
    const QFileInfo info(path);
    const QFileDevice::Permissions writeBits =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (!(info.permissions() & writeBits) || !info.isWritable())
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is read-only; the library must be writable."));
    return {};
}

// Removes the journal files SQLite keeps beside a library. Only for files no connection has open.
void removeJournals(const QString& path)
{
    for (const char* beside : {"-wal", "-shm", "-journal"})
        QFile::remove(path + QLatin1String(beside));
}

// Opens the file read-only, checks its tables and columns, and closes it again.
cText schemaProblem(const QString& path)
{
    cText problem;
    {
        QSqlDatabase check = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kCheckConnectionName);
        // Looked at without a change to the file or beside it: without a journal to take into
        // account, the file is opened as immutable, so SQLite makes no -wal or -shm file even for
        // a file in WAL mode. With one (another program is writing it), read-only as usual.
        const bool journal = QFileInfo::exists(path + QStringLiteral("-wal")) ||
                             QFileInfo::exists(path + QStringLiteral("-journal"));
        if (journal) {
            check.setDatabaseName(path);
            check.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
        } else {
            check.setDatabaseName(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded) +
                                  QStringLiteral("?mode=ro&immutable=1"));
            check.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY"));
        }
        if (!check.open()) {
            problem = fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be opened: %2"),
                                  {engineCause(check.lastError())});
        } else {
            auto checkTable = [&](const QString& table, const QStringList& columns) {
                if (!problem.isEmpty())
                    return;
                QSqlQuery query(check);
                if (!query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table))) {
                    problem = fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is damaged or not a database: %2"),
                                          {engineCause(query.lastError())});
                    return;
                }
                QSet<QString> present;
                while (query.next())
                    present.insert(query.value(1).toString().toLower());
                if (present.isEmpty()) {
                    problem = fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is not a Marlo library: it has no table %2."),
                                          {table});
                    return;
                }
                for (const QString& column : columns) {
                    if (!present.contains(column.toLower())) {
                        problem = fileProblem(path,
                                              QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is not a Marlo library: table %2 has no column %3."),
                                              {table, column});
                        return;
                    }
                }
            };
            checkTable(QStringLiteral("ta_SetsTemplate"), templateColumns());
            checkTable(QStringLiteral("ta_UserVar"), userVarColumns());
            check.close();
        }
    }
    QSqlDatabase::removeDatabase(kCheckConnectionName);
    return problem;
}

} // namespace

void SetPathOverride(const QString& path) { state().pathOverride = path; }
QString PathOverride() { return state().pathOverride; }
void SetPreferences(const cRegistrySettings* preferences) { state().preferences = preferences; }

QString LibraryPath()
{
    if (!state().pathOverride.isEmpty())
        return state().pathOverride;
    const QString configured = state().preferences ? state().preferences->DBName() : QString();
    return configured.isEmpty() ? cRegistrySettings::DefaultDBName() : configured;
}

QString TemplatePath()
{
    // The program folder first, then beside the executable, then the installed data folder. A
    // folder given by $MARLO_HOME stands alone: its template is the one in it.
    QStringList candidates{mMain::ProgramFile(kTemplateFileName)};
    if (QCoreApplication::instance() && qEnvironmentVariableIsEmpty("MARLO_HOME")) {
        const QDir executable(QCoreApplication::applicationDirPath());
        candidates << executable.filePath(kTemplateFileName)
                   << QDir::cleanPath(executable.filePath(mMain::kInstalledDataFolder) + QLatin1Char('/') + kTemplateFileName);
    }
    for (const QString& candidate : candidates)
        if (QFileInfo(candidate).isFile())
            return candidate;
    return candidates.first();
}

void VerifyLibraryFile(const QString& path)
{
    const cText problem = LibraryFileProblemText(path);
    if (!problem.isEmpty())
        RaiseError(RT_DATABASE, kModule, problem);
}

cText LibraryFileProblemText(const QString& path)
{
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE")))
        return text(QT_TRANSLATE_NOOP("mDatabase", "The SQLite driver of Qt is not installed (package libqt6sql6-sqlite)."));
    if (path.isEmpty())
        return text(QT_TRANSLATE_NOOP("mDatabase", "No library file is configured."));
    const QFileInfo info(path);
    if (!info.exists())
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" does not exist."));
    if (info.isDir())
        return fileProblem(path, kIsAFolder);
    if (!info.isFile())
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is not a file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be read: %2"), {file.errorString()});
    const QByteArray head = file.read(100);
    file.close();
    if (head.isEmpty())
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is empty: it is not a Marlo library."));
    const QByteArray jetName = head.mid(4, 15);
    if (jetName == "Standard Jet DB" || jetName == "Standard ACE DB")
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is a Microsoft Access (Jet) database. Marlo keeps "
                                                                "its library in SQLite files; this file cannot be used as it is."));
    if (!head.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" is not a Marlo library (it is not an SQLite database)."));
    const cText readOnly = readOnlyProblem(path);
    if (!readOnly.isEmpty())
        return readOnly;
    if (!QFileInfo(info.absolutePath()).isWritable())
        return fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" lies in a folder that is not writable; the library "
                                                                "keeps its journal files beside it."));
    return schemaProblem(path);
}

QString LibraryFileProblem(const QString& path)
{
    return LibraryFileProblemText(path).Shown();
}

QString OpenError() { return state().openError.English(); }

namespace {

// Opens the shared connection db on the library at path and remembers which file that is. A
// failure is kept as the reason the library is not open, and raised.
void openSharedOn(QSqlDatabase& db, const QString& path)
{
    auto& s = state();
    auto fail = [&](const cText& problem) {
        s.openError = problem;
        RaiseError(RT_DATABASE, kModule, problem);
    };
    // Checked before SQLite touches the file: a file that is no library stays as it was.
    const cText problem = LibraryFileProblemText(path);
    if (!problem.isEmpty())
        fail(problem);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open())
        fail(fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be opened: %2"), {engineCause(db.lastError())}));
    // Each statement stands alone (no transaction); WAL with synchronous=NORMAL keeps every one of
    // them atomic without a disk flush per statement.
    QSqlQuery pragma(db);
    if (!pragma.exec(QStringLiteral("PRAGMA journal_mode=WAL")) || !pragma.exec(QStringLiteral("PRAGMA synchronous=NORMAL"))) {
        const QString cause = engineCause(pragma.lastError());
        pragma = QSqlQuery();
        db.close();
        fail(fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be written: %2"), {cause}));
    }
    s.openError = cText();
    s.openedPath = path;
    s.openedFile = identityOf(path);
}

} // namespace

QString OpenedLibraryPath() { return state().openedPath; }

LibraryFileCheck CheckOpenedLibraryFile()
{
    const State& s = state();
    if (!s.openedFile.exists)
        return LibraryFileCheck::Unopened;
    int error = 0;
    const FileIdentity now = identityOf(s.openedPath, &error);
    if (!now.exists) {
        if (error == ENOENT)
            return LibraryFileCheck::Deleted;
        raiseFile(s.openedPath, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be reached: %2."),
                  {QString::fromLocal8Bit(std::strerror(error))});
    }
    // While the connection holds the file open, no other file can take its inode. Once a new
    // file could not be made (the connection closed), any file at the path is another one.
    if (!QSqlDatabase::database(kConnectionName, false).isOpen() || now != s.openedFile)
        return LibraryFileCheck::Replaced;
    // The same file, but overwritten in place by something that is no SQLite file any more.
    QFile file(s.openedPath);
    if (file.open(QIODevice::ReadOnly) && file.read(16) != QByteArrayLiteral("SQLite format 3\0"))
        return LibraryFileCheck::Replaced;
    return LibraryFileCheck::Same;
}

void VerifyWritable(const QString& path)
{
    const cText problem = readOnlyProblem(path);
    if (!problem.isEmpty())
        RaiseError(RT_DATABASE, kModule, problem);
}

QString FreeNameBeside(const QString& path)
{
    const QFileInfo info(path);
    const QDir folder = info.absoluteDir();
    const QString suffix = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    const auto taken = [](const QString& candidate) {
        for (const QString& name : {candidate, candidate + QStringLiteral("-wal"), candidate + QStringLiteral("-shm"),
                                    candidate + QStringLiteral("-journal")}) {
            const QFileInfo file(name);
            if (file.exists() || file.isSymLink())
                return true;
        }
        return false;
    };
    for (int n = 2;; ++n) {
        const QString candidate = folder.filePath(QStringLiteral("%1 (%2)%3").arg(info.completeBaseName()).arg(n).arg(suffix));
        if (!taken(candidate))
            return candidate;
    }
}

void ReopenOnNewLibraryFile(const QString& path)
{
    auto& s = state();
    s.connectionMade = true;
    QSqlDatabase db = QSqlDatabase::database(kConnectionName, false);
    if (!db.isValid())
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnectionName);
    db.close();
    // The journal beside the old path is this connection's own, of a file that is gone or was
    // swapped away: left there, SQLite would lay it over whatever file comes to that path next.
    if (!s.openedPath.isEmpty())
        removeJournals(s.openedPath);
    const auto fail = [&](const cText& problem) {
        s.openError = problem;
        RaiseError(RT_DATABASE, kModule, problem);
    };
    // Made as start-up makes a missing library: a copy of the template.
    const QString templateFile = TemplatePath();
    if (!QFileInfo(templateFile).isFile())
        fail(fileProblem(path, QT_TRANSLATE_NOOP("mDatabase", "The library file \"%1\" cannot be made: the template \"%2\" is missing."),
                         {QDir::toNativeSeparators(templateFile)}));
    removeJournals(path);
    QFile source(templateFile);
    if (!source.copy(path))
        fail(madeFromTemplateProblem(path, templateFile, source.errorString()));
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner | QFileDevice::WriteUser);
    try {
        openSharedOn(db, path);
    } catch (...) {
        // The copy is this run's own and holds nothing yet: gone, the next save makes it again
        // instead of taking it for a stranger's file.
        QFile::remove(path);
        removeJournals(path);
        throw;
    }
}

void DisconnectDB()
{
    if (QSqlDatabase::contains(kConnectionName)) {
        QSqlDatabase::database(kConnectionName, false).close();
        QSqlDatabase::removeDatabase(kConnectionName);
    }
    state().connectionMade = false;
    state().openError = cText();
    state().openedPath.clear();
    state().openedFile = FileIdentity();
}

void EnsureConnection(QSqlDatabase& connection)
{
    if (!connection.isValid())
        connection = mMain::ConnectDB();
}

QVariant BoundText(const QString& text)
{
    QString stored = text;
    for (qsizetype i = 0; i < stored.size(); ++i) {
        const char16_t u = stored.at(i).unicode();
        if (QChar::isHighSurrogate(u) && i + 1 < stored.size() && QChar::isLowSurrogate(stored.at(i + 1).unicode()))
            ++i;
        else if (QChar::isSurrogate(u) || u == 0xFFFE || u == 0xFFFF)
            stored[i] = QChar::ReplacementCharacter;
    }
    QByteArray bytes = stored.toUtf8();
    // An empty text is bound as an empty text, never as a null (which a null array would be).
    if (bytes.isNull())
        bytes = QByteArray("", 0);
    return bytes;
}

QVariant BoundDate(const QDateTime& date)
{
    const QDate day = date.date();
    // Years 1 to 9999 as yyyy-mm-dd. A year before 1 has no such form and is bound as a null,
    // as it always was; a date beyond that, or none, is refused.
    if (!day.isValid() || day.year() < -9999 || day.year() > 9999)
        RaiseError(RT_DATABASE, kModule,
                   text(QT_TRANSLATE_NOOP("mDatabase", "Syntax error in a library statement (bad date #%1#)."),
                        {day.toString(QStringLiteral("MM-dd-yyyy"))}));
    return day.toString(Qt::ISODate);
}

QSqlQuery Execute(QSqlDatabase& connection, const Statement& statement)
{
    EnsureConnection(connection);
    if (!connection.isOpen()) {
        const cText reason = connection.connectionName() == kConnectionName ? state().openError : cText();
        RaiseError(RT_DATABASE, kModule,
                   reason.isEmpty() ? text(kNotOpen) : text(QT_TRANSLATE_NOOP("mDatabase", "The library is not open: %1"), {reason}));
    }
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    bool done = query.prepare(statement.sql);
    if (done) {
        for (const QVariant& value : statement.values)
            query.addBindValue(value);
        done = query.exec();
    }
    // The error names the file and the engine's cause, never the statement or its values.
    if (!done)
        raiseStatementFailure(connection, statement.sql, query.lastError());
    return query;
}

void RunInTransaction(QSqlDatabase& connection, const std::function<void()>& body)
{
    EnsureConnection(connection);
    const auto run = [&](const QString& sql) {
        QSqlQuery query(connection);
        if (!query.exec(sql))
            raiseStatementFailure(connection, sql, query.lastError());
    };
    if (!connection.isOpen())
        RaiseError(RT_DATABASE, kModule, text(kNotOpen));
    // IMMEDIATE: the write lock is taken at once, so no other writer can slip in half-way.
    run(QStringLiteral("BEGIN IMMEDIATE"));
    try {
        body();
    } catch (...) {
        QSqlQuery(connection).exec(QStringLiteral("ROLLBACK"));
        throw;
    }
    try {
        run(QStringLiteral("COMMIT"));
    } catch (...) {
        QSqlQuery(connection).exec(QStringLiteral("ROLLBACK"));
        throw;
    }
}

bool IsNullColumn(const QSqlRecord& row, const QString& column)
{
    const int index = row.indexOf(column);
    return index >= 0 && row.value(index).isNull();
}

QString ColumnText(const QSqlRecord& row, const QString& column)
{
    return columnValue(row, column).toString();
}

qint32 ColumnLong(const QSqlRecord& row, const QString& column)
{
    return readColumn(row, column, [](const QVariant& value) {
        const int type = value.metaType().id();
        if (type == QMetaType::LongLong || type == QMetaType::Int) {
            const qint64 number = value.toLongLong();
            if (number < INT32_MIN || number > INT32_MAX)
                RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
            return static_cast<qint32>(number);
        }
        return wholeNumber(numberOf(value));
    });
}

bool ColumnBool(const QSqlRecord& row, const QString& column)
{
    return readColumn(row, column, [](const QVariant& value) {
        if (value.metaType().id() == QMetaType::QString) {
            const QString text = value.toString().trimmed();
            if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
                return true;
            if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
                return false;
        }
        return numberOf(value) != 0.0;
    });
}

QDateTime ColumnDate(const QSqlRecord& row, const QString& column)
{
    return readColumn(row, column, [](const QVariant& value) {
        const int type = value.metaType().id();
        double days = 0.0;
        if (type == QMetaType::QString || type == QMetaType::QByteArray) {
            const QString text = value.toString().trimmed();
            QDate date = QDate::fromString(text.left(10), Qt::ISODate);
            if (date.isValid() && (text.size() == 10 || text[10] == QLatin1Char(' ') || text[10] == QLatin1Char('T')))
                return QDateTime(date, QTime(0, 0));
            // A date written by another program as a day number.
            bool ok = false;
            days = text.toDouble(&ok);
            if (!ok)
                RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
        } else {
            days = numberOf(value);
        }
        // Day numbers count from 30 December 1899, as Jet stored its dates.
        if (!std::isfinite(days) || std::fabs(days) > 3.0e6)
            RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
        return QDateTime(QDate(1899, 12, 30).addDays(static_cast<qint64>(std::floor(days))), QTime(0, 0));
    });
}

} // namespace mDatabase

namespace mMain {

bool CheckForDB(cRegistrySettings& settings)
{
    bool result = false;
    ShowErrors(kModule, kRevision, QStringLiteral("CheckForDB"), [&] {
        using namespace mDatabase;
        const bool overridden = !PathOverride().isEmpty();
        QString candidate = overridden ? PathOverride() : settings.DBName();
        if (candidate.isEmpty())
            candidate = cRegistrySettings::DefaultDBName();
        if (fileExists(candidate)) {
            result = true;
            return;
        }
        // A folder is no missing library: nothing is made in its place and nobody is asked.
        if (QFileInfo(candidate).isDir())
            raiseFile(candidate, kIsAFolder);
        const QString templateFile = TemplatePath();
        if (fileExists(templateFile)) {
            // DBName is deliberately left as it is: an empty one keeps meaning the default file.
            QFile::remove(candidate + QStringLiteral("-wal"));
            QFile::remove(candidate + QStringLiteral("-shm"));
            QFile source(templateFile);
            if (!source.copy(candidate))
                RaiseError(RT_DATABASE, kModule, madeFromTemplateProblem(candidate, templateFile, source.errorString()));
            QFile::setPermissions(candidate, QFile::permissions(candidate) | QFileDevice::WriteOwner
                                                 | QFileDevice::WriteUser);
            result = true;
            return;
        }
        // The template is consulted only once, before asking: a path typed in is never made
        // from it. This is deliberate.
        while (!fileExists(candidate)) {
            if (!UI().askYesNo(cText::Translated(kContext, kMissingText), cText::Translated(kContext, kMissingTitle), MsgIcon::Exclamation)) {
                result = false;
                return;
            }
            candidate = UI().inputBox(cText::Translated(kContext, kSpecifyPrompt), cText::Translated(kContext, kSpecifyTitle), QString());
            if (candidate.isEmpty())
                candidate = cRegistrySettings::DefaultDBName();
        }
        if (overridden) {
            // A library given for one run stays out of the preferences.
            SetPathOverride(candidate);
        } else {
            settings.setDBName(candidate);
            settings.setLastKey(QString());
        }
        result = true;
    });
    return result;
}

QSqlDatabase ConnectDB()
{
    auto& s = mDatabase::state();
    if (!s.connectionMade) {
        s.connectionMade = true;
        ShowErrors(kModule, kRevision, QStringLiteral("ConnectDB"), [&] {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mDatabase::kConnectionName);
            mDatabase::openSharedOn(db, mDatabase::LibraryPath());
        });
    }
    return QSqlDatabase::database(mDatabase::kConnectionName, false);
}

} // namespace mMain
