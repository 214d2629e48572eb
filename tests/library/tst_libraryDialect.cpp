// Any text goes into the library and comes back exactly, and no statement reaches a row other
// than its own, whatever a library made elsewhere holds in its keys.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "library/cSetsTemplate.h"
#include "library/mGUIDTools.h"

#include <QtTest>

using LibraryTest::Fixture;

namespace {

const QString kNeighbour = QStringLiteral("{00000000-0000-0000-0000-000000000001}");

void addNeighbour(Fixture& f)
{
    QVERIFY(f.exec(QStringLiteral(
        "INSERT INTO ta_SetsTemplate VALUES ('%1', '', '%1', 1, 2, 3, 4, 5, 6, 7, 'neighbour', '2001-08-01', 0, 0, 0, 0, 1, 1)")
                       .arg(kNeighbour)));
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('{00000000-0000-0000-0000-0000000000AA}', '%1', 'v', 'n', 'neighbour value')")
                       .arg(kNeighbour)));
}

} // namespace

class tst_libraryDialect : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void textRoundTrip_data();
    void textRoundTrip();
    void hostileIds_data();
    void hostileIds();
    void hostileIdsLoadedFromFile_data();
    void hostileIdsLoadedFromFile();
    void storedForms();
};

void tst_libraryDialect::initTestCase()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
}

void tst_libraryDialect::textRoundTrip_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("double quote") << QStringLiteral("12\" barrel");
    QTest::newRow("only double quotes") << QStringLiteral("\"\"\"");
    QTest::newRow("single quote") << QStringLiteral("it's");
    QTest::newRow("both quotes") << QStringLiteral("'\"'\"");
    QTest::newRow("hash date") << QStringLiteral("#08-01-2001#");
    QTest::newRow("lone hash") << QStringLiteral("#");
    QTest::newRow("star") << QStringLiteral("DELETE * FROM ta_SetsTemplate");
    QTest::newRow("keywords") << QStringLiteral("True False true NULL");
    QTest::newRow("column names") << QStringLiteral("sName = \"x\", lShotTime = 5 WHERE ID = '1'");
    QTest::newRow("injection") << QStringLiteral("\"; DELETE FROM ta_UserVar; --");
    QTest::newRow("comment marks") << QStringLiteral("-- /* */");
    QTest::newRow("backslashes") << QStringLiteral("C:\\paint\\\\lot\\");
    QTest::newRow("non-Latin") << QStringLiteral("Ölfarbe, 東京, Ελλάδα, עברית, 🎯");
    QTest::newRow("line breaks and tabs") << QStringLiteral("a\r\nb\tc\n");
    QTest::newRow("NUL inside") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    QTest::newRow("blanks kept") << QStringLiteral("  padded  ");
    QTest::newRow("long") << QString(5000, QLatin1Char('"'));
}

void tst_libraryDialect::textRoundTrip()
{
    QFETCH(QString, text);
    Fixture f;
    QVERIFY(f.ok);
    QString id;
    {
        cColSetsTemplate& library = mMain::Application().colSetsTemplate();
        auto record = library.Add();
        record->setsName(text);
        record->AddUserVar(text, text);
        record->AddUserVar(QStringLiteral("plain"), text);
        id = record->ID();
        QSqlDatabase connection;
        library.Save(connection);
    }
    QVERIFY2(f.ui.errors.isEmpty(), qPrintable(LibraryTest::firstError(f.ui)));
    // Stored exactly: as the database itself holds it.
    QCOMPARE(f.row(QStringLiteral("SELECT sName FROM ta_SetsTemplate WHERE ID = '%1'").arg(id)).value(0).toString(), text);

    f.restart();
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QCOMPARE(library.Count(), 1);
    auto record = library.Item(id);
    QVERIFY(record);
    QCOMPARE(record->sName(), text);
    QCOMPARE(record->colUserVar().Count(), 9);
    bool found = false;
    for (const auto& variable : record->colUserVar()) {
        if (variable->sName() == QLatin1String("plain")) {
            QCOMPARE(variable->sValue(), text);
            found = true;
        }
    }
    QVERIFY(found);
    QVERIFY(!record->IsDirty());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryDialect::hostileIds_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("or true") << QStringLiteral("x' OR '1'='1");
    QTest::newRow("second statement") << QStringLiteral("x'; DELETE FROM ta_SetsTemplate; --");
    QTest::newRow("doubled already") << QStringLiteral("a''b");
    QTest::newRow("only a quote") << QStringLiteral("'");
    QTest::newRow("double quotes") << QStringLiteral("\"x\" OR \"1\"=\"1\"");
    QTest::newRow("date and words") << QStringLiteral("#01-01-2001# True *");
    QTest::newRow("lower-case GUID") << QStringLiteral("{00000000-0000-0000-0000-000000000001}").toLower() + QStringLiteral("x");
    QTest::newRow("backslash") << QStringLiteral("x\\' OR 1=1 OR '");
}

