// What the library file holds after the records wrote to it, byte for byte (each value's SQLite
// type and bytes). A scripted session of saves, edits, deletes and an import with hostile texts
// (quotes, SQL, NUL, lone surrogate halves, U+FFFE and U+FFFF stored as U+FFFD, a leading U+FEFF,
// 65,535 characters), extreme numbers and dates leaves exactly the rows, touched in exactly the
// order, recorded in data/storage_session.txt. Besides: a single change and a save write exactly
// the rows they name, whatever the keys hold (quotes, SQL, nothing) and whatever look-alike keys
// lie beside them; and a date no row holds.
//
// Every row written, updated or deleted is logged by triggers put into the test's own file, so
// the order of the rows a save touches is seen as SQLite saw it.
#include "LibraryTestSupport.h"

#include "base/mErrCodes.h"
#include "library/mLibraryExchange.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QtTest>
#include <functional>

namespace {

const QString kT1 = QStringLiteral("{10000000-0000-4000-8000-000000000001}");
// Keys of a library made elsewhere: quotes and what looks like SQL.
const QString kT3 = QStringLiteral("x' OR '1'='1");
const QString kT4 = QStringLiteral("#01-01-2001# True * x\\' OR \"1\"=\"1\" --");
const QString kT5 = QStringLiteral("{10000000-0000-4000-8000-000000000005}");
const QString kV1 = QStringLiteral("{20000000-0000-4000-8000-000000000001}");
const QString kV2 = QStringLiteral("{20000000-0000-4000-8000-000000000002}");
const QString kV3 = QStringLiteral("{20000000-0000-4000-8000-000000000003}");
const QString kV4 = QStringLiteral("{20000000-0000-4000-8000-000000000004}");
const QString kV5 = QStringLiteral("v'; DELETE FROM ta_UserVar; --");
const QString kVersion = QStringLiteral("{30000000-0000-4000-8000-000000000000}");

QString lone(char16_t unit) { return QString(QChar(unit)); }
// A text as the log and the rows show it: its UTF-8 bytes in hexadecimal.
QString hex(const QString& text) { return QString::fromLatin1(text.toUtf8().toHex().toUpper()); }

// 65,535 characters, the longest text a template may carry: quotes, SQL and a pair at the end.
QString longText()
{
    QString text = QStringLiteral("\"'; DROP TABLE ta_SetsTemplate; -- ").repeated(1900);
    text += QString(65535 - 2 - text.size(), QLatin1Char('#'));
    return text + QStringLiteral("\U0001F3AF");
}

// A value as SQLite holds it: its type and its bytes in hexadecimal; a long one as its length and
// a digest of its bytes.
QString cell(const QSqlRecord& row, int typeIndex)
{
    const QString type = row.value(typeIndex).toString();
    const QString hex = row.value(typeIndex + 1).toString();
    if (hex.size() <= 160)
        return type + QLatin1Char(':') + hex;
    const QByteArray digest = QCryptographicHash::hash(hex.toLatin1(), QCryptographicHash::Sha256).toHex().left(16);
    return QStringLiteral("%1:%2 hex digits, sha256 %3").arg(type).arg(hex.size()).arg(QString::fromLatin1(digest));
}

// A key made by the program during the run (not one of the test's own) is the same in no two
// runs: it shows as "<new key>". So is the date a template imported without one gets (the day
// of the run): it shows as "<today>".
QString maskKeys(QString text, const QSet<QString>& newKeys)
{
    for (const QString& key : newKeys)
        text.replace(hex(key), QStringLiteral("<new key>"));
    return text.replace(hex(QDate::currentDate().toString(Qt::ISODate)), QStringLiteral("<today>"));
}

class Storage {
public:
    explicit Storage(LibraryTest::Fixture& f) : m_f(f) {}

