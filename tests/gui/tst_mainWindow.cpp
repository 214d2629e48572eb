// The main window's commands against a virtual grip behind the in-memory port: what each command
// sends and confirms and that it holds every command meanwhile, what the panes show afterwards,
// the build information following each reading of the gun information, failures part-way, the
// dialogs it opens, the command line and the save question on closing. Which controls a template,
// a downloaded setting, Expert Mode and Close = Open enable and show. Saving a library whose file
// was taken away while the window ran: File > Save and the exit's Yes write every template and user
// variable again, say where, and the next start finds all of it, on the same active setting.
#include "GuiTestSupport.h"
#include "TestFiles.h"

#include "gui/shell/fLibSets.h"
#include "gui/widgets/ucIProgress.h"
#include "sim/Fault.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSqlQuery>

using namespace guitest;

namespace {

// The number of templates and of user variables in the library file at path.
QPair<int, int> rowsIn(const QString& path)
{
    QPair<int, int> counts{-1, -1};
    if (!QFileInfo(path).isFile())
        return counts;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("look"));
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("SELECT (SELECT COUNT(*) FROM ta_SetsTemplate), (SELECT COUNT(*) FROM ta_UserVar)")) && q.next())
                counts = {q.value(0).toInt(), q.value(1).toInt()};
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("look"));
    return counts;
}

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

// A grip command that fails part-way: the command code whose report the grip garbles, the
// records of the grip that reached the window before the failure (in the order get all reads
// them), and the error's trail from the record's transfer outwards ("module.procedure").
struct PartWay {
    QString command;
    int garbled;
    QString shown;
    QStringList trail;
};

// The records of the grip (as fillGrip left them) that the window shows; battery is the
// indicator's value before the command.
QString shownRecords(fTolvaneMan& w, int battery)
{
    const auto setting = w.ActiveSetting();
    QStringList shown;
    if (!w.IsTemplate() && setting->lShotTime() == 12 && setting->lFiringMode() == 6 && text(&w, QStringLiteral("txtTimingST")) == QLatin1String("12"))
        shown << QStringLiteral("timing");
    if (text(&w, QStringLiteral("txtCounters(0)")) == QLatin1String("300"))
        shown << QStringLiteral("counters");
    if (setting->lGameTime() == 15 && text(&w, QStringLiteral("txtCntDown")) == QLatin1String("15"))
        shown << QStringLiteral("gametimer");
    if (control<ucIProgress>(&w, QStringLiteral("ucIProgress1"))->Value() != battery)
        shown << QStringLiteral("battery");
    if (text(&w, QStringLiteral("txtDefaultLoadTime")) == QLatin1String("50"))
        shown << QStringLiteral("options");
    if (setting->lShots() == 7 && setting->lHyperMode() == 4)
        shown << QStringLiteral("ramping");
    return shown.join(QLatin1Char(' '));
}

// A command as the user gives it, and what the grip receives and the window confirms.
struct Command {
    QString grip, command;
    QList<int> codes;
    QString confirmation;
};

} // namespace

