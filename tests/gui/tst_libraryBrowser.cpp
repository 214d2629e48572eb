// The library browser: its rows and columns, using, deleting and sorting settings, the factory
// default, the keys and the pop-up menu, and that it shows and keeps any text exactly.
#include "DialogTestSupport.h"

#include "gui/library/fLibSets.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/shell/mGUISupport.h"
#include "library/cApplication.h"
#include "library/mDatabase.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSqlQuery>
#include <QTreeWidget>
#include <QtTest>

using namespace guitest;
using mMain::Application;

namespace {

std::shared_ptr<cSetsTemplate> addTemplate(const QString& name, qint32 shotTime = 0, QDate date = QDate(2020, 1, 1))
{
    const auto record = Application().colSetsTemplate().Add();
    record->setsName(name);
    record->setlShotTime(shotTime);
    record->setdtDate(QDateTime(date, QTime(12, 0)));
    return record;
}

// Writes the library, forgets it and reads it again from the file.
void saveAndReload()
{
    {
        QSqlDatabase connection;
        Application().colSetsTemplate().Save(connection);
    }
    mMain::ReleaseApplication();
    Application().colSetsTemplate();
}

QTreeWidget* listOf(fLibSets& browser)
{
    return control<QTreeWidget>(&browser, QStringLiteral("lvwLib"));
}

QStringList columnTexts(fLibSets& browser, int column)
{
    QStringList texts;
    QTreeWidget* list = listOf(browser);
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        texts << list->topLevelItem(i)->text(column);
    return texts;
}

QString selectedName(fLibSets& browser)
{
    QTreeWidgetItem* row = browser.SelectedRow();
    return row ? row->text(fLibSets::ColName) : QStringLiteral("(none)");
}

void selectRow(fLibSets& browser, int index)
{
    QTreeWidget* list = listOf(browser);
    list->setCurrentItem(list->topLevelItem(index), fLibSets::ColName);
    list->topLevelItem(index)->setSelected(true);
}

void showAndActivate(QWidget& window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

enum class Way { Button, Menu, Key };

void deleteBy(fLibSets& browser, Way way)
{
    switch (way) {
    case Way::Button: control<QPushButton>(&browser, QStringLiteral("cmdDelete"))->click(); break;
    case Way::Menu: control<QAction>(&browser, QStringLiteral("mnuDelete"))->trigger(); break;
    case Way::Key:
        listOf(browser)->setFocus();
        QTest::keyClick(listOf(browser), Qt::Key_Delete);
        break;
    }
}

} // namespace

Q_DECLARE_METATYPE(Way)

class tst_libraryBrowser : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { mDatabase::SetPathOverride(QString()); }

    void rowsInLibraryOrder_data();
    void rowsInLibraryOrder();
    void columns_data();
    void columns();
    void cellsOfARecord();
    void activateItem();
    void deleteSelectsTheNeighbour_data();
    void deleteSelectsTheNeighbour();
    void factoryDefaultCannotBeDeleted_data();
    void factoryDefaultCannotBeDeleted();
    void usingTheFactoryDefaultAddsATemplateEachTime();
    void usingASettingHandsItToTheMainWindow_data();
    void usingASettingHandsItToTheMainWindow();
    void sortsAsText_data();
    void sortsAsText();
    void deletedAndUnsavedIsNotShownAgain();
    void neverReadsTheLibraryFileAgain();
    void anyTextIsShownAndKeptExactly_data();
    void anyTextIsShownAndKeptExactly();
    void propertiesRefreshTheRow();
    void keysWorkWhereverTheFocusIs_data();
    void keysWorkWhereverTheFocusIs();
    void rightButtonShowsThePopupMenu();
    void placementIsKept();
    void everyControlHasAName();
    void mainWindowOpensTheBrowserOnTheActiveSetting();
};

