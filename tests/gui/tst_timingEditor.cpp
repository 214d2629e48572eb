// The timing editor of the main window: limits, slider and text in step, typed values the slider
// refuses, the mode lists by firmware, Close = Open, the option switches, the rate of fire and the
// default settings.
#include "GuiTestSupport.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "library/cApplication.h"
#include "library/cSetsTemplate.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QtTest>

using namespace guitest;

namespace {

QLineEdit* box(fTolvaneMan& w, const QString& name) { return control<QLineEdit>(&w, name); }
QCheckBox* check(fTolvaneMan& w, const QString& name) { return control<QCheckBox>(&w, name); }

void type(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(edit, Qt::Key_Backspace);
    else
        QTest::keyClicks(edit, text);
}

// An editable template in expert mode, so that every timing can be typed.
fTolvaneMan& openExpert(WindowHarness& h)
{
    fTolvaneMan& w = h.open();
    w.setIsTemplate(true);
    check(w, QStringLiteral("chkExpert"))->setChecked(true);
    return w;
}

QStringList items(QComboBox* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->itemText(i));
    return texts;
}

} // namespace

class tst_timingEditor : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void limitsComeFromTheRecords_data();
    void limitsComeFromTheRecords();
    void sliderAndTextFollowEachOther();
    void typedValuesReachTheSettingAndTheGripRecord();
    void aValueOutsideTheSliderIsReported();
    void textThatIsNoNumberIsReportedOnce();
    void rateOfFire_data();
    void rateOfFire();
    void modeListsFollowTheFirmware_data();
    void modeListsFollowTheFirmware();
    void choosingAModeEditsTheSetting();
    void closeEqualsOpen();
    void optionSwitchesEnableTheirTimes_data();
    void optionSwitchesEnableTheirTimes();
    void defaultSettings();
};

void tst_timingEditor::limitsComeFromTheRecords_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::newRow("shot slider") << "sldST" << 1 << 20;
    QTest::newRow("shot up-down") << "updST" << 1 << 20;
    QTest::newRow("dwell slider") << "sldDT" << 1 << 20;
    QTest::newRow("open slider") << "sldCTO" << 1 << 75;
    QTest::newRow("load up-down") << "updLT" << 1 << 75;
    QTest::newRow("close slider") << "sldCTC" << 1 << 75;
    QTest::newRow("eye check max") << "updEyeCheckMax" << 1 << 255;
    QTest::newRow("eye ok max") << "updEyeOKMax" << 1 << 255;
    QTest::newRow("default load time") << "updDefaultLoadTime" << 1 << 126;
}

void tst_timingEditor::limitsComeFromTheRecords()
{
    QFETCH(QString, control);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    WindowHarness h;
    fTolvaneMan& w = h.open();
    auto* range = guitest::control<QAbstractSlider>(&w, control);
    QCOMPARE(range->minimum(), minimum);
    QCOMPARE(range->maximum(), maximum);
}

void tst_timingEditor::sliderAndTextFollowEachOther()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    auto* slider = control<QSlider>(&w, QStringLiteral("sldCTO"));
    type(box(w, QStringLiteral("txtTimingCTO")), QStringLiteral("42"));
    QCOMPARE(slider->value(), 42);
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Right);
    QCOMPARE(box(w, QStringLiteral("txtTimingCTO"))->text(), QStringLiteral("43"));
    QCOMPARE(w.ActiveSetting()->lCycleTimeOpen(), 43);
    // The up-down steps its text box.
    auto* upDown = control<QAbstractSlider>(&w, QStringLiteral("updCTO"));
    upDown->setFocus();
    QTest::keyClick(upDown, Qt::Key_Up);
    QCOMPARE(box(w, QStringLiteral("txtTimingCTO"))->text(), QStringLiteral("44"));
    QCOMPARE(slider->value(), 44);
    QVERIFY(h.ui.script.errors.isEmpty());
}

void tst_timingEditor::typedValuesReachTheSettingAndTheGripRecord()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    type(box(w, QStringLiteral("txtTimingST")), QStringLiteral("12"));
    type(box(w, QStringLiteral("txtTimingLT")), QStringLiteral("38"));
    type(box(w, QStringLiteral("txtCntDown")), QStringLiteral("25"));
    QCOMPARE(w.ActiveSetting()->lShotTime(), 12);
    QCOMPARE(w.ActiveSetting()->lLoadTime(), 38);
    QCOMPARE(w.ActiveSetting()->lGameTime(), 25);
    QCOMPARE(TimingRecord().ShotTime(), 12);
    QCOMPARE(TimingRecord().LoadTime(), 38);
    QCOMPARE(CountdownTimerRecord().CountDownTimer(), 25);
}