class tst_mainWindow : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void commands_data()
    {
        QTest::addColumn<Command>("row");
        // Every exchange is preceded by a refresh of the gun information (0x13); every grip command
        // but the gun information asks first whether the grip sits in its boot code (0x11).
        const QString fw = QStringLiteral("firmware=4.0.5");
        const QString putAll = QStringLiteral("Timinginformation and Countdowntimers were put.");
        QTest::newRow("get all") << Command{fw, "cmdTools(0)", {0x13, 0x11, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x18, 0x13, 0x19},
                                                      "Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched."};
        QTest::newRow("put all") << Command{fw, "cmdTools(1)", {0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29}, putAll};
        QTest::newRow("put all from the menu") << Command{fw, "mnuULAll", {0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29}, putAll};
        QTest::newRow("get timing") << Command{fw, "mnuDLTiming", {0x13, 0x11, 0x13, 0x14}, "Timinginformation was fetched."};
        QTest::newRow("put timing") << Command{fw, "mnuULTiming", {0x13, 0x11, 0x13, 0x24}, "Timinginformation was put."};
        QTest::newRow("get counters") << Command{fw, "mnuDLCounters", {0x13, 0x11, 0x13, 0x15}, "Counters were fetched."};
        QTest::newRow("get battery") << Command{fw, "mnuDLBattery", {0x13, 0x11, 0x13, 0x17}, "Batteryinformation was fetched."};
        QTest::newRow("get game timers") << Command{fw, "mnuDLGameTimers", {0x13, 0x11, 0x13, 0x16}, "Countdowntimers were fetched."};
        QTest::newRow("put game timers") << Command{fw, "mnuULGameTimers", {0x13, 0x11, 0x13, 0x26}, "Countdowntimers were put."};
        QTest::newRow("gun information: no boot-mode check, no confirmation") << Command{fw, "mnuDLGunInfo", {0x13}, ""};
        QTest::newRow("reset counter 2") << Command{fw, "cmdReset(1)", {0x13, 0x11, 0x13, 0x25}, "Counter 2 was reset."};
        QTest::newRow("a grip in boot mode is started first") << Command{"bootmode=1", "mnuDLTiming", {0x13, 0x11, 0x13, 0x83, 0x13, 0x14},
                                                                                   "Timinginformation was fetched."};
        QTest::newRow("default settings: no exchange") << Command{fw, "cmdTools(6)", {}, ""};
    }
    void commands()
    {
        QFETCH(Command, row);
        const auto& [grip, command, codes, confirmation] = row;
        WindowHarness h(grip);
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("mnuBuildInfo")); // left open beside the window, to follow every reading of the gun information
        const int settings = h.app().colSetsTemplate().Count();
        // At every frame the grip receives, the window is asked what a user could start, and to close.
        QStringList enabledDuring;
        bool closed = false;
        h.grip.link.port.setResponder([&](const QByteArray& frame) {
            enabledDuring << enabledCommands(&w);
            closed = closed || w.close();
            return h.grip.grip.handleFrame(frame).value_or(QByteArray());
        });
        run(&w, command);
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.takeCodes(), codes);
        QCOMPARE(text(w.findChild<QDialog*>(QStringLiteral("fBuildInfo")), QStringLiteral("txtSerialNo")),
                 codes.isEmpty() ? QString() : QStringLiteral("SIM0000001"));
        QVERIFY2(enabledDuring.isEmpty(), qPrintable(enabledDuring.join(QLatin1Char(' '))));
        QVERIFY(!closed && w.isVisible() && !w.GripCommandRunning());
        // Afterwards every command has the state the window gives it: a second UpdateState
        // changes nothing (the tool buttons are all enabled after a tool command, as always).
        const QStringList after = enabledCommands(&w);
        w.UpdateState();
        if (!command.startsWith(QLatin1String("cmdTools")))
            QCOMPARE(enabledCommands(&w), after);
        for (const char* always : {"mnuDLTiming", "mnuAbout", "mnuOptions", "mnuExit", "mnuNew", "cmdTools(0)"})
            QVERIFY2(after.contains(QLatin1String(always)), always);
        QCOMPARE(messageTexts(h.ui.script), confirmation.isEmpty() ? QStringList() : QStringList{confirmation});
        if (!confirmation.isEmpty()) {
            QCOMPARE(h.ui.script.messages.first().title, QStringLiteral("Confirmation"));
            QCOMPARE(h.ui.script.messages.first().icon, MsgIcon::Information);
        }
        QCOMPARE(mMain::MousePointerDepth(), 0);
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(h.app().colSetsTemplate().Count(), settings);
        // With confirmations off the command says nothing.
        h.app().RegistrySettings().setShowConfirmComm(false);
        run(&w, command);
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.ui.script.messages.size(), confirmation.isEmpty() ? 0 : 1);
    }
    void getAllShowsTheGripInEveryPane()
    {
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fillGrip(h.grip);
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("cmdTools(0)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const QList<QPair<const char*, const char*>> boxes = {
            {"txtTimingST", "12"}, {"txtTimingDT", "9"}, {"txtTimingCTO", "31"}, {"txtTimingLT", "40"}, {"txtTimingCTC", "29"},
            {"txtCounters(0)", "300"}, {"txtCounters(1)", "65535"}, {"txtCounters(2)", "197121"}, {"txtDefaultLoadTime", "50"},
            {"txtShots", "7"}, {"txtHyperTime", "120"}, {"txtCntDown", "15"}};
        for (const auto& [name, value] : boxes)
            QCOMPARE(text(&w, QLatin1String(name)), QLatin1String(value));
        QCOMPARE(control<QComboBox>(&w, QStringLiteral("cboFiringModes"))->currentText(), QStringLiteral("Sniper"));
        QCOMPARE(control<QComboBox>(&w, QStringLiteral("cboHyperModes"))->currentText(), QStringLiteral("75% Ramping"));
        for (const char* name : {"chkACE", "chkUseEye", "chkAlertOne"})
            QVERIFY2(control<QCheckBox>(&w, QLatin1String(name))->isChecked(), name);
        QCOMPARE(w.PanelText(fTolvaneMan::kPanelFirmware), QStringLiteral("4.0.5"));

        // The active setting holds what came from the grip, and the library knows it changed.
        const auto setting = w.ActiveSetting();
        QCOMPARE((QList<int>{setting->lShotTime(), setting->lFiringMode(), setting->lGameTime(), setting->lHyperMode()}),
                 (QList<int>{12, 6, 15, 4}));
        QVERIFY(h.app().AnythingNeedSave());
    }
    void putAllSendsWhatThePanesShow()
    {
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = h.open();
        control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(true);
        const QList<QPair<const char*, const char*>> edits = {{"txtTimingST", "12"}, {"txtTimingDT", "9"}, {"txtTimingCTO", "31"},
                                                              {"txtTimingLT", "40"}, {"txtTimingCTC", "29"}, {"txtCntDown", "20"},
                                                              {"txtShots", "5"}, {"txtHyperTime", "90"}, {"txtDefaultLoadTime", "60"}};
        for (const auto& [name, value] : edits)
            type(&w, QLatin1String(name), QLatin1String(value));
        control<QCheckBox>(&w, QStringLiteral("chkUseLED"))->setChecked(true);
        run(&w, QStringLiteral("cmdTools(1)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const gripsim::GripState grip = h.grip.grip.state();
        QCOMPARE(grip.timing, (gripsim::TimingValues{12, 9, 31, 40, 29, 0}));
        QCOMPARE(int(grip.gameTimer.countDownTimer), 20);
        QCOMPARE(grip.ramping, (gripsim::RampingValues{5, 90, 1}));
        QCOMPARE(int(grip.options.defaultLoadTime), 60);
        QVERIFY(grip.options.flags & 0x08); // Use LED
    }
    // Newer firmware gets both counters' new values (the selector of old firmware is the record's
    // own affair).
    void counterResetZeroesTheBoxAndTellsTheGrip()
    {
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        h.grip.grip.updateState([](gripsim::GripState& s) { s.counters = {300, 45, 1000}; });
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("mnuDLCounters"));
        run(&w, QStringLiteral("cmdReset(1)"));
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.grip.payloads(0x25), QStringList{QStringLiteral("252C010000")}); // counter 2 reset, counter 1 kept
        QCOMPARE(text(&w, QStringLiteral("txtCounters(1)")), QStringLiteral("0"));
    }
    void aFailurePartWayKeepsWhatCameBeforeIt_data()
    {
        QTest::addColumn<PartWay>("row");
        const QString get = QStringLiteral("cmdTools(0)");
        const QString put = QStringLiteral("cmdTools(1)");
        const auto trail = [](const QString& transfer, const QStringList& window) {
            QStringList frames{QStringLiteral("mGripCommands.TransferRecord(%1)").arg(transfer)};
            for (const QString& procedure : window)
                frames << QStringLiteral("fTolvaneMan.") + procedure;
            return frames;
        };
        const QStringList getAll{QStringLiteral("ActivateTools(0)"), QStringLiteral("cmdTools_Click(0)")};
        const QStringList putAll{QStringLiteral("ActivateTools(1)"), QStringLiteral("cmdTools_Click(1)")};
        // Each record is shown as soon as it came, before the next one is read.
        QTest::newRow("get all, timing") << PartWay{get, 0x14, "", trail("get timing", QStringList{"InitDLTiming"} + getAll)};
        QTest::newRow("get all, options")
            << PartWay{get, 0x18, "timing counters gametimer battery", trail("get options", QStringList{"InitDLOptions"} + getAll)};
        QTest::newRow("get all, ramping")
            << PartWay{get, 0x19, "timing counters gametimer battery options", trail("get ramping", QStringList{"InitDLHyper"} + getAll)};
        // The timing and game timer are put in the command's own frame, options and ramping in
        // their loaders'.
        QTest::newRow("put all, game timer") << PartWay{put, 0x26, "", trail("put gametimer", putAll)};
        QTest::newRow("put all, options") << PartWay{put, 0x28, "", trail("put options", QStringList{"InitULOptions"} + putAll)};
        QTest::newRow("put all, ramping") << PartWay{put, 0x29, "", trail("put ramping", QStringList{"InitULHyper"} + putAll)};
        QTest::newRow("get timing") << PartWay{"mnuDLTiming", 0x14, "", trail("get timing", {"InitDLTiming", "mnuDLTiming_Click"})};
        // The boot-mode check runs in the command's frame, before any record.
        QTest::newRow("get all, boot-mode check")
            << PartWay{get, 0x11, "", QStringList{"mGripCommands.StartProgramIfInBootMode", "fTolvaneMan.ActivateTools(0)", "fTolvaneMan.cmdTools_Click(0)"}};
    }
    void aFailurePartWayKeepsWhatCameBeforeIt()
    {
        QFETCH(PartWay, row);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fillGrip(h.grip);
        fTolvaneMan& w = h.open();
        const int battery = control<ucIProgress>(&w, QStringLiteral("ucIProgress1"))->Value();
        h.grip.fault(gripsim::FaultKind::Garbage, row.garbled);
        run(&w, row.command);
        QCOMPARE(h.ui.script.errors.size(), 1);
        QVERIFY(h.ui.script.messages.isEmpty()); // no confirmation
        QCOMPARE(shownRecords(w, battery), row.shown);
        // The trail reads word for word as the window's procedures always named it.
        QStringList frames;
        for (const ErrorFrame& frame : h.ui.script.errors.first().Trail())
            frames << frame.module + QLatin1Char('.') + frame.procedure;
        QCOMPARE(frames.mid(frames.indexOf(row.trail.first())), row.trail);
        // What the failure stopped was not sent.
        const QList<int> sent = h.takeCodes();
        QCOMPARE(sent.last(), row.garbled);
        QCOMPARE(mMain::MousePointerDepth(), 0);
    }
    void dialogsOpenOverTheWindow_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("dialog");
        QTest::newRow("library button") << "cmdTools(2)" << "fLibSets";
        QTest::newRow("library in the menu") << "mnuLibTemplates" << "fLibSets";
        QTest::newRow("properties button") << "cmdTools(4)" << "fSetsTemplate";
        QTest::newRow("properties in the menu") << "mnuProperties" << "fSetsTemplate";
        QTest::newRow("options") << "mnuOptions" << "fOptions";
    }
    void dialogsOpenOverTheWindow()
    {
        QFETCH(QString, command);
        QFETCH(QString, dialog);
        WindowHarness h;
        fTolvaneMan& w = h.open();
        h.app().colSetsTemplate().Add()->setsName(QStringLiteral("Other"));
        const QString active = w.ActiveSetting()->ID();
        QString shown, selected;
        answerNextModal([&](QDialog* opened) {
            shown = opened->objectName() + QLatin1Char('/') + (opened->parentWidget() ? opened->parentWidget()->objectName() : QString());
            if (auto* browser = qobject_cast<fLibSets*>(opened))
                selected = fLibSets::RowKey(browser->SelectedRow());
            if (auto* name = opened->findChild<QLineEdit*>(QStringLiteral("txtName")))
                name->setText(QStringLiteral("Rainy Sunday"));
            run(opened, opened->findChild<QPushButton*>(QStringLiteral("cmdClose")) ? QStringLiteral("cmdClose") : QStringLiteral("cmdCancel"));
        });
        run(&w, command);
        QCOMPARE(shown, dialog + QStringLiteral("/fTolvaneMan"));
        GUITEST_NO_ERRORS(h.ui.script);
        if (dialog == QLatin1String("fLibSets")) // on the active setting's row
            QCOMPARE(selected, active);
        if (dialog == QLatin1String("fSetsTemplate")) {
            // The name typed stays after Cancel, and the window's caption follows it.
            QCOMPARE(w.ActiveSetting()->sName(), QStringLiteral("Rainy Sunday"));
            QCOMPARE(w.windowTitle(), QStringLiteral("Tolvane Interface Programme [Rainy Sunday]"));
        }
    }
    void commandLineWords_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("warnings");
        QTest::addColumn<QString>("uploaded"); // the file an upload was tried with ("" none)
        QTest::newRow("plain words are not options") << QStringList{"hello", "world"} << 0 << "";
        QTest::newRow("minus, lower-case f, quoted path") << QStringList{"-f\"/nowhere/my fw.tvf\""} << 0 << "/nowhere/my fw.tvf";
        QTest::newRow("slash F") << QStringList{"/F/nowhere/a.tvf"} << 0 << "/nowhere/a.tvf";
        QTest::newRow("-F and the file as the next word") << QStringList{"-F", "/nowhere/b.tvf"} << 0 << "/nowhere/b.tvf";
        QTest::newRow("another letter warns once") << QStringList{"/x"} << 1 << "";
        QTest::newRow("each wrong word warns, the rest is read") << QStringList{"-a", "/bc", "-f/nowhere/c.tvf"} << 2 << "/nowhere/c.tvf";
        QTest::newRow("a path alone is an option letter") << QStringList{"/tmp/a.tvf"} << 1 << "";
    }
    void commandLineWords()
    {
        QFETCH(QStringList, words);
        QFETCH(int, warnings);
        QFETCH(QString, uploaded);
        WindowHarness h;
        fTolvaneMan& w = h.open(false, words);
        const auto said = [&] { return h.ui.script.messages.size() + h.ui.script.errors.size(); };
        QTest::qWait(0);
        QCOMPARE(said(), 0); // nothing before the window is shown
        w.show();
        QTRY_COMPARE(said(), warnings + (uploaded.isEmpty() ? 0 : 1));
        // Shown again: the command line is read once.
        w.hide();
        w.show();
        QTest::qWait(10);
        QCOMPARE(said(), warnings + (uploaded.isEmpty() ? 0 : 1));
        for (const ScriptedUi::Message& m : h.ui.script.messages) {
            QCOMPARE(m.text, QStringLiteral("Unsupported command-line parameter."));
            QCOMPARE(m.icon, MsgIcon::Exclamation);
        }
        // The file does not exist: the upload stops at loading it and names it in its step.
        if (!uploaded.isEmpty()) {
            QCOMPARE(h.ui.script.errors.size(), 1);
            QStringList steps;
            for (const ErrorFrame& frame : h.ui.script.errors.first().Trail())
                steps << frame.procedure;
            QVERIFY(steps.contains(QStringLiteral("UploadFirmware - load firmware file (%1)").arg(uploaded)));
            QVERIFY(h.ui.script.fileRequests.isEmpty()); // the file is not asked for again
            QCOMPARE(h.takeCodes(), QList<int>{});
        }
    }
    void closingAsksToSaveAndTheNextStartReopens_data()
    {
        QTest::addColumn<bool>("answer");
        QTest::newRow("yes saves") << true;
        QTest::newRow("no discards") << false;
    }
    void closingAsksToSaveAndTheNextStartReopens()
    {
        QFETCH(bool, answer);
        QString id, fresh;
        {
            WindowHarness h;
            fTolvaneMan& w = h.open();
            fresh = text(&w, QStringLiteral("txtTimingLT"));
            type(&w, QStringLiteral("txtTimingLT"), QStringLiteral("33"));
            w.ActiveSetting()->setsName(QStringLiteral("Field day"));
            w.move(120, 90);
            id = w.ActiveSetting()->ID();
            h.ui.script.yesNoAnswers.enqueue(answer);
            QVERIFY(w.close());
            QCOMPARE(h.ui.script.questions.size(), 1);
            QCOMPARE(h.ui.script.questions.first().text,
                     QStringLiteral("Some data have changed without being saved.\r\nDo you wish to save before exiting?"));
            QCOMPARE(h.ui.script.questions.first().icon, MsgIcon::Question);
            QCOMPARE(rowsIn(mMain::ProgramFile(QStringLiteral("Marlo.mdb"))).first, answer ? 1 : 0);
            QCOMPARE(h.app().RegistrySettings().LastKey(), answer ? id : QString());
        }
        // The next start: the window where it was, on the saved setting or on a new one.
        WindowHarness h;
        fTolvaneMan& w = h.open();
        QCOMPARE(w.pos(), QPoint(120, 90));
        QCOMPARE(w.ActiveSetting()->ID() == id, answer);
        QVERIFY(w.IsTemplate());
        QCOMPARE(w.windowTitle(), answer ? QStringLiteral("Tolvane Interface Programme [Field day]")
                                         : QStringLiteral("Tolvane Interface Programme [Untitled]"));
        QCOMPARE(text(&w, QStringLiteral("txtTimingLT")), answer ? QStringLiteral("33") : fresh);
    }

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
        QTest::newRow("close = open, shot, dwell and open times")
            << QStringList{"chkCopyCTO"} + timing("ST") + timing("DT") + timing("CTO") << "E&T" << true;
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
        // Left at expert, Close = Open and template: unticking Close = Open gives Cycle Time Close
        // back at once, ticking it holds it again.
        if (controls.contains(QLatin1String("txtTimingCTC")))
            for (const bool follow : {false, true}) {
                control<QCheckBox>(&w, QStringLiteral("chkCopyCTO"))->click();
                QVERIFY(enabled(&w, QStringLiteral("txtTimingCTC")) != follow);
            }
        QVERIFY(h.ui.script.errors.isEmpty());
    }
    void savingAfterTheFileWasTakenAway_data()
    {
        QTest::addColumn<bool>("onExit");   // the exit's Yes, else File > Save
        QTest::addColumn<bool>("replaced"); // another file put in its place, else deleted
        QTest::addColumn<bool>("changed");  // a template added after the last save
        QTest::newRow("deleted, File > Save") << false << false << true;
        QTest::newRow("replaced, exit with Yes") << true << true << true;
        // Nothing changed, yet the file is gone: closing asks all the same.
        QTest::newRow("deleted, unchanged, exit with Yes") << true << false << false;
    }
    void savingAfterTheFileWasTakenAway()
    {
        QFETCH(bool, onExit);
        QFETCH(bool, replaced);
        QFETCH(bool, changed);
        const QPair<int, int> rows = changed ? qMakePair(6, 43) : qMakePair(5, 35);
        const QString path = mMain::ProgramFile(QStringLiteral("Marlo.mdb"));
        const QString written = replaced ? mMain::ProgramFile(QStringLiteral("Marlo (2).mdb")) : path;
        for (const char* beside : {"", "-wal", "-shm"})
            QFile::remove(written + QLatin1String(beside));
        QString activeId;
        {
            WindowHarness h;
            fTolvaneMan& w = h.open();
            // Five templates with their user variables, saved: the window's own and four more.
            type(&w, QStringLiteral("txtTimingLT"), QStringLiteral("33"));
            w.ActiveSetting()->setsName(QStringLiteral("Field day"));
            activeId = w.ActiveSetting()->ID();
            for (int n = 1; n <= 4; ++n) {
                auto r = h.app().colSetsTemplate().Add();
                r->setsName(QStringLiteral("Setting %1").arg(n));
                r->colUserVar().Item(3)->setsValue(QStringLiteral("%1 C").arg(20 + n));
            }
            run(&w, QStringLiteral("mnuSave"));
            GUITEST_NO_ERRORS(h.ui.script);
            QCOMPARE(rowsIn(path), qMakePair(5, 35));
            // One more, made through the window and changed there; then the file goes.
            if (changed) {
                run(&w, QStringLiteral("mnuNew"));
                type(&w, QStringLiteral("txtTimingLT"), QStringLiteral("44"));
                w.ActiveSetting()->AddUserVar(QStringLiteral("Barrel length"), QStringLiteral("14\""));
                activeId = w.ActiveSetting()->ID();
            }
            QVERIFY(QFile::remove(path));
            const QByteArray stranger = "a file that is no library";
            if (replaced)
                writeFile(path, stranger);

            if (onExit) {
                h.ui.script.yesNoAnswers.enqueue(true);
                QVERIFY(w.close());
            } else {
                run(&w, QStringLiteral("mnuSave"));
            }
            GUITEST_NO_ERRORS(h.ui.script);
            QCOMPARE(rowsIn(written), rows);
            QCOMPARE(h.ui.script.messages.size(), 1);
            const QString said = h.ui.script.messages.first().text;
            QVERIFY2(said.contains(QLatin1Char('"') + QDir::toNativeSeparators(written) + QLatin1Char('"')), qPrintable(said));
            QVERIFY2(said.contains(replaced ? QStringLiteral("replaced") : QStringLiteral("deleted")), qPrintable(said));
            if (replaced) {
                QCOMPARE(fileBytes(path), stranger);
                // The next start opens the library, not the stranger.
                QCOMPARE(stored(QStringLiteral("DBName")), written);
                // Every ID is kept, so the next start must not forget the last active setting.
                QVERIFY(stored(QStringLiteral("DBChanged")) != QLatin1String("True"));
            }
            QVERIFY(!h.app().AnythingNeedSave());
            if (!onExit) {
                // Nothing is left to save: closing asks nothing.
                QVERIFY(w.close());
                QCOMPARE(h.ui.script.questions.size(), 0);
            }
        }
        // The next start: every template, and the one last active is active again.
        mDatabase::DisconnectDB();
        WindowHarness h;
        fTolvaneMan& w = h.open();
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.app().colSetsTemplate().Count(), rows.first);
        QVERIFY(w.ActiveSetting());
        QCOMPARE(w.ActiveSetting()->ID(), activeId);
        QCOMPARE(text(&w, QStringLiteral("txtTimingLT")), changed ? QStringLiteral("44") : QStringLiteral("33"));
    }
};

QTEST_MAIN(tst_mainWindow)
#include "tst_mainWindow.moc"
