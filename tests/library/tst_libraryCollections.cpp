// The keyed collections of the library: positions from 1 and keys, duplicate keys, removal of
// deleted members at a save, and loading.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "library/cColUserVar.h"
#include "library/mGUIDTools.h"

#include <QtTest>

using LibraryTest::Fixture;

namespace {

QStringList namesOf(const cColUserVar& vars)
{
    QStringList result;
    for (const auto& variable : vars)
        result.append(variable->sName());
    return result;
}

} // namespace

class tst_libraryCollections : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void positionsAndKeys();
    void badIndexesAreReported_data();
    void badIndexesAreReported();
    void duplicateKey();
    void removeAndClear();
    void addSetsParent();
    void saveDropsDeletedFromTheEnd_data();
    void saveDropsDeletedFromTheEnd();
    void saveStopsAtFirstFailure();
    void loadByParent();
    void loadTwiceReportsDuplicate();
    void loadKeepsRowsBeforeABadOne();
};

void tst_libraryCollections::initTestCase()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
}

void tst_libraryCollections::positionsAndKeys()
{
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColUserVar vars;
    vars.setParentID(QStringLiteral("{PARENT}"));
    auto a = vars.Add();
    auto b = vars.Add();
    auto c = vars.Add();
    a->setsName(QStringLiteral("a"));
    b->setsName(QStringLiteral("b"));
    c->setsName(QStringLiteral("c"));
    QCOMPARE(vars.Count(), 3);
    QCOMPARE(vars.Item(1), a);
    QCOMPARE(vars.Item(3), c);
    QCOMPARE(vars.Item(b->ID()), b);
    QCOMPARE(namesOf(vars), QStringList({"a", "b", "c"}));
    QCOMPARE(vars.NewEnum().size(), 3);
    QCOMPARE(vars.NewEnum().at(1), b);
    QVERIFY(ui.errors.isEmpty());
    mMain::SetUserInterface(nullptr);
}

void tst_libraryCollections::badIndexesAreReported_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("error");
    QTest::newRow("position 0") << 0 << QString() << 9;
    QTest::newRow("position past the end") << 3 << QString() << 9;
    QTest::newRow("negative position") << -1 << QString() << 9;
    QTest::newRow("unknown key") << 0 << QStringLiteral("{NOPE}") << 5;
    QTest::newRow("key that looks like a position") << 0 << QStringLiteral("1") << 5;
}

void tst_libraryCollections::badIndexesAreReported()
{
    QFETCH(int, position);
    QFETCH(QString, key);
    QFETCH(int, error);
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColSetsTemplate library;
    library.Add();
    library.Add();
    const auto found = key.isEmpty() ? library.Item(position) : library.Item(key);
    QVERIFY(!found);
    QCOMPARE(ui.errors.size(), 1);
    QCOMPARE(ui.errors[0].Number(), error);
    QCOMPARE(ui.errors[0].Trail().last().module, QStringLiteral("cColSetsTemplate"));
    QCOMPARE(ui.errors[0].Trail().last().procedure, QStringLiteral("Item"));
    const auto removed = key.isEmpty() ? library.Remove(position) : library.Remove(key);
    QVERIFY(!removed);
    QCOMPARE(ui.errors.size(), 2);
    QCOMPARE(ui.errors[1].Trail().last().procedure, QStringLiteral("Remove"));
    QCOMPARE(library.Count(), 2);
    // The quiet lookup reports nothing.
    QVERIFY(!library.Find(QStringLiteral("{NOPE}")));
    QCOMPARE(ui.errors.size(), 2);
    mMain::SetUserInterface(nullptr);
}

