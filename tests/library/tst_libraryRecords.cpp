// The settings record and its user variables: defaults, change marks, the save rule, loading,
// and the kept quirks, against a real library file.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "library/cSetsTemplate.h"
#include "library/cUserVar.h"
#include "library/mGUIDTools.h"

#include <QtTest>
#include <functional>

using LibraryTest::Fixture;

namespace {

using Setter = std::function<void(cSetsTemplate&)>;

QStringList names(cColUserVar& vars)
{
    QStringList result;
    for (const auto& variable : vars)
        result.append(variable->sName());
    return result;
}

const QString kRowId = QStringLiteral("{12345678-1234-1234-1234-123456789ABC}");

// A row put into the file directly, with one column replaced by the given SQL value.
QString rowWith(const QString& column, const QString& value)
{
    QStringList columns = {QStringLiteral("ID"), QStringLiteral("ParentID"), QStringLiteral("Version"),
                           QStringLiteral("lShotTime"), QStringLiteral("lDwellTime"), QStringLiteral("lCycleTimeOpen"),
                           QStringLiteral("lLoadTime"), QStringLiteral("lCycleTimeClose"), QStringLiteral("lGameTime"),
                           QStringLiteral("lFiringMode"), QStringLiteral("sName"), QStringLiteral("dtDate"),
                           QStringLiteral("bCTCLikeCTO"), QStringLiteral("bExpertMode"), QStringLiteral("bAlertOne"),
                           QStringLiteral("bAlertTwo"), QStringLiteral("lAlertOne"), QStringLiteral("lAlertTwo")};
    QStringList values = {QStringLiteral("'%1'").arg(kRowId), QStringLiteral("''"), QStringLiteral("'v'"),
                          QStringLiteral("11"), QStringLiteral("12"), QStringLiteral("13"), QStringLiteral("14"),
                          QStringLiteral("15"), QStringLiteral("16"), QStringLiteral("3"), QStringLiteral("'row'"),
                          QStringLiteral("'2003-04-05'"), QStringLiteral("1"), QStringLiteral("0"), QStringLiteral("1"),
                          QStringLiteral("0"), QStringLiteral("17"), QStringLiteral("18")};
    const qsizetype i = columns.indexOf(column);
    if (i >= 0)
        values[i] = value;
    return QStringLiteral("INSERT INTO ta_SetsTemplate (%1) VALUES (%2)").arg(columns.join(QLatin1Char(',')), values.join(QLatin1Char(',')));
}

} // namespace

class tst_libraryRecords : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void newRecord();
    void settersMarkOnlyRealChanges_data();
    void settersMarkOnlyRealChanges();
    void plainSettersDoNotMark();
    void saveAndLoadRoundTrip();
    void flagsThroughTheSaveRule();
    void createKeepsChangedFlag();
    void versionNeverUpdated();
    void memoryOnlyFields();
    void dateWithTimeOfDay();
    void deletedBeforeFirstSave();
    void deleteLeavesUserVarRows();
    void failedStatementKeepsFlags();
    void readUnknownKeepsRecord();
    void rowColumns_data();
    void rowColumns();
    void userVarRules();
    void rateOfFire_data();
    void rateOfFire();
    void validity();
};

void tst_libraryRecords::initTestCase()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
}

