// What a screen reader and a keyboard user get in the windows of the desktop program. A walk over
// each window's accessibility tree: every control a user can reach has a name, every value the
// window shows (labels, boxes, lists, the battery, progress) is exposed to the screen reader, and
// every control that takes the focus shows that it has it. Beside the walk: the names are those
// of the captions, value labels are described by theirs, and the library's columns are read by
// their headers.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "gui/grip/fBuildInfo.h"
#include "gui/grip/fCompareGrip.h"
#include "gui/grip/fGripHistory.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/fUserVariable.h"
#include "gui/link/fCommConsole.h"
#include "gui/shell/ErrorWindow.h"
#include "gui/shell/Main.h"
#include "gui/shell/fLibSets.h"
#include "gui/shell/fOptions.h"
#include "gui/widgets/fAbout.h"
#include "gui/widgets/ucIProgress.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTabBar>

using namespace guitest;

namespace {

// Makes the window of that kind over a library with one setting: the main window (after a get, or
// during a firmware transfer, after the slash), a page of the property editor after the slash, or
// any other, owned by owned.
QWidget* makeWindow(const QString& kind, WindowHarness& h, std::unique_ptr<QWidget>& owned)
{
    fTolvaneMan& main = h.open(kind.startsWith(QLatin1String("fTolvaneMan")));
    const auto setting = h.app().colSetsTemplate().Add();
    if (kind == QLatin1String("fTolvaneMan/get")) {
        run(&main, QStringLiteral("cmdTools(0)"));
        return &main;
    }
    if (kind == QLatin1String("fTolvaneMan/transfer")) {
        // A firmware transfer shows its progress in the status bar, and its step beside it.
        main.StartProgressBar(64);
        main.SetProgressValue(24);
        main.SetPanelText(fTolvaneMan::kPanelStep, QStringLiteral("Writing block 24 of 64"));
        return &main;
    }
    if (kind == QLatin1String("fTolvaneMan"))
        return &main;
    if (kind == QLatin1String("fLibSets"))
        owned = std::make_unique<fLibSets>(h.app());
    else if (kind.startsWith(QLatin1String("fSetsTemplate"))) {
        auto editor = std::make_unique<fSetsTemplate>();
        editor->Open(setting, QStringLiteral("1"));
        control<QTabBar>(editor.get(), QStringLiteral("tbsSettings"))->setCurrentIndex(kind.endsWith(QLatin1String("User")) ? 1 : 0);
        owned = std::move(editor);
    } else if (kind == QLatin1String("fUserVariable"))
        owned = std::make_unique<fUserVariable>();
    else if (kind == QLatin1String("fOptions"))
        owned = std::make_unique<fOptions>(h.grip.session.GunInfo(), h.prefs());
    else if (kind == QLatin1String("fCommConsole"))
        owned = std::make_unique<fCommConsole>();
    else if (kind == QLatin1String("fBuildInfo"))
        owned = std::make_unique<fBuildInfo>(h.grip.session.GunInfo());
    else if (kind == QLatin1String("fAbout"))
        owned = std::make_unique<fAbout>();
    else if (kind == QLatin1String("fCompareGrip"))
        owned = std::make_unique<fCompareGrip>(differingComparison(), h.prefs());
    else if (kind == QLatin1String("fGripHistory"))
        owned = std::make_unique<fGripHistory>(h.grip.session, h.prefs());
    else
        owned = std::make_unique<ErrorWindow>(MarloError(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MSG_DL_GUNINFO),
                                              mErrCodes::HELP_TIMEOUT, QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
    owned->show();
    return owned.get();
}

const char* const kWindows[] = {"fTolvaneMan", "fTolvaneMan/get", "fTolvaneMan/transfer", "fLibSets",
                                "fSetsTemplate/Basic", "fSetsTemplate/User", "fUserVariable", "fOptions",
                                "fCommConsole", "fBuildInfo", "fAbout", "ErrorWindow", "fCompareGrip", "fGripHistory"};

void addWindowRows()
{
    QTest::addColumn<QString>("window");
    for (const char* window : kWindows)
        QTest::newRow(window) << QString::fromLatin1(window);
}

// The texts of the interface and of everything below it.
QStringList exposedTexts(QAccessibleInterface* face)
{
    QStringList texts{face->text(QAccessible::Name), face->text(QAccessible::Value)};
    if (QAccessibleTextInterface* text = face->textInterface())
        texts << text->text(0, text->characterCount());
    if (QAccessibleValueInterface* value = face->valueInterface())
        texts << value->currentValue().toString();
    for (int i = 0; i < face->childCount(); ++i)
        if (QAccessibleInterface* child = face->child(i))
            texts << exposedTexts(child);
    return texts;
}

// What the widget shows a sighted user as its value or caption, one text for each thing shown;
// nothing for a widget that shows no text of its own.
QStringList shownTexts(QWidget* widget)
{
    QStringList shown;
    if (auto* label = qobject_cast<QLabel*>(widget))
        shown << QString(label->text()).remove(QLatin1Char('&'));
    else if (auto* edit = qobject_cast<QLineEdit*>(widget))
        shown << edit->text();
    else if (auto* text = qobject_cast<QPlainTextEdit*>(widget))
        shown << text->toPlainText();
    else if (auto* spin = qobject_cast<QAbstractSpinBox*>(widget))
        shown << spin->text();
    else if (auto* combo = qobject_cast<QComboBox*>(widget))
        shown << combo->currentText();
    else if (auto* progress = qobject_cast<QProgressBar*>(widget))
        shown << QString::number(progress->value()); // read as a share of the range, as the bar shows it
    else if (auto* battery = qobject_cast<ucIProgress*>(widget))
        shown << battery->ValueText();
    else if (auto* tree = qobject_cast<QTreeWidget*>(widget)) {
        for (int row = 0; row < tree->topLevelItemCount(); ++row)
            for (int column = 0; column < tree->columnCount(); ++column)
                if (!tree->isColumnHidden(column))
                    shown << tree->topLevelItem(row)->text(column);
    } else if (auto* tabs = qobject_cast<QTabBar*>(widget)) {
        for (int i = 0; i < tabs->count(); ++i)
            shown << QString(tabs->tabText(i)).remove(QLatin1Char('&'));
    }
    shown.removeAll(QString());
    return shown;
}

// The visible widgets of the window whose shown texts a screen reader cannot read, as
// "name: text".
QStringList unexposedValues(QWidget* window)
{
    QStringList faults;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(window) || qobject_cast<QComboBox*>(widget->parentWidget())
            || qobject_cast<QAbstractSpinBox*>(widget->parentWidget()))
            continue;
        const QStringList shown = shownTexts(widget);
        if (shown.isEmpty())
            continue;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        const QStringList exposed = face ? exposedTexts(face) : QStringList();
        for (const QString& text : shown)
            if (!exposed.contains(text))
                faults << widget->objectName() + QStringLiteral(": ") + text;
    }
    return faults;
}

