// The library browser: its rows and cells, using, deleting and sorting settings, the factory
// default, the properties with any text shown exactly, the keys, and a stored placement that no
// window can take.
#include "GuiTestSupport.h"

#include "gui/common/mGUISupport.h"
#include "gui/shell/fLibSets.h"

#include <QHeaderView>
#include <QSettings>
#include <QSqlQuery>

using namespace guitest;

namespace {

std::shared_ptr<cSetsTemplate> addTemplate(cApplication& app, const QString& name, qint32 shotTime = 0,
                                           QDate date = QDate(2020, 1, 1))
{
    const auto record = app.colSetsTemplate().Add();
    record->setsName(name);
    record->setlShotTime(shotTime);
    record->setdtDate(QDateTime(date, QTime(12, 0)));
    return record;
}

// Writes the library, forgets it and reads it again from the file, as the next start does.
void saveAndReload(ScriptedLibrary& library)
{
    {
        QSqlDatabase connection;
        library.app().colSetsTemplate().Save(connection);
    }
    library.program.restart();
    library.app().colSetsTemplate();
}

QTreeWidget* listOf(fLibSets& browser)
{
    return control<QTreeWidget>(&browser, QStringLiteral("lvwLib"));
}

QStringList shownNames(fLibSets& browser)
{
    return columnTexts(listOf(browser), fLibSets::ColName);
}

void showAndActivate(QWidget& window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

const QString kFactory = QStringLiteral("Factory Default");

// The row deleted, the command, the names left, the row selected then and
// the error reported (0 none).
struct Deleting {
    int row;
    QString way;
    QStringList remaining;
    QString selected;
    int error;
};

// The templates (names, shot times, dates), the column headers clicked in order, the column
// compared and its texts then.
struct Sorting {
    QStringList names;
    QList<int> shotTimes;
    QList<QDate> dates;
    QList<int> clicks;
    int column;
    QStringList order;
};

// The control with the focus, a key with its modifiers, and what happens: used, deleted,
// properties or nothing.
struct KeyPress {
    QString focus;
    int key, modifiers;
    QString expected;
};

} // namespace

class tst_libraryBrowser : public QObject {
    Q_OBJECT
private slots:
    void rowsInLibraryOrder_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QList<int>>("deleted");
        QTest::addColumn<QStringList>("rows"); // "number name"
        QTest::newRow("empty library") << QStringList{} << QList<int>{} << QStringList{"0 Factory Default"};
        QTest::newRow("library order, not by name")
            << QStringList{"Zeta", "alpha", "Mid"} << QList<int>{} << QStringList{"0 Factory Default", "1 Zeta", "2 alpha", "3 Mid"};
        QTest::newRow("deleted records skipped, numbers run on")
            << QStringList{"A", "B", "C", "D"} << QList<int>{1, 3} << QStringList{"0 Factory Default", "1 A", "2 C"};
    }
    void rowsInLibraryOrder()
    {
        QFETCH(QStringList, names);
        QFETCH(QList<int>, deleted);
        QFETCH(QStringList, rows);
        ScriptedLibrary library;
        for (const QString& name : names)
            addTemplate(library.app(), name);
        saveAndReload(library); // the order the file gives, then the order of adding
        const auto added = addTemplate(library.app(), QStringLiteral("added later"));
        for (int index : deleted)
            library.app().colSetsTemplate().Item(index + 1)->setIsDeleted(true);
        rows << QStringLiteral("%1 added later").arg(rows.size());

        fLibSets browser(library.app());
        const QStringList numbers = columnTexts(listOf(browser), fLibSets::ColNumber);
        QStringList shown;
        for (int i = 0; i < numbers.size(); ++i)
            shown << numbers[i] + QLatin1Char(' ') + shownNames(browser)[i];
        QCOMPARE(shown, rows);
        QVERIFY(fLibSets::IsFactoryDefault(listOf(browser)->topLevelItem(0)));
        QCOMPARE(fLibSets::RowKey(listOf(browser)->topLevelItem(shown.size() - 1)), added->ID());
        GUITEST_NO_ERRORS(library.ui.script);
    }
    void cellsAndColumns()
    {
        ScriptedLibrary library;
        const QString name = QStringLiteral("Wet day, a name much longer than its column is wide");
        const auto record = addTemplate(library.app(), name, 12345, QDate(2024, 3, 7));
        record->setlDwellTime(10);
        record->setlCycleTimeOpen(30);
        record->setlLoadTime(35);
        record->setlCycleTimeClose(25);
        fLibSets browser(library.app());
        QTreeWidget* list = listOf(browser);
        QList<QStringList> cells;
        for (QTreeWidgetItem* row : {list->topLevelItem(0), list->topLevelItem(1)}) {
            cells.append(QStringList());
            for (int c = 0; c < fLibSets::ColumnCount; ++c)
                cells.last() << row->text(c);
        }
        // 1000 / (10 + 30 + 35 + 25) = 10 shots a second; the shot time is not part of the cycle.
        QCOMPARE(cells[0], (QStringList{"", "0", kFactory, "01-Aug-2001", ".0", "0", "0", "0", "0", "0"}));
        QCOMPARE(cells[1], (QStringList{"", "1", name, "07-Mar-2024", "10.0", "12345", "10", "30", "35", "25"}));
        QVERIFY(list->isColumnHidden(fLibSets::ColKey));
    }
    void deleting_data()
    {
        QTest::addColumn<Deleting>("deleting");
        QTest::newRow("first template, button: the next") << Deleting{1, "cmdDelete", {kFactory, "B", "C"}, "B", 0};
        QTest::newRow("middle, menu: the next") << Deleting{2, "mnuDelete", {kFactory, "A", "C"}, "C", 0};
        QTest::newRow("last, button: the new last") << Deleting{3, "cmdDelete", {kFactory, "A", "B"}, "B", 0};
        QTest::newRow("factory default: cannot be") << Deleting{0, "mnuDelete", {kFactory, "A", "B", "C"}, kFactory, 10020};
    }
    void deleting()
    {
        QFETCH(Deleting, deleting);
        const auto& [row, way, remaining, selected, error] = deleting;
        ScriptedLibrary library;
        const QList<std::shared_ptr<cSetsTemplate>> records = {addTemplate(library.app(), "A"), addTemplate(library.app(), "B"), addTemplate(library.app(), "C")};
        fLibSets browser(library.app());
        showAndActivate(browser);
        selectRow(listOf(browser), row);
        run(&browser, way);
        QCOMPARE(shownNames(browser), remaining);
        QVERIFY(browser.SelectedRow());
        QCOMPARE(browser.SelectedRow()->text(fLibSets::ColName), selected);
        for (int i = 0; i < records.size(); ++i)
            QCOMPARE(records[i]->IsDeleted(), i == row - 1);
        // Still in the library until it is saved; nothing was asked.
        QCOMPARE(library.app().colSetsTemplate().Count(), 3);
        QVERIFY(library.ui.script.questions.isEmpty());
        QCOMPARE(library.ui.script.errors.size(), error ? 1 : 0);
        if (error) {
            QCOMPARE(library.ui.script.errors[0].Number(), error);
            QCOMPARE(library.ui.script.errors[0].Description(), QStringLiteral("It is not possible to delete the factory default setting."));
        }
        QVERIFY(browser.isVisible());
    }
    void usingASettingHandsItToTheMainWindow_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<bool>("factory"); // the factory default row, else "Tournament"
        QTest::newRow("Use button") << "cmdUse" << false;
        QTest::newRow("Use in the menu") << "mnuUse" << false;
        QTest::newRow("double-click: the row under the pointer") << "double-click" << false;
        QTest::newRow("factory default: a new template each time") << "cmdUse" << true;
    }
    void usingASettingHandsItToTheMainWindow()
    {
        QFETCH(QString, how);
        QFETCH(bool, factory);
        FreshStart();
        WindowHarness h;
        fTolvaneMan& w = h.open(false);
        const auto chosen = addTemplate(h.app(), QStringLiteral("Tournament"), 4);
        addTemplate(h.app(), QStringLiteral("Other"));
        const int count = h.app().colSetsTemplate().Count();
        const int row = factory ? 0 : count - 1; // "Tournament": the main window added one first
        for (int round = 1; round <= 2; ++round) {
            fLibSets browser(h.app(), &w);
            showAndActivate(browser);
            QTreeWidget* list = listOf(browser);
            selectRow(list, row);
            if (how == QLatin1String("double-click")) {
                selectRow(list, 0);
                QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(row)).center());
            } else {
                run(&browser, how);
            }
            QVERIFY(!browser.isVisible());
            QCOMPARE(h.app().colSetsTemplate().Count(), count + (factory ? round : 0));
            const auto used = factory ? h.app().colSetsTemplate().Item(count + round) : chosen;
            QCOMPARE(used->sName(), factory ? QString() : QStringLiteral("Tournament"));
            QCOMPARE(w.ActiveSetting(), used);
            QCOMPARE(h.app().ActiveSetting(), used);
            QVERIFY(w.IsTemplate());
        }
        if (!factory)
            QVERIFY(w.windowTitle().endsWith(QLatin1String("[Tournament]")));
        GUITEST_NO_ERRORS(h.ui.script);
    }
    void sortsAsText_data()
    {
        QTest::addColumn<Sorting>("sorting");
        const QStringList three = {"a", "b", "c"};
        const QList<int> st = {5, 10, 20};
        const QList<QDate> days = {QDate(2024, 3, 7), QDate(2023, 12, 25), QDate(2022, 1, 9)};
        QTest::newRow("ST ascending: 10 before 5") << Sorting{three, st, days, {5}, 5, {"0", "10", "20", "5"}};
        QTest::newRow("ST again flips") << Sorting{three, st, days, {5, 5}, 5, {"5", "20", "10", "0"}};
        QTest::newRow("dates by their day first")
            << Sorting{three, st, days, {3}, 3, {"01-Aug-2001", "07-Mar-2024", "09-Jan-2022", "25-Dec-2023"}};
        QTest::newRow("another column starts ascending")
            << Sorting{three, st, days, {5, 5, 2}, 2, {"a", "b", "c", "Factory Default"}};
        QTest::newRow("names alphabetically, whatever the case")
            << Sorting{{"beta", "zeta", "Alpha"}, st, days, {2}, 2, {"Alpha", "beta", "Factory Default", "zeta"}};
    }
    void sortsAsText()
    {
        QFETCH(Sorting, sorting);
        const auto& [names, shotTimes, dates, clicks, column, order] = sorting;
        ScriptedLibrary library;
        for (int i = 0; i < names.size(); ++i)
            addTemplate(library.app(), names[i], shotTimes.value(i), dates.value(i, QDate(2020, 1, 1)));
        fLibSets browser(library.app());
        showAndActivate(browser);
        QHeaderView* header = listOf(browser)->header();
        for (int section : clicks) {
            const QPoint inside(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, inside);
        }
        QCOMPARE(columnTexts(listOf(browser), column), order);
        QCOMPARE(header->sortIndicatorSection(), clicks.last());
    }
    void propertiesRefreshTheRow()
    {
        ScriptedLibrary library;
        const auto record = addTemplate(library.app(), QStringLiteral("Old name"));
        fLibSets browser(library.app());
        QString caption;
        // Any text, shown exactly as typed.
        const QString name = QStringLiteral("  12\" \"\"wet\"\" O'Brien's #08-01-2001# -- Ölkännchen 日本語  ");
        // Cancel keeps what was typed (OK the same); the factory default's changes are kept nowhere.
        for (const char* button : {"cmdCancel", "cmdOK"}) {
            const int row = QLatin1String(button) == QLatin1String("cmdCancel") ? 1 : 0;
            selectRow(listOf(browser), row);
            answerNextModal([&](QDialog* editor) {
                caption = editor->windowTitle();
                control<QLineEdit>(editor, QStringLiteral("txtName"))->setText(name);
                run(editor, QLatin1String(button));
            });
            run(&browser, QStringLiteral("cmdProperties"));
            QCOMPARE(caption, QStringLiteral("Settings #%1").arg(row));
        }
        QCOMPARE(record->sName(), name);
        QCOMPARE(listOf(browser)->topLevelItem(1)->text(fLibSets::ColName), name);
        QCOMPARE(library.app().colSetsTemplate().Count(), 1);
        fLibSets again(library.app());
        QCOMPARE(shownNames(again), (QStringList{kFactory, name}));
    }
    void keysWorkWhereverTheFocusIs_data()
    {
        QTest::addColumn<KeyPress>("keyPress");
        QTest::newRow("Enter on Close") << KeyPress{"cmdClose", int(Qt::Key_Return), int(Qt::NoModifier), "used"};
        QTest::newRow("keypad Enter on Delete") << KeyPress{"cmdDelete", int(Qt::Key_Enter), int(Qt::KeypadModifier), "used"};
        QTest::newRow("Delete on Use") << KeyPress{"cmdUse", int(Qt::Key_Delete), int(Qt::NoModifier), "deleted"};
        QTest::newRow("Ctrl+P on Close") << KeyPress{"cmdClose", int(Qt::Key_P), int(Qt::ControlModifier), "properties"};
        QTest::newRow("Shift+Delete does nothing") << KeyPress{"lvwLib", int(Qt::Key_Delete), int(Qt::ShiftModifier), "nothing"};
    }
    void keysWorkWhereverTheFocusIs()
    {
        QFETCH(KeyPress, keyPress);
        const auto& [focus, key, modifiers, expected] = keyPress;
        ScriptedLibrary library;
        const auto record = addTemplate(library.app(), QStringLiteral("A"));
        addTemplate(library.app(), QStringLiteral("B"));
        fLibSets browser(library.app());
        showAndActivate(browser);
        selectRow(listOf(browser), 1);
        QWidget* target = control<QWidget>(&browser, focus);
        target->setFocus();
        bool editorShown = false;
        if (expected == QLatin1String("properties"))
            answerNextModal([&](QDialog* editor) { editorShown = editor->objectName() == QLatin1String("fSetsTemplate"); });
        QTest::keyClick(target, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(!browser.isVisible(), expected == QLatin1String("used"));
        QCOMPARE(record->IsDeleted(), expected == QLatin1String("deleted"));
        QCOMPARE(editorShown, expected == QLatin1String("properties"));
        GUITEST_NO_ERRORS(library.ui.script);
    }
    // A stored size or position that no window can take keeps the browser's own, and the other
    // values still apply.
    void aPlacementNoWindowCanTakeIsIgnored()
    {
        ScriptedLibrary library;
        const fLibSets unplaced(library.app());
        QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
        const QList<QPair<const char*, const char*>> values = {{"Width", "1e30"}, {"Height", "6000"}, {"Left", "1e30"}, {"Top", "300"}};
        for (const auto& [key, value] : values)
            store.setValue(QStringLiteral("fLibSets/") + QLatin1String(key), QLatin1String(value));
        store.sync();
        const fLibSets browser(library.app());
        QCOMPARE(browser.size(), QSize(unplaced.width(), mGUISupport::TwipsToPixels(6000, &browser)));
        QCOMPARE(browser.pos(), QPoint(unplaced.x(), mGUISupport::TwipsToPixels(300, &browser)));
        GUITEST_NO_ERRORS(library.ui.script);
    }
};

QTEST_MAIN(tst_libraryBrowser)
#include "tst_libraryBrowser.moc"
