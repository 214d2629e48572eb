// The property editor: its pages, edits that go into the record as typed (so Cancel keeps them),
// the user variables with their dialog, the variable binder, and Properties in the main window.
#include "DialogTestSupport.h"

#include "gui/library/cifUserVar.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/fUserVariable.h"
#include "gui/library/ucSetsTemplateBasic.h"
#include "gui/library/ucUserVariables.h"
#include "library/cApplication.h"
#include "shell/mMain.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTreeWidget>
#include <QtTest>

using namespace guitest;
using mMain::Application;

namespace {

QStringList rowsOf(QTreeWidget* list)
{
    QStringList rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows << list->topLevelItem(i)->text(0) + QLatin1Char('=') + list->topLevelItem(i)->text(1);
    return rows;
}

QString selectedVariable(QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> selected = list->selectedItems();
    return selected.isEmpty() ? QStringLiteral("(none)") : selected.first()->text(0);
}

void selectRow(QTreeWidget* list, int index)
{
    list->setCurrentItem(list->topLevelItem(index));
    list->topLevelItem(index)->setSelected(true);
}

// Answers the next fUserVariable: types name and value when given, then OK or Cancel.
void answerVariable(bool ok, const QString& name, const QString& value, QStringList* shown = nullptr)
{
    answerNextModal([=](QDialog* dialog) {
        auto* txtVarName = control<QLineEdit>(dialog, QStringLiteral("txtVarName"));
        auto* txtValue = control<QLineEdit>(dialog, QStringLiteral("txtValue"));
        if (shown)
            *shown << dialog->windowTitle() << txtVarName->text() << txtValue->text();
        if (!name.isNull())
            txtVarName->setText(name);
        if (!value.isNull())
            txtValue->setText(value);
        control<QPushButton>(dialog, ok ? QStringLiteral("cmdOK") : QStringLiteral("cmdCancel"))->click();
    });
}

const QStringList kDefaults = {"Name=", "Date=", "Temperature=", "Humidity=", "Sun=", "Barrel=", "Paint="};

} // namespace

class tst_propertyEditor : public QObject {
    Q_OBJECT
private slots:
    void captionAndPages();
    void basicPageShowsTheRecord();
    void editsStayWhateverButtonCloses_data();
    void editsStayWhateverButtonCloses();
    void listsTheVariables();
    void addingAVariable_data();
    void addingAVariable();
    void editingAVariable_data();
    void editingAVariable();
    void removingSelectsTheNeighbour_data();
    void removingSelectsTheNeighbour();
    void removedVariableLeavesTheFileAtTheNextSave();
    void variableDialog();
    void variableBinder();
    void everyControlHasAName();
    void mainWindowPropertiesFollowTheName();
};

void tst_propertyEditor::captionAndPages()
{
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    fSetsTemplate editor;
    editor.Open(record, QStringLiteral("3"));
    QCOMPARE(editor.windowTitle(), QStringLiteral("Settings #3"));
    auto* tabs = control<QTabBar>(&editor, QStringLiteral("tbsSettings"));
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QStringLiteral("Basic information"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("User variables"));
    QCOMPARE(tabs->currentIndex(), 0);
    QVERIFY(qobject_cast<ucSetsTemplateBasic*>(editor.Page()));

    // Each tab makes its page afresh; only one page is there at a time.
    tabs->setCurrentIndex(1);
    QVERIFY(qobject_cast<ucUserVariables*>(editor.Page()));
    QCOMPARE(editor.findChildren<ucSetsTemplateBasic*>().size(), 0);
    tabs->setCurrentIndex(0);
    QCOMPARE(editor.findChildren<ucUserVariables*>().size(), 0);
    QCOMPARE(editor.findChildren<ucSetsTemplateBasic*>().size(), 1);

    // Opening again starts on the basic page.
    tabs->setCurrentIndex(1);
    editor.Open(record, QStringLiteral("7"));
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(editor.windowTitle(), QStringLiteral("Settings #7"));
}

