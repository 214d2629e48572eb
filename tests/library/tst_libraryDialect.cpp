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

    // Whatever made the text, a second statement, a comment or an open literal is refused.
    void translationRefuses()
    {
        for (const char* jet : {"ID = 'x'; DROP TABLE ta_UserVar;", "SELECT 1 -- rest", "SELECT /* x */ 1", "ID = 'abc", "d = #02-30-2001#"})
            QVERIFY_THROWS_EXCEPTION(MarloError, mDatabase::TranslateJetSql(QString::fromUtf8(jet)));
    }

    void textRoundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("quotes") << QStringLiteral("12\" barrel, it's '\"'\"\"");
        QTest::newRow("Jet syntax") << QStringLiteral("#08-01-2001# # DELETE * FROM True False NULL sName = \"x\" WHERE ID = '1'");
        QTest::newRow("injection, comments") << QStringLiteral("\"; DELETE FROM ta_UserVar; -- /* */");
        QTest::newRow("backslashes, non-Latin") << QStringLiteral("C:\\paint\\\\lot\\ Ölfarbe, 東京, Ελλάδα, עברית, 🎯");
        QTest::newRow("blanks, control characters") << QStringLiteral("  a\r\nb\tc\n") + QChar(0) + QStringLiteral("d  ");
        QTest::newRow("long") << QString(5000, QLatin1Char('"'));
    }
    // As a setting's name, a variable's name and a variable's value: stored and loaded exactly.
    void textRoundTrip()
    {
        QFETCH(QString, text);
        LIBRARY_FIXTURE(f);
        auto record = f.library().Add();
        record->setsName(text);
        record->colUserVar().Clear();
        record->AddUserVar(text, text);
        f.save();
        QCOMPARE(f.row(QStringLiteral("SELECT sName FROM ta_SetsTemplate")).value(0).toString(), text);
        f.restart();
        record = f.library().Item(record->ID());
        QVERIFY(record && record->colUserVar().Count() == 1);
        const auto variable = record->colUserVar().Item(1);
        QCOMPARE((QStringList{record->sName(), variable->sName(), variable->sValue()}), QStringList(3, text));
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