void tst_libraryRecords::newRecord()
{
    const QDateTime before = QDateTime::currentDateTime();
    cSetsTemplate record;
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(mGUIDTools::IsGUIDString(record.ID()));
    QVERIFY(mGUIDTools::IsGUIDString(record.Version()));
    QVERIFY(record.ID() != record.Version());
    QCOMPARE(record.ParentID(), QString());
    QVERIFY(record.IsNew());
    QVERIFY(!record.IsDeleted());
    QVERIFY(record.IsDirtySelf());  // new
    QCOMPARE(record.lGameTime(), 10);
    QCOMPARE(record.lAlertOne(), 1);
    QCOMPARE(record.lAlertTwo(), 1);
    for (qint32 v : {record.lShotTime(), record.lDwellTime(), record.lCycleTimeOpen(), record.lLoadTime(),
                     record.lCycleTimeClose(), record.lFiringMode(), record.lShots(), record.lHyperTime(), record.lHyperMode()})
        QCOMPARE(v, 0);
    QVERIFY(!record.bAlertOne() && !record.bAlertTwo() && !record.bCTCLikeCTO() && !record.bExpertMode());
    QVERIFY(record.dtDate() >= before && record.dtDate() <= after);
    QCOMPARE(record.sName(), QString());
    QCOMPARE(names(record.colUserVar()),
             QStringList({"Name", "Date", "Temperature", "Humidity", "Sun", "Barrel", "Paint"}));
    for (const auto& variable : record.colUserVar()) {
        QCOMPARE(variable->sValue(), QString());
        QCOMPARE(variable->ParentID(), record.ID());
        QVERIFY(variable->IsNew());
    }
    // Two records never share an identifier.
    cSetsTemplate other;
    QVERIFY(other.ID() != record.ID());
}

void tst_libraryRecords::settersMarkOnlyRealChanges_data()
{
    QTest::addColumn<Setter>("same");
    QTest::addColumn<Setter>("different");
    auto row = [](const char* name, Setter same, Setter different) { QTest::newRow(name) << same << different; };
    row("lShotTime", [](cSetsTemplate& r) { r.setlShotTime(r.lShotTime()); }, [](cSetsTemplate& r) { r.setlShotTime(5); });
    row("lDwellTime", [](cSetsTemplate& r) { r.setlDwellTime(r.lDwellTime()); }, [](cSetsTemplate& r) { r.setlDwellTime(5); });
    row("lCycleTimeOpen", [](cSetsTemplate& r) { r.setlCycleTimeOpen(0); }, [](cSetsTemplate& r) { r.setlCycleTimeOpen(-1); });
    row("lLoadTime", [](cSetsTemplate& r) { r.setlLoadTime(0); }, [](cSetsTemplate& r) { r.setlLoadTime(35); });
    row("lCycleTimeClose", [](cSetsTemplate& r) { r.setlCycleTimeClose(0); }, [](cSetsTemplate& r) { r.setlCycleTimeClose(28); });
    row("lGameTime", [](cSetsTemplate& r) { r.setlGameTime(10); }, [](cSetsTemplate& r) { r.setlGameTime(11); });
    row("lFiringMode", [](cSetsTemplate& r) { r.setlFiringMode(0); }, [](cSetsTemplate& r) { r.setlFiringMode(2); });
    row("lAlertOne", [](cSetsTemplate& r) { r.setlAlertOne(1); }, [](cSetsTemplate& r) { r.setlAlertOne(2); });
    row("lAlertTwo", [](cSetsTemplate& r) { r.setlAlertTwo(1); }, [](cSetsTemplate& r) { r.setlAlertTwo(0); });
    row("lShots", [](cSetsTemplate& r) { r.setlShots(0); }, [](cSetsTemplate& r) { r.setlShots(3); });
    row("lHyperTime", [](cSetsTemplate& r) { r.setlHyperTime(0); }, [](cSetsTemplate& r) { r.setlHyperTime(3); });
    row("lHyperMode", [](cSetsTemplate& r) { r.setlHyperMode(0); }, [](cSetsTemplate& r) { r.setlHyperMode(3); });
    row("bAlertOne", [](cSetsTemplate& r) { r.setbAlertOne(false); }, [](cSetsTemplate& r) { r.setbAlertOne(true); });
    row("bAlertTwo", [](cSetsTemplate& r) { r.setbAlertTwo(false); }, [](cSetsTemplate& r) { r.setbAlertTwo(true); });
    row("bCTCLikeCTO", [](cSetsTemplate& r) { r.setbCTCLikeCTO(false); }, [](cSetsTemplate& r) { r.setbCTCLikeCTO(true); });
    row("bExpertMode", [](cSetsTemplate& r) { r.setbExpertMode(false); }, [](cSetsTemplate& r) { r.setbExpertMode(true); });
    row("dtDate", [](cSetsTemplate& r) { r.setdtDate(r.dtDate()); },
        [](cSetsTemplate& r) { r.setdtDate(r.dtDate().addMSecs(1)); });
    row("sName", [](cSetsTemplate& r) { r.setsName(QStringLiteral("case")); }, [](cSetsTemplate& r) { r.setsName(QString()); });
    row("sName case", [](cSetsTemplate& r) { r.setsName(r.sName()); },
        [](cSetsTemplate& r) { r.setsName(r.sName().toUpper()); });
}

