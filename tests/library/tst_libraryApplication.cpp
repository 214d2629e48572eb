// The application object: the library loaded on first use, the active setting, whether anything
// needs saving, promoting a setting; and the identifiers.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "library/mGUIDTools.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

using LibraryTest::Fixture;

class tst_libraryApplication : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void guidForm();
    void guidRecognised_data();
    void guidRecognised();
    void nothingToSaveBeforeTheLibraryIsOpened();
    void libraryLoadedOnceWithEveryRow();
    void activeSetting();
    void anythingNeedSave_data();
    void anythingNeedSave();
    void promoteSetting_data();
    void promoteSetting();
    void promoteTwiceFailsAtTheKey();
    void releaseDoesNotSave();
};

void tst_libraryApplication::initTestCase()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
}

void tst_libraryApplication::guidForm()
{
    const QRegularExpression form(QStringLiteral("^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$"));
    QSet<QString> seen;
    for (int i = 0; i < 2000; ++i) {
        const QString id = GetNewGUIDStr();
        QCOMPARE(id.size(), 38);
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        QVERIFY(mGUIDTools::IsGUIDString(id));
        // A random (version 4) identifier.
        QCOMPARE(id.at(15), QLatin1Char('4'));
        seen.insert(id);
    }
    QCOMPARE(seen.size(), 2000);
}

void tst_libraryApplication::guidRecognised_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("guid");
    QTest::newRow("registry form") << QStringLiteral("{3F2504E0-4F89-41D3-9A0C-0305E82C3301}") << true;
    QTest::newRow("lower case") << QStringLiteral("{3f2504e0-4f89-41d3-9a0c-0305e82c3301}") << false;
    QTest::newRow("no braces") << QStringLiteral("3F2504E0-4F89-41D3-9A0C-0305E82C3301") << false;
    QTest::newRow("groups shifted") << QStringLiteral("{3F2504E04-F89-41D3-9A0C-0305E82C3301}") << false;
    QTest::newRow("not hex") << QStringLiteral("{3F2504E0-4F89-41D3-9A0C-0305E82C330G}") << false;
    QTest::newRow("quote inside") << QStringLiteral("{3F2504E0-4F89-41D3-9A0C-0305E82C330'}") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("too long") << QStringLiteral("{3F2504E0-4F89-41D3-9A0C-0305E82C3301}}") << false;
}

void tst_libraryApplication::guidRecognised()
{
    QFETCH(QString, text);
    QFETCH(bool, guid);
    QCOMPARE(mGUIDTools::IsGUIDString(text), guid);
}

