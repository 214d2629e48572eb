// The main window's state: which controls a template, a downloaded setting, Expert Mode and
// Close = Open enable and show; the colours of disabled boxes; the caption; the names a screen
// reader reads and the tab order through the panes.
#include "GuiTestSupport.h"

#include "library/cSetsTemplate.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QtTest>

using namespace guitest;

namespace {

// Enabled-when rules of the state table.
bool rule(const QString& when, bool expert, bool copyCTO, bool isTemplate)
{
    if (when == QLatin1String("always")) return true;
    if (when == QLatin1String("never")) return false;
    if (when == QLatin1String("T")) return isTemplate;
    if (when == QLatin1String("!T")) return !isTemplate;
    if (when == QLatin1String("E&T")) return expert && isTemplate;
    if (when == QLatin1String("E&C&T")) return expert && !copyCTO && isTemplate;
    qFatal("unknown rule");
}

struct State {
    bool enabled;
    bool visible;
};

State stateOf(fTolvaneMan& w, const QString& name)
{
    // A hidden menu item always reads as disabled (the toolkit's rule): only its visibility tells.
    const auto ofAction = [](const QAction* action) {
        return State{action->isEnabled() || !action->isVisible(), action->isVisible()};
    };
    if (auto* action = w.findChild<QAction*>(name))
        return ofAction(action);
    if (auto* menu = w.findChild<QMenu*>(name))
        return ofAction(menu->menuAction());
    QWidget* widget = control<QWidget>(&w, name);
    return {widget->isEnabled(), !widget->isHidden()};
}

// What a screen reader reads as the control's name: its own, or (for a list, whose name on this
// platform is its current item) the label it is labelled by.
QString accessibleName(QObject* object)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(object);
    if (!face)
        return QString();
    if (face->role() == QAccessible::ComboBox) {
        const auto labels = face->relations(QAccessible::Label);
        return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
    }
    return face->text(QAccessible::Name);
}

} // namespace

class tst_mainWindowState : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void updateStateTable_data();
    void updateStateTable();
    void disabledBoxesTakeTheButtonFaceColour();
    void captionNamesTheActiveSetting_data();
    void captionNamesTheActiveSetting();
    void toolButtonsLineUpFromTheLeft();
    void accessibleNames_data();
    void accessibleNames();
    void everyControlHasAName();
    void tabOrderGoesThroughThePanes();
};

void tst_mainWindowState::updateStateTable_data()
{
    QTest::addColumn<QStringList>("controls");
    QTest::addColumn<QString>("enabledWhen");
    QTest::addColumn<bool>("visible");
    const auto timing = [](const QString& t) {
        return QStringList{"txtTiming" + t, "upd" + t, "sld" + t, "lbl" + t, "lbl" + t + "ms"};
    };
    QTest::newRow("get, default settings") << QStringList{"cmdTools(0)", "cmdTools(6)"} << "always" << true;
    QTest::newRow("library (stats)") << QStringList{"cmdTools(3)"} << "always" << false;
    QTest::newRow("put, properties, expert") << QStringList{"cmdTools(1)", "cmdTools(4)", "mnuProperties", "mnuUpload", "chkExpert"} << "T" << true;
    QTest::newRow("promote") << QStringList{"cmdTools(5)", "mnuPromote"} << "!T" << false;
    QTest::newRow("close = open") << QStringList{"chkCopyCTO"} << "E&T" << true;
    QTest::newRow("shot time") << timing("ST") << "E&T" << true;
    QTest::newRow("dwell time") << timing("DT") << "E&T" << true;
    QTest::newRow("cycle time open") << timing("CTO") << "E&T" << true;
    QTest::newRow("load time") << timing("LT") << "T" << true;
    QTest::newRow("cycle time close") << timing("CTC") << "E&C&T" << true;
    QTest::newRow("rate of fire") << QStringList{"lblROFbps", "lblROFbpstxt", "lblROFtxt"} << "T" << true;
    QTest::newRow("game timer") << QStringList{"txtCntDown", "updGT", "chkAlertOne", "lblGT", "lblGTmin"} << "T" << true;
    QTest::newRow("counters") << QStringList{"txtCounters(0)", "txtCounters(1)", "txtCounters(2)"} << "never" << true;
    QTest::newRow("counter captions") << QStringList{"lblCounter(0)", "lblCounter(1)", "lblCounter(2)"} << "always" << true;
    QTest::newRow("reset buttons") << QStringList{"cmdReset(0)", "cmdReset(1)"} << "T" << true;
}

void tst_mainWindowState::updateStateTable()
{
    QFETCH(QStringList, controls);
    QFETCH(QString, enabledWhen);
    QFETCH(bool, visible);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    for (int combination = 0; combination < 8; ++combination) {
        const bool expert = combination & 1;
        const bool copyCTO = combination & 2;
        const bool isTemplate = combination & 4;
        control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(expert);
        control<QCheckBox>(&w, QStringLiteral("chkCopyCTO"))->setChecked(copyCTO);
        w.setIsTemplate(isTemplate);
        for (const QString& name : controls) {
            const State state = stateOf(w, name);
            const QString where = QStringLiteral("%1 with E=%2 C=%3 T=%4").arg(name).arg(expert).arg(!copyCTO).arg(isTemplate);
            const bool expected = rule(enabledWhen, expert, copyCTO, isTemplate) || (!visible && w.findChild<QAction*>(name));
            QVERIFY2(state.enabled == expected, qPrintable(where + " enabled"));
            QVERIFY2(state.visible == visible, qPrintable(where + " visible"));
        }
    }
    QVERIFY(h.ui.script.errors.isEmpty());
}