void tst_libraryBrowser::rowsInLibraryOrder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QList<int>>("deleted");
    QTest::addColumn<QStringList>("rows"); // "number name"

    QTest::newRow("empty library") << QStringList{} << QList<int>{} << QStringList{"0 Factory Default"};
    QTest::newRow("library order, not by name")
        << QStringList{"Zeta", "alpha", "Mid"} << QList<int>{}
        << QStringList{"0 Factory Default", "1 Zeta", "2 alpha", "3 Mid"};
    QTest::newRow("deleted records skipped, numbers run on")
        << QStringList{"A", "B", "C", "D"} << QList<int>{1, 3} << QStringList{"0 Factory Default", "1 A", "2 C"};
}

void tst_libraryBrowser::rowsInLibraryOrder()
{
    QFETCH(QStringList, names);
    QFETCH(QList<int>, deleted);
    QFETCH(QStringList, rows);
    ScriptedLibrary library;
    for (const QString& name : names)
        addTemplate(name);
    saveAndReload(); // the order the file gives, then the order of adding
    const auto added = addTemplate(QStringLiteral("added later"));
    for (int index : deleted)
        Application().colSetsTemplate().Item(index + 1)->setIsDeleted(true);
    rows << QStringLiteral("%1 added later").arg(rows.size());

    fLibSets browser;
    const QStringList numbers = columnTexts(browser, fLibSets::ColNumber);
    const QStringList shownNames = columnTexts(browser, fLibSets::ColName);
    QStringList shown;
    for (int i = 0; i < numbers.size(); ++i)
        shown << numbers[i] + QLatin1Char(' ') + shownNames[i];
    QCOMPARE(shown, rows);
    QVERIFY(fLibSets::IsFactoryDefault(listOf(browser)->topLevelItem(0)));
    QCOMPARE(fLibSets::RowKey(listOf(browser)->topLevelItem(shown.size() - 1)), added->ID());
    QVERIFY(library.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::columns_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("header");
    QTest::addColumn<int>("twips");
    QTest::addColumn<bool>("right");

    QTest::newRow("0 key") << 0 << "" << 0 << false;
    QTest::newRow("1 #") << 1 << "#" << 360 << true;
    QTest::newRow("2 Name") << 2 << "Name" << 1875 << false;
    QTest::newRow("3 Date") << 3 << "Date" << 1100 << false;
    QTest::newRow("4 ROF bps") << 4 << "ROF bps" << 840 << true;
    QTest::newRow("5 ST ms") << 5 << "ST ms" << 645 << true;
    QTest::newRow("6 DT ms") << 6 << "DT ms" << 645 << true;
    QTest::newRow("7 CTO ms") << 7 << "CTO ms" << 750 << true;
    QTest::newRow("8 LT ms") << 8 << "LT ms" << 645 << true;
    QTest::newRow("9 CTC ms") << 9 << "CTC ms" << 750 << true;
}

void tst_libraryBrowser::columns()
{
    QFETCH(int, column);
    QFETCH(QString, header);
    QFETCH(int, twips);
    QFETCH(bool, right);
    ScriptedLibrary library;
    addTemplate(QStringLiteral("a name much longer than its column is wide"), 12345, QDate(2024, 5, 18));
    fLibSets browser;
    QTreeWidget* list = listOf(browser);
    QCOMPARE(list->columnCount(), 10);
    QCOMPARE(list->headerItem()->text(column), header);
    QCOMPARE(list->isColumnHidden(column), twips == 0);
    QCOMPARE(list->header()->sectionPosition(1), 0); // nothing before the first column on show
    // The documented width; a column of fixed-format values grows where the font would cut them.
    const int documented = mGUISupport::TwipsToPixels(twips, &browser);
    if (column == fLibSets::ColName)
        QCOMPARE(list->columnWidth(column), documented);
    else if (twips > 0)
        QVERIFY(list->columnWidth(column) >= documented);
    if (twips > 0 && column != fLibSets::ColName) {
        const QFontMetrics metrics(list->font());
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            QVERIFY(metrics.horizontalAdvance(list->topLevelItem(i)->text(column)) < list->columnWidth(column));
    }
    const Qt::Alignment horizontal = Qt::Alignment(list->topLevelItem(1)->textAlignment(column)) & Qt::AlignHorizontal_Mask;
    QCOMPARE(horizontal == Qt::AlignRight, right);
    QCOMPARE(list->topLevelItem(1)->text(0), QString());
}

void tst_libraryBrowser::cellsOfARecord()
{
    ScriptedLibrary library;
    const auto record = addTemplate(QStringLiteral("Wet day"), 5, QDate(2024, 3, 7));
    record->setlDwellTime(10);
    record->setlCycleTimeOpen(30);
    record->setlLoadTime(35);
    record->setlCycleTimeClose(25);
    fLibSets browser;
    QTreeWidgetItem* row = listOf(browser)->topLevelItem(1);
    QStringList cells;
    for (int c = fLibSets::ColNumber; c < fLibSets::ColumnCount; ++c)
        cells << row->text(c);
    // 1000 / (10 + 30 + 35 + 25) = 10 shots a second; the shot time is not part of the cycle.
    QCOMPARE(cells, (QStringList{"1", "Wet day", "07-Mar-2024", "10.0", "5", "10", "30", "35", "25"}));
    QTreeWidgetItem* factory = listOf(browser)->topLevelItem(0);
    QCOMPARE(factory->text(fLibSets::ColName), QStringLiteral("Factory Default"));
    QCOMPARE(factory->text(fLibSets::ColDate), QStringLiteral("01-Aug-2001"));
    QCOMPARE(factory->text(fLibSets::ColROF), QStringLiteral(".0"));
}

void tst_libraryBrowser::activateItem()
{
    ScriptedLibrary library;
    addTemplate(QStringLiteral("A"));
    const auto b = addTemplate(QStringLiteral("B"));
    fLibSets browser;
    QCOMPARE(selectedName(browser), QStringLiteral("Factory Default"));
    browser.ActivateItem(b->ID());
    QCOMPARE(selectedName(browser), QStringLiteral("B"));
    browser.ActivateItem(QStringLiteral("{00000000-0000-0000-0000-000000000000}"));
    QCOMPARE(selectedName(browser), QStringLiteral("B"));
    browser.ActivateItem(QString());
    QCOMPARE(selectedName(browser), QStringLiteral("B"));
    QVERIFY(library.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::deleteSelectsTheNeighbour_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<Way>("way");
    QTest::addColumn<QStringList>("remaining");
    QTest::addColumn<QString>("selected");

    const QString fd = QStringLiteral("Factory Default");
    QTest::newRow("first template, button") << 1 << Way::Button << QStringList{fd, "B", "C"} << "B";
    QTest::newRow("middle, menu") << 2 << Way::Menu << QStringList{fd, "A", "C"} << "C";
    QTest::newRow("last, Delete key") << 3 << Way::Key << QStringList{fd, "A", "B"} << "B";
}

void tst_libraryBrowser::deleteSelectsTheNeighbour()
{
    QFETCH(int, row);
    QFETCH(Way, way);
    QFETCH(QStringList, remaining);
    QFETCH(QString, selected);
    ScriptedLibrary library;
    const QList<std::shared_ptr<cSetsTemplate>> records = {addTemplate("A"), addTemplate("B"), addTemplate("C")};
    fLibSets browser;
    showAndActivate(browser);
    selectRow(browser, row);
    deleteBy(browser, way);

    QCOMPARE(columnTexts(browser, fLibSets::ColName), remaining);
    QCOMPARE(selectedName(browser), selected);
    for (int i = 0; i < records.size(); ++i)
        QCOMPARE(records[i]->IsDeleted(), i == row - 1);
    // Still in the library until it is saved; nothing was asked.
    QCOMPARE(Application().colSetsTemplate().Count(), 3);
    QVERIFY(library.ui.script.questions.isEmpty());
    QVERIFY(library.ui.script.errors.isEmpty());
    QVERIFY(browser.isVisible());
}

void tst_libraryBrowser::factoryDefaultCannotBeDeleted_data()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("button") << Way::Button;
    QTest::newRow("menu") << Way::Menu;
    QTest::newRow("Delete key") << Way::Key;
}

void tst_libraryBrowser::factoryDefaultCannotBeDeleted()
{
    QFETCH(Way, way);
    ScriptedLibrary library;
    addTemplate(QStringLiteral("A"));
    fLibSets browser;
    showAndActivate(browser);
    selectRow(browser, 0);
    deleteBy(browser, way);

    QCOMPARE(library.ui.script.errors.size(), 1);
    QCOMPARE(library.ui.script.errors[0].Number(), 10020);
    QCOMPARE(library.ui.script.errors[0].Description(), QStringLiteral("It is not possible to delete the factory default setting."));
    QCOMPARE(columnTexts(browser, fLibSets::ColName), (QStringList{"Factory Default", "A"}));
    QVERIFY(fLibSets::IsFactoryDefault(browser.SelectedRow()));
    QVERIFY(!Application().colSetsTemplate().Item(1)->IsDeleted());
}

void tst_libraryBrowser::usingTheFactoryDefaultAddsATemplateEachTime()
{
    FreshStart();
    WindowHarness h;
    fTolvaneMan& w = h.open(false);
    const int before = Application().colSetsTemplate().Count();
    QStringList ids;
    for (int round = 1; round <= 2; ++round) {
        fLibSets browser(&w);
        selectRow(browser, 0);
        control<QPushButton>(&browser, QStringLiteral("cmdUse"))->click();
        QCOMPARE(browser.result(), int(QDialog::Accepted));
        QCOMPARE(Application().colSetsTemplate().Count(), before + round);
        const auto added = Application().colSetsTemplate().Item(before + round);
        QVERIFY(added->IsNew());
        QCOMPARE(added->sName(), QString());
        QCOMPARE(w.ActiveSetting(), added);
        QVERIFY(w.IsTemplate());
        ids << added->ID();
    }
    QVERIFY(ids[0] != ids[1]);
    QVERIFY(h.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::usingASettingHandsItToTheMainWindow_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Use button") << "button";
    QTest::newRow("Use in the menu") << "menu";
    QTest::newRow("Enter") << "enter";
    QTest::newRow("double-click") << "double-click";
}

void tst_libraryBrowser::usingASettingHandsItToTheMainWindow()
{
    QFETCH(QString, how);
    FreshStart();
    WindowHarness h;
    fTolvaneMan& w = h.open(false);
    const auto chosen = addTemplate(QStringLiteral("Tournament"), 4);
    addTemplate(QStringLiteral("Other"));
    const int count = Application().colSetsTemplate().Count();
    fLibSets browser(&w);
    showAndActivate(browser);
    QTreeWidget* list = listOf(browser);
    QTreeWidgetItem* row = list->topLevelItem(count - 1); // "Tournament": the main window added one first
    QCOMPARE(row->text(fLibSets::ColName), QStringLiteral("Tournament"));
    selectRow(browser, count - 1);
    if (how == QLatin1String("button")) {
        control<QPushButton>(&browser, QStringLiteral("cmdUse"))->click();
    } else if (how == QLatin1String("menu")) {
        control<QAction>(&browser, QStringLiteral("mnuUse"))->trigger();
    } else if (how == QLatin1String("enter")) {
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Return);
    } else {
        // The row under the pointer counts, not the selected one.
        selectRow(browser, 0);
        const QPoint centre = list->visualItemRect(row).center();
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, centre);
    }
    QVERIFY(!browser.isVisible());
    QCOMPARE(w.ActiveSetting(), chosen);
    QCOMPARE(Application().ActiveSetting(), chosen);
    QVERIFY(w.IsTemplate());
    QVERIFY(w.windowTitle().endsWith(QLatin1String("[Tournament]")));
    QCOMPARE(Application().colSetsTemplate().Count(), count);
    QVERIFY(h.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::sortsAsText_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QList<int>>("shotTimes");
    QTest::addColumn<QList<QDate>>("dates");
    QTest::addColumn<QList<int>>("clicks"); // column headers clicked, in order
    QTest::addColumn<int>("column");        // the column compared
    QTest::addColumn<QStringList>("order");

    const QStringList three = {"a", "b", "c"};
    const QList<int> st = {5, 10, 20};
    const QList<QDate> days = {QDate(2024, 3, 7), QDate(2023, 12, 25), QDate(2022, 1, 9)};
    QTest::newRow("ST ascending: 10 before 5") << three << st << days << QList<int>{5} << 5 << QStringList{"0", "10", "20", "5"};
    QTest::newRow("ST again flips") << three << st << days << QList<int>{5, 5} << 5 << QStringList{"5", "20", "10", "0"};
    QTest::newRow("ST a third time ascends") << three << st << days << QList<int>{5, 5, 5} << 5 << QStringList{"0", "10", "20", "5"};
    QTest::newRow("dates by their day first") << three << st << days << QList<int>{3} << 3
                                              << QStringList{"01-Aug-2001", "07-Mar-2024", "09-Jan-2022", "25-Dec-2023"};
    QTest::newRow("another column starts ascending") << three << st << days << QList<int>{5, 5, 2} << 2
                                                     << QStringList{"Factory Default", "a", "b", "c"};
    QTest::newRow("names as text, capitals first") << QStringList{"b", "B", "a"} << st << days << QList<int>{2} << 2
                                                   << QStringList{"B", "Factory Default", "a", "b"};
    QTest::newRow("row numbers as text") << QStringList{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}
                                         << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10} << QList<QDate>{} << QList<int>{1, 1} << 1
                                         << QStringList{"9", "8", "7", "6", "5", "4", "3", "2", "10", "1", "0"};
}

