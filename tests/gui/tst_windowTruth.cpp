// The window tells the truth and loses nothing: every command is held while a grip command
// talks to the grip, a refusal of the grip is never confirmed, a value the editor refuses never
// reaches the setting, a value a record replaces is shown as the record holds it, and a put
// sends nothing unless every value fits.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "library/cSetsTemplate.h"
#include "link/cError.h"
#include "link/mLinkHelp.h"
#include "sim/GripState.h"

#include <QSlider>

using namespace guitest;

namespace {

// Every command that a running grip command holds.
const char* const kHeld[] = {
    "cmdTools(0)", "cmdTools(1)", "cmdTools(2)", "cmdTools(4)", "cmdTools(6)", "cmdReset(0)", "cmdReset(1)",
    "mnuDLTiming", "mnuDLCounters", "mnuDLGameTimers", "mnuDLGunInfo", "mnuDLBattery", "mnuDLFirmware",
    "mnuULTiming", "mnuULGameTimers", "mnuULFirmware", "mnuULAll", "mnuLibTemplates", "mnuProperties",
    "mnuDefaultSettings", "mnuOptions", "mnuAbout", "mnuNew", "mnuExit",
};

QStringList enabledCommands(QObject* window)
{
    QStringList names;
    for (const char* name : kHeld)
        if (enabled(window, QLatin1String(name)))
            names << QLatin1String(name);
    return names;
}

QList<int> shownTimings(fTolvaneMan& w)
{
    QList<int> values;
    for (const char* name : {"txtTimingST", "txtTimingDT", "txtTimingCTO", "txtTimingLT", "txtTimingCTC"})
        values << text(&w, QLatin1String(name)).toInt();
    return values;
}

QList<int> settingTimings(const cSetsTemplate& s)
{
    return {s.lShotTime(), s.lDwellTime(), s.lCycleTimeOpen(), s.lLoadTime(), s.lCycleTimeClose()};
}

// An editable template in expert mode, with times the grip does not hold.
fTolvaneMan& openTemplate(WindowHarness& h)
{
    fTolvaneMan& w = h.open();
    w.setIsTemplate(true);
    control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(true);
    const QList<QPair<const char*, const char*>> edits = {{"txtTimingST", "7"}, {"txtTimingDT", "8"}, {"txtTimingCTO", "33"},
                                                          {"txtTimingLT", "44"}, {"txtTimingCTC", "22"}, {"txtCntDown", "12"}};
    for (const auto& [name, value] : edits)
        type(&w, QLatin1String(name), QLatin1String(value));
    return w;
}

// Replaces what a box holds as a paste does (a user's edit, in one piece).
void paste(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    edit->selectAll();
    edit->insert(text);
}

} // namespace

