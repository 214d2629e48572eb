// The timing editor of the main window: limits, slider, up-down and text in step, pasted values
// the slider refuses and text that is no number, the mode lists by firmware, Close = Open, the
// option switches and their limits, and the default settings (with no rate of fire).
#include "GuiTestSupport.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "gui/widgets/UpDown.h"

#include <QSlider>

using namespace guitest;

namespace {

// An editable template in expert mode, so that every timing can be typed.
fTolvaneMan& openExpert(WindowHarness& h)
{
    fTolvaneMan& w = h.open();
    w.setIsTemplate(true);
    control<QCheckBox>(&w, QStringLiteral("chkExpert"))->setChecked(true);
    return w;
}

QStringList items(QComboBox* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->itemText(i));
    return texts;
}

// The firmware the grip reports, the setting's modes, and what the lists offer and select.
struct Modes {
    QString firmware;
    int firingMode, rampingMode;
    QStringList firingModes;
    QString firingSelected, rampingSelected;
};

// The firmware, the A.C.E. and eye-limit switches as ticked, and what is enabled then: the
// switches, the two eye limits, the check-max time, the ok-max time.
struct Switches {
    QString firmware;
    bool useEye, checkMax, okMax;
    QList<bool> enabled;
};

} // namespace

class tst_timingEditor : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void timingsKeepTheirControlsInStep_data()
    {
        QTest::addColumn<int>("timing");
        QTest::addColumn<int>("maximum"); // the minimum is 1 for all
        QTest::newRow("shot") << int(fTolvaneMan::ST) << 20;
        QTest::newRow("dwell") << int(fTolvaneMan::DT) << 20;
        QTest::newRow("cycle time open") << int(fTolvaneMan::CTO) << 75;
        QTest::newRow("load") << int(fTolvaneMan::LT) << 75;
        QTest::newRow("cycle time close") << int(fTolvaneMan::CTC) << 75;
    }
    void timingsKeepTheirControlsInStep()
    {
        QFETCH(int, timing);
        QFETCH(int, maximum);
        WindowHarness h;
        fTolvaneMan& w = openExpert(h);
        const fTolvaneMan::TimingControls c = w.timing(timing);
        for (QAbstractSlider* range : {static_cast<QAbstractSlider*>(c.upDown), static_cast<QAbstractSlider*>(c.slider)})
            QCOMPARE(QPoint(range->minimum(), range->maximum()), QPoint(1, maximum));
        // The setting and the grip's timing record take what is typed, the slider follows.
        const auto values = [&] {
            const auto s = w.ActiveSetting();
            const cSettings& r = w.Session().Timing();
            return QList<int>{QList<int>{s->lShotTime(), s->lDwellTime(), s->lCycleTimeOpen(), s->lLoadTime(), s->lCycleTimeClose()}[timing],
                              QList<int>{r.ShotTime(), r.Dwelltime(), r.CycleTimeOpen(), r.LoadTime(), r.CycleTimeClose()}[timing],
                              c.slider->value()};
        };
        type(c.text, QStringLiteral("12"));
        QCOMPARE(values(), (QList<int>{12, 12, 12}));
        // The slider's keys write the text box, and the up-down steps it.
        c.slider->setFocus();
        QTest::keyClick(c.slider, Qt::Key_Right);
        QCOMPARE(c.text->text(), QStringLiteral("13"));
        QCOMPARE(values(), (QList<int>{13, 13, 13}));
        c.upDown->setFocus();
        QTest::keyClick(c.upDown, Qt::Key_Up);
        QCOMPARE(c.text->text(), QStringLiteral("14"));
        QCOMPARE(values(), (QList<int>{14, 14, 14}));
        GUITEST_NO_ERRORS(h.ui.script);
    }
    // A pasted value the slider refuses, or text that is no number: reported once, with where it
    // happened; the record, the box and the slider keep the last good value, the window stays usable.
    void badTimingIsReportedOnce_data()
    {
        QTest::addColumn<int>("timing");
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("procedure");
        QTest::newRow("outside the slider") << int(fTolvaneMan::ST) << "50" << 380 << "txtlShotTime_Change";
        QTest::newRow("no number") << int(fTolvaneMan::DT) << "fast" << 13 << "txtlDwellTime_Change";
    }
    void badTimingIsReportedOnce()
    {
        QFETCH(int, timing);
        QFETCH(QString, pasted);
        QFETCH(int, error);
        QFETCH(QString, procedure);
        WindowHarness h;
        fTolvaneMan& w = openExpert(h);
        const fTolvaneMan::TimingControls c = w.timing(timing);
        type(c.text, QStringLiteral("12"));
        c.text->selectAll();
        c.text->insert(pasted);
        QCOMPARE(h.ui.script.errors.size(), 1);
        QCOMPARE(h.ui.script.errors.first().Number(), error);
        QCOMPARE(h.ui.script.errors.first().Trail().first().module, QStringLiteral("cifSetsTemplate"));
        QCOMPARE(h.ui.script.errors.first().Trail().last().procedure, procedure);
        const auto s = w.ActiveSetting();
        QCOMPARE((QList<int>{s->lShotTime(), s->lDwellTime()}[timing]), 12);
        QCOMPARE(c.text->text(), QStringLiteral("12"));
        QCOMPARE(c.slider->value(), 12);
        QVERIFY(enabled(&w, QStringLiteral("cmdTools(0)")));
    }
    void modeListsFollowTheFirmware_data()
    {
        QTest::addColumn<Modes>("row");
        const QStringList all = {"SemiAuto", "Classic", "Sniper", "NXL Full Auto", "Burst 3", "Ramping"};
        QTest::newRow("newest firmware") << Modes{"4.0.5", 6, 8, all, "Sniper", "50% Ramping"};
        QTest::newRow("mode 7 is never offered") << Modes{"4.0.5", 7, 2, all, "", "100% Ramping"};
        QTest::newRow("ramping mode 0 shows unlimited") << Modes{"4.0.5", 1, 0, all, "SemiAuto", "Unlimited Ramping"};
        QTest::newRow("1.1.9: full auto, no sniper") << Modes{"1.1.9", 6, 1, {"SemiAuto", "Classic", "NXL Full Auto"}, "", ""};
    }
    void modeListsFollowTheFirmware()
    {
        QFETCH(Modes, row);
        WindowHarness h(QStringLiteral("firmware=") + row.firmware);
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("mnuDLGunInfo"));
        w.ActiveSetting()->setlFiringMode(row.firingMode);
        w.ActiveSetting()->setlHyperMode(row.rampingMode);
        w.UpdateState();
        auto* firing = control<QComboBox>(&w, QStringLiteral("cboFiringModes"));
        QCOMPARE(items(firing), row.firingModes);
        QCOMPARE(firing->currentText(), row.firingSelected);
        QCOMPARE(control<QComboBox>(&w, QStringLiteral("cboHyperModes"))->currentText(), row.rampingSelected);
        // Showing the lists never changes the setting.
        QCOMPARE(w.ActiveSetting()->lFiringMode(), row.firingMode);
        QCOMPARE(w.ActiveSetting()->lHyperMode(), row.rampingMode);
    }
    void choosingAModeEditsTheSetting()
    {
        WindowHarness h;
        fTolvaneMan& w = h.open();
        // As the user chooses: the list takes the item and says so.
        const auto choose = [&](const char* name, const QString& text) {
            auto* list = control<QComboBox>(&w, QLatin1String(name));
            list->setCurrentIndex(list->findText(text));
            emit list->activated(list->currentIndex());
        };
        choose("cboFiringModes", QStringLiteral("Burst 3"));
        choose("cboHyperModes", QStringLiteral("33% Ramping"));
        QCOMPARE(w.ActiveSetting()->lFiringMode(), 8);
        QCOMPARE(w.Session().Timing().FiringMode(), 8);
        QCOMPARE(w.ActiveSetting()->lHyperMode(), 16);
        // The ramping record keeps the mode it holds: the list edits only the setting.
        QCOMPARE(w.Session().Hyper().HyperMode(), cHyper::HyperModeDefault);
    }
    void closeEqualsOpen()
    {
        WindowHarness h;
        fTolvaneMan& w = openExpert(h);
        type(&w, QStringLiteral("txtTimingCTO"), QStringLiteral("30"));
        type(&w, QStringLiteral("txtTimingCTC"), QStringLiteral("28"));
        control<QCheckBox>(&w, QStringLiteral("chkCopyCTO"))->setChecked(true);
        QCOMPARE(text(&w, QStringLiteral("txtTimingCTC")), QStringLiteral("30"));
        // Typing in Cycle Time Open copies the setting's stored open time into Cycle Time Close.
        type(&w, QStringLiteral("txtTimingCTO"), QStringLiteral("45"));
        QCOMPARE(text(&w, QStringLiteral("txtTimingCTC")), QStringLiteral("45"));
        QCOMPARE(w.ActiveSetting()->lCycleTimeClose(), 45);
        QCOMPARE(control<QSlider>(&w, QStringLiteral("sldCTC"))->value(), 45);
    }
    void optionSwitchesEnableTheirTimes_data()
    {
        QTest::addColumn<Switches>("row");
        QTest::newRow("no A.C.E.: both eye limits off whatever their boxes say") << Switches{"4.0.5", false, true, true, {true, false, false, false}};
        QTest::newRow("A.C.E., no limits") << Switches{"4.0.5", true, false, false, {true, true, false, false}};
        QTest::newRow("A.C.E., check max") << Switches{"4.0.5", true, true, false, {true, true, true, false}};
        QTest::newRow("A.C.E., both") << Switches{"4.0.5", true, true, true, {true, true, true, true}};
        QTest::newRow("firmware without options") << Switches{"1.1.4", true, true, true, {false, false, false, false}};
    }
    void optionSwitchesEnableTheirTimes()
    {
        QFETCH(Switches, row);
        WindowHarness h(QStringLiteral("firmware=") + row.firmware);
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("mnuDLGunInfo"));
        w.UpdateState();
        control<QCheckBox>(&w, QStringLiteral("chkEyeCheckMax"))->setChecked(row.checkMax);
        control<QCheckBox>(&w, QStringLiteral("chkEyeOKMax"))->setChecked(row.okMax);
        control<QCheckBox>(&w, QStringLiteral("chkUseEye"))->setChecked(row.useEye);
        const QList<QStringList> groups = {{"chkACE", "chkUseEye", "chkUseFeeder", "chkUseLED", "chkTriggerFilter"},
                                           {"chkEyeCheckMax", "chkEyeOKMax"}, {"txtEyeCheckMax", "updEyeCheckMax"},
                                           {"txtEyeOKMax", "updEyeOKMax"}};
        for (int g = 0; g < groups.size(); ++g)
            for (const QString& name : groups[g])
                QVERIFY2(control<QWidget>(&w, name)->isEnabled() == row.enabled[g], qPrintable(name));
        // The option times' limits.
        for (const auto& [name, maximum] : QList<QPair<const char*, int>>{{"updEyeCheckMax", 255}, {"updEyeOKMax", 255}, {"updDefaultLoadTime", 126}}) {
            auto* range = control<QAbstractSlider>(&w, QLatin1String(name));
            QCOMPARE(QPoint(range->minimum(), range->maximum()), QPoint(1, maximum));
        }
    }
    void defaultSettings()
    {
        WindowHarness h;
        fTolvaneMan& w = openExpert(h);
        for (int t = fTolvaneMan::ST; t <= fTolvaneMan::CTC; ++t)
            type(w.timing(t).text, QStringLiteral("15"));
        for (const char* name : {"chkCopyCTO", "chkUseLED"})
            control<QCheckBox>(&w, QLatin1String(name))->setChecked(true);
        control<QCheckBox>(&w, QStringLiteral("chkEyeOKMax"))->setChecked(false);
        type(&w, QStringLiteral("txtEyeOKMax"), QStringLiteral("7"));
        w.MoveControlsToOptions();
        w.Session().Hyper().setShots(9);

        run(&w, QStringLiteral("cmdTools(6)"));
        GUITEST_NO_ERRORS(h.ui.script);
        const auto setting = w.ActiveSetting();
        // A fresh timing record's own values, not the record's defaults.
        QCOMPARE((QList<int>{setting->lShotTime(), setting->lDwellTime(), setting->lCycleTimeOpen(), setting->lLoadTime(), setting->lCycleTimeClose()}),
                 (QList<int>{0, 0, 0, 0, 0}));
        QCOMPARE(text(&w, QStringLiteral("txtTimingLT")), QStringLiteral("0"));
        QCOMPARE(control<QLabel>(&w, QStringLiteral("lblROFbps"))->text(), QString()); // no rate of fire, never 0
        QVERIFY(!setting->bExpertMode() && !setting->bCTCLikeCTO());
        // Eye OK Max is the one switch that defaults to on.
        QStringList ticked;
        for (QCheckBox* box : w.findChildren<QCheckBox*>())
            if (box->isChecked())
                ticked << box->objectName();
        QCOMPARE(ticked, QStringList{"chkEyeOKMax"});
        QCOMPARE(text(&w, QStringLiteral("txtEyeOKMax")), QStringLiteral("100"));
        QCOMPARE(text(&w, QStringLiteral("txtDefaultLoadTime")), QStringLiteral("45"));
        QVERIFY(w.Session().Options().EyeCheckOKTimeOn());
        // The ramping values kept in the preferences come into the setting.
        QCOMPARE(setting->lShots(), 9);
        QCOMPARE(setting->lHyperTime(), cHyper::HyperTimeDefault);
    }
};

QTEST_MAIN(tst_timingEditor)
#include "tst_timingEditor.moc"
