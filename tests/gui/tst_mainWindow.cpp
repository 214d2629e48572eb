// The main window's commands against a virtual grip behind the in-memory port: what each command
// sends, what the panes show afterwards, confirmations, refusals and failures, the dispatcher,
// the command line and the save question on closing.
#include "GuiTestSupport.h"

#include "grip/cGunInfo.h"
#include "library/cApplication.h"
#include "library/cSetsTemplate.h"
#include "library/mDatabase.h"
#include "shell/mMain.h"
#include "sim/Fault.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSqlQuery>
#include <QtTest>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include "gui/widgets/ucIProgress.h"

using namespace guitest;

namespace {

QPushButton* tool(fTolvaneMan& w, int index)
{
    return control<QPushButton>(&w, QStringLiteral("cmdTools(%1)").arg(index));
}

QString text(fTolvaneMan& w, const QString& name)
{
    return control<QLineEdit>(&w, name)->text();
}

QString firstError(const ScriptedUi& script)
{
    return script.errors.isEmpty() ? QString() : QStringLiteral("%1: %2").arg(script.errors.first().Number()).arg(script.errors.first().Description());
}

int rowsInLibrary()
{
    QSqlDatabase connection = mMain::ConnectDB();
    QSqlQuery query(connection);
    query.exec(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate"));
    return query.next() ? query.value(0).toInt() : -1;
}

} // namespace

class tst_mainWindow : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }

    void commandsSendTheirExchangesInOrder_data();
    void commandsSendTheirExchangesInOrder();
    void getAllShowsTheGripInEveryPane();
    void getMakesTheSettingReadOnlyButTheButtonsStayEnabled();
    void putAllSendsWhatThePanesShow();
    void confirmationsFollowThePreference();
    void counterResetZeroesTheBoxAndTellsTheGrip_data();
    void counterResetZeroesTheBoxAndTellsTheGrip();
    void aGripInBootModeIsStartedFirst();
    void aRefusingGripEndsQuietly();
    void aFailingGripIsReportedAndTheWindowStaysUsable_data();
    void aFailingGripIsReportedAndTheWindowStaysUsable();
    void dispatcherIgnoresStatisticsPromoteAndBurn_data();
    void dispatcherIgnoresStatisticsPromoteAndBurn();
    void commandLineWords_data();
    void commandLineWords();
    void closingAsksToSaveChanges_data();
    void closingAsksToSaveChanges();
    void lastKeyReopensTheSetting();
    void windowPositionIsKept();
};

void tst_mainWindow::commandsSendTheirExchangesInOrder_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QList<int>>("codes");
    // Every exchange is preceded by a refresh of the gun information (0x13); every grip command
    // but the gun information asks first whether the grip sits in its boot code (0x11).
    QTest::newRow("get all") << "cmdTools(0)" << QList<int>{0x13, 0x11, 0x13, 0x14, 0x13, 0x15, 0x13, 0x16, 0x13, 0x17, 0x13, 0x18, 0x13, 0x19};
    QTest::newRow("put all") << "cmdTools(1)" << QList<int>{0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29};
    QTest::newRow("get timing") << "mnuDLTiming" << QList<int>{0x13, 0x11, 0x13, 0x14};
    QTest::newRow("put timing") << "mnuULTiming" << QList<int>{0x13, 0x11, 0x13, 0x24};
    QTest::newRow("get counters") << "mnuDLCounters" << QList<int>{0x13, 0x11, 0x13, 0x15};
    QTest::newRow("get battery") << "mnuDLBattery" << QList<int>{0x13, 0x11, 0x13, 0x17};
    QTest::newRow("get game timers") << "mnuDLGameTimers" << QList<int>{0x13, 0x11, 0x13, 0x16};
    QTest::newRow("put game timers") << "mnuULGameTimers" << QList<int>{0x13, 0x11, 0x13, 0x26};
    QTest::newRow("put all from the menu") << "mnuULAll" << QList<int>{0x13, 0x11, 0x13, 0x24, 0x13, 0x26, 0x13, 0x28, 0x13, 0x29};
    QTest::newRow("gun information: no boot-mode check") << "mnuDLGunInfo" << QList<int>{0x13};
    QTest::newRow("reset counter 2") << "cmdReset(1)" << QList<int>{0x13, 0x11, 0x13, 0x25};
    QTest::newRow("default settings: no exchange") << "cmdTools(6)" << QList<int>{};
}

