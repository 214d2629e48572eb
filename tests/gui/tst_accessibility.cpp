// What a screen reader, a keyboard user and a German reader get in the windows of the desktop
// program. A walk over each window's accessibility tree: every control a user can reach has a
// name, every value the window shows (labels, boxes, lists, the battery, progress) is exposed to
// the screen reader, and every control that takes the focus shows that it has it. Beside the
// walk: the names are those of the captions, value labels are described by theirs, and the
// library's columns are read by their headers. In German: the captions come from the
// translation, no caption is cut off and no two captions of a menu or a window answer to one
// mnemonic. (The battery indicator as a progress bar: tst_widgets.)
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
#include "shell/mLanguage.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QStyleOptionButton>
#include <QTabBar>

using namespace guitest;

namespace {

// The window of that kind on screen over a library with one setting: the main window (after a
// get, or during a firmware transfer, after the slash), or any other on the page given after the
// slash, owned by owned.
struct ShownWindow {
    explicit ShownWindow(const QString& kind, const QString& gripOptions = QString()) : h(gripOptions), window(make(kind)) {}
    QWidget* make(const QString& kind);

    WindowHarness h;
    std::unique_ptr<QWidget> owned;
    QWidget* window;
};

QWidget* ShownWindow::make(const QString& kind)
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
        owned = std::move(editor);
    } else if (kind == QLatin1String("fUserVariable"))
        owned = std::make_unique<fUserVariable>();
    else if (kind.startsWith(QLatin1String("fOptions")))
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
        owned = std::make_unique<ErrorWindow>(
            MarloError(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MessageText(mErrCodes::MSG_DL_GUNINFO)), mErrCodes::HELP_TIMEOUT,
            QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
    if (auto* tabs = owned->findChild<QTabBar*>(); tabs && kind.contains(QLatin1Char('/')))
        tabs->setCurrentIndex(kind.section(QLatin1Char('/'), 1).toInt());
    owned->show();
    QCoreApplication::processEvents();
    return owned.get();
}

const char* const kWindows[] = {"fTolvaneMan", "fTolvaneMan/get", "fTolvaneMan/transfer", "fLibSets", "fSetsTemplate/0",
                                "fSetsTemplate/1", "fUserVariable", "fOptions/0", "fOptions/1", "fCommConsole", "fBuildInfo",
                                "fAbout", "ErrorWindow", "fCompareGrip", "fGripHistory"};

// The windows, the main window in each of its states or only as it opens.
QStringList windows(bool mainWindowStates)
{
    QStringList kinds;
    for (const char* window : kWindows)
        if (mainWindowStates || !QByteArray(window).startsWith("fTolvaneMan/"))
            kinds << QString::fromLatin1(window);
    return kinds;
}

void addWindowRows(bool mainWindowStates = true)
{
    QTest::addColumn<QString>("window");
    for (const QString& window : windows(mainWindowStates))
        QTest::newRow(qPrintable(window)) << window;
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

// How much of a control's caption does not fit (0: none): a push button's text against the room
// the style leaves it inside its frame (the style's wider minimum is a matter of looks), anything
// else against its minimum size.
int missingWidth(QWidget* control, const QString& text)
{
    if (auto* button = qobject_cast<QPushButton*>(control)) {
        QStyleOptionButton option;
        option.initFrom(button);
        const int room = button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).width();
        return button->fontMetrics().horizontalAdvance(QString(text).remove(QLatin1Char('&'))) - room;
    }
    return control->minimumSizeHint().width() - control->width();
}

// The captions that are narrower on screen than their text: cut off.
QStringList cutCaptions(QWidget* window)
{
    QStringList cut;
    const auto check = [&](QWidget* control, const QString& text) {
        const int missing = missingWidth(control, text);
        if (control->isVisible() && !text.isEmpty() && missing > 0)
            cut << QStringLiteral("%1 \"%2\": %3 pixels short").arg(control->objectName(), text).arg(missing);
    };
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
        check(button, button->text());
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->wordWrap())
            check(label, label->text());
    }
    return cut;
}