void tst_libraryRecords::settersMarkOnlyRealChanges()
{
    QFETCH(Setter, same);
    QFETCH(Setter, different);
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto record = library.Add();
    record->setsName(QStringLiteral("case"));
    QSqlDatabase connection;
    library.Save(connection);
    library.Save(connection);  // the create leaves the edit pending; the update clears it
    QVERIFY(!record->IsDirty());
    same(*record);
    QVERIFY(!record->IsDirty());
    QVERIFY(!mMain::Application().AnythingNeedSave());
    different(*record);
    QVERIFY(record->IsDirtySelf());
    QVERIFY(record->IsDirty());
    QVERIFY(mMain::Application().AnythingNeedSave());
}

void tst_libraryRecords::plainSettersDoNotMark()
{
    cSetsTemplate record;
    record.setIsNew(false);
    record.setIsDirtySelf(false);
    for (const auto& variable : record.colUserVar()) {
        variable->setIsNew(false);
        variable->setIsDirtySelf(false);
    }
    QVERIFY(!record.IsDirty());
    const QString newId = GetNewGUIDStr();
    record.setID(newId);
    record.setParentID(QStringLiteral("{P}"));
    record.setVersion(QStringLiteral("{V}"));
    QVERIFY(!record.IsDirty());
    // A changed ID is the parent of the variables added from then on.
    QCOMPARE(record.colUserVar().ParentID(), newId);
    QCOMPARE(record.colUserVar().Add()->ParentID(), newId);
}

