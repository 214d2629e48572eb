#include "library/mDatabase.h"

#include "library/cApplication.h"
#include "link/mErrCodes.h"
#include "shell/cRegistrySettings.h"
#include "shell/mMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlError>
#include <QStringList>
#include <cmath>

using mErrCodes::RT_DATABASE;

namespace mDatabase {
namespace {

const QString kCheckConnectionName = QStringLiteral("MarloLibraryCheck");

struct State {
    QString pathOverride;
    bool connectionMade = false;
    QString openError;
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

QString fileProblem(const QString& path, const QString& problem)
{
    return QStringLiteral("The library file \"%1\" %2").arg(QDir::toNativeSeparators(path), problem);
}

[[noreturn]] void raiseFile(const QString& path, const QString& problem)
{
    RaiseError(RT_DATABASE, kModule, fileProblem(path, problem));
}

[[noreturn]] void raiseSyntax(const QString& problem, const QString& statement)
{
    RaiseError(RT_DATABASE, kModule,
               QStringLiteral("Syntax error in the library statement (%1): %2").arg(problem, statement.left(300)));
}

bool isWordStart(QChar c) { return c.isLetter() || c == QLatin1Char('_'); }
bool isWordPart(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); }

// Reads a literal that starts at `at` with the quote character `quote` (doubled inside).
// Returns the position after the closing quote.
qsizetype readQuoted(const QString& text, qsizetype at, QChar quote, QString& value)
{
    const qsizetype n = text.size();
    qsizetype i = at + 1;
    value.clear();
    while (i < n) {
        const QChar c = text[i];
        if (c == quote) {
            if (i + 1 < n && text[i + 1] == quote) {
                value.append(quote);
                i += 2;
                continue;
            }
            return i + 1;
        }
        value.append(c);
        ++i;
    }
    raiseSyntax(QStringLiteral("unterminated text"), text);
}

// An SQLite text literal with exactly this content. A NUL cannot stand inside a literal, so it
// is joined in with char(0).
void appendLiteral(QString& out, const QString& value)
{
    const QStringList parts = value.split(QChar(0));
    for (qsizetype p = 0; p < parts.size(); ++p) {
        if (p > 0)
            out.append(QLatin1String("||char(0)||"));
        out.append(QLatin1Char('\''));
        QString part = parts[p];
        out.append(part.replace(QLatin1Char('\''), QLatin1String("''")));
        out.append(QLatin1Char('\''));
    }
}

// #mm-dd-yyyy# (also with "/" and without leading zeros) as an ISO date literal.
void appendDate(QString& out, const QString& jetDate, const QString& statement)
{
    const QString text = jetDate.trimmed();
    QDate date;
    for (const char* format : {"MM-dd-yyyy", "M-d-yyyy", "MM/dd/yyyy", "M/d/yyyy"}) {
        date = QDate::fromString(text, QLatin1String(format));
        if (date.isValid())
            break;
    }
    if (!date.isValid())
        raiseSyntax(QStringLiteral("bad date #%1#").arg(jetDate), statement);
    out.append(QLatin1Char('\''));
    out.append(date.toString(Qt::ISODate));
    out.append(QLatin1Char('\''));
}

QVariant columnValue(const QSqlRecord& row, const QString& column)
{
    const int index = row.indexOf(column);
    if (index < 0)
        RaiseError(RT_DATABASE, kModule,
                   QStringLiteral("Item cannot be found in the collection corresponding to the requested "
                                  "name or ordinal (column %1).").arg(column));
    const QVariant value = row.value(index);
    if (value.isNull())
        RaiseError(RT_INVALID_USE_OF_NULL, kModule,
                   QStringLiteral("Invalid use of Null (column %1).").arg(column));
    return value;
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

// Opens the file read-only, checks its tables and columns, and closes it again.
QString schemaProblem(const QString& path)
{
    QString problem;
    {
        QSqlDatabase check = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kCheckConnectionName);
        check.setDatabaseName(path);
        check.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
        if (!check.open()) {
            problem = QStringLiteral("cannot be opened: %1").arg(check.lastError().text());
        } else {
            auto checkTable = [&](const QString& table, const QStringList& columns) {
                if (!problem.isEmpty())
                    return;
                QSqlQuery query(check);
                if (!query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table))) {
                    problem = QStringLiteral("is damaged or not a database: %1").arg(query.lastError().text());
                    return;
                }
                QSet<QString> present;
                while (query.next())
                    present.insert(query.value(1).toString().toLower());
                if (present.isEmpty()) {
                    problem = QStringLiteral("is not a Marlo library: it has no table %1.").arg(table);
                    return;
                }
                for (const QString& column : columns) {
                    if (!present.contains(column.toLower())) {
                        problem = QStringLiteral("is not a Marlo library: table %1 has no column %2.").arg(table, column);
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
    return problem.isEmpty() ? QString() : fileProblem(path, problem);
}

} // namespace

void SetPathOverride(const QString& path) { state().pathOverride = path; }
QString PathOverride() { return state().pathOverride; }

QString LibraryPath()
{
    if (!state().pathOverride.isEmpty())
        return state().pathOverride;
    const QString configured = mMain::Application().RegistrySettings().DBName();
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
    const QString problem = LibraryFileProblem(path);
    if (!problem.isEmpty())
        RaiseError(RT_DATABASE, kModule, problem);
}

QString LibraryFileProblem(const QString& path)
{
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE")))
        return QStringLiteral("The SQLite driver of Qt is not installed (package libqt6sql6-sqlite).");
    if (path.isEmpty())
        return QStringLiteral("No library file is configured.");
    const QFileInfo info(path);
    if (!info.exists())
        return fileProblem(path, QStringLiteral("does not exist."));
    if (!info.isFile())
        return fileProblem(path, QStringLiteral("is not a file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fileProblem(path, QStringLiteral("cannot be read: %1").arg(file.errorString()));
    const QByteArray head = file.read(100);
    file.close();
    if (head.isEmpty())
        return fileProblem(path, QStringLiteral("is empty: it is not a Marlo library."));
    const QByteArray jetName = head.mid(4, 15);
    if (jetName == "Standard Jet DB" || jetName == "Standard ACE DB")
        return fileProblem(path, QStringLiteral("is a Microsoft Access (Jet) database. Marlo keeps its library "
                                                "in SQLite files; this file cannot be used as it is."));
    if (!head.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        return fileProblem(path, QStringLiteral("is not a Marlo library (it is not an SQLite database)."));
    // A file the user marked read-only is refused even where the account could write it anyway.
    const QFileDevice::Permissions writeBits =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (!(info.permissions() & writeBits) || !info.isWritable())
        return fileProblem(path, QStringLiteral("is read-only; the library must be writable."));
    if (!QFileInfo(info.absolutePath()).isWritable())
        return fileProblem(path, QStringLiteral("lies in a folder that is not writable; the library keeps "
                                                "its journal files beside it."));
    return schemaProblem(path);
}

QString OpenError() { return state().openError; }

void DisconnectDB()
{
    if (QSqlDatabase::contains(kConnectionName)) {
        QSqlDatabase::database(kConnectionName, false).close();
        QSqlDatabase::removeDatabase(kConnectionName);
    }
    state().connectionMade = false;
    state().openError.clear();
}

void EnsureConnection(QSqlDatabase& connection)
{
    if (!connection.isValid())
        connection = mMain::ConnectDB();
}

QString TranslateJetSql(const QString& statement)
{
    QString out;
    out.reserve(statement.size() + 16);
    const qsizetype n = statement.size();
    qsizetype i = 0;
    bool ended = false;
    QString literal;
    while (i < n) {
        const QChar c = statement[i];
        if (c.isSpace()) {
            out.append(c);
            ++i;
            continue;
        }
        if (ended)
            raiseSyntax(QStringLiteral("text after the end of the statement"), statement);
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            // Jet's double-quoted texts and single-quoted keys both become SQLite literals; a
            // single-quoted literal comes out exactly as it went in.
            i = readQuoted(statement, i, c, literal);
            appendLiteral(out, literal);
            continue;
        }
        if (c == QLatin1Char('#')) {
            const qsizetype close = statement.indexOf(QLatin1Char('#'), i + 1);
            if (close < 0)
                raiseSyntax(QStringLiteral("unterminated date"), statement);
            appendDate(out, statement.mid(i + 1, close - i - 1), statement);
            i = close + 1;
            continue;
        }
        if (c == QLatin1Char('[') || c == QLatin1Char('`')) {
            const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('`');
            const qsizetype end = statement.indexOf(close, i + 1);
            if (end < 0)
                raiseSyntax(QStringLiteral("unterminated name"), statement);
            out.append(QStringView(statement).mid(i, end - i + 1));
            i = end + 1;
            continue;
        }
        if (isWordStart(c)) {
            qsizetype end = i + 1;
            while (end < n && isWordPart(statement[end]))
                ++end;
            const QStringView word = QStringView(statement).mid(i, end - i);
            i = end;
            if (word.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
                out.append(QLatin1Char('1'));
            } else if (word.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
                out.append(QLatin1Char('0'));
            } else if (word.compare(QLatin1String("DELETE"), Qt::CaseInsensitive) == 0) {
                out.append(word);
                // Jet's "DELETE * FROM" is SQLite's "DELETE FROM".
                qsizetype look = i;
                while (look < n && statement[look].isSpace())
                    ++look;
                if (look < n && statement[look] == QLatin1Char('*')) {
                    ++look;
                    while (look < n && statement[look].isSpace())
                        ++look;
                    out.append(QLatin1Char(' '));
                    i = look;
                }
            } else {
                out.append(word);
            }
            continue;
        }
        if (c.isDigit()) {
            // A number with its letters (1e5, 0x1F) is one token: no keyword hides inside it.
            qsizetype end = i + 1;
            while (end < n && (isWordPart(statement[end]) || statement[end] == QLatin1Char('.')))
                ++end;
            out.append(QStringView(statement).mid(i, end - i));
            i = end;
            continue;
        }
        if ((c == QLatin1Char('-') && i + 1 < n && statement[i + 1] == QLatin1Char('-'))
            || (c == QLatin1Char('/') && i + 1 < n && statement[i + 1] == QLatin1Char('*')))
            raiseSyntax(QStringLiteral("comment"), statement);
        if (c == QLatin1Char(';'))
            ended = true;
        out.append(c);
        ++i;
    }
    return out;
}

QSqlQuery Execute(QSqlDatabase& connection, const QString& statement)
{
    EnsureConnection(connection);
    const QString sql = TranslateJetSql(statement);
    if (!connection.isOpen()) {
        const QString reason = connection.connectionName() == kConnectionName ? state().openError : QString();
        RaiseError(RT_DATABASE, kModule,
                   reason.isEmpty() ? QStringLiteral("The library is not open.")
                                    : QStringLiteral("The library is not open: %1").arg(reason));
    }
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        RaiseError(RT_DATABASE, kModule,
                   QStringLiteral("%1 (statement: %2)").arg(query.lastError().text(), statement.left(300)));
    return query;
}

QString JetText(const QString& text)
{
    QString doubled = text;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

QString JetKey(const QString& key)
{
    // A key from a file made elsewhere may hold a quote; doubled, it stays inside its literal,
    // so the statement can only ever reach the row with exactly this key.
    if (!key.contains(QLatin1Char('\'')))
        return key;
    QString doubled = key;
    return doubled.replace(QLatin1Char('\''), QLatin1String("''"));
}

QString JetDate(const QDateTime& date)
{
    return date.date().toString(QStringLiteral("MM-dd-yyyy"));
}

QString JetBool(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString JetLong(qint32 value)
{
    return QString::number(value);
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
    const QVariant value = columnValue(row, column);
    const int type = value.metaType().id();
    if (type == QMetaType::LongLong || type == QMetaType::Int) {
        const qint64 number = value.toLongLong();
        if (number < INT32_MIN || number > INT32_MAX)
            RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
        return static_cast<qint32>(number);
    }
    return wholeNumber(numberOf(value));
}

bool ColumnBool(const QSqlRecord& row, const QString& column)
{
    const QVariant value = columnValue(row, column);
    if (value.metaType().id() == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
    }
    return numberOf(value) != 0.0;
}

QDateTime ColumnDate(const QSqlRecord& row, const QString& column)
{
    const QVariant value = columnValue(row, column);
    const int type = value.metaType().id();
    if (type == QMetaType::QString || type == QMetaType::QByteArray) {
        const QString text = value.toString().trimmed();
        QDate date = QDate::fromString(text.left(10), Qt::ISODate);
        if (date.isValid() && (text.size() == 10 || text[10] == QLatin1Char(' ') || text[10] == QLatin1Char('T')))
            return QDateTime(date, QTime(0, 0));
        // A date written by another program as a day number.
        bool ok = false;
        const double days = text.toDouble(&ok);
        if (!ok)
            RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
        return QDateTime(QDate(1899, 12, 30).addDays(static_cast<qint64>(std::floor(days))), QTime(0, 0));
    }
    // Day numbers count from 30 December 1899, as Jet stored its dates.
    const double days = numberOf(value);
    if (!std::isfinite(days) || std::fabs(days) > 3.0e6)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return QDateTime(QDate(1899, 12, 30).addDays(static_cast<qint64>(std::floor(days))), QTime(0, 0));
}

} // namespace mDatabase

namespace mMain {

bool CheckForDB()
{
    bool result = false;
    ShowErrors(kModule, kRevision, QStringLiteral("CheckForDB"), [&] {
        using namespace mDatabase;
        cRegistrySettings& settings = Application().RegistrySettings();
        const bool overridden = !PathOverride().isEmpty();
        QString candidate = overridden ? PathOverride() : settings.DBName();
        if (candidate.isEmpty())
            candidate = cRegistrySettings::DefaultDBName();
        if (fileExists(candidate)) {
            result = true;
            return;
        }
        const QString templateFile = TemplatePath();
        if (fileExists(templateFile)) {
            // DBName is deliberately left as it is: an empty one keeps meaning the default file.
            QFile::remove(candidate + QStringLiteral("-wal"));
            QFile::remove(candidate + QStringLiteral("-shm"));
            QFile source(templateFile);
            if (!source.copy(candidate))
                raiseFile(candidate, QStringLiteral("could not be made from the template \"%1\": %2")
                                         .arg(QDir::toNativeSeparators(templateFile), source.errorString()));
            QFile::setPermissions(candidate, QFile::permissions(candidate) | QFileDevice::WriteOwner
                                                 | QFileDevice::WriteUser);
            result = true;
            return;
        }
        // The template is consulted only once, before asking: a path typed in is never made
        // from it. This is deliberate.
        while (!fileExists(candidate)) {
            if (!UI().askYesNo(kMissingText, kMissingTitle, MsgIcon::Exclamation)) {
                result = false;
                return;
            }
            candidate = UI().inputBox(kSpecifyPrompt, kSpecifyTitle, QString());
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
            const QString path = mDatabase::LibraryPath();
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mDatabase::kConnectionName);
            auto fail = [&](const QString& problem) {
                s.openError = problem;
                RaiseError(mErrCodes::RT_DATABASE, mDatabase::kModule, problem);
            };
            // Checked before SQLite touches the file: a file that is no library stays as it was.
            const QString problem = mDatabase::LibraryFileProblem(path);
            if (!problem.isEmpty())
                fail(problem);
            db.setDatabaseName(path);
            db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
            if (!db.open())
                fail(mDatabase::fileProblem(path, QStringLiteral("cannot be opened: %1").arg(db.lastError().text())));
            // Each statement stands alone (no transaction); WAL with synchronous=NORMAL keeps every
            // one of them atomic without a disk flush per statement.
            QSqlQuery pragma(db);
            if (!pragma.exec(QStringLiteral("PRAGMA journal_mode=WAL"))
                || !pragma.exec(QStringLiteral("PRAGMA synchronous=NORMAL"))) {
                const QString text = pragma.lastError().text();
                pragma = QSqlQuery();
                db.close();
                fail(mDatabase::fileProblem(path, QStringLiteral("cannot be written: %1").arg(text)));
            }
        });
    }
    return QSqlDatabase::database(mDatabase::kConnectionName, false);
}

} // namespace mMain
