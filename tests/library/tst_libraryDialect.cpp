// The statements the records write, whole, in the Jet dialect; the rules of their translation
// into SQLite's; any text stored and loaded exactly; and no statement reaching a row other than
// its own, whatever a library made elsewhere holds in its keys.
#include "LibraryTestSupport.h"

#include "link/MarloError.h"

#include <QtTest>

namespace {

const QString kId = QStringLiteral("{11111111-2222-3333-4444-555555555555}");
const QString kVersion = QStringLiteral("{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}");
const QString kParent = QStringLiteral("{99999999-8888-7777-6666-000000000000}");

} // namespace

class tst_libraryDialect : public QObject {
    Q_OBJECT

private slots:
    void statements_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("expected");
        const QString insert = QStringLiteral(
            "INSERT INTO ta_SetsTemplate (  ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, lLoadTime, "
            "lCycleTimeClose, lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, bAlertOne, bAlertTwo, "
            "lAlertOne, lAlertTwo) VALUES (  '%1', '', '%2', ").arg(kId, kVersion);
        cSetsTemplate r;
        r.setID(kId);
        r.setVersion(kVersion);
        // The worked example: empty name, 1 August 2001, all zero but the game time and the alerts.
        LibraryTest::fill(r, {0, 0, 0, 0, 0, 10, 0, 1, 1}, QString(), QDateTime(QDate(2001, 8, 1), QTime(17, 45)), {false, false, false, false});
        QTest::newRow("insert, worked example") << r.InsertStatement() << insert + QStringLiteral(
            "0 , 0 , 0 , 0 , 0 , 10 , 0 , \"\" , #08-01-2001# , False , False , False , False , 1 , 1 );");
        r.setParentID(kParent);
        LibraryTest::fill(r, {1, 2, 3, 4, 5, 6, -7, 8, INT32_MIN}, QStringLiteral("say \"hi\""), QDateTime(QDate(2024, 2, 29), QTime()), {true, false, false, true});
        // The version identifier is never part of an update.
        QTest::newRow("update") << r.UpdateStatement() << QStringLiteral(
            "UPDATE ta_SetsTemplate SET   ParentID = '%1' , lShotTime = 1 , lDwellTime = 2 , lCycleTimeOpen = 3 , lLoadTime = 4 , "
            "lCycleTimeClose = 5 , lGameTime = 6 , lFiringMode = -7 , sName = \"say \"\"hi\"\"\" , dtDate = #02-29-2024# , "
            "bCTCLikeCTO = True , bExpertMode = False , bAlertOne = False , bAlertTwo = True , lAlertOne = 8 , lAlertTwo = -2147483648 "
            "WHERE ID = '%2';").arg(kParent, kId);
        QTest::newRow("select") << r.SelectStatement() << QStringLiteral("SELECT * FROM ta_SetsTemplate WHERE ID = '%1';").arg(kId);
        QTest::newRow("delete") << r.DeleteStatement() << QStringLiteral("DELETE * FROM ta_SetsTemplate WHERE ID = '%1';").arg(kId);
        cUserVar variable;
        variable.setID(kId);
        variable.setParentID(kParent);
        variable.setVersion(kVersion);
        variable.setsName(QStringLiteral("Barrel"));
        variable.setsValue(QStringLiteral("14\""));
        QTest::newRow("variable insert") << variable.InsertStatement() << QStringLiteral(
            "INSERT INTO ta_UserVar (  ID, ParentID, Version, sName, sValue) VALUES (  '%1', '%2', '%3', \"Barrel\" , \"14\"\"\" );")
            .arg(kId, kParent, kVersion);
        QTest::newRow("variable update") << variable.UpdateStatement() << QStringLiteral(
            "UPDATE ta_UserVar SET   ParentID = '%1' , sName = \"Barrel\" , sValue = \"14\"\"\" WHERE ID = '%2';").arg(kParent, kId);
        QTest::newRow("variable delete") << variable.DeleteStatement() << QStringLiteral("DELETE * FROM ta_UserVar WHERE ID = '%1';").arg(kId);
        cColUserVar vars;
        vars.setParentID(QStringLiteral("x"));
        QTest::newRow("load a parent's variables") << vars.LoadStatement() << QStringLiteral("SELECT * FROM ta_UserVar WHERE ParentID = 'x'");
    }
    void statements()
    {
        QFETCH(QString, statement);
        QFETCH(QString, expected);
        QCOMPARE(statement, expected);
    }

    void translationBinds_data()
    {
        QTest::addColumn<QString>("jet");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("values");
        QTest::newRow("delete") << "DELETE * FROM ta_UserVar WHERE ID = '{A}';" << "DELETE FROM ta_UserVar WHERE ID = CAST(? AS TEXT);"
                                << QVariantList{"{A}"};
        QTest::newRow("every kind of literal")
            << "UPDATE t SET a = \"say \"\"hi\"\"\" , b = #02-29-2024# , c = True , d = False , e = -7 , f = 2.5 WHERE ID = 'it''s';"
            << "UPDATE t SET a = CAST(? AS TEXT) , b = ? , c = ? , d = ? , e = -? , f = ? WHERE ID = CAST(? AS TEXT);"
            << QVariantList{"say \"hi\"", "2024-02-29", 1, 0, 7, 2.5, "it's"};
        // SQLite never sees a text of the user's: a quote in it cannot end anything.
        QTest::newRow("a value that looks like SQL") << "INSERT INTO t (a) VALUES (\", (SELECT 1)) --\" );"
                                                     << "INSERT INTO t (a) VALUES (CAST(? AS TEXT) );" << QVariantList{", (SELECT 1)) --"};
        QTest::newRow("lone surrogate becomes U+FFFD") << QStringLiteral("SELECT \"k") + QChar(0xD800) + QStringLiteral("\", \"") + QChar(0xDC00) + "\"" << "SELECT CAST(? AS TEXT), CAST(? AS TEXT)"
                                                       << QVariantList{QStringLiteral("k\uFFFD"), QStringLiteral("\uFFFD")};
        QTest::newRow("a pair stays a pair") << QStringLiteral("SELECT \"\U0001F3AF\"") << "SELECT CAST(? AS TEXT)" << QVariantList{QStringLiteral("\U0001F3AF")};
        QTest::newRow("NUL inside a text") << QStringLiteral("SELECT 'a") + QChar(0) + QStringLiteral("b'") << "SELECT CAST(? AS TEXT)"
                                           << QVariantList{QStringLiteral("a") + QChar(0) + QStringLiteral("b")};
    }
    // Every literal goes to SQLite as a value bound to "?": texts and keys (as UTF-8, cast to text),
    // dates, yes/no, numbers.
    void translationBinds()
    {
        QFETCH(QString, jet);
        QFETCH(QString, sql);
        QFETCH(QVariantList, values);
        const mDatabase::SqliteStatement sqlite = mDatabase::TranslateJetSql(jet);
        QCOMPARE(sqlite.sql, sql);
        QCOMPARE(sqlite.values.size(), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(sqlite.values[i].toString(), values[i].toString());
    }

    // Whatever made the text, a second statement, a comment, an open literal, a parameter mark
    // or a character no statement of the library has is refused.
    void translationRefuses()
    {
        for (const char* jet : {"ID = 'x'; DROP TABLE ta_UserVar;", "SELECT 1 -- rest", "SELECT /* x */ 1", "ID = 'abc", "d = #02-30-2001#",
                                "SELECT ?", "SELECT :name", "SELECT @x, $y", "SELECT 0x1F", "SELECT a\xc3\xa9", "SELECT [a'b]", "SELECT \"\"\""})
            QVERIFY_THROWS_EXCEPTION(MarloError, mDatabase::TranslateJetSql(QString::fromUtf8(jet)));
    }

    void textRoundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("stored");  // what reads back, when it differs
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("quotes") << QStringLiteral("12\" barrel, it's '\"'\"\"") << QString();
        QTest::newRow("Jet syntax") << QStringLiteral("#08-01-2001# # DELETE * FROM True False NULL sName = \"x\" WHERE ID = '1'") << QString();
        QTest::newRow("injection, comments") << QStringLiteral("\"; DELETE FROM ta_UserVar; -- /* */") << QString();
        QTest::newRow("backslashes, non-Latin") << QStringLiteral("C:\\paint\\\\lot\\ Ölfarbe, 東京, Ελλάδα, עברית, 🎯") << QString();
        QTest::newRow("blanks, control characters") << QStringLiteral("  a\r\nb\tc\n") + QChar(0) + QStringLiteral("d  ") << QString();
        QTest::newRow("long") << QString(5000, QLatin1Char('"')) << QString();
        QTest::newRow("1 MB of quotes and hashes") << QStringLiteral("\"'#").repeated(350000) << QString();
        QTest::newRow("NUL alone") << QString(QChar(0)) << QString();
        QTest::newRow("hash, dashes, semicolon") << QStringLiteral("#1; -- ;; # /* */ */ ") << QString();
        QTest::newRow("keywords") << QStringLiteral("SELECT * FROM ta_SetsTemplate; DROP TABLE ta_UserVar; VACUUM; PRAGMA x=1") << QString();
        QTest::newRow("parameter marks") << QStringLiteral("? ?1 :a @b $c") << QString();
        // A lone half of a surrogate pair cannot be stored as text: it becomes U+FFFD, and the
        // characters after it stay where they were.
        QTest::newRow("lone high surrogate, then SQL") << QStringLiteral("k") + QChar(0xD800) + QStringLiteral("\", (SELECT 1)) --")
                                                       << QStringLiteral("k\uFFFD\", (SELECT 1)) --");
        QTest::newRow("lone low surrogate, last") << QStringLiteral("x") + QChar(0xDFFF) << QStringLiteral("x\uFFFD");
        QTest::newRow("high surrogate before a quote") << QString(QChar(0xDBFF)) + QStringLiteral("'\"") << QStringLiteral("\uFFFD'\"");
        // What UTF-16 would take for a byte-order mark stays text.
        QTest::newRow("leading U+FEFF") << QStringLiteral("\uFEFFname") << QString();
        // SQLite reads the noncharacters U+FFFE and U+FFFF back as U+FFFD: so they are stored.
        QTest::newRow("leading U+FFFE, U+FFFF") << QStringLiteral("\uFFFE\u6100\uFFFF") << QStringLiteral("\uFFFD\u6100\uFFFD");
    }
    // As a setting's name, a variable's name and a variable's value: stored and loaded exactly
    // (a lone surrogate as U+FFFD); the statements add one row to each table and no more.
    void textRoundTrip()
    {
        QFETCH(QString, text);
        QFETCH(QString, stored);
        if (stored.isNull())
            stored = text;
        LIBRARY_FIXTURE(f);
        auto record = f.library().Add();
        record->setsName(text);
        record->colUserVar().Clear();
        record->AddUserVar(text, text);
        f.save();
        QCOMPARE(f.row(QStringLiteral("SELECT sName FROM ta_SetsTemplate")).value(0).toString(), stored);
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")) * 10 + f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 11);
        record->setlShotTime(3);  // and an update, which changes no count
        f.save();
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")) * 10 + f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 11);
        f.restart();
        record = f.library().Item(record->ID());
        QVERIFY(record && record->colUserVar().Count() == 1);
        const auto variable = record->colUserVar().Item(1);
        QCOMPARE((QStringList{record->sName(), variable->sName(), variable->sValue()}), QStringList(3, stored));
        QCOMPARE(record->lShotTime(), 3);
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
    }

    void hostileIds_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("or true") << QStringLiteral("x' OR '1'='1");
        QTest::newRow("second statement") << QStringLiteral("x'; DELETE FROM ta_SetsTemplate; --");
        QTest::newRow("doubled, double") << QStringLiteral("a''b\"x\" OR \"1\"=\"1\"");
        QTest::newRow("Jet words, backslash") << QStringLiteral("#01-01-2001# True * x\\' OR 1=1 OR '");
        QTest::newRow("empty") << QString();
    }
    // A record whose key is hostile is written, loaded again, changed, read and deleted; the
    // neighbour's rows are never touched.
    void hostileIds()
    {
        QFETCH(QString, id);
        LIBRARY_FIXTURE(f);
        QVERIFY(f.exec(LibraryTest::templateRow(QStringLiteral("{N}"))));
        QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('{NV}', '{N}', 'v', 'n', 'neighbour value')")));
        auto record = std::make_shared<cSetsTemplate>();
        record->colUserVar().Clear();
        record->setID(id);
        record->AddUserVar(QStringLiteral("a"), QStringLiteral("1"));
        QVERIFY(f.library().AddByObject(record));
        f.save();
        f.restart();
        record = f.library().Item(id);
        QVERIFY(record);
        // Its own variables only: an empty key owns none (it would otherwise gather every variable).
        QCOMPARE(record->colUserVar().Count(), id.isEmpty() ? 0 : 1);
        QCOMPARE(f.library().Item(QStringLiteral("{N}"))->colUserVar().Count(), 1);
        record->setlShotTime(99);
        if (!id.isEmpty())
            record->colUserVar().Item(1)->setsValue(QStringLiteral("16"));
        f.save();
        QSqlDatabase connection;
        record->setlShotTime(1);
        record->Read(connection);
        QCOMPARE(record->lShotTime(), 99);
        record->setIsDeleted(true);
        f.save();
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 1);
        QCOMPARE(f.count(QStringLiteral("SELECT lShotTime FROM ta_SetsTemplate WHERE ID = '{N}'")), 11);
        QCOMPARE(f.row(QStringLiteral("SELECT sValue FROM ta_UserVar WHERE ID = '{NV}'")).value(0).toString(), QStringLiteral("neighbour value"));
    }
};

QTEST_GUILESS_MAIN(tst_libraryDialect)
#include "tst_libraryDialect.moc"