void tst_libraryRecords::saveAndLoadRoundTrip()
{
    Fixture f;
    QVERIFY(f.ok);
    QString id;
    QString version;
    {
        cColSetsTemplate& library = mMain::Application().colSetsTemplate();
        auto r = library.Add();
        r->setlShotTime(10);
        r->setlDwellTime(11);
        r->setlCycleTimeOpen(30);
        r->setlLoadTime(35);
        r->setlCycleTimeClose(28);
        r->setlFiringMode(4);
        r->setlGameTime(600);
        r->setlAlertOne(-5);
        r->setlAlertTwo(2147483647);
        r->setbAlertOne(true);
        r->setbCTCLikeCTO(true);
        r->setsName(QStringLiteral("Tournament"));
        r->setdtDate(QDateTime(QDate(2001, 8, 1), QTime(0, 0)));
        r->colUserVar().Item(QStringLiteral("x"));  // unknown key: reported, nothing happens
        r->colUserVar().Item(3)->setsValue(QStringLiteral("21 C"));
        id = r->ID();
        version = r->Version();
        QSqlDatabase connection;
        library.Save(connection);
    }
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Trail().first().module, QStringLiteral("cColUserVar"));
    QCOMPARE(f.ui.errors[0].Trail().first().procedure, QStringLiteral("Item"));
    f.ui.errors.clear();

    f.restart();
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto r = library.Item(id);
    QVERIFY(r);
    QVERIFY(!r->IsNew() && !r->IsDeleted() && !r->IsDirtySelf() && !r->IsDirty());
    QCOMPARE(r->Version(), version);
    QCOMPARE(r->ParentID(), QString());
    QCOMPARE(r->lShotTime(), 10);
    QCOMPARE(r->lDwellTime(), 11);
    QCOMPARE(r->lCycleTimeOpen(), 30);
    QCOMPARE(r->lLoadTime(), 35);
    QCOMPARE(r->lCycleTimeClose(), 28);
    QCOMPARE(r->lFiringMode(), 4);
    QCOMPARE(r->lGameTime(), 600);
    QCOMPARE(r->lAlertOne(), -5);
    QCOMPARE(r->lAlertTwo(), 2147483647);
    QVERIFY(r->bAlertOne() && !r->bAlertTwo() && r->bCTCLikeCTO() && !r->bExpertMode());
    QCOMPARE(r->sName(), QStringLiteral("Tournament"));
    QCOMPARE(r->dtDate(), QDateTime(QDate(2001, 8, 1), QTime(0, 0)));
    // The stored variables replace the standard ones a record is made with.
    QCOMPARE(r->colUserVar().Count(), 7);
    QStringList stored = names(r->colUserVar());
    stored.sort();
    QCOMPARE(stored, QStringList({"Barrel", "Date", "Humidity", "Name", "Paint", "Sun", "Temperature"}));
    for (const auto& variable : r->colUserVar()) {
        QCOMPARE(variable->ParentID(), id);
        QVERIFY(!variable->IsDirty());
        QCOMPARE(variable->sValue(), variable->sName() == QLatin1String("Temperature") ? QStringLiteral("21 C") : QString());
    }
    QVERIFY(!mMain::Application().AnythingNeedSave());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::flagsThroughTheSaveRule()
{
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto r = library.Add();
    QSqlDatabase connection;
    library.Save(connection);
    QVERIFY(!r->IsNew());
    QVERIFY(!r->IsDirtySelf());
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 1);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 7);
    // The standard variables were named after they were made: the insert leaves that edit
    // pending, so the next save writes them once more and only then is the record clean.
    QVERIFY(r->IsDirty());
    QVERIFY(mMain::Application().AnythingNeedSave());
    library.Save(connection);
    QVERIFY(!r->IsDirty());
    QVERIFY(!mMain::Application().AnythingNeedSave());

    r->setlShotTime(7);
    QVERIFY(r->IsDirtySelf());
    library.Save(connection);
    QVERIFY(!r->IsDirtySelf());
    QCOMPARE(f.count(QStringLiteral("SELECT lShotTime FROM ta_SetsTemplate")), 7);

    // A changed variable is written; the setting itself is not dirty.
    r->colUserVar().Item(1)->setsValue(QStringLiteral("Bob"));
    QVERIFY(!r->IsDirtySelf());
    QVERIFY(r->IsDirty());
    library.Save(connection);
    QVERIFY(!r->IsDirty());
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE sValue = 'Bob'")), 1);

    r->setIsDeleted(true);
    QVERIFY(r->IsDirtySelf());
    library.Save(connection);
    QCOMPARE(library.Count(), 0);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 0);
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::createKeepsChangedFlag()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    record.setsName(QStringLiteral("edited after it was made"));
    QSqlDatabase connection;
    record.Save(connection);
    QVERIFY(!record.IsNew());
    // The edit is still pending: the next save writes it again by an update.
    QVERIFY(record.IsDirtySelf());
    record.Save(connection);
    QVERIFY(!record.IsDirtySelf());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::versionNeverUpdated()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    const QString version = record.Version();
    QSqlDatabase connection;
    record.Save(connection);
    for (int i = 1; i <= 3; ++i) {
        record.setVersion(GetNewGUIDStr());
        record.setlLoadTime(i);
        record.Save(connection);
    }
    QCOMPARE(f.row(QStringLiteral("SELECT Version, lLoadTime FROM ta_SetsTemplate")).value(0).toString(), version);
    QCOMPARE(f.count(QStringLiteral("SELECT lLoadTime FROM ta_SetsTemplate")), 3);
}

