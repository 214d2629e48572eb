// The library's statements, whole, in the Jet dialect the records write; and their translation
// into SQLite's dialect.
#include "library/cColSetsTemplate.h"
#include "library/cSetsTemplate.h"
#include "library/cUserVar.h"
#include "library/mDatabase.h"
#include "link/MarloError.h"

#include <QtTest>

namespace {

const QString kId = QStringLiteral("{11111111-2222-3333-4444-555555555555}");
const QString kVersion = QStringLiteral("{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}");
const QString kParent = QStringLiteral("{99999999-8888-7777-6666-000000000000}");

const QString kColumns = QStringLiteral(
    "INSERT INTO ta_SetsTemplate (  ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, lLoadTime, "
    "lCycleTimeClose, lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, bAlertOne, bAlertTwo, "
    "lAlertOne, lAlertTwo) VALUES (");

// A record with fixed identifiers, as a test row describes it.
void shape(cSetsTemplate& r, const QList<qint32>& longs, const QString& name, QDate date, const QList<bool>& flags)
{
    r.setID(kId);
    r.setVersion(kVersion);
    r.setlShotTime(longs[0]);
    r.setlDwellTime(longs[1]);
    r.setlCycleTimeOpen(longs[2]);
    r.setlLoadTime(longs[3]);
    r.setlCycleTimeClose(longs[4]);
    r.setlGameTime(longs[5]);
    r.setlFiringMode(longs[6]);
    r.setlAlertOne(longs[7]);
    r.setlAlertTwo(longs[8]);
    r.setsName(name);
    r.setdtDate(QDateTime(date, QTime(17, 45, 12)));
    r.setbCTCLikeCTO(flags[0]);
    r.setbExpertMode(flags[1]);
    r.setbAlertOne(flags[2]);
    r.setbAlertTwo(flags[3]);
}

QString describe(const MarloError& e)
{
    return QStringLiteral("%1 %2").arg(e.Number()).arg(e.Description());
}

} // namespace

class tst_libraryStatements : public QObject {
    Q_OBJECT

private slots:
    void templateInsert_data();
    void templateInsert();
    void templateUpdate_data();
    void templateUpdate();
    void templateSelectDelete();
    void userVarStatements_data();
    void userVarStatements();
    void collectionLoad_data();
    void collectionLoad();
    void translate_data();
    void translate();
    void translateRefuses_data();
    void translateRefuses();
};

void tst_libraryStatements::templateInsert_data()
{
    QTest::addColumn<QList<qint32>>("longs");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QList<bool>>("flags");
    QTest::addColumn<QString>("expected");

    // The worked example: empty name, 1 August 2001, all zero but the game time and the alerts.
    QTest::newRow("worked example")
        << QList<qint32>{0, 0, 0, 0, 0, 10, 0, 1, 1} << QString() << QDate(2001, 8, 1)
        << QList<bool>{false, false, false, false}
        << kColumns + QStringLiteral("  '") + kId + QStringLiteral("', '', '") + kVersion
               + QStringLiteral("', 0 , 0 , 0 , 0 , 0 , 10 , 0 , \"\" , #08-01-2001# , False , False , False , False , 1 , 1 );");
    QTest::newRow("field order and negatives")
        << QList<qint32>{1, 2, 3, 4, 5, 6, -7, 8, -2147483647 - 1} << QStringLiteral("Spring")
        << QDate(1999, 12, 31) << QList<bool>{true, false, true, false}
        << kColumns + QStringLiteral("  '") + kId + QStringLiteral("', '', '") + kVersion
               + QStringLiteral("', 1 , 2 , 3 , 4 , 5 , 6 , -7 , \"Spring\" , #12-31-1999# , True , False , True , False , 8 , -2147483648 );");
    QTest::newRow("double quotes doubled, single quotes as typed")
        << QList<qint32>{10, 10, 30, 35, 28, 10, 0, 1, 1} << QStringLiteral("12\" barrel 'fast' \"\"")
        << QDate(2024, 2, 29) << QList<bool>{false, true, false, true}
        << kColumns + QStringLiteral("  '") + kId + QStringLiteral("', '', '") + kVersion
               + QStringLiteral("', 10 , 10 , 30 , 35 , 28 , 10 , 0 , \"12\"\" barrel 'fast' \"\"\"\"\" , #02-29-2024# , False , True , False , True , 1 , 1 );");
}

void tst_libraryStatements::templateInsert()
{
    QFETCH(QList<qint32>, longs);
    QFETCH(QString, name);
    QFETCH(QDate, date);
    QFETCH(QList<bool>, flags);
    QFETCH(QString, expected);
    cSetsTemplate record;
    shape(record, longs, name, date, flags);
    QCOMPARE(record.InsertStatement(), expected);
}