void tst_timingEditor::aValueOutsideTheSliderIsReported()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    type(box(w, QStringLiteral("txtTimingST")), QStringLiteral("12"));
    type(box(w, QStringLiteral("txtTimingST")), QStringLiteral("50"));
    // The text box takes it (and so does the setting); the slider refuses it and says so once.
    QCOMPARE(h.ui.script.errors.size(), 1);
    QCOMPARE(h.ui.script.errors.first().Number(), 380);
    QCOMPARE(h.ui.script.errors.first().Description(), QStringLiteral("Invalid property value"));
    QCOMPARE(h.ui.script.errors.first().Trail().last().procedure, QStringLiteral("mIFSettings_txtlShotTimeChange"));
    QCOMPARE(w.ActiveSetting()->lShotTime(), 50);
    QCOMPARE(control<QSlider>(&w, QStringLiteral("sldST"))->value(), 5); // "5" was the last it took
    QVERIFY(control<QPushButton>(&w, QStringLiteral("cmdTools(0)"))->isEnabled());
}

void tst_timingEditor::textThatIsNoNumberIsReportedOnce()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    type(box(w, QStringLiteral("txtTimingDT")), QStringLiteral("9"));
    box(w, QStringLiteral("txtTimingDT"))->setText(QStringLiteral("fast"));
    QCOMPARE(h.ui.script.errors.size(), 1);
    QCOMPARE(h.ui.script.errors.first().Number(), 13);
    QCOMPARE(h.ui.script.errors.first().Trail().first().module, QStringLiteral("cifSetsTemplate"));
    QCOMPARE(w.ActiveSetting()->lDwellTime(), 9); // the record keeps its value
}

void tst_timingEditor::rateOfFire_data()
{
    QTest::addColumn<QList<int>>("times"); // dwell, open, load, close (shot time never counts)
    QTest::addColumn<QString>("shown");
    QTest::newRow("nothing set: empty, never 0") << QList<int>{0, 0, 0, 0} << "";
    QTest::newRow("defaults") << QList<int>{10, 30, 35, 28} << "9.7";
    QTest::newRow("fast") << QList<int>{1, 1, 1, 1} << "250.0";
    QTest::newRow("under one a second") << QList<int>{20, 75, 75, 75} << "4.1";
}

void tst_timingEditor::rateOfFire()
{
    QFETCH(QList<int>, times);
    QFETCH(QString, shown);
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    const QStringList boxes = {"txtTimingDT", "txtTimingCTO", "txtTimingLT", "txtTimingCTC"};
    for (int i = 0; i < 4; ++i)
        box(w, boxes[i])->setText(QString::number(times[i]));
    QCOMPARE(control<QLabel>(&w, QStringLiteral("lblROFbps"))->text(), shown);
    QCOMPARE(control<QLabel>(&w, QStringLiteral("lblROFbpstxt"))->text(), QStringLiteral("bps."));
}

void tst_timingEditor::modeListsFollowTheFirmware_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("firingMode");
    QTest::addColumn<int>("rampingMode");
    QTest::addColumn<QStringList>("firingModes");
    QTest::addColumn<QString>("firingSelected");
    QTest::addColumn<QString>("rampingSelected");
    const QStringList all = {"SemiAuto", "Classic", "Sniper", "NXL Full Auto", "Burst 3", "Ramping"};
    QTest::newRow("newest firmware") << "4.0.5" << 6 << 8 << all << "Sniper" << "50% Ramping";
    QTest::newRow("mode 7 is never offered") << "4.0.5" << 7 << 2 << all << "" << "100% Ramping";
    QTest::newRow("ramping mode 0 shows unlimited") << "4.0.5" << 1 << 0 << all << "SemiAuto" << "Unlimited Ramping";
    QTest::newRow("1.1.9: full auto, no sniper") << "1.1.9" << 6 << 1 << QStringList{"SemiAuto", "Classic", "NXL Full Auto"} << "" << "";
    QTest::newRow("1.1.10: sniper") << "1.1.10" << 6 << 1 << QStringList{"SemiAuto", "Classic", "Sniper", "NXL Full Auto"} << "Sniper" << "";
}