void tst_mainWindowState::disabledBoxesTakeTheButtonFaceColour()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QLineEdit* load = control<QLineEdit>(&w, QStringLiteral("txtTimingLT"));
    QLineEdit* shot = control<QLineEdit>(&w, QStringLiteral("txtTimingST"));
    const QPalette system = QApplication::palette();
    w.setIsTemplate(true);
    QCOMPARE(load->palette().color(QPalette::Base), system.color(QPalette::Base));
    QCOMPARE(shot->palette().color(QPalette::Base), system.color(QPalette::Button)); // no expert mode
    w.setIsTemplate(false);
    QCOMPARE(load->palette().color(QPalette::Base), system.color(QPalette::Button));
}

void tst_mainWindowState::captionNamesTheActiveSetting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::newRow("untitled") << "" << "Tolvane Interface Programme [Untitled]";
    QTest::newRow("named") << "12\" barrel, cold" << "Tolvane Interface Programme [12\" barrel, cold]";
}

void tst_mainWindowState::captionNamesTheActiveSetting()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    w.ActiveSetting()->setsName(name);
    w.SetCaption();
    QCOMPARE(w.windowTitle(), caption);
}

void tst_mainWindowState::toolButtonsLineUpFromTheLeft()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    // Enabled buttons follow each other 30 twips (2 px) apart from 180 twips (12 px); the hidden
    // "Library (stats)" takes no room.
    int left = 12;
    for (int index : {0, 1, 2, 4, 6}) {
        QPushButton* button = control<QPushButton>(&w, QStringLiteral("cmdTools(%1)").arg(index));
        QCOMPARE(button->x(), left);
        left += button->width() + 2;
    }
}

void tst_mainWindowState::accessibleNames_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("name");
    const QList<QPair<QString, QString>> rows = {
        {"txtTimingST", "Shot"}, {"updST", "Shot"}, {"sldST", "Shot"},
        {"txtTimingDT", "Dwell"}, {"sldDT", "Dwell"},
        {"txtTimingCTO", "Open"}, {"updCTO", "Open"},
        {"txtTimingLT", "Load"}, {"sldLT", "Load"},
        {"txtTimingCTC", "Close"}, {"updCTC", "Close"},
        {"cboFiringModes", "Firing mode:"}, {"cboHyperModes", "Ramping Mode :"},
        {"chkExpert", "Expert Mode"}, {"chkCopyCTO", "Close = Open"}, {"chkAlertOne", "Sound alert 60 sec. before game end"},
        {"cmdTools(0)", "Get"}, {"cmdTools(4)", "Properties"}, {"cmdTools(6)", "Default settings"},
        {"txtEyeCheckMax", "Eye Check Max"}, {"updEyeOKMax", "Eye OK Max"},
        {"txtDefaultLoadTime", "Max ROF in ms"}, {"txtShots", "Shots before ramping"},
        {"txtCounters(0)", "Counter 1 is at"}, {"txtCounters(2)", "Total is at"}, {"cmdReset(1)", "Reset"},
        {"txtCntDown", "Counting down from"}, {"ucIProgress1", "Battery"}, {"pgbProgress", "Progress"},
    };
    for (const auto& row : rows)
        QTest::newRow(qPrintable(row.first)) << row.first << row.second;
}

void tst_mainWindowState::accessibleNames()
{
    QFETCH(QString, control);
    QFETCH(QString, name);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QCOMPARE(accessibleName(guitest::control<QWidget>(&w, control)).trimmed(), name);
}

void tst_mainWindowState::everyControlHasAName()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    int checked = 0;
    for (QWidget* widget : w.findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().isEmpty())
            continue;
        QVERIFY2(!accessibleName(widget).trimmed().isEmpty(), qPrintable(widget->objectName()));
        ++checked;
    }
    QVERIFY(checked > 40);
}

void tst_mainWindowState::tabOrderGoesThroughThePanes()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    w.setIsTemplate(true);
    control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(true);
    // Walk the focus chain from the first tool button: every pane is reached in its order.
    QStringList reached;
    QWidget* current = control<QWidget>(&w, QStringLiteral("cmdTools(0)"));
    for (int step = 0; step < 400 && current; ++step) {
        const bool takesTab = (current->focusPolicy() & Qt::TabFocus) && current->isVisibleTo(&w) && current->isEnabled();
        for (QWidget* pane = takesTab ? current : nullptr; pane; pane = pane->parentWidget()) {
            if (pane->objectName().startsWith(QLatin1String("fra"))) {
                if (reached.isEmpty() || reached.last() != pane->objectName())
                    reached.append(pane->objectName());
                break;
            }
        }
        current = current->nextInFocusChain();
        if (current == control<QWidget>(&w, QStringLiteral("cmdTools(0)")))
            break;
    }
    reached.removeDuplicates();
    QCOMPARE(reached, (QStringList{"fraTiming", "fraOptions", "fraRamping", "fraCounters", "fraGameTimer"}));
}

QTEST_MAIN(tst_mainWindowState)
#include "tst_mainWindowState.moc"
