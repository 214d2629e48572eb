// The main window's state: which controls a template, a downloaded setting, Expert Mode and
// Close = Open enable and show, the colour of disabled text boxes, and the tab order through the
// panes.
#include "GuiTestSupport.h"

#include <QMenu>

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

} // namespace

class tst_mainWindowState : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void updateStateTable_data()
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
    void updateStateTable()
    {
        QFETCH(QStringList, controls);
        QFETCH(QString, enabledWhen);
        QFETCH(bool, visible);
        WindowHarness h;
        fTolvaneMan& w = h.open();
        const QPalette system = QApplication::palette();
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
                // A disabled text box takes the button face's colour.
                if (auto* box = qobject_cast<QLineEdit*>(w.findChild<QWidget*>(name)))
                    QVERIFY2(box->palette().color(QPalette::Base) == system.color(expected ? QPalette::Base : QPalette::Button),
                             qPrintable(where + " colour"));
            }
        }
        QVERIFY(h.ui.script.errors.isEmpty());
    }
    void tabOrderGoesThroughThePanes()
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
};

QTEST_MAIN(tst_mainWindowState)
#include "tst_mainWindowState.moc"