void tst_propertyEditor::basicPageShowsTheRecord()
{
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    record->setsName(QStringLiteral("Cold morning"));
    record->setdtDate(QDateTime(QDate(2023, 11, 4), QTime(9, 30)));
    record->setlShotTime(4);
    record->setlDwellTime(12);
    record->setlCycleTimeOpen(33);
    record->setlLoadTime(40);
    record->setlCycleTimeClose(15);
    fSetsTemplate editor;
    editor.Open(record, QStringLiteral("1"));
    QWidget* page = editor.Page();
    QCOMPARE(control<QLineEdit>(page, QStringLiteral("txtName"))->text(), QStringLiteral("Cold morning"));
    QCOMPARE(control<QDateEdit>(page, QStringLiteral("dtpDate"))->date(), QDate(2023, 11, 4));
    QStringList values;
    for (const char* name : {"lblST", "lblDT", "lblCTO", "lblLT", "lblCTC", "lblROF"})
        values << control<QLabel>(page, QLatin1String(name))->text();
    // 1000 / (12 + 33 + 40 + 15) = 10.0
    QCOMPARE(values, (QStringList{"4", "12", "33", "40", "15", "10.0"}));
    // Showing changes nothing: the time of day stays with the date.
    QCOMPARE(record->dtDate(), QDateTime(QDate(2023, 11, 4), QTime(9, 30)));
    QCOMPARE(record->sName(), QStringLiteral("Cold morning"));
}

void tst_propertyEditor::editsStayWhateverButtonCloses_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("OK") << "cmdOK";
    QTest::newRow("Cancel") << "cmdCancel";
}

void tst_propertyEditor::editsStayWhateverButtonCloses()
{
    QFETCH(QString, button);
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    record->setsName(QStringLiteral("Before"));
    record->setdtDate(QDateTime(QDate(2020, 5, 5), QTime(0, 0)));
    for (int save = 0; save < 2; ++save) { // made, then written again as changed after it was made
        QSqlDatabase connection;
        Application().colSetsTemplate().Save(connection);
    }
    QVERIFY(!record->IsDirty());
    fSetsTemplate editor;
    editor.Open(record, QStringLiteral("1"));
    editor.show();
    auto* txtName = control<QLineEdit>(editor.Page(), QStringLiteral("txtName"));
    txtName->selectAll();
    QTest::keyClicks(txtName, QStringLiteral("After"));
    QCOMPARE(record->sName(), QStringLiteral("After")); // as it is typed
    control<QDateEdit>(editor.Page(), QStringLiteral("dtpDate"))->setDate(QDate(2021, 6, 30));
    control<QPushButton>(&editor, button)->click();
    QVERIFY(!editor.isVisible());
    QCOMPARE(record->sName(), QStringLiteral("After"));
    QCOMPARE(record->dtDate().date(), QDate(2021, 6, 30));
    QVERIFY(record->IsDirty());
    QVERIFY(Application().AnythingNeedSave());
}

void tst_propertyEditor::listsTheVariables()
{
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    record->colUserVar().Item(4)->setsValue(QStringLiteral("14\" \"Freak\""));
    ucUserVariables page;
    page.setSetting(record);
    auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
    QCOMPARE(list->headerItem()->text(0), QStringLiteral("Name"));
    QCOMPARE(list->headerItem()->text(1), QStringLiteral("Value"));
    QStringList expected = kDefaults;
    expected[3] = QStringLiteral("Humidity=14\" \"Freak\"");
    QCOMPARE(rowsOf(list), expected);
    QCOMPARE(list->topLevelItem(2)->data(0, Qt::UserRole).toString(), record->colUserVar().Item(3)->ID());
}

void tst_propertyEditor::addingAVariable_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("ok");
    QTest::newRow("button, OK") << "cmdAdd" << true;
    QTest::newRow("button, Cancel") << "cmdAdd" << false;
    QTest::newRow("menu, OK") << "mnuAdd" << true;
    QTest::newRow("menu, Cancel") << "mnuAdd" << false;
}

void tst_propertyEditor::addingAVariable()
{
    QFETCH(QString, how);
    QFETCH(bool, ok);
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    ucUserVariables page;
    page.setSetting(record);
    auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
    QStringList shown;
    answerVariable(ok, QStringLiteral("Wind"), QStringLiteral("3 m/s \"gusty\""), &shown);
    if (how.startsWith(QLatin1String("cmd")))
        control<QPushButton>(&page, how)->click();
    else
        control<QAction>(&page, how)->trigger();
    QCOMPARE(shown, (QStringList{"User variable", "", ""}));
    QStringList expected = kDefaults;
    if (ok)
        expected << QStringLiteral("Wind=3 m/s \"gusty\"");
    QCOMPARE(rowsOf(list), expected);
    QCOMPARE(record->colUserVar().Count(), ok ? 8 : 7);
    if (ok) {
        const auto added = record->colUserVar().Item(8);
        QCOMPARE(added->sName(), QStringLiteral("Wind"));
        QCOMPARE(added->sValue(), QStringLiteral("3 m/s \"gusty\""));
        QCOMPARE(added->ParentID(), record->ID());
        QCOMPARE(selectedVariable(list), QStringLiteral("Wind"));
    }
    QVERIFY(library.ui.script.errors.isEmpty());
}