void tst_libraryCollections::duplicateKey()
{
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColSetsTemplate library;
    library.setParentID(QStringLiteral("{OWNER}"));
    auto first = library.Add();
    auto twin = std::make_shared<cSetsTemplate>();
    twin->setID(first->ID());
    twin->setParentID(QStringLiteral("{ELSEWHERE}"));
    QVERIFY(!library.AddByObject(twin));
    QCOMPARE(ui.errors.size(), 1);
    QCOMPARE(ui.errors[0].Number(), 457);
    QCOMPARE(ui.errors[0].Trail().last().procedure, QStringLiteral("AddByObject"));
    QCOMPARE(library.Count(), 1);
    QCOMPARE(library.Item(1), first);
    QCOMPARE(twin->ParentID(), QStringLiteral("{ELSEWHERE}"));
    mMain::SetUserInterface(nullptr);
}

void tst_libraryCollections::removeAndClear()
{
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColUserVar vars;
    for (const char* name : {"a", "b", "c", "d"})
        vars.Add()->setsName(QString::fromLatin1(name));
    const auto b = vars.Item(2);
    QCOMPARE(vars.Remove(2), b);
    QCOMPARE(namesOf(vars), QStringList({"a", "c", "d"}));
    QVERIFY(!vars.Contains(b->ID()));
    const auto d = vars.Item(3);
    QCOMPARE(vars.Remove(d->ID()), d);
    QCOMPARE(namesOf(vars), QStringList({"a", "c"}));
    // A removed key can be used again.
    QCOMPARE(vars.AddByObject(b), b);
    QCOMPARE(namesOf(vars), QStringList({"a", "c", "b"}));
    vars.Clear();
    QCOMPARE(vars.Count(), 0);
    QCOMPARE(vars.AddByObject(b), b);
    QCOMPARE(vars.Count(), 1);
    QVERIFY(ui.errors.isEmpty());
    mMain::SetUserInterface(nullptr);
}

void tst_libraryCollections::addSetsParent()
{
    cColSetsTemplate library;
    library.setParentID(QStringLiteral("{OWNER}"));
    QCOMPARE(library.Add()->ParentID(), QStringLiteral("{OWNER}"));
    auto stray = std::make_shared<cSetsTemplate>();
    stray->setParentID(QStringLiteral("{OTHER}"));
    QCOMPARE(library.AddByObject(stray)->ParentID(), QStringLiteral("{OWNER}"));

    cColSetsTemplate topLevel;
    auto promoted = std::make_shared<cSetsTemplate>();
    promoted->setParentID(QStringLiteral("{OTHER}"));
    topLevel.AddByObject(promoted);
    QCOMPARE(promoted->ParentID(), QString());
}

void tst_libraryCollections::saveDropsDeletedFromTheEnd_data()
{
    QTest::addColumn<QList<bool>>("deleted");
    QTest::newRow("none") << QList<bool>{false, false, false, false};
    QTest::newRow("all") << QList<bool>{true, true, true, true};
    QTest::newRow("neighbours") << QList<bool>{false, true, true, false};
    QTest::newRow("first and last") << QList<bool>{true, false, false, true};
    QTest::newRow("alternate") << QList<bool>{true, false, true, false};
}

void tst_libraryCollections::saveDropsDeletedFromTheEnd()
{
    QFETCH(QList<bool>, deleted);
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QStringList kept;
    for (qsizetype i = 0; i < deleted.size(); ++i) {
        auto r = library.Add();
        r->setsName(QString::number(i));
        if (!deleted[i])
            kept.append(r->sName());
    }
    QSqlDatabase connection;
    library.Save(connection);
    for (qsizetype i = 0; i < deleted.size(); ++i)
        library.Item(static_cast<qint32>(i + 1))->setIsDeleted(deleted[i]);
    library.Save(connection);
    QStringList left;
    for (const auto& r : library)
        left.append(r->sName());
    QCOMPARE(left, kept);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), kept.size());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryCollections::saveStopsAtFirstFailure()
{
    Fixture f;
    QVERIFY(f.ok);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    auto first = library.Add();
    auto blocked = library.Add();
    auto last = library.Add();
    blocked->setsName(QStringLiteral("blocked"));
    QVERIFY(f.exec(QStringLiteral("CREATE TRIGGER no_blocked BEFORE INSERT ON ta_SetsTemplate WHEN NEW.sName = 'blocked' "
                                  "BEGIN SELECT RAISE(ABORT, 'refused'); END")));
    QSqlDatabase connection;
    library.Save(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Trail().last().module, QStringLiteral("cColSetsTemplate"));
    // Earlier records written, the failed one and later ones still to be written.
    QVERIFY(!first->IsNew());
    QVERIFY(blocked->IsNew());
    QVERIFY(last->IsNew());
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 1);
    QVERIFY(mMain::Application().AnythingNeedSave());

    QVERIFY(f.exec(QStringLiteral("DROP TRIGGER no_blocked")));
    library.Save(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 3);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 21);
}