void tst_libraryRecords::memoryOnlyFields()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    QSqlDatabase connection;
    record.Save(connection);
    record.Save(connection);
    record.setlShots(5);
    QVERIFY(record.IsDirtySelf());
    record.setlHyperTime(6);
    record.setlHyperMode(7);
    record.Save(connection);
    QVERIFY(!record.IsDirtySelf());
    record.colUserVar().Clear();
    record.Load(connection);
    QCOMPARE(record.lShots(), 0);
    QCOMPARE(record.lHyperTime(), 0);
    QCOMPARE(record.lHyperMode(), 0);
    QCOMPARE(record.colUserVar().Count(), 7);
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::dateWithTimeOfDay()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    record.setdtDate(QDateTime(QDate(2010, 12, 31), QTime(23, 59, 59, 999)));
    QSqlDatabase connection;
    record.Save(connection);
    record.setdtDate(QDateTime(QDate(1990, 1, 1), QTime(1, 0)));
    record.Read(connection);
    QCOMPARE(record.dtDate(), QDateTime(QDate(2010, 12, 31), QTime(0, 0)));
}

void tst_libraryRecords::deletedBeforeFirstSave()
{
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto r = library.Add();
    r->setIsDeleted(true);
    {
        QSqlDatabase connection;
        library.Save(connection);
    }
    // Never inserted, yet its seven variables are, with a parent that names no setting. Kept.
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 0);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE ParentID = ?"), {r->ID()}), 7);
    QCOMPARE(library.Count(), 0);
    QVERIFY(f.ui.errors.isEmpty());
    // They are never loaded again.
    f.restart();
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), 0);
}

void tst_libraryRecords::deleteLeavesUserVarRows()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    QSqlDatabase connection;
    record.Save(connection);
    record.Delete(connection);
    // Delete changes no flag.
    QVERIFY(!record.IsDeleted());
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 0);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 7);
    // Deleting a row that is not there is no error.
    record.Delete(connection);
    record.setlGameTime(1);
    record.Update(connection);
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::failedStatementKeepsFlags()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate first;
    QSqlDatabase connection;
    first.Save(connection);
    QVERIFY(f.ui.errors.isEmpty());

    // A second record with the same ID: its insert fails, is reported, and it stays new.
    cSetsTemplate twin;
    twin.setID(first.ID());
    twin.Save(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Number(), 3000);
    QCOMPARE(f.ui.errors[0].Trail().first().module, QStringLiteral("cSetsTemplate"));
    QCOMPARE(f.ui.errors[0].Trail().first().procedure, QStringLiteral("Create"));
    QCOMPARE(f.ui.errors[0].Trail().last().procedure, QStringLiteral("Save"));
    QVERIFY(twin.IsNew());

    // A failed update leaves the record changed; once the file is writable again it goes through.
    first.setlShotTime(9);
    QVERIFY(f.exec(QStringLiteral("CREATE TRIGGER no_update BEFORE UPDATE ON ta_SetsTemplate BEGIN SELECT RAISE(ABORT, 'locked'); END")));
    f.ui.errors.clear();
    first.Save(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QVERIFY(f.ui.errors[0].Description().contains(QLatin1String("locked")));
    QVERIFY(first.IsDirtySelf());
    QVERIFY(f.exec(QStringLiteral("DROP TRIGGER no_update")));
    first.Save(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QVERIFY(!first.IsDirtySelf());
    QCOMPARE(f.count(QStringLiteral("SELECT lShotTime FROM ta_SetsTemplate")), 9);
}

void tst_libraryRecords::readUnknownKeepsRecord()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    record.setsName(QStringLiteral("only in memory"));
    QSqlDatabase connection;
    record.Read(connection);
    QCOMPARE(record.sName(), QStringLiteral("only in memory"));
    QVERIFY(record.IsNew());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::rowColumns_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("error");           // 0: loads
    QTest::addColumn<int>("expectedShotTime"); // what the record holds afterwards
    QTest::newRow("complete row") << QString() << QString() << 0 << 11;
    QTest::newRow("null firing mode reads 0") << QStringLiteral("lFiringMode") << QStringLiteral("NULL") << 0 << 11;
    QTest::newRow("null name fails at the end") << QStringLiteral("sName") << QStringLiteral("NULL") << 94 << 11;
    QTest::newRow("null game time fails before shot time") << QStringLiteral("lGameTime") << QStringLiteral("NULL") << 94 << 0;
    QTest::newRow("null ID fails first") << QStringLiteral("ID") << QStringLiteral("NULL") << 94 << 0;
    QTest::newRow("text in a number") << QStringLiteral("lShotTime") << QStringLiteral("'fast'") << 13 << 0;
    QTest::newRow("number too big") << QStringLiteral("lShotTime") << QStringLiteral("4294967296") << 6 << 0;
    QTest::newRow("date not a date") << QStringLiteral("dtDate") << QStringLiteral("'yesterday'") << 13 << 0;
    QTest::newRow("date as a day number") << QStringLiteral("dtDate") << QStringLiteral("37104") << 0 << 11;
}