void tst_propertyEditor::editingAVariable_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("ok");
    QTest::newRow("button, OK") << "cmdEdit" << true;
    QTest::newRow("menu, OK") << "mnuEdit" << true;
    QTest::newRow("double-click, OK") << "double-click" << true;
    QTest::newRow("double-click, Cancel") << "double-click" << false;
}

void tst_propertyEditor::editingAVariable()
{
    QFETCH(QString, how);
    QFETCH(bool, ok);
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    const auto barrel = record->colUserVar().Item(6);
    barrel->setsValue(QStringLiteral("12\""));
    ucUserVariables page;
    page.setSetting(record);
    page.resize(400, 300);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
    selectRow(list, 5);
    QStringList shown;
    answerVariable(ok, QStringLiteral("Barrel length"), QStringLiteral("14\""), &shown);
    if (how == QLatin1String("double-click")) {
        selectRow(list, 0);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(5)).center());
    } else if (how.startsWith(QLatin1String("cmd"))) {
        control<QPushButton>(&page, how)->click();
    } else {
        control<QAction>(&page, how)->trigger();
    }
    QCOMPARE(shown, (QStringList{"User variable", "Barrel", "12\""}));
    QCOMPARE(barrel->sName(), ok ? QStringLiteral("Barrel length") : QStringLiteral("Barrel"));
    QCOMPARE(barrel->sValue(), ok ? QStringLiteral("14\"") : QStringLiteral("12\""));
    QCOMPARE(list->topLevelItem(5)->text(0), barrel->sName());
    QCOMPARE(list->topLevelItem(5)->text(1), barrel->sValue());
    QCOMPARE(record->colUserVar().Count(), 7);
}

void tst_propertyEditor::removingSelectsTheNeighbour_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("selected");
    QTest::newRow("first, button") << "cmdRemove" << 0 << "Date";
    QTest::newRow("middle, menu") << "mnuRemove" << 3 << "Sun";
    QTest::newRow("last, button") << "cmdRemove" << 6 << "Barrel";
}

void tst_propertyEditor::removingSelectsTheNeighbour()
{
    QFETCH(QString, how);
    QFETCH(int, row);
    QFETCH(QString, selected);
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    const auto removed = record->colUserVar().Item(row + 1);
    ucUserVariables page;
    page.setSetting(record);
    auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
    selectRow(list, row);
    if (how.startsWith(QLatin1String("cmd")))
        control<QPushButton>(&page, how)->click();
    else
        control<QAction>(&page, how)->trigger();
    QStringList expected = kDefaults;
    expected.removeAt(row);
    QCOMPARE(rowsOf(list), expected);
    QCOMPARE(selectedVariable(list), selected);
    QVERIFY(removed->IsDeleted());
    QVERIFY(library.ui.script.questions.isEmpty());
    // Opened again before the library is saved, the page does not show it.
    ucUserVariables again;
    again.setSetting(record);
    QCOMPARE(rowsOf(control<QTreeWidget>(&again, QStringLiteral("lvwUserVariables"))), expected);
}

void tst_propertyEditor::removedVariableLeavesTheFileAtTheNextSave()
{
    ScriptedLibrary library;
    const QString id = Application().colSetsTemplate().Add()->ID();
    {
        QSqlDatabase connection;
        Application().colSetsTemplate().Save(connection);
    }
    const auto record = Application().colSetsTemplate().Find(id);
    ucUserVariables page;
    page.setSetting(record);
    auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
    selectRow(list, 2);
    control<QPushButton>(&page, QStringLiteral("cmdRemove"))->click();
    QCOMPARE(record->colUserVar().Count(), 7); // until the save
    {
        QSqlDatabase connection;
        Application().colSetsTemplate().Save(connection);
    }
    QCOMPARE(record->colUserVar().Count(), 6);
    mMain::ReleaseApplication();
    const auto reloaded = Application().colSetsTemplate().Find(id);
    QVERIFY(reloaded);
    QStringList names;
    for (const auto& variable : reloaded->colUserVar())
        names << variable->sName();
    names.sort();
    QCOMPARE(names, (QStringList{"Barrel", "Date", "Humidity", "Name", "Paint", "Sun"}));
}