void tst_libraryBrowser::sortsAsText()
{
    QFETCH(QStringList, names);
    QFETCH(QList<int>, shotTimes);
    QFETCH(QList<QDate>, dates);
    QFETCH(QList<int>, clicks);
    QFETCH(int, column);
    QFETCH(QStringList, order);
    ScriptedLibrary library;
    for (int i = 0; i < names.size(); ++i)
        addTemplate(names[i], shotTimes.value(i), dates.value(i, QDate(2020, 1, 1)));
    fLibSets browser;
    showAndActivate(browser);
    QHeaderView* header = listOf(browser)->header();
    for (int section : clicks) {
        const QPoint inside(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, inside);
    }
    QCOMPARE(columnTexts(browser, column), order);
    QCOMPARE(header->sortIndicatorSection(), clicks.last());
}

void tst_libraryBrowser::deletedAndUnsavedIsNotShownAgain()
{
    ScriptedLibrary library;
    addTemplate(QStringLiteral("Keep"));
    const auto gone = addTemplate(QStringLiteral("Gone"));
    saveAndReload();
    {
        fLibSets browser;
        selectRow(browser, 2);
        control<QPushButton>(&browser, QStringLiteral("cmdDelete"))->click();
        control<QPushButton>(&browser, QStringLiteral("cmdClose"))->click();
    }
    fLibSets again;
    QCOMPARE(columnTexts(again, fLibSets::ColName), (QStringList{"Factory Default", "Keep"}));
    // Not saved: the row is still in the file, and a reload without saving brings it back.
    QSqlDatabase connection = mMain::ConnectDB();
    QSqlQuery count = mDatabase::Execute(connection, QStringLiteral("SELECT * FROM ta_SetsTemplate WHERE sName = \"Gone\";"));
    QVERIFY(count.next());
    count = QSqlQuery();
    connection = QSqlDatabase();
    saveAndReload();
    fLibSets saved;
    QCOMPARE(columnTexts(saved, fLibSets::ColName), (QStringList{"Factory Default", "Keep"}));
    QVERIFY(!Application().colSetsTemplate().Find(gone->ID()));
}