void tst_libraryCollections::loadByParent()
{
    Fixture f;
    QVERIFY(f.ok);
    const QString a = QStringLiteral("{AAAAAAAA-0000-0000-0000-000000000000}");
    const QString b = QStringLiteral("{BBBBBBBB-0000-0000-0000-000000000000}");
    for (const QString& parent : {a, a, b, QString()})
        QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('%1', '%2', 'v', 'n', 'x')").arg(GetNewGUIDStr(), parent)));
    QSqlDatabase connection;
    cColUserVar ofA;
    ofA.setParentID(a);
    ofA.Load(connection);
    QCOMPARE(ofA.Count(), 2);
    cColUserVar all;
    all.Load(connection);
    QCOMPARE(all.Count(), 4);
    // The loaded members belong to the loading collection's parent.
    for (const auto& variable : ofA) {
        QCOMPARE(variable->ParentID(), a);
        QVERIFY(!variable->IsDirty());
    }
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryCollections::loadTwiceReportsDuplicate()
{
    Fixture f;
    QVERIFY(f.ok);
    for (int i = 0; i < 3; ++i)
        QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('%1', 'P', 'v', 'n%2', 'x')").arg(GetNewGUIDStr()).arg(i)));
    QSqlDatabase connection;
    cColUserVar vars;
    vars.setParentID(QStringLiteral("P"));
    vars.Load(connection);
    QCOMPARE(vars.Count(), 3);
    const auto before = vars.NewEnum();
    vars.Load(connection);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Number(), 457);
    QCOMPARE(f.ui.errors[0].Trail().last().module, QStringLiteral("cColUserVar"));
    QCOMPARE(f.ui.errors[0].Trail().last().procedure, QStringLiteral("Load"));
    QCOMPARE(vars.NewEnum(), before);
    vars.Clear();
    vars.Load(connection);
    QCOMPARE(vars.Count(), 3);
    QCOMPARE(f.ui.errors.size(), 1);
}

void tst_libraryCollections::loadKeepsRowsBeforeABadOne()
{
    Fixture f;
    QVERIFY(f.ok);
    const QString good = QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('%1', '', 'v', 1, 1, 1, 1, 1, 1, 1, 'ok', '2001-08-01', 0, 0, 0, 0, 1, 1)");
    QVERIFY(f.exec(good.arg(QStringLiteral("{10000000-0000-0000-0000-000000000000}"))));
    QVERIFY(f.exec(good.arg(QStringLiteral("{20000000-0000-0000-0000-000000000000}"))));
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('{30000000-0000-0000-0000-000000000000}', '', 'v', 1, 1, 1, 1, 1, 1, 1, NULL, '2001-08-01', 0, 0, 0, 0, 1, 1)")));
    QVERIFY(f.exec(good.arg(QStringLiteral("{40000000-0000-0000-0000-000000000000}"))));
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QCOMPARE(library.Count(), 2);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Number(), 94);
    QCOMPARE(f.ui.errors[0].Trail().last().procedure, QStringLiteral("Load"));
    // The library is loaded once per run: asking again does not read the file again.
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), 2);
    QCOMPARE(f.ui.errors.size(), 1);
}

QTEST_GUILESS_MAIN(tst_libraryCollections)
#include "tst_libraryCollections.moc"