void tst_libraryStatements::templateUpdate_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const QString tail = QStringLiteral(
        ", lShotTime = 1 , lDwellTime = 2 , lCycleTimeOpen = 3 , lLoadTime = 4 , lCycleTimeClose = 5 , "
        "lGameTime = 6 , lFiringMode = 7 , sName = %1 , dtDate = #08-01-2001# , bCTCLikeCTO = True , "
        "bExpertMode = False , bAlertOne = False , bAlertTwo = True , lAlertOne = 8 , lAlertTwo = 9 WHERE ID = '%2';");
    QTest::newRow("top level") << QString() << QStringLiteral("Cold day")
                               << QStringLiteral("UPDATE ta_SetsTemplate SET   ParentID = '' ")
                                      + tail.arg(QStringLiteral("\"Cold day\""), kId);
    QTest::newRow("with parent, quote") << kParent << QStringLiteral("say \"hi\"")
                                        << QStringLiteral("UPDATE ta_SetsTemplate SET   ParentID = '") + kParent
                                               + QStringLiteral("' ") + tail.arg(QStringLiteral("\"say \"\"hi\"\"\""), kId);
}

void tst_libraryStatements::templateUpdate()
{
    QFETCH(QString, parent);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    cSetsTemplate record;
    shape(record, {1, 2, 3, 4, 5, 6, 7, 8, 9}, name, QDate(2001, 8, 1), {true, false, false, true});
    record.setParentID(parent);
    QCOMPARE(record.UpdateStatement(), expected);
    // The version identifier is never part of an update.
    QVERIFY(!record.UpdateStatement().contains(kVersion));
}

void tst_libraryStatements::templateSelectDelete()
{
    cSetsTemplate record;
    record.setID(kId);
    QCOMPARE(record.SelectStatement(), QStringLiteral("SELECT * FROM ta_SetsTemplate WHERE ID = '") + kId + QStringLiteral("';"));
    QCOMPARE(record.DeleteStatement(), QStringLiteral("DELETE * FROM ta_SetsTemplate WHERE ID = '") + kId + QStringLiteral("';"));
}

void tst_libraryStatements::userVarStatements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("insert");
    QTest::addColumn<QString>("update");
    const QString insert = QStringLiteral("INSERT INTO ta_UserVar (  ID, ParentID, Version, sName, sValue) VALUES (  '")
                           + kId + QStringLiteral("', '") + kParent + QStringLiteral("', '") + kVersion
                           + QStringLiteral("', %1 , %2 );");
    const QString update = QStringLiteral("UPDATE ta_UserVar SET   ParentID = '") + kParent
                           + QStringLiteral("' , sName = %1 , sValue = %2 WHERE ID = '") + kId + QStringLiteral("';");
    QTest::newRow("empty") << QString() << QString() << insert.arg(QStringLiteral("\"\""), QStringLiteral("\"\""))
                           << update.arg(QStringLiteral("\"\""), QStringLiteral("\"\""));
    QTest::newRow("barrel 14\"") << QStringLiteral("Barrel") << QStringLiteral("14\"")
                                 << insert.arg(QStringLiteral("\"Barrel\""), QStringLiteral("\"14\"\"\""))
                                 << update.arg(QStringLiteral("\"Barrel\""), QStringLiteral("\"14\"\"\""));
}

void tst_libraryStatements::userVarStatements()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, insert);
    QFETCH(QString, update);
    cUserVar variable;
    variable.setID(kId);
    variable.setParentID(kParent);
    variable.setVersion(kVersion);
    variable.setsName(name);
    variable.setsValue(value);
    QCOMPARE(variable.InsertStatement(), insert);
    QCOMPARE(variable.UpdateStatement(), update);
    QCOMPARE(variable.SelectStatement(), QStringLiteral("SELECT * FROM ta_UserVar WHERE ID = '") + kId + QStringLiteral("';"));
    QCOMPARE(variable.DeleteStatement(), QStringLiteral("DELETE * FROM ta_UserVar WHERE ID = '") + kId + QStringLiteral("';"));
}

void tst_libraryStatements::collectionLoad_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("userVars");
    QTest::addColumn<QString>("templates");
    QTest::newRow("no parent: every row") << QString() << QStringLiteral("SELECT * FROM ta_UserVar ")
                                          << QStringLiteral("SELECT * FROM ta_SetsTemplate ");
    QTest::newRow("one character is a parent") << QStringLiteral("x")
                                               << QStringLiteral("SELECT * FROM ta_UserVar WHERE ParentID = 'x'")
                                               << QStringLiteral("SELECT * FROM ta_SetsTemplate WHERE ParentID = 'x'");
    QTest::newRow("GUID parent, no semicolon") << kParent
                                               << QStringLiteral("SELECT * FROM ta_UserVar WHERE ParentID = '") + kParent + QStringLiteral("'")
                                               << QStringLiteral("SELECT * FROM ta_SetsTemplate WHERE ParentID = '") + kParent + QStringLiteral("'");
}

void tst_libraryStatements::collectionLoad()
{
    QFETCH(QString, parent);
    QFETCH(QString, userVars);
    QFETCH(QString, templates);
    cColUserVar vars;
    vars.setParentID(parent);
    QCOMPARE(vars.LoadStatement(), userVars);
    cColSetsTemplate library;
    library.setParentID(parent);
    QCOMPARE(library.LoadStatement(), templates);
}