void tst_libraryBrowser::neverReadsTheLibraryFileAgain()
{
    ScriptedLibrary library;
    for (int i = 0; i < 5; ++i)
        addTemplate(QStringLiteral("T%1").arg(i), i);
    saveAndReload();
    // From here on the library file cannot be reached: any reading would be reported.
    mDatabase::DisconnectDB();
    mDatabase::SetPathOverride(QDir(QDir::tempPath()).filePath(QStringLiteral("no-such-folder/Marlo.mdb")));
    fLibSets browser;
    showAndActivate(browser);
    for (int c = 1; c < fLibSets::ColumnCount; ++c)
        browser.lvwLib_ColumnClick(c);
    selectRow(browser, 3);
    control<QPushButton>(&browser, QStringLiteral("cmdDelete"))->click();
    answerNextModal([](QDialog* editor) { control<QPushButton>(editor, QStringLiteral("cmdCancel"))->click(); });
    control<QPushButton>(&browser, QStringLiteral("cmdProperties"))->click();
    QCOMPARE(listOf(browser)->topLevelItemCount(), 5);
    QVERIFY2(library.ui.script.errors.isEmpty(),
             library.ui.script.errors.isEmpty() ? "" : qPrintable(library.ui.script.errors[0].Description()));
}

void tst_libraryBrowser::anyTextIsShownAndKeptExactly_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("double quotes") << QStringLiteral("12\" barrel \"\"wet\"\"");
    QTest::newRow("single quote") << QStringLiteral("O'Brien's 'field'");
    QTest::newRow("hash and date marks") << QStringLiteral("#08-01-2001# #1");
    QTest::newRow("star") << QStringLiteral("DELETE * FROM *");
    QTest::newRow("keywords") << QStringLiteral("True, False; SELECT sName FROM ta_SetsTemplate WHERE ID = '1'");
    QTest::newRow("comment marks") << QStringLiteral("-- /* not a comment */");
    QTest::newRow("non-Latin letters") << QStringLiteral("Ölkännchen 日本語 Ελληνικά русский");
    QTest::newRow("very long") << QString(2000, QLatin1Char('x')) + QStringLiteral(" end");
    QTest::newRow("blanks around") << QStringLiteral("  spaced  ");
}