void tst_libraryRecords::rowColumns()
{
    QFETCH(QString, column);
    QFETCH(QString, value);
    QFETCH(int, error);
    QFETCH(int, expectedShotTime);
    Fixture f;
    QVERIFY(f.ok);
    const QString sql = rowWith(column, value);
    if (column == QLatin1String("ID")) {
        // The template refuses a null key; a file made elsewhere need not.
        QVERIFY(f.exec(QStringLiteral("CREATE TABLE t2 AS SELECT * FROM ta_SetsTemplate")));
        QVERIFY(f.exec(QStringLiteral("DROP TABLE ta_SetsTemplate")));
        QVERIFY(f.exec(QStringLiteral("ALTER TABLE t2 RENAME TO ta_SetsTemplate")));
    }
    QVERIFY(f.exec(sql));
    cSetsTemplate record;
    QSqlDatabase connection;
    mDatabase::EnsureConnection(connection);
    QSqlQuery query = mDatabase::Execute(connection, QStringLiteral("SELECT * FROM ta_SetsTemplate"));
    QVERIFY(query.next());
    record.Init(query.record());
    if (error == 0) {
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(LibraryTest::firstError(f.ui)));
        QCOMPARE(record.ID(), kRowId);
        QCOMPARE(record.lFiringMode(), column == QLatin1String("lFiringMode") ? 0 : 3);
        QCOMPARE(record.sName(), QStringLiteral("row"));
        QCOMPARE(record.dtDate().date(), column == QLatin1String("dtDate") ? QDate(2001, 8, 1) : QDate(2003, 4, 5));
        QVERIFY(record.bAlertOne() && record.bCTCLikeCTO() && !record.bExpertMode());
        QCOMPARE(record.colUserVar().Count(), 0);
        QVERIFY(!record.IsNew() && !record.IsDirty());
    } else {
        QCOMPARE(f.ui.errors.size(), 1);
        QCOMPARE(f.ui.errors[0].Number(), error);
        QCOMPARE(f.ui.errors[0].Trail().first().procedure, QStringLiteral("Init"));
    }
    QCOMPARE(record.lShotTime(), expectedShotTime);
}