class tst_windowTruth : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }

    void everyCommandIsHeldWhileTheGripIsTalkedTo_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : {"cmdTools(0)", "cmdTools(1)", "mnuDLTiming", "mnuULTiming", "mnuDLCounters", "mnuDLGameTimers",
                                    "mnuULGameTimers", "mnuDLBattery", "mnuDLGunInfo", "mnuULAll", "cmdReset(0)", "cmdReset(1)"})
            QTest::newRow(command) << QString::fromLatin1(command);
    }
    void everyCommandIsHeldWhileTheGripIsTalkedTo()
    {
        QFETCH(QString, command);
        WindowHarness h;
        fTolvaneMan& w = openTemplate(h);
        QVERIFY(enabled(&w, command));
        // At every frame the grip receives, the window is asked what a user could start.
        int frames = 0;
        QStringList enabledDuring;
        bool closed = false;
        h.grip.link.port.setResponder([&](const QByteArray& frame) {
            ++frames;
            enabledDuring << enabledCommands(&w);
            closed = closed || w.close();
            return h.grip.grip.handleFrame(frame).value_or(QByteArray());
        });
        run(&w, command);
        GUITEST_NO_ERRORS(h.ui.script);
        QVERIFY(frames >= 1);
        QVERIFY2(enabledDuring.isEmpty(), qPrintable(enabledDuring.join(QLatin1Char(' '))));
        QVERIFY(!closed);
        QVERIFY(w.isVisible());
        QVERIFY(!w.GripCommandRunning());
        // Afterwards every command has the state the window gives it: a second UpdateState
        // changes nothing (the tool buttons are all enabled after a tool command, as always).
        const QStringList after = enabledCommands(&w);
        w.UpdateState();
        if (!command.startsWith(QLatin1String("cmdTools")))
            QCOMPARE(enabledCommands(&w), after);
        for (const char* always : {"mnuDLTiming", "mnuAbout", "mnuOptions", "mnuExit", "mnuNew", "cmdTools(0)"})
            QVERIFY2(after.contains(QLatin1String(always)), always);
    }

    void aRefusalIsNeverConfirmed_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("refused"); // the command code the grip refuses
        QTest::newRow("get all, timing refused") << "cmdTools(0)" << 0x14;
        QTest::newRow("get all, options refused") << "cmdTools(0)" << 0x18;
        QTest::newRow("get all, ramping refused") << "cmdTools(0)" << 0x19;
        QTest::newRow("put all, options refused") << "cmdTools(1)" << 0x28;
        QTest::newRow("put all, ramping refused") << "cmdTools(1)" << 0x29;
        QTest::newRow("put all, timing refused") << "cmdTools(1)" << 0x24;
        QTest::newRow("put all, game timer refused") << "cmdTools(1)" << 0x26;
        QTest::newRow("get timing") << "mnuDLTiming" << 0x14;
        QTest::newRow("put timing") << "mnuULTiming" << 0x24;
        QTest::newRow("get counters") << "mnuDLCounters" << 0x15;
        QTest::newRow("get game timer") << "mnuDLGameTimers" << 0x16;
        QTest::newRow("put game timer") << "mnuULGameTimers" << 0x26;
        QTest::newRow("get battery") << "mnuDLBattery" << 0x17;
        QTest::newRow("reset counter 1") << "cmdReset(0)" << 0x25;
        QTest::newRow("the boot-mode check") << "mnuDLTiming" << 0x11;
    }
    void aRefusalIsNeverConfirmed()
    {
        QFETCH(QString, command);
        QFETCH(int, refused);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        h.grip.grip.updateState([](gripsim::GripState& s) {
            s.counters = {300, 45, 1000};
            s.timing = {10, 10, 30, 35, 28, 0};
            s.gameTimer.countDownTimer = 25;
            s.options.defaultLoadTime = 60;
            s.ramping = {7, 80, 2};
        });
        fTolvaneMan& w = openTemplate(h);
        run(&w, QStringLiteral("mnuDLCounters"));
        h.ui.script.messages.clear();
        const QList<int> timings = settingTimings(*w.ActiveSetting());
        const QString counter = text(&w, QStringLiteral("txtCounters(0)"));
        const QString gameTime = text(&w, QStringLiteral("txtCntDown"));
        const QList<int> ramping = {w.ActiveSetting()->lShots(), w.ActiveSetting()->lHyperTime(), w.ActiveSetting()->lHyperMode()};
        const QString maxRof = text(&w, QStringLiteral("txtDefaultLoadTime"));
        h.grip.replies.insert(quint8(refused), griptest::refusal(refused, 0x07));
        run(&w, command);
        // No error window, no confirmation; the status bar says what happened, with the byte.
        GUITEST_NO_ERRORS(h.ui.script);
        QVERIFY2(h.ui.script.messages.isEmpty(), qPrintable(messageTexts(h.ui.script).join(QLatin1Char('|'))));
        QCOMPARE(w.PanelText(fTolvaneMan::kPanelStep), QStringLiteral("The grip refused the command (error byte 0x07)."));
        // A refused download copied nothing: the template stays an editable template with its
        // values, and a refused reset leaves the counter shown.
        if (refused == 0x14) {
            QVERIFY(w.IsTemplate());
            QCOMPARE(settingTimings(*w.ActiveSetting()), timings);
            QCOMPARE(shownTimings(w), timings);
        }
        if (refused == 0x15 || refused == 0x25)
            QCOMPARE(text(&w, QStringLiteral("txtCounters(0)")), counter);
        if (refused == 0x16)
            QCOMPARE(text(&w, QStringLiteral("txtCntDown")), gameTime);
        if (refused == 0x18)
            QCOMPARE(text(&w, QStringLiteral("txtDefaultLoadTime")), maxRof);
        if (refused == 0x19)
            QCOMPARE((QList<int>{w.ActiveSetting()->lShots(), w.ActiveSetting()->lHyperTime(), w.ActiveSetting()->lHyperMode()}), ramping);
        // The next command that the grip answers is confirmed and clears the status.
        h.grip.replies.clear();
        run(&w, QStringLiteral("mnuDLCounters"));
        QCOMPARE(messageTexts(h.ui.script), QStringList{QStringLiteral("Counters were fetched.")});
        QCOMPARE(w.PanelText(fTolvaneMan::kPanelStep), QStringLiteral("N/A"));
    }

    void aRefusedValueNeverReachesTheSetting_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<int>("number"); // the error shown
        QTest::newRow("load 300") << "txtTimingLT" << "300" << 380;
        QTest::newRow("load -5") << "txtTimingLT" << "-5" << 380;
        QTest::newRow("load 256") << "txtTimingLT" << "256" << 380;
        QTest::newRow("load 1e3") << "txtTimingLT" << "1e3" << 380;
        QTest::newRow("load 0") << "txtTimingLT" << "0" << 380;
        QTest::newRow("load as text") << "txtTimingLT" << "abc" << 13;
        QTest::newRow("shot 21") << "txtTimingST" << "21" << 380;
        QTest::newRow("dwell -1") << "txtTimingDT" << "-1" << 380;
        QTest::newRow("open 76") << "txtTimingCTO" << "76" << 380;
        QTest::newRow("close 99") << "txtTimingCTC" << "99" << 380;
        QTest::newRow("countdown -1") << "txtCntDown" << "-1" << 380;
        QTest::newRow("countdown 256") << "txtCntDown" << "256" << 380;
        QTest::newRow("countdown as text") << "txtCntDown" << "ten" << 13;
    }
    void aRefusedValueNeverReachesTheSetting()
    {
        QFETCH(QString, box);
        QFETCH(QString, pasted);
        QFETCH(int, number);
        WindowHarness h;
        fTolvaneMan& w = openTemplate(h);
        const auto setting = w.ActiveSetting();
        const QString good = text(&w, box);
        const QList<int> timings = settingTimings(*setting);
        paste(control<QLineEdit>(&w, box), pasted);
        QCOMPARE(h.ui.script.errors.size(), 1);
        QCOMPARE(h.ui.script.errors.first().Number(), number);
        // The box, the slider, the setting and the grip's records keep the last good value.
        QCOMPARE(text(&w, box), good);
        QCOMPARE(settingTimings(*setting), timings);
        QCOMPARE(setting->lGameTime(), 12);
        for (int t = 0; t < 5; ++t)
            QCOMPARE(w.timing(t).slider->value(), timings[t]);
        // Put sends what the window shows.
        h.ui.script.errors.clear();
        run(&w, QStringLiteral("cmdTools(1)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const gripsim::GripState grip = h.grip.grip.state();
        QCOMPARE((QList<int>{grip.timing.shotTime, grip.timing.dwellTime, grip.timing.cycleTimeOpen, grip.timing.loadTime,
                             grip.timing.cycleTimeClose}),
                 timings);
        QCOMPARE(int(grip.gameTimer.countDownTimer), 12);
    }

    void aReplacedValueIsShownAsTheRecordHoldsIt_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        const QString loadDefault = QString::number(cOptions::DefaultLoadTimeDefault);
        QTest::newRow("max ROF in range") << "txtDefaultLoadTime" << "60" << "60";
        QTest::newRow("max ROF -1") << "txtDefaultLoadTime" << "-1" << loadDefault;
        QTest::newRow("max ROF as text") << "txtDefaultLoadTime" << "abc" << loadDefault;
        QTest::newRow("max ROF 300") << "txtDefaultLoadTime" << "300" << loadDefault;
        QTest::newRow("eye check max 0") << "txtEyeCheckMax" << "0" << QString::number(cOptions::EyeCheckMaxTimeDefault);
        QTest::newRow("eye ok max 256") << "txtEyeOKMax" << "256" << QString::number(cOptions::EyeCheckOKTimeDefault);
        QTest::newRow("shots -1") << "txtShots" << "-1" << QString::number(cHyper::ShotsDefault);
        QTest::newRow("shots as text") << "txtShots" << "abc" << QString::number(cHyper::ShotsDefault);
        QTest::newRow("ramping time 1e3") << "txtHyperTime" << "1e3" << QString::number(cHyper::HyperTimeDefault);
        QTest::newRow("ramping time in range") << "txtHyperTime" << "90" << "90";
    }
    void aReplacedValueIsShownAsTheRecordHoldsIt()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = openTemplate(h);
        QLineEdit* edit = control<QLineEdit>(&w, box);
        edit->setEnabled(true); // the eye limits follow their switches; the record does not
        type(edit, typed);
        QTest::keyClick(edit, Qt::Key_Return);
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(edit->text(), shown);
        // What the box shows is what a put sends.
        run(&w, QStringLiteral("cmdTools(1)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const gripsim::GripState grip = h.grip.grip.state();
        const QHash<QString, int> sent = {{QStringLiteral("txtDefaultLoadTime"), grip.options.defaultLoadTime},
                                          {QStringLiteral("txtEyeCheckMax"), grip.options.eyeCheckMaxTime},
                                          {QStringLiteral("txtEyeOKMax"), grip.options.eyeCheckOKTime},
                                          {QStringLiteral("txtShots"), grip.ramping.shots},
                                          {QStringLiteral("txtHyperTime"), grip.ramping.hyperTime}};
        QCOMPARE(QString::number(sent.value(box)), shown);
        QCOMPARE(edit->text(), shown);
    }

    void aPutSendsNothingUnlessEveryValueFits_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("value");
        QTest::newRow("put all, load 300") << "cmdTools(1)" << "lLoadTime" << 300;
        QTest::newRow("put all, shot -1") << "cmdTools(1)" << "lShotTime" << -1;
        QTest::newRow("put all, countdown -1 after a good timing") << "cmdTools(1)" << "lGameTime" << -1;
        QTest::newRow("put all, countdown 256") << "cmdTools(1)" << "lGameTime" << 256;
        QTest::newRow("put timing, close 1000") << "mnuULTiming" << "lCycleTimeClose" << 1000;
        QTest::newRow("put game timer, countdown -1") << "mnuULGameTimers" << "lGameTime" << -1;
    }
    void aPutSendsNothingUnlessEveryValueFits()
    {
        QFETCH(QString, command);
        QFETCH(QString, field);
        QFETCH(int, value);
        WindowHarness h;
        fTolvaneMan& w = h.open();
        // A template from the library holds the value (as an older library may).
        const auto stored = h.app().colSetsTemplate().Add();
        stored->setsName(QStringLiteral("odd"));
        const QHash<QString, void (cSetsTemplate::*)(qint32)> setters = {
            {QStringLiteral("lLoadTime"), &cSetsTemplate::setlLoadTime}, {QStringLiteral("lShotTime"), &cSetsTemplate::setlShotTime},
            {QStringLiteral("lGameTime"), &cSetsTemplate::setlGameTime}, {QStringLiteral("lCycleTimeClose"), &cSetsTemplate::setlCycleTimeClose}};
        (stored.get()->*setters.value(field))(value);
        w.ChangeTemplate(stored, true);
        h.takeCodes();
        run(&w, command);
        QCOMPARE(h.ui.script.errors.size(), 1);
        QCOMPARE(h.ui.script.errors.first().Number(), mErrCodes::RT_INVALID_CALL);
        QCOMPARE(h.takeCodes(), QList<int>{}); // nothing reached the grip
        QVERIFY(h.ui.script.messages.isEmpty());
        QVERIFY(!w.GripCommandRunning());
        QVERIFY(enabled(&w, command));
    }

    void aGarbledReportGivesTheRecordsErrorAndTheHelpForDamagedData()
    {
        WindowHarness h;
        fTolvaneMan& w = h.open();
        h.grip.replies.insert(quint8(0x14), QByteArray::fromHex("99000102030405060708090A0B0C0D"));
        run(&w, QStringLiteral("mnuDLTiming"));
        QCOMPARE(h.ui.script.errors.size(), 1);
        const MarloError& error = h.ui.script.errors.first();
        QCOMPARE(error.Number(), mErrCodes::ERR_DL_TIMING);
        QVERIFY(error.Description().startsWith(QLatin1String("An unknown error occurred during ")));
        QVERIFY(mLinkHelp::WhatToDo(error, w.Link()).contains(mErrCodes::HELP_CHECKSUM.first()));
    }
};

QTEST_MAIN(tst_windowTruth)
#include "tst_windowTruth.moc"