void tst_timingEditor::modeListsFollowTheFirmware()
{
    QFETCH(QString, firmware);
    QFETCH(int, firingMode);
    QFETCH(int, rampingMode);
    QFETCH(QStringList, firingModes);
    QFETCH(QString, firingSelected);
    QFETCH(QString, rampingSelected);
    WindowHarness h(QStringLiteral("firmware=") + firmware);
    fTolvaneMan& w = h.open();
    control<QAction>(&w, QStringLiteral("mnuDLGunInfo"))->trigger();
    w.ActiveSetting()->setlFiringMode(firingMode);
    w.ActiveSetting()->setlHyperMode(rampingMode);
    w.UpdateState();
    auto* firing = control<QComboBox>(&w, QStringLiteral("cboFiringModes"));
    auto* ramping = control<QComboBox>(&w, QStringLiteral("cboHyperModes"));
    QCOMPARE(items(firing), firingModes);
    QCOMPARE(firing->currentText(), firingSelected);
    QCOMPARE(ramping->currentText(), rampingSelected);
    // Showing the lists never changes the setting.
    QCOMPARE(w.ActiveSetting()->lFiringMode(), firingMode);
    QCOMPARE(w.ActiveSetting()->lHyperMode(), rampingMode);
}

void tst_timingEditor::choosingAModeEditsTheSetting()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    auto* firing = control<QComboBox>(&w, QStringLiteral("cboFiringModes"));
    auto* ramping = control<QComboBox>(&w, QStringLiteral("cboHyperModes"));
    // As the user chooses: the list takes the item and says so.
    const auto choose = [](QComboBox* list, const QString& text) {
        list->setCurrentIndex(list->findText(text));
        emit list->activated(list->currentIndex());
    };
    choose(firing, QStringLiteral("Burst 3"));
    choose(ramping, QStringLiteral("33% Ramping"));
    QCOMPARE(w.ActiveSetting()->lFiringMode(), 8);
    QCOMPARE(TimingRecord().FiringMode(), 8);
    QCOMPARE(w.ActiveSetting()->lHyperMode(), 16);
    // The ramping record keeps the mode it holds: the list edits only the setting.
    QCOMPARE(HyperRecord().HyperMode(), cHyper::HyperModeDefault);
}

void tst_timingEditor::closeEqualsOpen()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    type(box(w, QStringLiteral("txtTimingCTO")), QStringLiteral("30"));
    type(box(w, QStringLiteral("txtTimingCTC")), QStringLiteral("28"));
    check(w, QStringLiteral("chkCopyCTO"))->setChecked(true);
    QCOMPARE(box(w, QStringLiteral("txtTimingCTC"))->text(), QStringLiteral("30"));
    for (const char* name : {"txtTimingCTC", "updCTC", "sldCTC", "lblCTC", "lblCTCms"})
        QVERIFY2(!control<QWidget>(&w, name)->isEnabled(), name);
    // Typing in Cycle Time Open copies the setting's stored open time into Cycle Time Close.
    type(box(w, QStringLiteral("txtTimingCTO")), QStringLiteral("45"));
    QCOMPARE(box(w, QStringLiteral("txtTimingCTC"))->text(), QStringLiteral("45"));
    QCOMPARE(w.ActiveSetting()->lCycleTimeClose(), 45);
    QCOMPARE(control<QSlider>(&w, QStringLiteral("sldCTC"))->value(), 45);
    check(w, QStringLiteral("chkCopyCTO"))->setChecked(false);
    QVERIFY(box(w, QStringLiteral("txtTimingCTC"))->isEnabled());
}

void tst_timingEditor::optionSwitchesEnableTheirTimes_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("useEye");
    QTest::addColumn<bool>("checkMax");
    QTest::addColumn<bool>("okMax");
    // Enabled: the switches, the two eye limits, the check-max time, the ok-max time.
    QTest::addColumn<QList<bool>>("enabled");
    QTest::newRow("no A.C.E.: both eye limits off whatever their boxes say") << "4.0.5" << false << true << true << QList<bool>{true, false, false, false};
    QTest::newRow("A.C.E., no limits") << "4.0.5" << true << false << false << QList<bool>{true, true, false, false};
    QTest::newRow("A.C.E., check max") << "4.0.5" << true << true << false << QList<bool>{true, true, true, false};
    QTest::newRow("A.C.E., both") << "4.0.5" << true << true << true << QList<bool>{true, true, true, true};
    QTest::newRow("firmware without options") << "1.1.4" << true << true << true << QList<bool>{false, false, false, false};
}