// "letter: text, text" for each mnemonic that more than one of the captions answers to.
QStringList clashes(const QStringList& captions)
{
    static const QRegularExpression mnemonic(QStringLiteral("&([^&\\s])"));
    QMap<QChar, QStringList> owners;
    for (const QString& caption : captions) {
        const QRegularExpressionMatch match = mnemonic.match(QString(caption).remove(QLatin1String("&&")));
        if (match.hasMatch())
            owners[match.captured(1).at(0).toLower()] << caption;
    }
    QStringList found;
    for (auto it = owners.cbegin(); it != owners.cend(); ++it) {
        if (it.value().size() > 1)
            found << QString(it.key()) + QStringLiteral(": ") + it.value().join(QStringLiteral(", "));
    }
    return found;
}

// The clashes within a menu and its submenus.
QStringList menuClashes(QMenu* menu)
{
    QStringList items;
    QStringList found;
    for (QAction* item : menu->actions()) {
        items << item->text();
        if (item->menu())
            found << menuClashes(item->menu());
    }
    return clashes(items) + found;
}

// The clashes among the captions a mnemonic of the window reaches at once (its buttons, its
// labels with a buddy, its tabs, its menu bar) and within each of its menus.
QStringList mnemonicClashes(QWidget* window)
{
    QStringList captions;
    QStringList found;
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisibleTo(window))
            captions << button->text();
    }
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (label->buddy() && label->isVisibleTo(window))
            captions << label->text();
    }
    for (QTabBar* tabs : window->findChildren<QTabBar*>()) {
        for (int i = 0; i < tabs->count(); ++i)
            captions << tabs->tabText(i);
    }
    if (auto* main = qobject_cast<QMainWindow*>(window)) {
        for (QAction* menu : main->menuBar()->actions()) {
            captions << menu->text();
            found << menuClashes(menu->menu());
        }
    }
    return clashes(captions) + found;
}

} // namespace