void tst_mainWindow::commandsSendTheirExchangesInOrder()
{
    QFETCH(QString, command);
    QFETCH(QList<int>, codes);
    WindowHarness h(QStringLiteral("firmware=4.0.5"));
    fTolvaneMan& w = h.open();
    if (command.startsWith(QLatin1String("mnu")))
        control<QAction>(&w, command)->trigger();
    else
        control<QPushButton>(&w, command)->click();
    QVERIFY2(h.ui.script.errors.isEmpty(), qPrintable(firstError(h.ui.script)));
    QCOMPARE(h.takeCodes(), codes);
    QCOMPARE(mMain::MousePointerDepth(), 0);
    QVERIFY(!QApplication::overrideCursor());
}

void tst_mainWindow::getAllShowsTheGripInEveryPane()
{
    WindowHarness h(QStringLiteral("firmware=4.0.5"));
    h.grip.grip.updateState([](gripsim::GripState& s) {
        s.timing = {12, 9, 31, 40, 29, 6};
        s.counters = {300, 65535, 197121};
        s.options.flags = 0x41; // eye mounted, use eye
        s.options.defaultLoadTime = 50;
        s.ramping = {7, 120, 4};
        s.gameTimer.countDownTimer = 15;
        s.gameTimer.preAlert1On = 1;
        s.battery = 880;
    });
    fTolvaneMan& w = h.open();
    tool(w, 0)->click();
    QVERIFY2(h.ui.script.errors.isEmpty(), qPrintable(firstError(h.ui.script)));

    const QStringList timing = {text(w, QStringLiteral("txtTimingST")), text(w, QStringLiteral("txtTimingDT")),
                                text(w, QStringLiteral("txtTimingCTO")), text(w, QStringLiteral("txtTimingLT")),
                                text(w, QStringLiteral("txtTimingCTC"))};
    QCOMPARE(timing, (QStringList{"12", "9", "31", "40", "29"}));
    QCOMPARE(control<QSlider>(&w, QStringLiteral("sldCTO"))->value(), 31);
    QCOMPARE(control<QComboBox>(&w, QStringLiteral("cboFiringModes"))->currentText(), QStringLiteral("Sniper"));
    QCOMPARE(text(w, QStringLiteral("txtCounters(0)")), QStringLiteral("300"));
    QCOMPARE(text(w, QStringLiteral("txtCounters(1)")), QStringLiteral("65535"));
    QCOMPARE(text(w, QStringLiteral("txtCounters(2)")), QStringLiteral("197121"));
    QVERIFY(control<QCheckBox>(&w, QStringLiteral("chkACE"))->isChecked());
    QVERIFY(control<QCheckBox>(&w, QStringLiteral("chkUseEye"))->isChecked());
    QCOMPARE(text(w, QStringLiteral("txtDefaultLoadTime")), QStringLiteral("50"));
    QCOMPARE(text(w, QStringLiteral("txtShots")), QStringLiteral("7"));
    QCOMPARE(text(w, QStringLiteral("txtHyperTime")), QStringLiteral("120"));
    QCOMPARE(control<QComboBox>(&w, QStringLiteral("cboHyperModes"))->currentText(), QStringLiteral("75% Ramping"));
    QCOMPARE(text(w, QStringLiteral("txtCntDown")), QStringLiteral("15"));
    QVERIFY(control<QCheckBox>(&w, QStringLiteral("chkAlertOne"))->isChecked());
    // 880 steps of 2.5/1024 V behind the 16.2 to 6.2 divider: 5.61 V.
    QCOMPARE(control<ucIProgress>(&w, QStringLiteral("ucIProgress1"))->Value(), 561);
    QCOMPARE(w.PanelText(fTolvaneMan::kPanelFirmware), QStringLiteral("4.0.5"));
    QCOMPARE(control<QLabel>(&w, QStringLiteral("lblROFbps"))->text(), QStringLiteral("9.2")); // 1000 / (9 + 31 + 40 + 29)

    // The active setting holds what came from the grip, and the library knows it changed.
    const auto setting = w.ActiveSetting();
    QCOMPARE(setting->lShotTime(), 12);
    QCOMPARE(setting->lFiringMode(), 6);
    QCOMPARE(setting->lGameTime(), 15);
    QCOMPARE(setting->lHyperMode(), 4);
    QVERIFY(mMain::Application().AnythingNeedSave());
}