void tst_libraryRecords::userVarRules()
{
    Fixture f;
    QVERIFY(f.ok);
    cSetsTemplate record;
    QSqlDatabase connection;
    record.Save(connection);
    auto barrel = record.AddUserVar(QStringLiteral("Barrel"), QStringLiteral("14\""));
    QCOMPARE(record.colUserVar().Count(), 8);
    QVERIFY(barrel->IsNew());
    record.Save(connection);
    QVERIFY(!barrel->IsNew());
    QVERIFY(barrel->IsDirty());  // named and valued after it was made: written again next time
    record.Save(connection);
    QVERIFY(!barrel->IsDirty());
    QCOMPARE(f.row(QStringLiteral("SELECT sValue FROM ta_UserVar WHERE ID = '%1'").arg(barrel->ID())).value(0).toString(),
             QStringLiteral("14\""));
    barrel->setsValue(QStringLiteral("14\""));
    QVERIFY(!barrel->IsDirty());
    barrel->setsName(QStringLiteral("barrel"));
    QVERIFY(barrel->IsDirty());

    // Added and deleted before any save: dropped without a statement.
    auto ghost = record.AddUserVar(QStringLiteral("ghost"), QString());
    ghost->setIsDeleted(true);
    // Removing every stored variable deletes its row.
    for (const auto& variable : record.colUserVar())
        variable->setIsDeleted(true);
    record.Save(connection);
    QCOMPARE(record.colUserVar().Count(), 0);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 0);
    QVERIFY(f.ui.errors.isEmpty());

    // A single variable read back by its key.
    cUserVar single;
    single.setParentID(record.ID());
    single.setsName(QStringLiteral("Paint"));
    single.setsValue(QStringLiteral("Yellow \"fast\""));
    single.Save(connection);
    cUserVar again;
    again.setID(single.ID());
    again.Load(connection);
    QCOMPARE(again.sValue(), QStringLiteral("Yellow \"fast\""));
    QCOMPARE(again.ParentID(), record.ID());
    QCOMPARE(again.Version(), single.Version());
    QVERIFY(!again.IsNew() && !again.IsDirty());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryRecords::rateOfFire_data()
{
    QTest::addColumn<QList<qint32>>("times"); // shot, dwell, open, load, close
    QTest::addColumn<float>("rof");
    QTest::addColumn<QString>("text");
    QTest::newRow("defaults 103 ms") << QList<qint32>{10, 10, 30, 35, 28} << 9.71F << QStringLiteral("9.7");
    QTest::newRow("all zero") << QList<qint32>{0, 0, 0, 0, 0} << 0.0F << QStringLiteral(".0");
    QTest::newRow("shot time alone does nothing") << QList<qint32>{200, 0, 0, 0, 0} << 0.0F << QStringLiteral(".0");
    QTest::newRow("one each: 250") << QList<qint32>{1, 1, 1, 1, 1} << 250.0F << QStringLiteral("250.0");
    QTest::newRow("70 ms: 14.29") << QList<qint32>{5, 10, 20, 20, 20} << 14.29F << QStringLiteral("14.3");
    QTest::newRow("2000 ms: .5") << QList<qint32>{0, 500, 500, 500, 500} << 0.5F << QStringLiteral(".5");
    QTest::newRow("160 ms: 6.25 rounds up") << QList<qint32>{0, 40, 40, 40, 40} << 6.25F << QStringLiteral("6.3");
    QTest::newRow("negative sum") << QList<qint32>{0, -1, -1, -1, -1} << 0.0F << QStringLiteral(".0");
}

void tst_libraryRecords::rateOfFire()
{
    QFETCH(QList<qint32>, times);
    QFETCH(float, rof);
    QFETCH(QString, text);
    cSetsTemplate record;
    record.setlShotTime(times[0]);
    record.setlDwellTime(times[1]);
    record.setlCycleTimeOpen(times[2]);
    record.setlLoadTime(times[3]);
    record.setlCycleTimeClose(times[4]);
    record.setlFiringMode(5);
    QCOMPARE(record.ROF(), rof);
    QCOMPARE(record.sROF(), text);
}

void tst_libraryRecords::validity()
{
    cSetsTemplate record;
    QVERIFY(record.IsValid());
    record.setlShotTime(3);
    QVERIFY(record.IsValid());
    cUserVar variable;
    QVERIFY(variable.IsValid());
}

QTEST_GUILESS_MAIN(tst_libraryRecords)
#include "tst_libraryRecords.moc"