    // Triggers that log, in order, every row each statement inserts, updates or deletes.
    bool logStatements()
    {
        bool ok = m_f.exec(QStringLiteral("CREATE TABLE zz_log (what TEXT, tbl TEXT, id TEXT)"));
        for (const QString& table : {QStringLiteral("ta_SetsTemplate"), QStringLiteral("ta_UserVar")}) {
            for (const auto& [what, row] : {std::pair{"INSERT", "NEW"}, std::pair{"UPDATE", "OLD"}, std::pair{"DELETE", "OLD"}}) {
                ok = ok && m_f.exec(QStringLiteral("CREATE TRIGGER zz_%1_%2 AFTER %1 ON %2 BEGIN INSERT INTO zz_log VALUES "
                                                   "('%1', '%2', hex(%3.ID)); END")
                                        .arg(QLatin1String(what), table, QLatin1String(row)));
            }
        }
        return ok;
    }
    // The rows logged since the last call, one line each: what, table, key.
    QStringList takeLog()
    {
        QStringList lines;
        QSqlQuery query(m_f.inspector());
        query.exec(QStringLiteral("SELECT what, tbl, id FROM zz_log ORDER BY rowid"));
        while (query.next())
            lines.append(QStringLiteral("%1 %2 %3").arg(query.value(0).toString(), query.value(1).toString(), query.value(2).toString()));
        m_f.exec(QStringLiteral("DELETE FROM zz_log"));
        return lines;
    }
    // Every row of both tables, one line each: each column's type and bytes, in the table's order.
    QStringList rows()
    {
        QStringList lines;
        for (const QString& table : {QStringLiteral("ta_SetsTemplate"), QStringLiteral("ta_UserVar")}) {
            QStringList columns;
            QSqlQuery info(m_f.inspector());
            info.exec(QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table));
            while (info.next())
                columns << info.value(0).toString();
            QStringList selected;
            for (const QString& column : columns)
                selected << QStringLiteral("typeof(%1), hex(%1)").arg(column);
            QSqlQuery query(m_f.inspector());
            if (!query.exec(QStringLiteral("SELECT %1 FROM %2").arg(selected.join(QStringLiteral(", ")), table)))
                return {QStringLiteral("cannot read %1").arg(table)};
            while (query.next()) {
                QStringList cells;
                for (int i = 0; i < columns.size(); ++i)
                    cells << columns[i] + QLatin1Char('=') + cell(query.record(), 2 * i);
                lines << table + QLatin1Char(' ') + cells.join(QLatin1Char(' '));
            }
        }
        return lines;
    }

private:
    LibraryTest::Fixture& m_f;
};

std::shared_ptr<cSetsTemplate> newTemplate(const QString& id, const QString& name, const QList<qint32>& longs, const QDate& date,
                                           const QList<bool>& flags)
{
    auto record = std::make_shared<cSetsTemplate>();
    record->colUserVar().Clear();
    record->setID(id);
    record->setVersion(kVersion);
    LibraryTest::fill(*record, longs, name, QDateTime(date, QTime(17, 45, 59)), flags);
    return record;
}

std::shared_ptr<cUserVar> addVariable(cSetsTemplate& record, const QString& id, const QString& name, const QString& value)
{
    auto variable = std::make_shared<cUserVar>();
    variable->setID(id);
    variable->setVersion(kVersion);
    variable->setsName(name);
    variable->setsValue(value);
    return record.colUserVar().AddByObject(variable);
}

using Change = std::function<void(cColSetsTemplate&, cSetsTemplate&)>;

} // namespace