void tst_mainWindow::getMakesTheSettingReadOnlyButTheButtonsStayEnabled()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QVERIFY(w.IsTemplate());
    QList<QRect> places;
    for (int i : {0, 1, 2, 4, 6})
        places.append(tool(w, i)->geometry());
    control<QAction>(&w, QStringLiteral("mnuDLTiming"))->trigger();
    QVERIFY(!w.IsTemplate());
    // Disabled in their places: the row does not move and nothing overlaps.
    QVERIFY(!tool(w, 1)->isEnabled());
    for (int k = 0; k < 5; ++k)
        QCOMPARE(tool(w, QList<int>{0, 1, 2, 4, 6}[k])->geometry(), places[k]);
    tool(w, 0)->click();
    // UpdateState disabled Put and Properties; the tool-button handler enabled every button
    // again at its end, as the program always did.
    QVERIFY(tool(w, 1)->isEnabled());
    QVERIFY(tool(w, 4)->isEnabled());
    QVERIFY(!control<QAction>(&w, QStringLiteral("mnuProperties"))->isEnabled());
    QVERIFY(!control<QLineEdit>(&w, QStringLiteral("txtTimingLT"))->isEnabled());
    QVERIFY(!control<QLineEdit>(&w, QStringLiteral("txtCntDown"))->isEnabled());
}

void tst_mainWindow::putAllSendsWhatThePanesShow()
{
    WindowHarness h(QStringLiteral("firmware=4.0.5"));
    fTolvaneMan& w = h.open();
    control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(true);
    const QList<QPair<QString, QString>> edits = {{"txtTimingST", "12"}, {"txtTimingDT", "9"}, {"txtTimingCTO", "31"},
                                                  {"txtTimingLT", "40"}, {"txtTimingCTC", "29"}, {"txtCntDown", "20"},
                                                  {"txtShots", "5"}, {"txtHyperTime", "90"}, {"txtDefaultLoadTime", "60"}};
    for (const auto& edit : edits) {
        QLineEdit* box = control<QLineEdit>(&w, edit.first);
        box->selectAll();
        QTest::keyClicks(box, edit.second);
    }
    control<QCheckBox>(&w, QStringLiteral("chkUseLED"))->setChecked(true);
    tool(w, 1)->click();
    QVERIFY2(h.ui.script.errors.isEmpty(), qPrintable(firstError(h.ui.script)));
    const gripsim::GripState grip = h.grip.grip.state();
    QCOMPARE(grip.timing, (gripsim::TimingValues{12, 9, 31, 40, 29, 0}));
    QCOMPARE(int(grip.gameTimer.countDownTimer), 20);
    QCOMPARE(grip.ramping, (gripsim::RampingValues{5, 90, 1}));
    QCOMPARE(int(grip.options.defaultLoadTime), 60);
    QVERIFY(grip.options.flags & 0x08); // Use LED
    QCOMPARE(h.ui.script.messages.last().text, QStringLiteral("Timinginformation and Countdowntimers were put."));
}

void tst_mainWindow::confirmationsFollowThePreference()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    control<QAction>(&w, QStringLiteral("mnuDLCounters"))->trigger();
    QCOMPARE(messageTexts(h.ui.script), QStringList{QStringLiteral("Counters were fetched.")});
    QCOMPARE(h.ui.script.messages.first().title, QStringLiteral("Confirmation"));
    QCOMPARE(h.ui.script.messages.first().icon, MsgIcon::Information);
    mMain::Application().RegistrySettings().setShowConfirmComm(false);
    control<QAction>(&w, QStringLiteral("mnuDLBattery"))->trigger();
    control<QAction>(&w, QStringLiteral("mnuDLTiming"))->trigger();
    QCOMPARE(h.ui.script.messages.size(), 1);
}

void tst_mainWindow::counterResetZeroesTheBoxAndTellsTheGrip_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("payload");
    // Firmware up to 1.1.70 gets the selector, newer firmware both counters' new values.
    QTest::newRow("old firmware, counter 1") << "1.1.70" << 0 << "2501000000";
    QTest::newRow("old firmware, counter 2") << "1.1.70" << 1 << "2502000000";
    QTest::newRow("new firmware, counter 2 keeps counter 1") << "4.0.5" << 1 << "252C010000";
}

void tst_mainWindow::counterResetZeroesTheBoxAndTellsTheGrip()
{
    QFETCH(QString, firmware);
    QFETCH(int, button);
    QFETCH(QString, payload);
    WindowHarness h(QStringLiteral("firmware=") + firmware);
    h.grip.grip.updateState([](gripsim::GripState& s) { s.counters = {300, 45, 1000}; });
    fTolvaneMan& w = h.open();
    control<QAction>(&w, QStringLiteral("mnuDLCounters"))->trigger();
    control<QPushButton>(&w, QStringLiteral("cmdReset(%1)").arg(button))->click();
    QVERIFY2(h.ui.script.errors.isEmpty(), qPrintable(firstError(h.ui.script)));
    QCOMPARE(h.grip.payloads(0x25), QStringList{payload});
    QCOMPARE(text(w, QStringLiteral("txtCounters(%1)").arg(button)), QStringLiteral("0"));
    QCOMPARE(h.ui.script.messages.last().text, QStringLiteral("Counter %1 was reset.").arg(button + 1));
}