void tst_propertyEditor::variableDialog()
{
    fUserVariable dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("User variable"));
    dialog.setVarName(QStringLiteral("Paint"));
    dialog.setValue(QStringLiteral("Draxxus \"Hellfire\""));
    QCOMPARE(control<QLineEdit>(&dialog, QStringLiteral("txtVarName"))->text(), QStringLiteral("Paint"));
    QCOMPARE(control<QLineEdit>(&dialog, QStringLiteral("txtValue"))->text(), QStringLiteral("Draxxus \"Hellfire\""));
    control<QLineEdit>(&dialog, QStringLiteral("txtValue"))->setText(QStringLiteral("other"));
    QCOMPARE(dialog.Value(), QStringLiteral("other"));
    QVERIFY(!dialog.OK());
    control<QPushButton>(&dialog, QStringLiteral("cmdOK"))->click();
    QVERIFY(dialog.OK());
    fUserVariable cancelled;
    control<QPushButton>(&cancelled, QStringLiteral("cmdCancel"))->click();
    QVERIFY(!cancelled.OK());
    QCOMPARE(unnamedControls(&dialog), QStringList());
    QCOMPARE(accessibleName(control<QLineEdit>(&dialog, QStringLiteral("txtVarName"))), QStringLiteral("Name"));
    QCOMPARE(accessibleName(control<QLineEdit>(&dialog, QStringLiteral("txtValue"))), QStringLiteral("Value"));
}

void tst_propertyEditor::variableBinder()
{
    QLineEdit name;
    QLineEdit value;
    cifUserVar binder(&name, &value);
    QSignalSpy nameChanged(&binder, &cifUserVar::txtsNameChange);
    QSignalSpy valueChanged(&binder, &cifUserVar::txtsValueChange);
    // No variable bound: edits are ignored.
    name.setText(QStringLiteral("ignored"));
    QCOMPARE(nameChanged.count(), 0);

    auto variable = std::make_shared<cUserVar>();
    variable->setsName(QStringLiteral("Sun"));
    variable->setsValue(QStringLiteral("bright"));
    variable->setIsNew(false);
    variable->setIsDirtySelf(false);
    binder.setUserVar(variable);
    QVERIFY(!variable->IsDirtySelf()); // filling the boxes changes nothing
    QCOMPARE(name.text(), QStringLiteral("Sun"));
    QCOMPARE(value.text(), QStringLiteral("bright"));
    value.setText(QStringLiteral("overcast"));
    QCOMPARE(variable->sValue(), QStringLiteral("overcast"));
    QCOMPARE(valueChanged.count(), 2); // filling, then typing
    QVERIFY(variable->IsDirtySelf());
    name.setText(QStringLiteral("Sky"));
    QCOMPARE(variable->sName(), QStringLiteral("Sky"));
    binder.setUserVar(nullptr);
    name.setText(QStringLiteral("after unbinding"));
    QCOMPARE(variable->sName(), QStringLiteral("Sky"));
}

void tst_propertyEditor::everyControlHasAName()
{
    ScriptedLibrary library;
    const auto record = Application().colSetsTemplate().Add();
    fSetsTemplate editor;
    editor.Open(record, QStringLiteral("1"));
    QCOMPARE(unnamedControls(&editor), QStringList());
    QCOMPARE(accessibleName(control<QLineEdit>(&editor, QStringLiteral("txtName"))), QStringLiteral("Name"));
    QCOMPARE(accessibleName(control<QLabel>(&editor, QStringLiteral("lblROF"))), QStringLiteral("Rate of fire"));
    control<QTabBar>(&editor, QStringLiteral("tbsSettings"))->setCurrentIndex(1);
    QCOMPARE(unnamedControls(&editor), QStringList());
}

void tst_propertyEditor::mainWindowPropertiesFollowTheName()
{
    FreshStart();
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QVERIFY(w.windowTitle().endsWith(QLatin1String("[Untitled]")));
    QString caption;
    answerNextModal([&](QDialog* editor) {
        caption = editor->windowTitle();
        control<QLineEdit>(editor, QStringLiteral("txtName"))->setText(QStringLiteral("Rainy Sunday"));
        control<QPushButton>(editor, QStringLiteral("cmdCancel"))->click();
    });
    control<QPushButton>(&w, QStringLiteral("cmdTools(4)"))->click();
    QCOMPARE(caption, QStringLiteral("Settings #1"));
    QCOMPARE(w.windowTitle(), QStringLiteral("Tolvane Interface Programme [Rainy Sunday]"));
    QCOMPARE(w.ActiveSetting()->sName(), QStringLiteral("Rainy Sunday"));
    QVERIFY(h.ui.script.errors.isEmpty());
}

QTEST_MAIN(tst_propertyEditor)
#include "tst_propertyEditor.moc"