void tst_libraryApplication::nothingToSaveBeforeTheLibraryIsOpened()
{
    Fixture f;
    QVERIFY(f.ok);
    // Even a file that is no library is never touched by the question.
    LibraryTest::writeFile(f.path, QByteArray("not a library"));
    QVERIFY(!mMain::Application().AnythingNeedSave());
    QVERIFY(!mMain::Application().LibraryMade());
    QVERIFY(!QSqlDatabase::contains(mDatabase::kConnectionName));
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryApplication::libraryLoadedOnceWithEveryRow()
{
    Fixture f;
    QVERIFY(f.ok);
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('{10000000-0000-0000-0000-000000000000}', '', 'v', 1, 1, 1, 1, 1, 1, 1, 'top', '2001-08-01', 0, 0, 0, 0, 1, 1)")));
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('{20000000-0000-0000-0000-000000000000}', '{10000000-0000-0000-0000-000000000000}', 'v', 1, 1, 1, 1, 1, 1, 1, 'child', '2001-08-01', 0, 0, 0, 0, 1, 1)")));
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_UserVar VALUES ('{30000000-0000-0000-0000-000000000000}', '{20000000-0000-0000-0000-000000000000}', 'v', 'Sun', 'bright')")));
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QCOMPARE(library.ParentID(), QString());
    QCOMPARE(library.Count(), 2);
    auto child = library.Item(QStringLiteral("{20000000-0000-0000-0000-000000000000}"));
    QVERIFY(child);
    // Adopted by the library: every member is top level now (a plain store, not a change).
    QCOMPARE(child->ParentID(), QString());
    QVERIFY(!child->IsDirty());
    QCOMPARE(child->colUserVar().Count(), 1);
    QCOMPARE(child->colUserVar().Item(1)->sValue(), QStringLiteral("bright"));
    // Rows added to the file during the run are not seen: the library is loaded once.
    QVERIFY(f.exec(QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('{40000000-0000-0000-0000-000000000000}', '', 'v', 1, 1, 1, 1, 1, 1, 1, 'late', '2001-08-01', 0, 0, 0, 0, 1, 1)")));
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), 2);
    QCOMPARE(&mMain::Application().colSetsTemplate(), &library);
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryApplication::activeSetting()
{
    Fixture f;
    QVERIFY(f.ok);
    cApplication& app = mMain::Application();
    QVERIFY(!app.ActiveSetting());
    auto member = app.colSetsTemplate().Add();
    app.setActiveSetting(member);
    QCOMPARE(app.ActiveSetting(), member);

    // A record outside the library cannot be active: no active setting, and nothing reported.
    auto outsider = std::make_shared<cSetsTemplate>();
    app.setActiveSetting(outsider);
    QVERIFY(!app.ActiveSetting());
    app.setActiveSetting(nullptr);
    QVERIFY(!app.ActiveSetting());

    // A record with a member's ID counts as that member.
    auto lookalike = std::make_shared<cSetsTemplate>();
    lookalike->setID(member->ID());
    app.setActiveSetting(lookalike);
    QCOMPARE(app.ActiveSetting(), member);

    // Once the member is gone from the library, the key no longer finds anything, silently.
    member->setIsDeleted(true);
    QSqlDatabase connection;
    app.colSetsTemplate().Save(connection);
    QVERIFY(!app.ActiveSetting());
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryApplication::anythingNeedSave_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a field") << QStringLiteral("field");
    QTest::newRow("a user variable") << QStringLiteral("variable");
    QTest::newRow("a deletion") << QStringLiteral("delete");
    QTest::newRow("a new record") << QStringLiteral("add");
    QTest::newRow("a field set to its value") << QStringLiteral("same");
}

void tst_libraryApplication::anythingNeedSave()
{
    QFETCH(QString, change);
    Fixture f;
    QVERIFY(f.ok);
    {
        cColSetsTemplate& library = mMain::Application().colSetsTemplate();
        library.Add()->setsName(QStringLiteral("kept"));
        QSqlDatabase connection;
        library.Save(connection);
    }
    f.restart();
    cApplication& app = mMain::Application();
    auto record = app.colSetsTemplate().Item(1);
    QVERIFY(!app.AnythingNeedSave());
    if (change == QLatin1String("field"))
        record->setlGameTime(99);
    else if (change == QLatin1String("variable"))
        record->colUserVar().Item(2)->setsValue(QStringLiteral("today"));
    else if (change == QLatin1String("delete"))
        record->setIsDeleted(true);
    else if (change == QLatin1String("add"))
        app.colSetsTemplate().Add();
    else if (change == QLatin1String("same"))
        record->setsName(QStringLiteral("kept"));
    const bool expected = !change.isEmpty() && change != QLatin1String("same");
    QCOMPARE(app.AnythingNeedSave(), expected);
}

void tst_libraryApplication::promoteSetting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("promoted");
    QTest::newRow("empty name") << QString() << QStringLiteral("[Untitled] (promoted from statistic)");
    QTest::newRow("named") << QStringLiteral("Saturday game") << QStringLiteral("Saturday game (promoted from statistic)");
    QTest::newRow("quote in the name") << QStringLiteral("12\"") << QStringLiteral("12\" (promoted from statistic)");
}

void tst_libraryApplication::promoteSetting()
{
    QFETCH(QString, name);
    QFETCH(QString, promoted);
    Fixture f;
    QVERIFY(f.ok);
    cApplication& app = mMain::Application();
    auto statistic = std::make_shared<cSetsTemplate>();
    statistic->setParentID(QStringLiteral("{SOMEWHERE}"));
    statistic->setsName(name);
    statistic->setlShotTime(12);
    statistic->AddUserVar(QStringLiteral("Field"), QStringLiteral("Indoor"));
    const QString id = statistic->ID();
    app.PromoteSetting(statistic);
    QVERIFY(f.ui.errors.isEmpty());
    QCOMPARE(app.colSetsTemplate().Item(id), statistic);
    QCOMPARE(statistic->ParentID(), QString());
    QCOMPARE(statistic->sName(), promoted);
    QCOMPARE(statistic->lShotTime(), 12);
    QCOMPARE(statistic->colUserVar().Count(), 8);
    QVERIFY(app.AnythingNeedSave());
    // Written at the next save, user variables with it.
    QSqlDatabase connection;
    app.colSetsTemplate().Save(connection);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate WHERE sName = ? AND ID = ?"), {promoted, id}), 1);
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE ParentID = ?"), {id}), 8);
}

void tst_libraryApplication::promoteTwiceFailsAtTheKey()
{
    Fixture f;
    QVERIFY(f.ok);
    cApplication& app = mMain::Application();
    auto member = app.colSetsTemplate().Add();
    member->setsName(QStringLiteral("already here"));
    app.PromoteSetting(member);
    QCOMPARE(f.ui.errors.size(), 1);
    QCOMPARE(f.ui.errors[0].Number(), 457);
    QCOMPARE(f.ui.errors[0].Trail().last().module, QStringLiteral("cApplication"));
    QCOMPARE(f.ui.errors[0].Trail().last().procedure, QStringLiteral("PromoteSetting"));
    QCOMPARE(member->sName(), QStringLiteral("already here"));
    QCOMPARE(app.colSetsTemplate().Count(), 1);
}

void tst_libraryApplication::releaseDoesNotSave()
{
    Fixture f;
    QVERIFY(f.ok);
    mMain::Application().colSetsTemplate().Add()->setsName(QStringLiteral("unsaved"));
    f.restart();
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), 0);
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), 0);
    QVERIFY(f.ui.errors.isEmpty());
}

QTEST_GUILESS_MAIN(tst_libraryApplication)
#include "tst_libraryApplication.moc"