void tst_timingEditor::optionSwitchesEnableTheirTimes()
{
    QFETCH(QString, firmware);
    QFETCH(bool, useEye);
    QFETCH(bool, checkMax);
    QFETCH(bool, okMax);
    QFETCH(QList<bool>, enabled);
    WindowHarness h(QStringLiteral("firmware=") + firmware);
    fTolvaneMan& w = h.open();
    control<QAction>(&w, QStringLiteral("mnuDLGunInfo"))->trigger();
    w.UpdateState();
    check(w, QStringLiteral("chkEyeCheckMax"))->setChecked(checkMax);
    check(w, QStringLiteral("chkEyeOKMax"))->setChecked(okMax);
    check(w, QStringLiteral("chkUseEye"))->setChecked(useEye);
    for (const char* name : {"chkACE", "chkUseEye", "chkUseFeeder", "chkUseLED", "chkTriggerFilter"})
        QCOMPARE(control<QWidget>(&w, name)->isEnabled(), enabled[0]);
    QCOMPARE(check(w, QStringLiteral("chkEyeCheckMax"))->isEnabled(), enabled[1]);
    QCOMPARE(check(w, QStringLiteral("chkEyeOKMax"))->isEnabled(), enabled[1]);
    QCOMPARE(box(w, QStringLiteral("txtEyeCheckMax"))->isEnabled(), enabled[2]);
    QCOMPARE(control<QWidget>(&w, QStringLiteral("updEyeCheckMax"))->isEnabled(), enabled[2]);
    QCOMPARE(box(w, QStringLiteral("txtEyeOKMax"))->isEnabled(), enabled[3]);
    QCOMPARE(control<QWidget>(&w, QStringLiteral("updEyeOKMax"))->isEnabled(), enabled[3]);
}

void tst_timingEditor::defaultSettings()
{
    WindowHarness h;
    fTolvaneMan& w = openExpert(h);
    for (const char* name : {"txtTimingST", "txtTimingDT", "txtTimingCTO", "txtTimingLT", "txtTimingCTC"})
        type(box(w, name), QStringLiteral("15"));
    check(w, QStringLiteral("chkCopyCTO"))->setChecked(true);
    check(w, QStringLiteral("chkUseLED"))->setChecked(true);
    check(w, QStringLiteral("chkEyeOKMax"))->setChecked(false);
    type(box(w, QStringLiteral("txtEyeOKMax")), QStringLiteral("7"));
    w.MoveControlsToOptions();
    HyperRecord().setShots(9);

    control<QPushButton>(&w, QStringLiteral("cmdTools(6)"))->click();
    QVERIFY(h.ui.script.errors.isEmpty());
    const auto setting = w.ActiveSetting();
    // A fresh timing record's own values, not the record's defaults.
    QCOMPARE((QList<int>{setting->lShotTime(), setting->lDwellTime(), setting->lCycleTimeOpen(), setting->lLoadTime(), setting->lCycleTimeClose()}),
             (QList<int>{0, 0, 0, 0, 0}));
    QCOMPARE(box(w, QStringLiteral("txtTimingLT"))->text(), QStringLiteral("0"));
    QVERIFY(!setting->bExpertMode());
    QVERIFY(!setting->bCTCLikeCTO());
    QVERIFY(!check(w, QStringLiteral("chkExpert"))->isChecked());
    QVERIFY(!check(w, QStringLiteral("chkCopyCTO"))->isChecked());
    // Eye OK Max is the one switch that defaults to on.
    QVERIFY(check(w, QStringLiteral("chkEyeOKMax"))->isChecked());
    QCOMPARE(box(w, QStringLiteral("txtEyeOKMax"))->text(), QStringLiteral("100"));
    QCOMPARE(box(w, QStringLiteral("txtDefaultLoadTime"))->text(), QStringLiteral("45"));
    QVERIFY(!check(w, QStringLiteral("chkUseLED"))->isChecked());
    QVERIFY(OptionsRecord().EyeCheckOKTimeOn());
    // The ramping values kept in the preferences come into the setting.
    QCOMPARE(setting->lShots(), 9);
    QCOMPARE(setting->lHyperTime(), cHyper::HyperTimeDefault);
}

QTEST_MAIN(tst_timingEditor)
#include "tst_timingEditor.moc"
