// The settings record, its user variables and the keyed collections, against a real library file:
// deletions, loading rows, failures, positions and keys. The application object: the active
// setting, and whether anything needs saving (which only a real change makes so). (The rows a
// save writes, the edit after an insert included: tst_libraryStorage.)
#include "LibraryTestSupport.h"

#include <QtTest>
#include <functional>

using Change = std::function<void(cApplication&, cSetsTemplate&)>;

class tst_libraryRecords : public QObject {
    Q_OBJECT

private slots:
    // Positions from 1 and keys; a bad one, or a taken key, is reported under the collection's
    // name and changes nothing.
    void positionsAndKeys()
    {
        ScriptedUi ui;
        mMain::SetUserInterface(&ui);
        cColSetsTemplate library;
        for (const char* name : {"a", "b", "c"})
            library.Add()->setsName(QString::fromLatin1(name));
        QCOMPARE(library.Item(2)->sName(), QStringLiteral("b"));
        const auto a = library.Remove(library.Item(1)->ID());
        QCOMPARE(library.Remove(1)->sName(), QStringLiteral("b"));
        QCOMPARE(library.AddByObject(a), a);  // a removed key can be used again
        auto twin = std::make_shared<cSetsTemplate>();
        twin->setID(a->ID());
        QVERIFY(!library.Item(0) && !library.Remove(3) && !library.Item(QStringLiteral("{NOPE}")) && !library.AddByObject(twin));
        QList<int> numbers;
        for (const MarloError& error : ui.errors) {
            numbers.append(error.Number());
            QCOMPARE(error.Trail().last().module, QStringLiteral("cColSetsTemplate"));
        }
        QCOMPARE(numbers, (QList<int>{9, 9, 5, 457}));
        QCOMPARE(LibraryTest::liveNames(library), (QStringList{"c", "a"}));
        mMain::SetUserInterface(nullptr);
    }