// A record whose key is hostile is written, changed, read and deleted; the neighbour's rows are
// never touched.
void tst_libraryDialect::hostileIds()
{
    QFETCH(QString, id);
    Fixture f;
    QVERIFY(f.ok);
    addNeighbour(f);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QCOMPARE(library.Count(), 1);

    auto record = std::make_shared<cSetsTemplate>();
    record->colUserVar().Clear();
    record->setID(id);
    record->setsName(QStringLiteral("hostile"));
    record->AddUserVar(QStringLiteral("a"), QStringLiteral("1"));
    record->AddUserVar(QStringLiteral("b"), QStringLiteral("2"));
    library.AddByObject(record);
    QSqlDatabase connection;
    library.Save(connection);
    QVERIFY2(f.ui.errors.isEmpty(), qPrintable(LibraryTest::firstError(f.ui)));
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 2);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE ParentID = ?"), {id}), 2);

    record->setlShotTime(99);
    record->setsName(QStringLiteral("changed"));
    library.Save(connection);
    record->Read(connection);
    QCOMPARE(record->lShotTime(), 99);
    QCOMPARE(record->ID(), id);

    record->setIsDeleted(true);
    library.Save(connection);
    QVERIFY(f.ui.errors.isEmpty());
    QCOMPARE(library.Count(), 1);

    // The neighbour is exactly as it was.
    const QSqlRecord row = f.row(QStringLiteral("SELECT * FROM ta_SetsTemplate"));
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 1);
    QCOMPARE(row.value(QStringLiteral("ID")).toString(), kNeighbour);
    QCOMPARE(row.value(QStringLiteral("sName")).toString(), QStringLiteral("neighbour"));
    QCOMPARE(row.value(QStringLiteral("lShotTime")).toInt(), 1);
    QCOMPARE(f.row(QStringLiteral("SELECT sValue FROM ta_UserVar WHERE ParentID = '%1'").arg(kNeighbour)).value(0).toString(),
             QStringLiteral("neighbour value"));
}

void tst_libraryDialect::hostileIdsLoadedFromFile_data()
{
    hostileIds_data();
    QTest::newRow("empty key") << QStringLiteral("");
}

// Rows with hostile keys, put there by another program: loaded, updated and deleted one by one.
void tst_libraryDialect::hostileIdsLoadedFromFile()
{
    QFETCH(QString, id);
    Fixture f;
    QVERIFY(f.ok);
    addNeighbour(f);
    QSqlQuery insert(f.inspector());
    insert.prepare(QStringLiteral("INSERT INTO ta_SetsTemplate VALUES (?, '', 'v', 0, 0, 0, 0, 0, 10, 0, 'foreign', '2002-03-04', 0, 0, 0, 0, 1, 1)"));
    insert.addBindValue(id);
    QVERIFY(insert.exec());
    insert.prepare(QStringLiteral("INSERT INTO ta_UserVar VALUES (?, ?, 'v', 'Barrel', '14')"));
    insert.addBindValue(id + QStringLiteral("-var"));
    insert.addBindValue(id);
    QVERIFY(insert.exec());
    insert = QSqlQuery();

    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QVERIFY2(f.ui.errors.isEmpty(), qPrintable(LibraryTest::firstError(f.ui)));
    QCOMPARE(library.Count(), 2);
    auto record = library.Item(id);
    QVERIFY(record);
    QCOMPARE(record->sName(), QStringLiteral("foreign"));
    // Its own variable only (an empty key owns none: it would otherwise gather every variable).
    QCOMPARE(record->colUserVar().Count(), id.isEmpty() ? 0 : 1);
    QCOMPARE(library.Item(kNeighbour)->colUserVar().Count(), 1);

    if (!id.isEmpty()) {
        record->colUserVar().Item(1)->setsValue(QStringLiteral("16"));
    }
    record->setlLoadTime(44);
    QSqlDatabase connection;
    library.Save(connection);
    QVERIFY(f.ui.errors.isEmpty());
    record->setIsDeleted(true);
    library.Save(connection);
    QVERIFY(f.ui.errors.isEmpty());

    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 1);
    const QSqlRecord neighbour = f.row(QStringLiteral("SELECT * FROM ta_SetsTemplate"));
    QCOMPARE(neighbour.value(QStringLiteral("ID")).toString(), kNeighbour);
    QCOMPARE(neighbour.value(QStringLiteral("lLoadTime")).toInt(), 4);
    QCOMPARE(f.row(QStringLiteral("SELECT sValue FROM ta_UserVar WHERE ParentID = '%1'").arg(kNeighbour)).value(0).toString(),
             QStringLiteral("neighbour value"));
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 2);
}

// Dates as ISO dates, yes/no as 0/1, through the record classes.
void tst_libraryDialect::storedForms()
{
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto record = library.Add();
    record->setdtDate(QDateTime(QDate(2001, 8, 1), QTime(23, 59, 59)));
    record->setbExpertMode(true);
    record->setbAlertTwo(true);
    QSqlDatabase connection;
    library.Save(connection);
    const QSqlRecord row = f.row(QStringLiteral("SELECT dtDate, typeof(dtDate), bExpertMode, bAlertOne, bAlertTwo, typeof(bExpertMode) FROM ta_SetsTemplate"));
    QCOMPARE(row.value(0).toString(), QStringLiteral("2001-08-01"));
    QCOMPARE(row.value(1).toString(), QStringLiteral("text"));
    QCOMPARE(row.value(2).toInt(), 1);
    QCOMPARE(row.value(3).toInt(), 0);
    QCOMPARE(row.value(4).toInt(), 1);
    QCOMPARE(row.value(5).toString(), QStringLiteral("integer"));
    QVERIFY(mGUIDTools::IsGUIDString(record->ID()));
}

QTEST_GUILESS_MAIN(tst_libraryDialect)
#include "tst_libraryDialect.moc"