class tst_libraryStorage : public QObject {
    Q_OBJECT

private slots:
    // A date no row can hold (a year beyond 9999) is refused with the database error, before
    // anything is written; the record stays new, to be saved again once the date is mended.
    void refusedDate()
    {
        LIBRARY_FIXTURE(f);
        auto record = newTemplate(kT1, QStringLiteral("far"), {0, 0, 0, 0, 0, 0, 0, 0, 0}, QDate(10000, 1, 2), {false, false, false, false});
        f.library().AddByObject(record);
        f.save();
        QCOMPARE(f.ui.errors.size(), 1);
        QCOMPARE(f.ui.errors.first().Number(), int(mErrCodes::RT_DATABASE));
        QCOMPARE(f.firstError(), QStringLiteral("Syntax error in a library statement (bad date #01-02-10000#)."));
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 0);
        QVERIFY(record->IsNew());
        record->setdtDate(QDateTime(QDate(9999, 1, 2), QTime()));
        f.save();
        QCOMPARE(f.row(QStringLiteral("SELECT dtDate FROM ta_SetsTemplate")).value(0).toString(), QStringLiteral("9999-01-02"));
    }

    void touchesOnlyItsRows_data()
    {
        QTest::addColumn<QString>("id"); // the template changed
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("log"); // the rows the save touches, in order: what, table, key
        const auto row = [](const char* name, const Change& change, const QStringList& log, const QString& id = kT3) {
            QTest::newRow(name) << id << change << log;
        };
        const QString t3 = " ta_SetsTemplate " + hex(kT3), v5 = " ta_UserVar " + hex(kV5), v4 = " ta_UserVar " + hex(kV4);
        row("a template's name", [](cColSetsTemplate&, cSetsTemplate& r) { r.setsName(kT3); }, {"UPDATE" + t3});
        row("a template's number", [](cColSetsTemplate&, cSetsTemplate& r) { r.setlGameTime(INT32_MIN); }, {"UPDATE" + t3});
        row("a variable's value", [](cColSetsTemplate&, cSetsTemplate& r) { r.colUserVar().Item(1)->setsValue(kV5); }, {"UPDATE" + v5});
        row("a variable deleted", [](cColSetsTemplate&, cSetsTemplate& r) { r.colUserVar().Item(1)->setIsDeleted(true); }, {"DELETE" + v5});
        // Its variables' rows stay, as they always did: no template loads them again.
        row("a template deleted", [](cColSetsTemplate&, cSetsTemplate& r) { r.setIsDeleted(true); }, {"DELETE" + t3});
        row("a template with an empty key deleted", [](cColSetsTemplate&, cSetsTemplate& r) { r.setIsDeleted(true); },
            {"DELETE ta_SetsTemplate "}, QString());
        row("a variable added", [](cColSetsTemplate&, cSetsTemplate& r) { addVariable(r, kV4, QStringLiteral("a"), QStringLiteral("b")); },
            {"INSERT" + v4});
        row("a template added", [](cColSetsTemplate& library, cSetsTemplate&) {
            auto added = newTemplate(kT5, QString(), {0, 0, 0, 0, 0, 0, 0, 0, 0}, QDate(2001, 8, 1), {false, false, false, false});
            addVariable(*added, kV4, QStringLiteral("a"), QStringLiteral("b"));
            library.AddByObject(added);
        }, {"INSERT ta_SetsTemplate " + hex(kT5), "INSERT" + v4});
        row("the same value again", [](cColSetsTemplate&, cSetsTemplate& r) { r.setlGameTime(r.lGameTime()); }, {});
    }
    // Templates with keys from a library made elsewhere (quotes, SQL, an empty one), each with a
    // variable, beside a neighbour's rows with look-alike keys. One change and a save: exactly the
    // rows it names are written, and every other row stays byte for byte as it was.
    void touchesOnlyItsRows()
    {
        QFETCH(QString, id);
        QFETCH(Change, change);
        QFETCH(QStringList, log);
        LIBRARY_FIXTURE(f);
        Storage storage(f);
        QVERIFY(storage.logStatements());
        // Look-alikes a key with quotes would reach if it were SQL: "x", "1", everything.
        QVERIFY(f.exec(LibraryTest::templateRow(QStringLiteral("x"))));
        QVERIFY(f.exec(LibraryTest::templateRow(QStringLiteral("1"))));
        QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('v', 'x', 'v', 'n', 'neighbour')")));
        for (const QString& key : {kT1, kT3, kT4, QString()}) {
            auto record = newTemplate(key, QStringLiteral("name \"") + key, {1, 2, 3, 4, 5, 6, 7, 8, 9}, QDate(2001, 8, 1),
                                      {true, false, true, false});
            addVariable(*record, key == kT3 ? kV5 : key + QStringLiteral("-v"), QStringLiteral("n"), QStringLiteral("value"));
            f.library().AddByObject(record);
        }
        f.save();
        f.save(); // the edits made after the insert
        f.restart();
        QCOMPARE(f.library().Count(), 6);
        // Each its own variables: an empty key owns none (it would otherwise gather every variable).
        QCOMPARE(f.library().Item(kT3)->colUserVar().Count(), 1);
        QCOMPARE(f.library().Item(QString())->colUserVar().Count(), 0);
        const QStringList before = storage.rows();
        storage.takeLog();
        change(f.library(), *f.library().Item(id));
        f.save();
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(storage.takeLog(), log);
        // Every row the save did not name is as it was, byte for byte.
        const auto unnamed = [&](QStringList rows) {
            for (const QString& line : log) {
                const QString start = line.section(QLatin1Char(' '), 1, 1) + QStringLiteral(" ID=text:") + line.section(QLatin1Char(' '), 2);
                rows.removeIf([&](const QString& row) { return row.startsWith(start + QLatin1Char(' ')); });
            }
            return rows;
        };
        QCOMPARE(unnamed(storage.rows()), unnamed(before));
    }

    // Made, saved, edited, deleted and imported with hostile texts, extreme numbers and keys of a
    // library made elsewhere: the rows each step leaves, and the rows each save touched, are
    // those recorded in data/storage_session.txt (MARLO_STORAGE_SESSION=path writes them anew).
    void scriptedSession()
    {
        LIBRARY_FIXTURE(f);
        Storage storage(f);
        QVERIFY(storage.logStatements());
        QStringList out;
        QSet<QString> newKeys;
        const auto step = [&](const QString& title) {
            QSqlQuery keys(f.inspector());
            keys.exec(QStringLiteral("SELECT ID FROM ta_SetsTemplate UNION SELECT Version FROM ta_SetsTemplate UNION "
                                     "SELECT ID FROM ta_UserVar UNION SELECT ParentID FROM ta_UserVar UNION SELECT Version FROM ta_UserVar"));
            static const QRegularExpression guid(QStringLiteral("^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$"));
            while (keys.next()) {
                const QString key = keys.value(0).toString();
                if (guid.match(key).hasMatch() && !key.startsWith(QLatin1String("{10000000")) && !key.startsWith(QLatin1String("{20000000"))
                    && key != kVersion)
                    newKeys.insert(key);
            }
            // Sorted once the keys made anew are masked, so that no new key decides the order.
            QStringList rows;
            for (const QString& line : storage.rows())
                rows << maskKeys(line, newKeys);
            rows.sort();
            out << QStringLiteral("== ") + title << QStringLiteral("-- rows touched, in order") << storage.takeLog()
                << QStringLiteral("-- rows") << rows;
        };

        // Made and saved (twice: the second save writes the edits made after each insert).
        auto t1 = newTemplate(kT1, QStringLiteral("12\" barrel, it's '\"'\"\""), {INT32_MIN, INT32_MAX, -1, 0, 1, 65535, -7, INT32_MAX, INT32_MIN},
                              QDate(2001, 8, 1), {true, false, true, false});
        addVariable(*t1, kV1, QStringLiteral("'; DROP TABLE ta_UserVar; --"), QStringLiteral("\"); DELETE FROM ta_SetsTemplate; --"));
        addVariable(*t1, kV2, QStringLiteral("k") + lone(0xD800) + QStringLiteral("\""), QStringLiteral("end") + lone(0xDC00));
        addVariable(*t1, kV3, QStringLiteral("\uFFFE\u6100\uFFFF"), QStringLiteral("\uFEFFbom"));
        addVariable(*t1, kV4, QStringLiteral("\U0001F3AF 東京 a") + QChar(0) + QStringLiteral("b"), longText());
        f.library().AddByObject(t1);
        auto t2 = f.library().Add(); // the seven standard variables, every key made anew
        t2->setsName(QStringLiteral("standard"));
        t2->setdtDate(QDateTime(QDate(1899, 12, 30), QTime(0, 0, 1)));
        auto t3 = newTemplate(kT3, longText(), {0, 0, 0, 0, 0, 10, 0, 1, 1}, QDate(9999, 12, 31), {false, true, false, true});
        addVariable(*t3, kV5, QString(), QString());
        f.library().AddByObject(t3);
        auto t4 = newTemplate(kT4, QString(), {5, 4, 3, 2, 1, 0, -1, -2, -3}, QDate(1, 1, 1), {false, false, false, false});
        f.library().AddByObject(t4);
        f.save();
        step(QStringLiteral("made and saved"));
        f.save();
        step(QStringLiteral("saved again"));

        // Edited, some deleted, a new one deleted before its first save.
        t1->setsName(QStringLiteral("renamed \"") + lone(0xDBFF));
        t1->setlFiringMode(INT32_MAX);
        t1->colUserVar().Item(kV2)->setIsDeleted(true);
        t1->colUserVar().Item(kV3)->setsValue(QStringLiteral("a\r\nb\tc"));
        t3->setIsDeleted(true);
        t4->setdtDate(QDateTime(QDate(2024, 2, 29), QTime(12, 0)));
        t4->setbAlertTwo(true);
        auto ghost = f.library().Add();
        ghost->setIsDeleted(true);
        f.save();
        step(QStringLiteral("edited and deleted"));

        // Loaded again and exported: what the records read.
        f.restart();
        const QByteArray exported = mLibraryExchange::ExportDocument(f.library());
        out << QStringLiteral("== exported, sha256 of the document with new keys masked")
            << QString::fromLatin1(QCryptographicHash::hash(maskKeys(QString::fromLatin1(exported.toHex().toUpper()), newKeys).toLatin1(),
                                                            QCryptographicHash::Sha256).toHex());

        // Imported in one transaction: one template updated, one added with its key, one without.
        const QByteArray document = QStringLiteral(
            "{\"templates\": [{\"ID\": \"%1\", \"sName\": \"imported \\\"x\\\" \\ud800\", \"lShotTime\": 255,"
            " \"dtDate\": \"2002-03-04\", \"bExpertMode\": true, \"UserVariables\": [{\"sName\": \"\\ufffe\", \"sValue\": \"\\udfff\\u0000\"}]},"
            " {\"ID\": \"%2\", \"sName\": \"'; DROP TABLE ta_SetsTemplate; --\", \"UserVariables\": [{\"sName\": \"n\", \"sValue\": \"\\uffff\"}]},"
            " {\"sName\": \"no key\", \"lGameTime\": 0}]}").arg(kT1, kT5).toUtf8();
        mLibraryExchange::ImportDocument(f.library(), document);
        f.app().SaveLibraryOrThrow(cApplication::SaveMode::OneTransaction);
        step(QStringLiteral("imported"));
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));

        const QString dump = maskKeys(out.join(QLatin1Char('\n')) + QLatin1Char('\n'), newKeys);
        const QString writeTo = qEnvironmentVariable("MARLO_STORAGE_SESSION");
        if (!writeTo.isEmpty())
            LibraryTest::writeFile(writeTo, dump.toUtf8());
        const QString recorded = QStringLiteral(MARLO_LIBRARY_TEST_DATA "/storage_session.txt");
        QVERIFY2(QFileInfo::exists(recorded), "data/storage_session.txt is missing");
        const QStringList expected = QString::fromUtf8(LibraryTest::fileBytes(recorded)).split(QLatin1Char('\n'));
        const QStringList actual = dump.split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < qMin(expected.size(), actual.size()); ++i)
            QCOMPARE(actual[i], expected[i]);
        QCOMPARE(actual.size(), expected.size());
    }
};

QTEST_GUILESS_MAIN(tst_libraryStorage)
#include "tst_libraryStorage.moc"
