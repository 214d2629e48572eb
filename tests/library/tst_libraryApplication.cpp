// The application object: the active setting, whether anything needs saving (which only a real
// change makes so), and promoting a setting.
#include "LibraryTestSupport.h"

#include <QtTest>
#include <functional>

using Change = std::function<void(cApplication&, cSetsTemplate&)>;

class tst_libraryApplication : public QObject {
    Q_OBJECT

private slots:
    void activeSetting()
    {
        LIBRARY_FIXTURE(f);
        cApplication& app = f.app();
        auto member = app.colSetsTemplate().Add();
        app.setActiveSetting(member);
        QCOMPARE(app.ActiveSetting(), member);
        // A record outside the library cannot be active: no active setting, and nothing reported.
        app.setActiveSetting(std::make_shared<cSetsTemplate>());
        QVERIFY(!app.ActiveSetting());
        // A record with a member's ID counts as that member.
        auto lookalike = std::make_shared<cSetsTemplate>();
        lookalike->setID(member->ID());
        app.setActiveSetting(lookalike);
        QCOMPARE(app.ActiveSetting(), member);
        // Once the member is gone from the library, the key no longer finds anything, silently.
        member->setIsDeleted(true);
        f.save();
        QVERIFY(!app.ActiveSetting());
        QVERIFY(f.ui.errors.isEmpty());
    }

    void anythingNeedSave_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("needSave");
        auto row = [](const char* name, Change change, bool needSave) { QTest::newRow(name) << change << needSave; };
        row("nothing", [](cApplication&, cSetsTemplate&) {}, false);
        row("same values", [](cApplication&, cSetsTemplate& r) { r.setlGameTime(10); r.setsName(QStringLiteral("kept")); r.setdtDate(r.dtDate()); }, false);
        row("keys only", [](cApplication&, cSetsTemplate& r) { r.setParentID(QStringLiteral("{P}")); r.setVersion(QStringLiteral("{V}")); }, false);
        row("lGameTime", [](cApplication&, cSetsTemplate& r) { r.setlGameTime(99); }, true);
        row("dtDate by a millisecond", [](cApplication&, cSetsTemplate& r) { r.setdtDate(r.dtDate().addMSecs(1)); }, true);
        row("name in other case", [](cApplication&, cSetsTemplate& r) { r.setsName(QStringLiteral("KEPT")); }, true);
        row("lShots, memory only", [](cApplication&, cSetsTemplate& r) { r.setlShots(3); }, true);
        row("a variable", [](cApplication&, cSetsTemplate& r) { r.colUserVar().Item(2)->setsValue(QStringLiteral("today")); }, true);
        row("a deletion", [](cApplication&, cSetsTemplate& r) { r.setIsDeleted(true); }, true);
        row("a new record", [](cApplication& app, cSetsTemplate&) { app.colSetsTemplate().Add(); }, true);
    }
    void anythingNeedSave()
    {
        QFETCH(Change, change);
        QFETCH(bool, needSave);
        LIBRARY_FIXTURE(f);
        // Nothing to save, and nothing opened by asking, before the library was ever used.
        QVERIFY(!f.app().AnythingNeedSave() && !f.app().LibraryMade());
        f.library().Add()->setsName(QStringLiteral("kept"));
        f.save();
        f.restart();
        cApplication& app = f.app();
        auto record = app.colSetsTemplate().Item(1);
        change(app, *record);
        QCOMPARE(app.AnythingNeedSave(), needSave);
        QCOMPARE(record->IsDirty(), needSave && app.colSetsTemplate().Count() == 1);
        // The application object is released without saving.
        f.restart();
        QCOMPARE(f.row(QStringLiteral("SELECT COUNT(*) || ' ' || lGameTime || ' ' || sName FROM ta_SetsTemplate")).value(0).toString(),
                 QStringLiteral("1 10 kept"));
    }

    void promoteSetting_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("promoted");  // null: already a member, fails at the duplicate key
        QTest::newRow("empty name") << QString() << "[Untitled] (promoted from statistic)";
        QTest::newRow("already a member") << "here" << QString();
    }
    void promoteSetting()
    {
        QFETCH(QString, name);
        QFETCH(QString, promoted);
        LIBRARY_FIXTURE(f);
        cApplication& app = f.app();
        auto statistic = promoted.isNull() ? app.colSetsTemplate().Add() : std::make_shared<cSetsTemplate>();
        statistic->setParentID(QStringLiteral("{SOMEWHERE}"));
        statistic->setsName(name);
        app.PromoteSetting(statistic);
        QCOMPARE(app.colSetsTemplate().Count(), 1);
        QCOMPARE(app.colSetsTemplate().Item(statistic->ID()), statistic);
        QCOMPARE(f.ui.errors.isEmpty() ? 0 : f.ui.errors[0].Number(), promoted.isNull() ? 457 : 0);
        QCOMPARE(statistic->sName(), promoted.isNull() ? name : promoted);
        if (promoted.isNull())
            return;
        QCOMPARE(statistic->ParentID(), QString());
        // Written at the next save, user variables with it.
        f.save();
        QCOMPARE(f.row(QStringLiteral("SELECT sName FROM ta_SetsTemplate")).value(0).toString(), promoted);
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 7);
    }
};

QTEST_GUILESS_MAIN(tst_libraryApplication)
#include "tst_libraryApplication.moc"
