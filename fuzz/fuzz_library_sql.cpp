// Fuzz target: the library's dialect translation and execution, through a real SQLite file.
// The input is taken as UTF-16 text (so lone surrogate halves, NUL, quotes of every kind, "#",
// "--" and ";" all occur) and split in three: a setting's name, a variable's name and its value.
// They are inserted, read back, updated and deleted with the records' own statements: what goes
// in comes out (a lone surrogate half as U+FFFD), and the tables' row counts change only as each
// statement says. The whole input is also translated as a statement: either refused, or SQL
// that holds no literal at all, only "?" marks, one for each value.
#include "FuzzSupport.h"

#include "library/cSetsTemplate.h"

#include <QSqlQuery>

namespace {

QSqlDatabase g_connection;

qint64 count(const char* table)
{
    QSqlQuery query(g_connection);
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table)) || !query.next())
        fuzz::fail(QStringLiteral("cannot count %1").arg(QLatin1String(table)));
    return query.value(0).toLongLong();
}

void expectCounts(qint64 templates, qint64 variables, const char* after)
{
    fuzz::check(count("ta_SetsTemplate") == templates && count("ta_UserVar") == variables,
                QStringLiteral("row counts after %1: %2 and %3, expected %4 and %5")
                    .arg(QLatin1String(after)).arg(count("ta_SetsTemplate")).arg(count("ta_UserVar")).arg(templates).arg(variables));
}

// The record as stored, read with a record of its own.
void expectStored(const QString& id, const QString& name, const QString& varName, const QString& varValue, const char* after)
{
    cSetsTemplate loaded(cSetsTemplate::FromRow{});
    loaded.setID(id);
    loaded.Load(g_connection);
    fuzz::check(loaded.sName() == fuzz::stored(name), QStringLiteral("the name read back differs after %1").arg(QLatin1String(after)));
    fuzz::check(loaded.colUserVar().Count() == 1, QStringLiteral("not one variable after %1").arg(QLatin1String(after)));
    const auto variable = loaded.colUserVar().Item(1);
    const auto codes = [](const QString& text) {
        QStringList list;
        for (const QChar c : text.left(40))
            list.append(QString::number(c.unicode(), 16));
        return list.join(QLatin1Char(' '));
    };
    fuzz::check(variable->sName() == fuzz::stored(varName) && variable->sValue() == fuzz::stored(varValue),
                QStringLiteral("the variable read back differs after %1: [%2] [%3], expected [%4] [%5]")
                    .arg(QLatin1String(after), codes(variable->sName()), codes(variable->sValue()), codes(fuzz::stored(varName)),
                         codes(fuzz::stored(varValue))));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    g_connection = fuzz::openLibrary(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString input(reinterpret_cast<const QChar*>(data), static_cast<qsizetype>(size / 2));

    // The whole input as a statement.
    try {
        const mDatabase::SqliteStatement sqlite = mDatabase::TranslateJetSql(input);
        fuzz::check(sqlite.sql.count(QLatin1Char('?')) == sqlite.values.size(), QStringLiteral("marks and values differ"));
        for (const QChar c : sqlite.sql)
            fuzz::check(c.unicode() < 0x80 && c != QLatin1Char('\'') && c != QLatin1Char('"') && c != QLatin1Char('#'),
                        QStringLiteral("a literal reached the SQL: ") + sqlite.sql.left(200));
    } catch (const MarloError&) {
    }

    // Name, variable name, value: split at the first two U+0001 (or cut in thirds).
    QStringList parts = input.split(QChar(1));
    if (parts.size() < 3)
        parts = {input.left(input.size() / 3), input.mid(input.size() / 3, input.size() / 3), input.mid(2 * (input.size() / 3))};
    const QString name = parts[0], varName = parts[1], varValue = parts.mid(2).join(QChar(1));

    const qint64 templates = count("ta_SetsTemplate"), variables = count("ta_UserVar");
    cSetsTemplate record;
    record.colUserVar().Clear();
    record.setsName(name);
    record.AddUserVar(varName, varValue);
    record.SaveOrThrow(g_connection);
    expectCounts(templates + 1, variables + 1, "the insert");
    expectStored(record.ID(), name, varName, varValue, "the insert");

    // Swapped and saved again: updates only.
    record.setsName(varValue);
    record.colUserVar().Item(1)->setsName(name);
    record.colUserVar().Item(1)->setsValue(varName);
    record.SaveOrThrow(g_connection);
    expectCounts(templates + 1, variables + 1, "the update");
    expectStored(record.ID(), varValue, name, varName, "the update");

    // Deleted: the setting's row goes, then its variable's.
    record.setIsDeleted(true);
    record.colUserVar().Item(1)->setIsDeleted(true);
    record.SaveOrThrow(g_connection);
    expectCounts(templates, variables, "the delete");
    return 0;
}