void tst_mainWindow::aGripInBootModeIsStartedFirst()
{
    WindowHarness h(QStringLiteral("bootmode=1"));
    fTolvaneMan& w = h.open();
    control<QAction>(&w, QStringLiteral("mnuDLTiming"))->trigger();
    QVERIFY2(h.ui.script.errors.isEmpty(), qPrintable(firstError(h.ui.script)));
    QCOMPARE(h.takeCodes(), (QList<int>{0x13, 0x11, 0x13, 0x83, 0x13, 0x14}));
}

void tst_mainWindow::aRefusingGripEndsQuietly()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    const QString before = text(w, QStringLiteral("txtTimingLT"));
    h.grip.fault(gripsim::FaultKind::Nak, 0x14);
    control<QAction>(&w, QStringLiteral("mnuDLTiming"))->trigger();
    // No error: the refusal is recorded and the command ends as usual.
    QVERIFY(h.ui.script.errors.isEmpty());
    QCOMPARE(text(w, QStringLiteral("txtTimingLT")), before);
    QCOMPARE(messageTexts(h.ui.script), QStringList{QStringLiteral("Timinginformation was fetched.")});
}

void tst_mainWindow::aFailingGripIsReportedAndTheWindowStaysUsable_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("help");
    QTest::newRow("silent grip") << int(gripsim::FaultKind::Silent) << 0x13 << 10201 << "Communication timed out!";
    // A report code the catalogue does not know makes the read ask for -1 bytes.
    QTest::newRow("garbled timing report") << int(gripsim::FaultKind::Garbage) << 0x14 << 5 << "";
    QTest::newRow("bad checksum on the battery") << int(gripsim::FaultKind::BadSum) << 0x17 << 10200 << "";
}

void tst_mainWindow::aFailingGripIsReportedAndTheWindowStaysUsable()
{
    QFETCH(int, kind);
    QFETCH(int, code);
    QFETCH(int, number);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    h.grip.grip.addFault({gripsim::FaultKind(kind), quint8(code), 0, 1});
    tool(w, 0)->click();
    QCOMPARE(h.ui.script.errors.size(), 1);
    const MarloError& error = h.ui.script.errors.first();
    QCOMPARE(error.Number(), number);
    QCOMPARE(error.Trail().last().module, QStringLiteral("fTolvaneMan"));
    QCOMPARE(error.Trail().last().procedure, QStringLiteral("cmdTools_Click(0)"));
    // No confirmation, the pointer is back, every button works again.
    QVERIFY(h.ui.script.messages.isEmpty());
    QCOMPARE(mMain::MousePointerDepth(), 0);
    QVERIFY(!QApplication::overrideCursor());
    for (int i : {0, 1, 2, 4, 6})
        QVERIFY(tool(w, i)->isEnabled());
    tool(w, 0)->click();
    QCOMPARE(h.ui.script.errors.size(), 1);
    QCOMPARE(h.ui.script.messages.size(), 1);
}

void tst_mainWindow::dispatcherIgnoresStatisticsPromoteAndBurn_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("library statistics") << "mnuLibStatistics";
    QTest::newRow("promote") << "mnuPromote";
    QTest::newRow("burn firmware") << "mnuBurnFirmware";
    QTest::newRow("library (stats) button") << "cmdTools(3)";
    QTest::newRow("promote button") << "cmdTools(5)";
    QTest::newRow("burn program button") << "cmdTools(9)";
}

void tst_mainWindow::dispatcherIgnoresStatisticsPromoteAndBurn()
{
    QFETCH(QString, command);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    const int settings = mMain::Application().colSetsTemplate().Count();
    if (command.startsWith(QLatin1String("mnu")))
        control<QAction>(&w, command)->trigger();
    else
        QMetaObject::invokeMethod(&w, "cmdTools_Click", Q_ARG(int, command.mid(9, 1).toInt()));
    QVERIFY(h.ui.script.errors.isEmpty());
    QVERIFY(h.ui.script.messages.isEmpty());
    QCOMPARE(h.takeCodes(), QList<int>{});
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), settings);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    // Library (stats) and Promote are never shown as buttons.
    QVERIFY(tool(w, 3)->isHidden());
    QVERIFY(tool(w, 5)->isHidden());
}