    void saveDropsDeleted_data()
    {
        QTest::addColumn<QString>("marks");  // one a record: '-' kept, 'x' deleted, '+' deleted before the first save
        QTest::newRow("neighbours") << "-xx-";
        QTest::newRow("new and deleted") << "-+-+";
    }
    void saveDropsDeleted()
    {
        QFETCH(QString, marks);
        LIBRARY_FIXTURE(f);
        QStringList kept;
        for (qsizetype i = 0; i < marks.size(); ++i) {
            f.library().Add()->setsName(QString::number(i));
            if (marks[i] == QLatin1Char('-'))
                kept.append(QString::number(i));
        }
        if (!marks.contains(QLatin1Char('+')))
            f.save();
        for (qsizetype i = 0; i < marks.size(); ++i)
            f.library().Item(static_cast<qint32>(i + 1))->setIsDeleted(marks[i] != QLatin1Char('-'));
        f.save();
        QCOMPARE(LibraryTest::liveNames(f.library()), kept);
        QCOMPARE(f.library().Count(), kept.size());
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), kept.size());
        // Deleting leaves the variables' rows; a new record marked deleted is never inserted, yet
        // its variables are (kept as it always was).
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")), 7 * marks.size());
        QVERIFY(f.ui.errors.isEmpty());
    }

    void saveStopsAtFirstFailure_data()
    {
        QTest::addColumn<QString>("trigger");
        QTest::addColumn<QString>("origin");  // where the error started
        QTest::addColumn<int>("written");     // settings written before the failure
        QTest::newRow("insert") << "INSERT ON ta_SetsTemplate WHEN NEW.sName" << "cSetsTemplate Create" << 1;
        QTest::newRow("update") << "UPDATE ON ta_SetsTemplate WHEN NEW.sName" << "cSetsTemplate Update" << 1;
        QTest::newRow("variable update") << "UPDATE ON ta_UserVar WHEN NEW.sValue" << "cUserVar Update" << 2;
    }
    // Earlier records are written; the refused one and later ones stay to be written.
    void saveStopsAtFirstFailure()
    {
        QFETCH(QString, trigger);
        QFETCH(QString, origin);
        QFETCH(int, written);
        LIBRARY_FIXTURE(f);
        for (const char* name : {"a", "refused", "c"})
            f.library().Add()->setsName(QString::fromLatin1(name));
        const bool inserting = origin.endsWith(QLatin1String("Create"));
        if (!inserting) {
            f.save();
            f.save();
        }
        for (const auto& r : f.library()) {
            r->setlShotTime(9);
            r->colUserVar().Item(1)->setsValue(r->sName());
        }
        QVERIFY(f.exec(QStringLiteral("CREATE TRIGGER refuse BEFORE %1 = 'refused' BEGIN SELECT RAISE(ABORT, 'locked'); END").arg(trigger)));
        f.save();
        QCOMPARE(f.ui.errors.size(), 1);
        const MarloError error = f.ui.errors[0];
        // Said by its cause and file, never with the statement.
        QCOMPARE(error.Number(), 3000);
        QCOMPARE(error.Description(), QStringLiteral("The library file \"%1\" could not be written: locked.").arg(f.path));
        QCOMPARE(error.Trail().first().module + QLatin1Char(' ') + error.Trail().first().procedure, origin);
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate WHERE lShotTime = 9")), written);
        QVERIFY(f.library().Item(2)->IsDirty() && f.library().Item(3)->IsDirty());
        QCOMPARE(f.library().Item(2)->IsNew(), inserting);
    }

    // Rows from a library made elsewhere: a null firing mode reads 0, a day number is a date, a
    // row with a parent becomes top level, extreme whole numbers are listed with a rate of fire.
    // A row with a null elsewhere, or a number no field holds, is reported with its column and
    // ID and left out; the rows after it still load.
    void loadRowsMadeElsewhere()
    {
        LIBRARY_FIXTURE(f);
        for (const char* id : {"{1}", "{2}", "{3}", "{4}", "{5}", "{6}", "{7}"})
            QVERIFY(f.exec(LibraryTest::templateRow(QString::fromLatin1(id), QStringLiteral("{1}"))));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET lFiringMode = NULL, dtDate = 37104 WHERE ID = '{2}'")));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET sName = NULL WHERE ID = '{3}'")));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET lDwellTime = 2147483647, lCycleTimeOpen = 2147483647, "
                                      "lLoadTime = 2147483647, lCycleTimeClose = 2147483647, lAlertOne = -2147483648 WHERE ID = '{4}'")));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET lGameTime = 99999999999 WHERE ID = '{5}'")));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET dtDate = '1e300' WHERE ID = '{6}'")));
        QVERIFY(f.exec(QStringLiteral("UPDATE ta_SetsTemplate SET lCycleTimeOpen = 20000, lLoadTime = 20000 WHERE ID = '{7}'")));
        QStringList ids;
        for (const auto& record : f.library())
            ids.append(record->ID());
        QCOMPARE(ids, (QStringList{"{1}", "{2}", "{4}", "{7}"}));
        const auto second = f.library().Item(2);
        QCOMPARE((QList<qint32>{second->lShotTime(), second->lFiringMode()}), (QList<qint32>{11, 0}));
        QCOMPARE(second->dtDate(), QDateTime(QDate(2001, 8, 1), QTime(0, 0)));
        QVERIFY(second->ParentID().isEmpty() && !second->IsDirty());
        // 16-bit sums overflow in the timing record; the library computes them wide.
        QCOMPARE((QStringList{f.library().Item(3)->sROF(), f.library().Item(4)->sROF()}), (QStringList{".0", ".0"}));
        QCOMPARE(f.library().Item(4)->ROF(), 0.02F);
        QStringList reported;
        for (const MarloError& error : f.ui.errors)
            reported.append(QStringLiteral("%1 %2").arg(error.Number()).arg(error.Description()));
        QCOMPARE(reported, (QStringList{"94 Invalid use of Null (column sName of the row with ID {3}).",
                                        "6 Overflow (column lGameTime of the row with ID {5})",
                                        "6 Overflow (column dtDate of the row with ID {6})"}));
    }

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
};

QTEST_GUILESS_MAIN(tst_libraryRecords)
#include "tst_libraryRecords.moc"