void tst_libraryStatements::translate_data()
{
    QTest::addColumn<QString>("jet");
    QTest::addColumn<QString>("sqlite");

    QTest::newRow("delete star") << QStringLiteral("DELETE * FROM ta_UserVar WHERE ID = 'a';")
                                 << QStringLiteral("DELETE FROM ta_UserVar WHERE ID = 'a';");
    QTest::newRow("delete star, lower case, wide") << QStringLiteral("delete   *\tfrom t")
                                                   << QStringLiteral("delete from t");
    QTest::newRow("select star stays") << QStringLiteral("SELECT * FROM ta_SetsTemplate ")
                                       << QStringLiteral("SELECT * FROM ta_SetsTemplate ");
    QTest::newRow("date") << QStringLiteral("VALUES (#08-01-2001#)") << QStringLiteral("VALUES ('2001-08-01')");
    QTest::newRow("date, slashes, short") << QStringLiteral("x = #2/9/1998#") << QStringLiteral("x = '1998-02-09'");
    QTest::newRow("True False words") << QStringLiteral("a = True , b = False , c = true")
                                      << QStringLiteral("a = 1 , b = 0 , c = 1");
    QTest::newRow("words that only contain True") << QStringLiteral("bTrue = TrueX , FalseHood")
                                                  << QStringLiteral("bTrue = TrueX , FalseHood");
    QTest::newRow("double-quoted text") << QStringLiteral("sName = \"Spring\"") << QStringLiteral("sName = 'Spring'");
    QTest::newRow("doubled double quote") << QStringLiteral("\"12\"\" barrel\"") << QStringLiteral("'12\" barrel'");
    QTest::newRow("single quote inside double") << QStringLiteral("\"it's\"") << QStringLiteral("'it''s'");
    QTest::newRow("empty text") << QStringLiteral("\"\"") << QStringLiteral("''");
    QTest::newRow("keywords inside text untouched")
        << QStringLiteral("\"DELETE * FROM True #01-01-2001# -- /* False\"")
        << QStringLiteral("'DELETE * FROM True #01-01-2001# -- /* False'");
    QTest::newRow("single-quoted passes through") << QStringLiteral("ID = '{A-B}' OR x = 'True #1#'")
                                                  << QStringLiteral("ID = '{A-B}' OR x = 'True #1#'");
    QTest::newRow("doubled single quote stays one literal") << QStringLiteral("ID = 'x'' OR ''1''=''1';")
                                                            << QStringLiteral("ID = 'x'' OR ''1''=''1';");
    QTest::newRow("non-Latin, backslash") << QStringLiteral("\"Größe \\ 東京 \\\"")
                                          << QStringLiteral("'Größe \\ 東京 \\'");
    QTest::newRow("NUL joined in") << QStringLiteral("\"a") + QChar(0) + QStringLiteral("b\"")
                                   << QStringLiteral("'a'||char(0)||'b'");
    QTest::newRow("number with letters is one token") << QStringLiteral("x = 1e5 , y = -7 ")
                                                      << QStringLiteral("x = 1e5 , y = -7 ");
    QTest::newRow("bracketed name untouched") << QStringLiteral("[True] = 1") << QStringLiteral("[True] = 1");
    QTest::newRow("trailing blanks after end") << QStringLiteral("SELECT 1; \r\n") << QStringLiteral("SELECT 1; \r\n");
}

void tst_libraryStatements::translate()
{
    QFETCH(QString, jet);
    QFETCH(QString, sqlite);
    QCOMPARE(mDatabase::TranslateJetSql(jet), sqlite);
}

void tst_libraryStatements::translateRefuses_data()
{
    QTest::addColumn<QString>("jet");
    QTest::newRow("unterminated double") << QStringLiteral("sName = \"abc");
    QTest::newRow("unterminated single") << QStringLiteral("ID = 'abc");
    QTest::newRow("unterminated date") << QStringLiteral("d = #01-01-2001");
    QTest::newRow("impossible date") << QStringLiteral("d = #02-30-2001#");
    QTest::newRow("not a date") << QStringLiteral("d = #hello#");
    QTest::newRow("second statement") << QStringLiteral("SELECT 1; DELETE FROM ta_UserVar;");
    QTest::newRow("injection after a quote") << QStringLiteral("WHERE ID = 'x'; DROP TABLE ta_UserVar;");
    QTest::newRow("line comment") << QStringLiteral("SELECT 1 -- rest");
    QTest::newRow("block comment") << QStringLiteral("SELECT /* x */ 1");
}

void tst_libraryStatements::translateRefuses()
{
    QFETCH(QString, jet);
    try {
        mDatabase::TranslateJetSql(jet);
        QFAIL("the statement was translated");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), 3000);
        QVERIFY2(e.Description().startsWith(QLatin1String("Syntax error")), qPrintable(describe(e)));
    }
}

QTEST_GUILESS_MAIN(tst_libraryStatements)
#include "tst_libraryStatements.moc"