// The controls a user reaches with Tab that look the same with the focus as without it.
QStringList focusNotShown(QWidget* window)
{
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window))
        return {QStringLiteral("(the window could not be activated)")};
    // As after a Tab: the style marks the focus of the keyboard.
    window->setAttribute(Qt::WA_KeyboardFocusChange);
    QStringList faults;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisibleTo(window) || !widget->isEnabled()
            || widget->focusProxy() || qobject_cast<QComboBox*>(widget->parentWidget())
            || qobject_cast<QAbstractSpinBox*>(widget->parentWidget()))
            continue;
        widget->clearFocus();
        const QImage without = widget->grab().toImage();
        widget->setFocus(Qt::TabFocusReason);
        const QImage with = widget->grab().toImage();
        if (!widget->hasFocus() || with == without)
            faults << widget->objectName();
    }
    return faults;
}

} // namespace

class tst_accessibility : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { mMain::SetUpWindows(); }
    void init() { FreshStart(); }
    void everyReachableControlHasAName_data() { addWindowRows(); }
    void everyReachableControlHasAName()
    {
        QFETCH(QString, window);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QCOMPARE(unnamedControls(makeWindow(window, h, owned)), QStringList());
        GUITEST_NO_ERRORS(h.ui.script);
    }
    void everyValueShownIsExposed_data() { addWindowRows(); }
    void everyValueShownIsExposed()
    {
        QFETCH(QString, window);
        WindowHarness h(QStringLiteral("firmware=4.0.5,serial=AB12345678"));
        std::unique_ptr<QWidget> owned;
        QCOMPARE(unexposedValues(makeWindow(window, h, owned)).join(QStringLiteral(", ")), QString());
    }
    void everyFocusIsShown_data() { addWindowRows(); }
    void everyFocusIsShown()
    {
        QFETCH(QString, window);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QCOMPARE(focusNotShown(makeWindow(window, h, owned)).join(QStringLiteral(", ")), QString());
    }
    void namesAreTheCaptions_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QStringList>("names"); // "control|name read"
        // A text box, up-down or slider is read by its caption label, a button or check box by its
        // caption without the accelerator.
        QTest::newRow("main window") << "fTolvaneMan" << QStringList{
            "txtTimingST|Shot", "updST|Shot", "sldST|Shot", "txtTimingDT|Dwell", "sldDT|Dwell", "txtTimingCTO|Open",
            "updCTO|Open", "txtTimingLT|Load", "sldLT|Load", "txtTimingCTC|Close", "updCTC|Close",
            "cboFiringModes|Firing mode:", "cboHyperModes|Ramping Mode :", "chkExpert|Expert Mode", "chkCopyCTO|Close = Open",
            "chkAlertOne|Sound alert 60 sec. before game end", "cmdTools(0)|Get", "cmdTools(4)|Properties",
            "cmdTools(6)|Default settings", "txtEyeCheckMax|Eye Check Max", "updEyeOKMax|Eye OK Max",
            "txtDefaultLoadTime|Max ROF in ms", "txtShots|Shots before ramping", "txtCounters(0)|Counter 1 is at",
            "txtCounters(2)|Total is at", "cmdReset(1)|Reset", "txtCntDown|Counting down from", "ucIProgress1|Battery",
            "pgbProgress|Progress"};
        QTest::newRow("library browser") << "fLibSets" << QStringList{"cmdUse|Use", "cmdProperties|Properties"};
        QTest::newRow("property editor") << "fSetsTemplate/Basic" << QStringList{"txtName|Name"};
        QTest::newRow("user variable") << "fUserVariable" << QStringList{"txtVarName|Name", "txtValue|Value"};
        QTest::newRow("options") << "fOptions" << QStringList{"txtDBPath|Database path", "txtAutocheckInterval|Interval (secs)"};
    }
    void namesAreTheCaptions()
    {
        QFETCH(QString, window);
        QFETCH(QStringList, names);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QWidget* shown = makeWindow(window, h, owned);
        for (const QString& row : names) {
            const QStringList parts = row.split(QLatin1Char('|'));
            QCOMPARE(accessibleName(control<QWidget>(shown, parts[0])).trimmed(), parts[1]);
        }
    }
    void valuesAreReadWithTheirCaptions_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("caption"); // read as the description; the value is the name
        QTest::newRow("rate of fire") << "fTolvaneMan/get" << "lblROFbps" << "Rate of Fire";
        QTest::newRow("max rate of fire") << "fTolvaneMan/get" << "lblMaxROF" << "Max ROF";
        QTest::newRow("library file") << "fTolvaneMan/get" << "stbStatus.Panels(1)" << "Library";
        QTest::newRow("firmware version") << "fTolvaneMan/get" << "FWVer" << "Firmware version";
        QTest::newRow("status") << "fTolvaneMan/transfer" << "stbStatus.Panels(3)" << "Status";
        QTest::newRow("property editor") << "fSetsTemplate/Basic" << "lblST" << "Shot time";
        QTest::newRow("error advice") << "ErrorWindow" << "lblWhatToDo" << "What to do";
    }
    void valuesAreReadWithTheirCaptions()
    {
        QFETCH(QString, window);
        QFETCH(QString, label);
        QFETCH(QString, caption);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        auto* shown = control<QLabel>(makeWindow(window, h, owned), label);
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(shown);
        QVERIFY(!shown->text().isEmpty());
        QCOMPARE(face->text(QAccessible::Name), shown->text());
        QCOMPARE(face->text(QAccessible::Description), caption);
    }
    void batteryIsAProgressBar()
    {
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QWidget* window = makeWindow(QStringLiteral("fTolvaneMan"), h, owned);
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(control<ucIProgress>(window, QStringLiteral("ucIProgress1")));
        QCOMPARE(face->role(), QAccessible::ProgressBar);
        QCOMPARE(face->text(QAccessible::Value), QStringLiteral("No voltage read"));
        QVERIFY(!face->valueInterface()->currentValue().isValid());
        run(window, QStringLiteral("mnuDLBattery"));
        QCOMPARE(face->text(QAccessible::Value), QStringLiteral("5.61 V"));
        QCOMPARE(face->valueInterface()->currentValue().toDouble(), 5.61);
        QCOMPARE(face->valueInterface()->minimumValue().toDouble(), 4.0);
        QCOMPARE(face->valueInterface()->maximumValue().toDouble(), 5.8);
    }
    void libraryColumnsAreReadByTheirHeaders()
    {
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(
            control<QTreeWidget>(makeWindow(QStringLiteral("fLibSets"), h, owned), QStringLiteral("lvwLib")));
        QVERIFY(list && list->tableInterface());
        QStringList headers;
        for (int c = 1; c < list->tableInterface()->columnCount(); ++c)
            headers << list->tableInterface()->columnDescription(c);
        QCOMPARE(headers, (QStringList{"#", "Name", "Date", "ROF bps", "ST ms", "DT ms", "CTO ms", "LT ms", "CTC ms"}));
    }
};

QTEST_MAIN(tst_accessibility)
#include "tst_accessibility.moc"