void tst_libraryBrowser::anyTextIsShownAndKeptExactly()
{
    QFETCH(QString, name);
    ScriptedLibrary library;
    addTemplate(QStringLiteral("before"));
    const auto record = addTemplate(QStringLiteral("typed later"));
    addTemplate(QStringLiteral("after"));
    saveAndReload();
    {
        // Typed in the property editor opened from the browser, then saved with the library.
        fLibSets browser;
        selectRow(browser, 2);
        answerNextModal([&](QDialog* editor) {
            auto* txtName = control<QLineEdit>(editor, QStringLiteral("txtName"));
            txtName->selectAll();
            txtName->insert(name); // any text, as a paste would put it
            control<QPushButton>(editor, QStringLiteral("cmdOK"))->click();
        });
        control<QPushButton>(&browser, QStringLiteral("cmdProperties"))->click();
        QCOMPARE(listOf(browser)->topLevelItem(2)->text(fLibSets::ColName), name);
    }
    saveAndReload();
    fLibSets browser;
    QCOMPARE(columnTexts(browser, fLibSets::ColName), (QStringList{"Factory Default", "before", name, "after"}));
    QCOMPARE(Application().colSetsTemplate().Find(record->ID())->sName(), name);
    QVERIFY(library.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::propertiesRefreshTheRow()
{
    ScriptedLibrary library;
    const auto record = addTemplate(QStringLiteral("Old name"));
    fLibSets browser;
    selectRow(browser, 1);
    QString caption;
    answerNextModal([&](QDialog* editor) {
        caption = editor->windowTitle();
        control<QLineEdit>(editor, QStringLiteral("txtName"))->setText(QStringLiteral("New name"));
        control<QPushButton>(editor, QStringLiteral("cmdCancel"))->click();
    });
    control<QPushButton>(&browser, QStringLiteral("cmdProperties"))->click();
    QCOMPARE(caption, QStringLiteral("Settings #1"));
    // Cancel keeps what was typed: the record and its row show the new name.
    QCOMPARE(record->sName(), QStringLiteral("New name"));
    QCOMPARE(listOf(browser)->topLevelItem(1)->text(fLibSets::ColName), QStringLiteral("New name"));

    // The factory default's properties change nothing in the library.
    selectRow(browser, 0);
    answerNextModal([&](QDialog* editor) {
        caption = editor->windowTitle();
        control<QLineEdit>(editor, QStringLiteral("txtName"))->setText(QStringLiteral("Mine now"));
        control<QPushButton>(editor, QStringLiteral("cmdOK"))->click();
    });
    control<QPushButton>(&browser, QStringLiteral("cmdProperties"))->click();
    QCOMPARE(caption, QStringLiteral("Settings #0"));
    QCOMPARE(Application().colSetsTemplate().Count(), 1);
    fLibSets again;
    QCOMPARE(listOf(again)->topLevelItem(0)->text(fLibSets::ColName), QStringLiteral("Factory Default"));
}

void tst_libraryBrowser::keysWorkWhereverTheFocusIs_data()
{
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("expected"); // used, deleted, properties, nothing

    QTest::newRow("Enter on Close") << "cmdClose" << int(Qt::Key_Return) << int(Qt::NoModifier) << "used";
    QTest::newRow("keypad Enter on Delete") << "cmdDelete" << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << "used";
    QTest::newRow("Delete on Use") << "cmdUse" << int(Qt::Key_Delete) << int(Qt::NoModifier) << "deleted";
    QTest::newRow("Ctrl+P on the list") << "lvwLib" << int(Qt::Key_P) << int(Qt::ControlModifier) << "properties";
    QTest::newRow("Ctrl+P on Close") << "cmdClose" << int(Qt::Key_P) << int(Qt::ControlModifier) << "properties";
    QTest::newRow("Shift+Delete does nothing") << "lvwLib" << int(Qt::Key_Delete) << int(Qt::ShiftModifier) << "nothing";
    QTest::newRow("Ctrl+Enter does nothing") << "lvwLib" << int(Qt::Key_Return) << int(Qt::ControlModifier) << "nothing";
    QTest::newRow("P alone does nothing") << "lvwLib" << int(Qt::Key_P) << int(Qt::NoModifier) << "nothing";
}

void tst_libraryBrowser::keysWorkWhereverTheFocusIs()
{
    QFETCH(QString, focus);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, expected);
    ScriptedLibrary library;
    const auto record = addTemplate(QStringLiteral("A"));
    addTemplate(QStringLiteral("B"));
    fLibSets browser;
    showAndActivate(browser);
    selectRow(browser, 1);
    QWidget* target = control<QWidget>(&browser, focus);
    target->setFocus();
    bool editorShown = false;
    if (expected == QLatin1String("properties")) {
        answerNextModal([&](QDialog* editor) {
            editorShown = editor->objectName() == QLatin1String("fSetsTemplate");
            editor->reject();
        });
    }
    QTest::keyClick(target, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(!browser.isVisible(), expected == QLatin1String("used"));
    QCOMPARE(record->IsDeleted(), expected == QLatin1String("deleted"));
    QCOMPARE(editorShown, expected == QLatin1String("properties"));
    QVERIFY(library.ui.script.errors.isEmpty());
}

void tst_libraryBrowser::rightButtonShowsThePopupMenu()
{
    ScriptedLibrary library;
    const auto record = addTemplate(QStringLiteral("A"));
    fLibSets browser;
    showAndActivate(browser);
    QTreeWidget* list = listOf(browser);
    auto* popup = control<QMenu>(&browser, QStringLiteral("mnuPopup"));
    QVERIFY(!popup->isVisible());
    const QPoint centre = list->visualItemRect(list->topLevelItem(1)).center();
    QTest::mousePress(list->viewport(), Qt::RightButton, {}, centre);
    QVERIFY(!popup->isVisible()); // the menu comes when the button is released
    QTest::mouseRelease(list->viewport(), Qt::RightButton, {}, centre);
    QTRY_VERIFY(popup->isVisible());
    QStringList captions;
    for (QAction* action : popup->actions())
        captions << action->text();
    QCOMPARE(captions, (QStringList{"&Use", "&Delete", "&Properties"}));
    QCOMPARE(selectedName(browser), QStringLiteral("A"));
    popup->hide();
    control<QAction>(&browser, QStringLiteral("mnuDelete"))->trigger();
    QVERIFY(record->IsDeleted());
}

void tst_libraryBrowser::placementIsKept()
{
    ScriptedLibrary library;
    {
        fLibSets browser;
        browser.show();
        QVERIFY(QTest::qWaitForWindowExposed(&browser));
        browser.resize(700, 333);
        control<QPushButton>(&browser, QStringLiteral("cmdClose"))->click();
    }
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
    QVERIFY(store.contains(QStringLiteral("fLibSets/Left")));
    QCOMPARE(qRound(store.value(QStringLiteral("fLibSets/Width")).toDouble()), qRound(mGUISupport::PixelsToTwips(700)));
    fLibSets again;
    QCOMPARE(again.size(), QSize(700, 333));
}

void tst_libraryBrowser::everyControlHasAName()
{
    ScriptedLibrary library;
    addTemplate(QStringLiteral("A"));
    fLibSets browser;
    QCOMPARE(unnamedControls(&browser), QStringList());
    QCOMPARE(accessibleName(control<QPushButton>(&browser, QStringLiteral("cmdUse"))), QStringLiteral("Use"));
    // The list's columns are read by their headers.
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(listOf(browser));
    QVERIFY(list && list->tableInterface());
    QCOMPARE(list->tableInterface()->columnCount(), 10);
    QStringList headers;
    for (int c = 1; c < 10; ++c)
        headers << list->tableInterface()->columnDescription(c);
    QCOMPARE(headers, (QStringList{"#", "Name", "Date", "ROF bps", "ST ms", "DT ms", "CTO ms", "LT ms", "CTC ms"}));
}

void tst_libraryBrowser::mainWindowOpensTheBrowserOnTheActiveSetting()
{
    FreshStart();
    WindowHarness h;
    fTolvaneMan& w = h.open();
    addTemplate(QStringLiteral("Other"));
    const QString active = w.ActiveSetting()->ID();
    QString selectedKey;
    QString owner;
    answerNextModal([&](QDialog* browser) {
        auto* libSets = qobject_cast<fLibSets*>(browser);
        QVERIFY(libSets);
        selectedKey = fLibSets::RowKey(libSets->SelectedRow());
        owner = browser->parentWidget() ? browser->parentWidget()->objectName() : QString();
        control<QPushButton>(browser, QStringLiteral("cmdClose"))->click();
    });
    control<QPushButton>(&w, QStringLiteral("cmdTools(2)"))->click();
    QCOMPARE(selectedKey, active);
    QCOMPARE(owner, QStringLiteral("fTolvaneMan"));
    // The same from the Function menu.
    bool shown = false;
    answerNextModal([&](QDialog* browser) {
        shown = browser->windowTitle() == QLatin1String("Tolvane Library - Settings");
        browser->reject();
    });
    control<QAction>(&w, QStringLiteral("mnuLibTemplates"))->trigger();
    QVERIFY(shown);
    QVERIFY(h.ui.script.errors.isEmpty());
}

QTEST_MAIN(tst_libraryBrowser)
#include "tst_libraryBrowser.moc"