class tst_accessibility : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { mMain::SetUpWindows(); }
    void init() { FreshStart(); }
    void cleanup() { mLanguage::Remove(); }
    void everyReachableControlHasAName_data() { addWindowRows(); }
    void everyReachableControlHasAName()
    {
        QFETCH(QString, window);
        const ShownWindow shown(window);
        QCOMPARE(unnamedControls(shown.window), QStringList());
        GUITEST_NO_ERRORS(shown.h.ui.script);
    }
    void everyValueShownIsExposed_data() { addWindowRows(); }
    void everyValueShownIsExposed()
    {
        QFETCH(QString, window);
        QCOMPARE(unexposedValues(ShownWindow(window, QStringLiteral("firmware=4.0.5,serial=AB12345678")).window).join(QStringLiteral(", ")),
                 QString());
    }
    void everyFocusIsShown_data() { addWindowRows(); }
    void everyFocusIsShown()
    {
        QFETCH(QString, window);
        QCOMPARE(focusNotShown(ShownWindow(window).window).join(QStringLiteral(", ")), QString());
    }
    void namesAreTheCaptions_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QStringList>("names"); // "control|name read"
        // A text box, up-down or slider is read by its caption label, a button or check box by its
        // caption without the accelerator: one of each kind in each pane.
        QTest::newRow("main window") << "fTolvaneMan" << QStringList{
            "txtTimingST|Shot", "updST|Shot", "sldST|Shot", "cboFiringModes|Firing mode:", "cboHyperModes|Ramping Mode :",
            "chkExpert|Expert Mode", "chkAlertOne|Sound alert 60 sec. before game end", "cmdTools(0)|Get", "txtEyeCheckMax|Eye Check Max",
            "updEyeOKMax|Eye OK Max", "txtDefaultLoadTime|Max ROF in ms", "txtShots|Shots before ramping",
            "txtCounters(0)|Counter 1 is at", "txtCounters(2)|Total is at", "cmdReset(1)|Reset", "txtCntDown|Counting down from",
            "ucIProgress1|Battery", "pgbProgress|Progress"};
        QTest::newRow("library browser") << "fLibSets" << QStringList{"cmdUse|Use", "cmdProperties|Properties"};
        QTest::newRow("property editor") << "fSetsTemplate/0" << QStringList{"txtName|Name"};
        QTest::newRow("user variable") << "fUserVariable" << QStringList{"txtVarName|Name", "txtValue|Value"};
        QTest::newRow("options") << "fOptions/0" << QStringList{"txtDBPath|Database path", "txtAutocheckInterval|Interval (secs)"};
    }
    void namesAreTheCaptions()
    {
        QFETCH(QString, window);
        QFETCH(QStringList, names);
        const ShownWindow shown(window);
        for (const QString& row : names) {
            const QStringList parts = row.split(QLatin1Char('|'));
            QCOMPARE(accessibleName(control<QWidget>(shown.window, parts[0])).trimmed(), parts[1]);
        }
    }
    void valuesAreReadWithTheirCaptions_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("caption"); // read as the description; the value is the name
        QTest::newRow("rate of fire") << "fTolvaneMan/get" << "lblROFbps" << "Rate of Fire";
        QTest::newRow("library file") << "fTolvaneMan/get" << "stbStatus.Panels(1)" << "Library";
        QTest::newRow("status") << "fTolvaneMan/transfer" << "stbStatus.Panels(3)" << "Status";
        QTest::newRow("property editor") << "fSetsTemplate/0" << "lblST" << "Shot time";
        QTest::newRow("error advice") << "ErrorWindow" << "lblWhatToDo" << "What to do";
    }
    void valuesAreReadWithTheirCaptions()
    {
        QFETCH(QString, window);
        QFETCH(QString, label);
        QFETCH(QString, caption);
        const ShownWindow on(window);
        auto* shown = control<QLabel>(on.window, label);
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(shown);
        QVERIFY(!shown->text().isEmpty());
        QCOMPARE(face->text(QAccessible::Name), shown->text());
        QCOMPARE(face->text(QAccessible::Description), caption);
    }
    void libraryColumnsAreReadByTheirHeaders()
    {
        const ShownWindow shown(QStringLiteral("fLibSets"));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(control<QTreeWidget>(shown.window, QStringLiteral("lvwLib")));
        QVERIFY(list && list->tableInterface());
        QStringList headers;
        for (int c = 1; c < list->tableInterface()->columnCount(); ++c)
            headers << list->tableInterface()->columnDescription(c);
        QCOMPARE(headers, (QStringList{"#", "Name", "Date", "ROF bps", "ST ms", "DT ms", "CTO ms", "LT ms", "CTC ms"}));
    }

    void germanMainWindowCaptions_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("caption");
        QTest::newRow("tool button Put") << "cmdTools(1)" << QString::fromUtf8("&Übertragen");
        QTest::newRow("menu File") << "mnuFile" << "&Datei";
        QTest::newRow("menu Get Timing") << "mnuDLTiming" << "&Zeitwerte";
        QTest::newRow("timing pane") << "fraTiming" << "Zeitwerte";
        QTest::newRow("firing modes") << "cboFiringModes" << "Semi-Auto|Classic|Sniper|NXL Full Auto|Burst 3|Ramping";
    }
    void germanMainWindowCaptions()
    {
        QFETCH(QString, control);
        QFETCH(QString, caption);
        QCOMPARE(mLanguage::Install({QStringLiteral("de_DE")}), QStringLiteral("de"));
        const ShownWindow main(QStringLiteral("fTolvaneMan/get"), QStringLiteral("firmware=4.0.0")); // the firmware decides the modes
        QObject* found = main.window->findChild<QObject*>(control);
        QVERIFY2(found, qPrintable(control));
        // A menu and a group box show their title, an action, a button or a label its text, a list its items.
        QString shown = found->property(found->property("title").isValid() ? "title" : "text").toString();
        if (auto* list = qobject_cast<QComboBox*>(found)) {
            for (int i = 0; i < list->count(); ++i)
                shown += (i ? QStringLiteral("|") : QString()) + list->itemText(i);
        }
        QCOMPARE(shown, caption);
    }

    void germanCaptionsFitAndDoNotClash_data() { addWindowRows(false); }
    void germanCaptionsFitAndDoNotClash()
    {
        QFETCH(QString, window);
        QCOMPARE(mLanguage::Install({QStringLiteral("de_DE")}), QStringLiteral("de"));
        const ShownWindow shown(window);
        const QStringList faults = cutCaptions(shown.window) + mnemonicClashes(shown.window);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }
};

QTEST_MAIN(tst_accessibility)
#include "tst_accessibility.moc"
