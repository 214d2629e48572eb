// The window tells the truth and loses nothing: a refusal or failure of the grip is never
// confirmed and leaves a usable window, a value the editor refuses never reaches the setting or
// the grip, a value a record replaces is shown and sent as the record holds it, and a put sends
// nothing unless every value fits.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "library/cSetsTemplate.h"
#include "sim/Fault.h"
#include "sim/GripState.h"

#include <QSlider>

using namespace guitest;

namespace {

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

// The fault of a grip that refuses a command rather than failing it.
const int kRefused = -1;

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

    // A grip that refuses, or fails (the protocol's error numbers are the grip commands' own):
    // nothing is confirmed, a refused record copies nothing, and the window stays usable.
    void aRefusalOrFailureIsNeverConfirmed_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("code");   // the command code the grip refuses or fails
        QTest::addColumn<int>("fault");  // the grip's fault; kRefused: a refusal with error byte 0x07
        QTest::addColumn<int>("number"); // the error reported; 0 none
        QTest::newRow("get all, timing refused") << "cmdTools(0)" << 0x14 << kRefused << 0;
        QTest::newRow("get all, options refused") << "cmdTools(0)" << 0x18 << kRefused << 0;
        QTest::newRow("put all, ramping refused") << "cmdTools(1)" << 0x29 << kRefused << 0;
        QTest::newRow("put timing") << "mnuULTiming" << 0x24 << kRefused << 0;
        QTest::newRow("get counters") << "mnuDLCounters" << 0x15 << kRefused << 0;
        QTest::newRow("get game timer") << "mnuDLGameTimers" << 0x16 << kRefused << 0;
        QTest::newRow("reset counter 1") << "cmdReset(0)" << 0x25 << kRefused << 0;
        QTest::newRow("the boot-mode check") << "mnuDLTiming" << 0x11 << kRefused << 0;
        // A report code the catalogue does not know is the timing record's own unknown error.
        QTest::newRow("garbled timing report") << "cmdTools(0)" << 0x14 << int(gripsim::FaultKind::Garbage) << 10213;
    }
    void aRefusalOrFailureIsNeverConfirmed()
    {
        QFETCH(QString, command);
        QFETCH(int, code);
        QFETCH(int, fault);
        QFETCH(int, number);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fillGrip(h.grip);
        fTolvaneMan& w = openTemplate(h);
        run(&w, QStringLiteral("mnuDLCounters"));
        h.ui.script.messages.clear();
        const QList<int> timings = settingTimings(*w.ActiveSetting());
        const QString counter = text(&w, QStringLiteral("txtCounters(0)"));
        const QString gameTime = text(&w, QStringLiteral("txtCntDown"));
        const QString maxRof = text(&w, QStringLiteral("txtDefaultLoadTime"));
        if (fault == kRefused)
            h.grip.replies.insert(quint8(code), griptest::refusal(code, 0x07));
        else
            h.grip.fault(gripsim::FaultKind(fault), code);
        run(&w, command);
        // No confirmation. A refusal shows no error window: the status bar says what happened,
        // with the byte.
        QVERIFY2(h.ui.script.messages.isEmpty(), qPrintable(messageTexts(h.ui.script).join(QLatin1Char('|'))));
        if (number == 0) {
            GUITEST_NO_ERRORS(h.ui.script);
            QCOMPARE(w.PanelText(fTolvaneMan::kPanelStep), QStringLiteral("The grip refused the command (error byte 0x07)."));
        } else {
            QCOMPARE(h.ui.script.errors.size(), 1);
            QCOMPARE(h.ui.script.errors.first().Number(), number);
        }
        // A download that failed copied nothing: the template stays an editable template with its
        // values, and a refused reset leaves the counter shown.
        if (code == 0x14) {
            QVERIFY(w.IsTemplate());
            QCOMPARE(settingTimings(*w.ActiveSetting()), timings);
            QCOMPARE(shownTimings(w), timings);
        }
        if (code == 0x15 || code == 0x25)
            QCOMPARE(text(&w, QStringLiteral("txtCounters(0)")), counter);
        if (code == 0x16)
            QCOMPARE(text(&w, QStringLiteral("txtCntDown")), gameTime);
        if (code == 0x18)
            QCOMPARE(text(&w, QStringLiteral("txtDefaultLoadTime")), maxRof);
        // The pointer is back, the command can be given again (after a tool command every tool
        // button works, as always), and the next command that the grip answers is confirmed and
        // clears the status.
        QCOMPARE(mMain::MousePointerDepth(), 0);
        QVERIFY(!QApplication::overrideCursor());
        QVERIFY(enabled(&w, command));
        if (command.startsWith(QLatin1String("cmdTools")))
            for (const char* tool : {"cmdTools(0)", "cmdTools(1)", "cmdTools(2)", "cmdTools(4)", "cmdTools(6)"})
                QVERIFY2(enabled(&w, QLatin1String(tool)), tool);
        h.grip.replies.clear();
        h.ui.script.errors.clear();
        run(&w, QStringLiteral("mnuDLCounters"));
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(messageTexts(h.ui.script), QStringList{QStringLiteral("Counters were fetched.")});
        QCOMPARE(w.PanelText(fTolvaneMan::kPanelStep), QStringLiteral("N/A"));
    }

    // A value the editor refuses is reported and the box keeps the last good one; a value a record
    // replaces is shown as the record holds it. Either way the setting keeps its timing and the
    // next put sends what the window shows.
    void aValueRefusedOrReplacedIsNeverSent_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<int>("number"); // the error shown; 0 none
        QTest::addColumn<QString>("shown");
        QTest::newRow("load 300") << "txtTimingLT" << "300" << 380 << "44";
        QTest::newRow("load as text") << "txtTimingLT" << "abc" << 13 << "44";
        QTest::newRow("countdown -1") << "txtCntDown" << "-1" << 380 << "12";
        QTest::newRow("max ROF -1") << "txtDefaultLoadTime" << "-1" << 0 << QString::number(cOptions::DefaultLoadTimeDefault);
        QTest::newRow("eye check max 0") << "txtEyeCheckMax" << "0" << 0 << QString::number(cOptions::EyeCheckMaxTimeDefault);
        QTest::newRow("shots as text") << "txtShots" << "abc" << 0 << QString::number(cHyper::ShotsDefault);
        QTest::newRow("ramping time 1e3") << "txtHyperTime" << "1e3" << 0 << QString::number(cHyper::HyperTimeDefault);
        QTest::newRow("ramping time in range") << "txtHyperTime" << "90" << 0 << "90";
    }
    void aValueRefusedOrReplacedIsNeverSent()
    {
        QFETCH(QString, box);
        QFETCH(QString, pasted);
        QFETCH(int, number);
        QFETCH(QString, shown);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = openTemplate(h);
        const auto setting = w.ActiveSetting();
        const QList<int> timings = settingTimings(*setting);
        QLineEdit* edit = control<QLineEdit>(&w, box);
        edit->setEnabled(true); // the eye limits follow their switches; the record does not
        paste(edit, pasted);
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(h.ui.script.errors.size(), number ? 1 : 0);
        if (number)
            QCOMPARE(h.ui.script.errors.first().Number(), number);
        QCOMPARE(edit->text(), shown);
        // The setting and the sliders keep the last good timing.
        QCOMPARE(settingTimings(*setting), timings);
        QCOMPARE(setting->lGameTime(), 12);
        for (int t = 0; t < 5; ++t)
            QCOMPARE(w.timing(t).slider->value(), timings[t]);
        h.ui.script.errors.clear();
        run(&w, QStringLiteral("cmdTools(1)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const gripsim::GripState grip = h.grip.grip.state();
        QCOMPARE((QList<int>{grip.timing.shotTime, grip.timing.dwellTime, grip.timing.cycleTimeOpen, grip.timing.loadTime,
                             grip.timing.cycleTimeClose}),
                 timings);
        const QHash<QString, int> sent = {{QStringLiteral("txtCntDown"), grip.gameTimer.countDownTimer},
                                          {QStringLiteral("txtTimingLT"), grip.timing.loadTime},
                                          {QStringLiteral("txtDefaultLoadTime"), grip.options.defaultLoadTime},
                                          {QStringLiteral("txtEyeCheckMax"), grip.options.eyeCheckMaxTime},
                                          {QStringLiteral("txtShots"), grip.ramping.shots},
                                          {QStringLiteral("txtHyperTime"), grip.ramping.hyperTime}};
        QCOMPARE(QString::number(sent.value(box)), shown);
        QCOMPARE(int(grip.gameTimer.countDownTimer), 12);
    }

    void aPutSendsNothingUnlessEveryValueFits_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("value");
        QTest::newRow("put all, load 300") << "cmdTools(1)" << "lLoadTime" << 300;
        QTest::newRow("put all, countdown -1 after a good timing") << "cmdTools(1)" << "lGameTime" << -1;
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
            {QStringLiteral("lLoadTime"), &cSetsTemplate::setlLoadTime},
            {QStringLiteral("lGameTime"), &cSetsTemplate::setlGameTime},
            {QStringLiteral("lCycleTimeClose"), &cSetsTemplate::setlCycleTimeClose}};
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
};

QTEST_MAIN(tst_windowTruth)
#include "tst_windowTruth.moc"
