// The property editor: its pages, the record shown and edits that go into it as typed (so Cancel
// keeps them), the user variables with their dialog, and the binder of one variable to two boxes.
#include "GuiTestSupport.h"

#include "gui/library/cifUserVar.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/ucSetsTemplateBasic.h"
#include "gui/library/ucUserVariables.h"

#include <QDateEdit>
#include <QSignalSpy>
#include <QTabBar>

using namespace guitest;

namespace {

QStringList rowsOf(QTreeWidget* list)
{
    QStringList rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows << list->topLevelItem(i)->text(0) + QLatin1Char('=') + list->topLevelItem(i)->text(1);
    return rows;
}

QStringList rowsOf(ucUserVariables& page)
{
    return rowsOf(control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables")));
}

QString selectedVariable(QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> selected = list->selectedItems();
    return selected.isEmpty() ? QStringLiteral("(none)") : selected.first()->text(0);
}

// A command on the user variables: how it is given (a command, or a double-click on the row),
// the row selected first or double-clicked, how the variable dialog is closed, what the dialog
// showed first ("-": no dialog), the rows afterwards ("name=value") and the row selected then
// ("": not looked at).
struct VariableCommand {
    QString how;
    int row;
    bool ok;
    QString prefilled;
    QStringList rows;
    QString selected;
};

} // namespace

class tst_propertyEditor : public QObject {
    Q_OBJECT
private slots:
    void pagesAndCaption()
    {
        ScriptedLibrary library;
        const auto record = library.app().colSetsTemplate().Add();
        fSetsTemplate editor;
        editor.Open(record, QStringLiteral("3"));
        QCOMPARE(editor.windowTitle(), QStringLiteral("Settings #3"));
        auto* tabs = control<QTabBar>(&editor, QStringLiteral("tbsSettings"));
        QCOMPARE(tabs->currentIndex(), 0);
        QVERIFY(qobject_cast<ucSetsTemplateBasic*>(editor.Page()));
        tabs->setCurrentIndex(1);
        QVERIFY(qobject_cast<ucUserVariables*>(editor.Page()));
        // Opening again starts on the basic page.
        editor.Open(record, QStringLiteral("7"));
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(editor.windowTitle(), QStringLiteral("Settings #7"));
    }
    // The basic page shows the record; what is typed goes into it at once, so that even Cancel keeps
    // it (the name through either button is the library browser's test).
    void basicPageShowsAndEditsTheRecord()
    {
        ScriptedLibrary library;
        const auto record = library.app().colSetsTemplate().Add();
        record->setsName(QStringLiteral("Cold morning"));
        record->setdtDate(QDateTime(QDate(2023, 11, 4), QTime(9, 30)));
        record->setlShotTime(4);
        record->setlDwellTime(12);
        record->setlCycleTimeOpen(33);
        record->setlLoadTime(40);
        record->setlCycleTimeClose(15);
        for (int save = 0; save < 2; ++save) { // made, then written again as changed after it was made
            QSqlDatabase connection;
            library.app().colSetsTemplate().Save(connection);
        }
        QVERIFY(!record->IsDirty());
        fSetsTemplate editor;
        editor.Open(record, QStringLiteral("1"));
        editor.show();
        QWidget* page = editor.Page();
        QCOMPARE(text(page, QStringLiteral("txtName")), QStringLiteral("Cold morning"));
        QCOMPARE(control<QDateEdit>(page, QStringLiteral("dtpDate"))->date(), QDate(2023, 11, 4));
        QStringList values;
        for (const char* name : {"lblST", "lblDT", "lblCTO", "lblLT", "lblCTC", "lblROF"})
            values << control<QLabel>(page, QLatin1String(name))->text();
        // 1000 / (12 + 33 + 40 + 15) = 10.0
        QCOMPARE(values, (QStringList{"4", "12", "33", "40", "15", "10.0"}));
        // Showing changes nothing: the time of day stays with the date.
        QCOMPARE(record->dtDate(), QDateTime(QDate(2023, 11, 4), QTime(9, 30)));
        QVERIFY(!record->IsDirty());

        type(page, QStringLiteral("txtName"), QStringLiteral("After"));
        QCOMPARE(record->sName(), QStringLiteral("After")); // as it is typed
        control<QDateEdit>(page, QStringLiteral("dtpDate"))->setDate(QDate(2021, 6, 30));
        run(&editor, QStringLiteral("cmdCancel"));
        QVERIFY(!editor.isVisible());
        QCOMPARE(record->sName(), QStringLiteral("After"));
        QCOMPARE(record->dtDate().date(), QDate(2021, 6, 30));
        QVERIFY(record->IsDirty());
        QVERIFY(library.app().AnythingNeedSave());
    }
    void userVariableCommands_data()
    {
        QTest::addColumn<VariableCommand>("variableCommand");

        // The dialog is answered with Wind and 3 m/s "gusty".
        const QStringList vars = {"Name=", "Date=", "Temperature=", "Humidity=", "Sun=", "Barrel=12\"", "Paint="};
        const QString wind = QStringLiteral("Wind=3 m/s \"gusty\"");
        const auto with = [&](int row, const QString& text) {
            QStringList rows = vars;
            if (text.isEmpty())
                rows.removeAt(row);
            else
                rows[row] = text;
            return rows;
        };
        QTest::newRow("add, button, OK") << VariableCommand{"cmdAdd", 0, true, "=", vars + QStringList{wind}, "Wind"};
        QTest::newRow("add, Cancel: nothing added") << VariableCommand{"cmdAdd", 0, false, "=", vars, "Name"};
        QTest::newRow("edit, button, OK") << VariableCommand{"cmdEdit", 5, true, "Barrel=12\"", with(5, wind), "Wind"};
        QTest::newRow("edit, menu, OK") << VariableCommand{"mnuEdit", 5, true, "Barrel=12\"", with(5, wind), "Wind"};
        QTest::newRow("edit, double-click, OK") << VariableCommand{"double-click", 5, true, "Barrel=12\"", with(5, wind), ""};
        QTest::newRow("remove first, button: the next") << VariableCommand{"cmdRemove", 0, true, "-", with(0, ""), "Date"};
        QTest::newRow("remove middle, menu: the next") << VariableCommand{"mnuRemove", 3, true, "-", with(3, ""), "Sun"};
        QTest::newRow("remove last, button: the new last") << VariableCommand{"cmdRemove", 6, true, "-", with(6, ""), "Barrel"};
    }
    void userVariableCommands()
    {
        QFETCH(VariableCommand, variableCommand);
        const auto& [how, row, ok, prefilled, rows, selected] = variableCommand;
        ScriptedLibrary library;
        const auto record = library.app().colSetsTemplate().Add();
        record->colUserVar().Item(6)->setsValue(QStringLiteral("12\""));
        ucUserVariables page;
        page.setSetting(record);
        page.resize(400, 300);
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        auto* list = control<QTreeWidget>(&page, QStringLiteral("lvwUserVariables"));
        selectRow(list, row);
        QString shown = QStringLiteral("-");
        if (prefilled != QLatin1String("-")) {
            answerNextModal([&](QDialog* dialog) {
                shown = text(dialog, QStringLiteral("txtVarName")) + QLatin1Char('=') + text(dialog, QStringLiteral("txtValue"));
                control<QLineEdit>(dialog, QStringLiteral("txtVarName"))->setText(QStringLiteral("Wind"));
                control<QLineEdit>(dialog, QStringLiteral("txtValue"))->setText(QStringLiteral("3 m/s \"gusty\""));
                run(dialog, ok ? QStringLiteral("cmdOK") : QStringLiteral("cmdCancel"));
            });
        }
        if (how == QLatin1String("double-click")) {
            selectRow(list, 0); // the row under the pointer counts
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(row)).center());
        } else {
            run(&page, how);
        }
        QCOMPARE(shown, prefilled);
        QCOMPARE(rowsOf(list), rows);
        if (!selected.isEmpty())
            QCOMPARE(selectedVariable(list), selected);
        // The record holds what the list shows: a page opened again before any save shows the same;
        // a removed variable is only marked until the save, which writes what the list showed.
        ucUserVariables again;
        again.setSetting(record);
        QCOMPARE(rowsOf(again), rows);
        QCOMPARE(record->colUserVar().Item(record->colUserVar().Count())->ParentID(), record->ID());
        QCOMPARE(record->colUserVar().Count(), rows.size() > 7 ? 8 : 7);
        QSqlDatabase connection;
        library.app().colSetsTemplate().Save(connection);
        library.program.restart();
        ucUserVariables reloaded;
        reloaded.setSetting(library.app().colSetsTemplate().Find(record->ID()));
        QStringList saved = rowsOf(reloaded), expected = rows;
        saved.sort();
        expected.sort();
        QCOMPARE(saved, expected);
        QVERIFY(library.ui.script.questions.isEmpty());
        GUITEST_NO_ERRORS(library.ui.script);
    }
    // The binder stores every edit of its boxes into the bound variable at once and tells so;
    // filling the boxes from a variable changes nothing, and unbound, edits go nowhere.
    void variableBinder()
    {
        QLineEdit name;
        QLineEdit value;
        cifUserVar binder(&name, &value);
        QSignalSpy nameChanged(&binder, &cifUserVar::txtsNameChange);
        QSignalSpy valueChanged(&binder, &cifUserVar::txtsValueChange);
        name.setText(QStringLiteral("ignored"));
        QCOMPARE(nameChanged.count(), 0);
        auto variable = std::make_shared<cUserVar>();
        variable->setsName(QStringLiteral("Sun"));
        variable->setsValue(QStringLiteral("bright"));
        variable->setIsNew(false);
        variable->setIsDirtySelf(false);
        binder.setUserVar(variable);
        QVERIFY(!variable->IsDirtySelf());
        QCOMPARE(name.text(), QStringLiteral("Sun"));
        value.setText(QStringLiteral("overcast"));
        QCOMPARE(variable->sValue(), QStringLiteral("overcast"));
        QCOMPARE(valueChanged.count(), 2); // filling, then typing
        QVERIFY(variable->IsDirtySelf());
        binder.setUserVar(nullptr);
        name.setText(QStringLiteral("after unbinding"));
        QCOMPARE(variable->sName(), QStringLiteral("Sun"));
    }
};

QTEST_MAIN(tst_propertyEditor)
#include "tst_propertyEditor.moc"