void tst_mainWindow::commandLineWords_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("warnings");
    QTest::addColumn<QString>("uploaded"); // the file an upload was tried with ("" none)
    QTest::newRow("nothing") << QStringList{} << 0 << "";
    QTest::newRow("plain words are not options") << QStringList{"hello", "world"} << 0 << "";
    QTest::newRow("minus, lower-case f, quoted path") << QStringList{"-f\"/nowhere/my fw.tvf\""} << 0 << "/nowhere/my fw.tvf";
    QTest::newRow("slash F") << QStringList{"/F/nowhere/a.tvf"} << 0 << "/nowhere/a.tvf";
    QTest::newRow("-F and the file as the next word") << QStringList{"-F", "/nowhere/b.tvf"} << 0 << "/nowhere/b.tvf";
    QTest::newRow("another letter warns once") << QStringList{"/x"} << 1 << "";
    QTest::newRow("each wrong word warns, the rest is read") << QStringList{"-a", "/bc", "-f/nowhere/c.tvf"} << 2 << "/nowhere/c.tvf";
    QTest::newRow("a path alone is an option letter") << QStringList{"/tmp/a.tvf"} << 1 << "";
}

void tst_mainWindow::commandLineWords()
{
    QFETCH(QStringList, words);
    QFETCH(int, warnings);
    QFETCH(QString, uploaded);
    WindowHarness h;
    h.open(true, words);
    QTRY_COMPARE(h.ui.script.messages.size() + h.ui.script.errors.size(), warnings + (uploaded.isEmpty() ? 0 : 1));
    for (const ScriptedUi::Message& m : h.ui.script.messages) {
        QCOMPARE(m.text, QStringLiteral("Unsupported command-line parameter."));
        QCOMPARE(m.title, QStringLiteral("Warning"));
        QCOMPARE(m.icon, MsgIcon::Exclamation);
    }
    // The file does not exist: the upload stops at loading it and names it in its step.
    if (!uploaded.isEmpty()) {
        QCOMPARE(h.ui.script.errors.size(), 1);
        bool named = false;
        for (const ErrorFrame& frame : h.ui.script.errors.first().Trail())
            named = named || frame.procedure == QStringLiteral("UploadFirmware - load firmware file (%1)").arg(uploaded);
        QVERIFY(named);
        QCOMPARE(h.takeCodes(), QList<int>{});
    }
}

void tst_mainWindow::closingAsksToSaveChanges_data()
{
    QTest::addColumn<bool>("answer");
    QTest::newRow("yes saves") << true;
    QTest::newRow("no discards") << false;
}

void tst_mainWindow::closingAsksToSaveChanges()
{
    QFETCH(bool, answer);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QLineEdit* load = control<QLineEdit>(&w, QStringLiteral("txtTimingLT"));
    load->selectAll();
    QTest::keyClicks(load, QStringLiteral("33"));
    const QString id = w.ActiveSetting()->ID();
    h.ui.script.yesNoAnswers.enqueue(answer);
    QVERIFY(w.close());
    QCOMPARE(h.ui.script.questions.size(), 1);
    QCOMPARE(h.ui.script.questions.first().text,
             QStringLiteral("Some data have changed without being saved.\r\nDo you wish to save before exiting?"));
    QCOMPARE(h.ui.script.questions.first().title, QStringLiteral("Save settings"));
    QCOMPARE(h.ui.script.questions.first().icon, MsgIcon::Question);
    QCOMPARE(rowsInLibrary(), answer ? 1 : 0);
    QCOMPARE(mMain::Application().RegistrySettings().LastKey(), answer ? id : QString());
}

void tst_mainWindow::lastKeyReopensTheSetting()
{
    QString id;
    {
        WindowHarness h;
        fTolvaneMan& w = h.open();
        w.ActiveSetting()->setsName(QStringLiteral("Field day"));
        id = w.ActiveSetting()->ID();
        h.ui.script.yesNoAnswers.enqueue(true);
        QVERIFY(w.close());
    }
    mMain::ReleaseApplication();
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QCOMPARE(w.ActiveSetting()->ID(), id);
    QVERIFY(w.IsTemplate());
    QCOMPARE(w.windowTitle(), QStringLiteral("Tolvane Interface Programme [Field day]"));
}

void tst_mainWindow::windowPositionIsKept()
{
    {
        WindowHarness h;
        fTolvaneMan& w = h.open();
        w.move(120, 90);
        h.ui.script.yesNoAnswers.enqueue(false);
        QVERIFY(w.close());
    }
    mMain::ReleaseApplication();
    WindowHarness h;
    fTolvaneMan& w = h.open();
    QCOMPARE(w.pos(), QPoint(120, 90));
}

QTEST_MAIN(tst_mainWindow)
#include "tst_mainWindow.moc"
