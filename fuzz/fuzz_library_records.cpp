// Fuzz target: a setting and its user variable saved, loaded, updated and deleted through the
// record classes on a real SQLite file, with texts, keys, numbers, yes/no values and a date taken
// from the input. What is saved reads back as stored (a lone surrogate half, U+FFFE and U+FFFF
// as U+FFFD; the date without its time), and no statement changes any row but the record's own:
// the neighbours' rows (with keys that look like quotes and SQL) stay byte for byte, and after
// the delete the file holds exactly what it held before.
//
// Input: 41 bytes of fields (nine 32-bit whole numbers, a byte of yes/no flags, a day number),
// then UTF-16 text split at U+0001 (or cut in four) into the setting's name, the variable's
// name, its value and the setting's key.
#include "FuzzSupport.h"

#include "library/cSetsTemplate.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <cstring>

namespace {

QSqlDatabase g_connection;
QStringList g_neighbours; // the neighbours' keys

// Every row of both tables, with each value's type and bytes.
QStringList rows()
{
    QStringList lines;
    for (const char* table : {"ta_SetsTemplate", "ta_UserVar"}) {
        QSqlQuery query(g_connection);
        if (!query.exec(QStringLiteral("SELECT * FROM ") + QLatin1String(table)))
            fuzz::fail(QStringLiteral("cannot read %1").arg(QLatin1String(table)));
        while (query.next()) {
            QString line = QLatin1String(table);
            const QSqlRecord row = query.record();
            for (int i = 0; i < row.count(); ++i) {
                const QVariant value = row.value(i);
                line += QLatin1Char(' ') + QString::fromLatin1(value.typeName() ? value.typeName() : "null") + QLatin1Char(':')
                        + QString::fromLatin1(value.toString().toUtf8().toHex());
            }
            lines.append(line);
        }
    }
    return lines;
}

// The rows of every key but these.
QStringList rowsBut(const QStringList& keys)
{
    QStringList others;
    const QStringList all = rows();
    for (const QString& line : all) {
        bool own = false;
        for (const QString& key : keys)
            own = own || line.section(QLatin1Char(' '), 1, 1).section(QLatin1Char(':'), 1) == QString::fromLatin1(key.toUtf8().toHex());
        if (!own)
            others.append(line);
    }
    return others;
}

struct Fields {
    QList<qint32> longs;  // shot, dwell, open, load, close, game time, firing mode, alert one, alert two
    QList<bool> flags;    // CTC like CTO, expert mode, alert one, alert two
    QDate date;
};

void apply(cSetsTemplate& r, const Fields& f, const QString& name)
{
    r.setlShotTime(f.longs[0]);
    r.setlDwellTime(f.longs[1]);
    r.setlCycleTimeOpen(f.longs[2]);
    r.setlLoadTime(f.longs[3]);
    r.setlCycleTimeClose(f.longs[4]);
    r.setlGameTime(f.longs[5]);
    r.setlFiringMode(f.longs[6]);
    r.setlAlertOne(f.longs[7]);
    r.setlAlertTwo(f.longs[8]);
    r.setbCTCLikeCTO(f.flags[0]);
    r.setbExpertMode(f.flags[1]);
    r.setbAlertOne(f.flags[2]);
    r.setbAlertTwo(f.flags[3]);
    // With a time of day, which is not stored.
    r.setdtDate(QDateTime(f.date, QTime(13, 14, 15)));
    r.setsName(name);
}

QString codes(const QString& text)
{
    QStringList list;
    for (const QChar c : text.left(40))
        list.append(QString::number(c.unicode(), 16));
    return list.join(QLatin1Char(' '));
}

void expectText(const QString& read, const QString& written, const QString& what)
{
    fuzz::check(read == fuzz::stored(written),
                QStringLiteral("%1 read back differs after %2: [%3], expected [%4]").arg(what, codes(read), codes(fuzz::stored(written))));
}

// The record as stored, read by a record of its own.
void expectStored(const QString& id, const Fields& f, const QString& name, const QString& varName, const QString& varValue,
                  const char* after)
{
    const QString step = QLatin1String(after);
    cSetsTemplate loaded(cSetsTemplate::FromRow{});
    loaded.setID(fuzz::stored(id));
    loaded.Load(g_connection);
    fuzz::check(!loaded.IsNew(), QStringLiteral("the row is not found after %1").arg(step));
    expectText(loaded.ID(), id, QStringLiteral("the key"));
    expectText(loaded.sName(), name, QStringLiteral("the name"));
    const QList<qint32> longs = {loaded.lShotTime(), loaded.lDwellTime(), loaded.lCycleTimeOpen(), loaded.lLoadTime(), loaded.lCycleTimeClose(),
                                 loaded.lGameTime(), loaded.lFiringMode(), loaded.lAlertOne(), loaded.lAlertTwo()};
    fuzz::check(longs == f.longs, QStringLiteral("the whole numbers read back differ after %1").arg(step));
    const QList<bool> flags = {loaded.bCTCLikeCTO(), loaded.bExpertMode(), loaded.bAlertOne(), loaded.bAlertTwo()};
    fuzz::check(flags == f.flags, QStringLiteral("the yes/no values read back differ after %1").arg(step));
    fuzz::check(loaded.dtDate() == QDateTime(f.date, QTime(0, 0)),
                QStringLiteral("the date read back is %1, expected %2").arg(loaded.dtDate().toString(Qt::ISODate), f.date.toString(Qt::ISODate)));
    fuzz::check(loaded.colUserVar().Count() == 1, QStringLiteral("not one variable after %1").arg(step));
    const auto variable = loaded.colUserVar().Item(1);
    expectText(variable->sName(), varName, QStringLiteral("the variable's name"));
    expectText(variable->sValue(), varValue, QStringLiteral("the variable's value"));
}

Fields fieldsOf(const uint8_t* data)
{
    Fields f;
    for (int i = 0; i < 9; ++i) {
        qint32 value = 0;
        std::memcpy(&value, data + 4 * i, sizeof value);
        f.longs.append(value);
    }
    for (int bit = 0; bit < 4; ++bit)
        f.flags.append((data[36] >> bit) & 1);
    quint32 day = 0;
    std::memcpy(&day, data + 37, sizeof day);
    // Any day from 1 January 1 to 31 December 9999.
    f.date = QDate(1, 1, 1).addDays(day % 3652059);
    return f;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    g_connection = fuzz::openLibrary(argc, argv);
    // Neighbours whose keys a key built into SQL text could reach: quotes, "1", SQL, empty.
    for (const QString& key : {QStringLiteral("x"), QStringLiteral("1"), QStringLiteral("x' OR '1'='1"), QStringLiteral("'; --"), QString()}) {
        cSetsTemplate neighbour;
        neighbour.setID(key);
        neighbour.colUserVar().setParentID(key);
        neighbour.colUserVar().Clear();
        neighbour.setsName(QStringLiteral("neighbour ") + key);
        neighbour.AddUserVar(QStringLiteral("n"), key);
        neighbour.SaveOrThrow(g_connection);
        g_neighbours.append(key);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kFieldBytes = 41;
    if (size < kFieldBytes)
        return 0;
    Fields fields = fieldsOf(data);
    const QString input(reinterpret_cast<const QChar*>(data + kFieldBytes), static_cast<qsizetype>((size - kFieldBytes) / 2));

    // Name, variable name, value, key: split at U+0001 (or cut in four).
    QStringList parts = input.split(QChar(1));
    if (parts.size() < 4) {
        const qsizetype quarter = input.size() / 4;
        parts = {input.left(quarter), input.mid(quarter, quarter), input.mid(2 * quarter, quarter), input.mid(3 * quarter)};
    }
    const QString name = parts[0], varName = parts[1], varValue = parts[2], key = parts.mid(3).join(QChar(1));

    const QStringList before = rows();
    cSetsTemplate record;
    record.colUserVar().Clear();
    // The input's key, unless it is a neighbour's (a second row under one key is refused).
    if (!key.isEmpty() && !g_neighbours.contains(fuzz::stored(key)))
        record.setID(key);
    record.colUserVar().setParentID(record.ID());
    apply(record, fields, name);
    const auto variable = record.AddUserVar(varName, varValue);
    const QStringList own = {fuzz::stored(record.ID()), fuzz::stored(variable->ID())};
    record.SaveOrThrow(g_connection);
    fuzz::check(rowsBut(own) == before, QStringLiteral("the insert changed another row"));
    fuzz::check(rows().size() == before.size() + 2, QStringLiteral("the insert did not add two rows"));
    expectStored(record.ID(), fields, name, varName, varValue, "the insert");

    // Texts swapped and every number changed, saved again: updates of the two rows only.
    for (qint32& value : fields.longs)
        value = ~value;
    for (bool& flag : fields.flags)
        flag = !flag;
    fields.date = fields.date.year() < 9999 ? fields.date.addYears(1) : fields.date.addYears(-1);
    apply(record, fields, varValue);
    variable->setsName(name);
    variable->setsValue(varName);
    record.SaveOrThrow(g_connection);
    fuzz::check(rowsBut(own) == before, QStringLiteral("the update changed another row"));
    fuzz::check(rows().size() == before.size() + 2, QStringLiteral("the update added or removed rows"));
    expectStored(record.ID(), fields, varValue, name, varName, "the update");

    // Deleted, the setting's row and then its variable's: the file holds what it held before.
    record.setIsDeleted(true);
    variable->setIsDeleted(true);
    record.SaveOrThrow(g_connection);
    fuzz::check(rows() == before, QStringLiteral("the delete left the file changed"));
    return 0;
}
