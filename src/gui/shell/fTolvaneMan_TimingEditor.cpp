// The main window's timing editor: the limits of the timing, option and ramping controls, the
// slider, text and up-down synchronisation, the mode lists, the option switches, the rate of
// fire and the default settings.
#include "gui/shell/fTolvaneMan.h"

#include "base/mConvert.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "grip/cSupports.h"
#include "grip/mModes.h"
#include "gui/common/mGUISupport.h"
#include "gui/library/cifSetsTemplate.h"
#include "gui/widgets/UpDown.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"
#include "shell/mMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

using mGUISupport::SetControlState;

namespace {

// The record fields of the five timings, for the names of the binding's events.
const char* const kTimingFields[] = {"ShotTime", "DwellTime", "CycleTimeOpen", "LoadTime", "CycleTimeClose"};

// The option switches in the order they are written to the options record.
struct OptionSwitch {
    QCheckBox* fTolvaneMan::*box;
    bool (cOptions::*get)() const;
    void (cOptions::*set)(bool);
};

struct OptionTime {
    QLineEdit* fTolvaneMan::*text;
    UpDown* fTolvaneMan::*upDown;
    qint32 (cOptions::*get)() const;
    qint32 (cOptions::*set)(qint32);
};

// The record replaces a value out of its range by its default, without a message: the box shows
// what the record now holds, so that the screen never shows a value that a put would not send.
void showStored(QLineEdit* text, UpDown* upDown, qint32 stored)
{
    if (text->text() != QString::number(stored))
        text->setText(QString::number(stored));
    upDown->setValue(stored);
}

} // namespace

// The tables need the form's private members, hence a friend-free accessor through static
// member functions defined here.
struct fTolvaneManOptionTables {
    static const QList<OptionSwitch>& switches()
    {
        static const QList<OptionSwitch> rows = {
            {&fTolvaneMan::chkACE, &cOptions::EyeMounted, &cOptions::setEyeMounted},
            {&fTolvaneMan::chkUseEye, &cOptions::UseEye, &cOptions::setUseEye},
            {&fTolvaneMan::chkUseFeeder, &cOptions::LoaderOn, &cOptions::setLoaderOn},
            {&fTolvaneMan::chkTriggerFilter, &cOptions::TriggerFilterOn, &cOptions::setTriggerFilterOn},
            {&fTolvaneMan::chkUseLED, &cOptions::LedOn, &cOptions::setLedOn},
            {&fTolvaneMan::chkCTOAdjust, &cOptions::CTOAdjust, &cOptions::setCTOAdjust},
            {&fTolvaneMan::chkEyeCheckMax, &cOptions::EyeCheckMaxTimeOn, &cOptions::setEyeCheckMaxTimeOn},
            {&fTolvaneMan::chkEyeOKMax, &cOptions::EyeCheckOKTimeOn, &cOptions::setEyeCheckOKTimeOn},
        };
        return rows;
    }
    static const QList<OptionTime>& times()
    {
        static const QList<OptionTime> rows = {
            {&fTolvaneMan::txtEyeCheckMax, &fTolvaneMan::updEyeCheckMax, &cOptions::EyeCheckMaxTime, &cOptions::setEyeCheckMaxTime},
            {&fTolvaneMan::txtEyeOKMax, &fTolvaneMan::updEyeOKMax, &cOptions::EyeCheckOKTime, &cOptions::setEyeCheckOKTime},
            {&fTolvaneMan::txtDefaultLoadTime, &fTolvaneMan::updDefaultLoadTime, &cOptions::DefaultLoadTime, &cOptions::setDefaultLoadTime},
        };
        return rows;
    }
    // An option time box into its record.
    static void move(fTolvaneMan& w, const OptionTime& row)
    {
        const qint32 stored = (w.m_session.Options().*row.set)(mConvert::ValLong((w.*row.text)->text()));
        showStored(w.*row.text, w.*row.upDown, stored);
    }
};

// ---- limits and data -----------------------------------------------------------------------

void fTolvaneMan::SetupSettingsBoundaries()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetupSettingsBoundaries"), [&] {
        const qint32 minimum[] = {cSettings::ShotTimeMin(), cSettings::DwelltimeMin(), cSettings::CycleTimeOpenMin(),
                                  cSettings::LoadTimeMin(), cSettings::CycleTimeCloseMin()};
        const qint32 maximum[] = {cSettings::ShotTimeMax(), cSettings::DwelltimeMax(), cSettings::CycleTimeOpenMax(),
                                  cSettings::LoadTimeMax(), cSettings::CycleTimeCloseMax()};
        // Every minimum first (up-downs, then sliders), then every maximum.
        for (int t = 0; t < 5; ++t)
            m_timing[t].upDown->setMinimum(minimum[t]);
        for (int t = 0; t < 5; ++t)
            m_timing[t].slider->setMinimum(minimum[t]);
        for (int t = 0; t < 5; ++t)
            m_timing[t].upDown->setMaximum(maximum[t]);
        for (int t = 0; t < 5; ++t)
            m_timing[t].slider->setMaximum(maximum[t]);
    });
}

void fTolvaneMan::SetupOptionsBoundaries()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetupOptionsBoundaries"), [&] {
        updEyeCheckMax->setRange(cOptions::EyeCheckMaxTimeMin, cOptions::EyeCheckMaxTimeMax);
        updEyeOKMax->setRange(cOptions::EyeCheckOKTimeMin, cOptions::EyeCheckOKTimeMax);
        updDefaultLoadTime->setRange(cOptions::DefaultLoadTimeMin, cOptions::DefaultLoadTimeMax);
        updShots->setRange(cHyper::ShotsMin, cHyper::ShotsMax);
        updHyperTime->setRange(cHyper::HyperTimeMin, cHyper::HyperTimeMax);
    });
}

void fTolvaneMan::SetupOptionsData()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetupOptionsData"), [&] {
        cOptions& options = m_session.Options();
        for (const OptionSwitch& row : fTolvaneManOptionTables::switches())
            (this->*row.box)->setChecked((options.*row.get)());
        for (const OptionTime& row : fTolvaneManOptionTables::times()) {
            const qint32 value = (options.*row.get)();
            (this->*row.text)->setText(QString::number(value));
            (this->*row.upDown)->setValue(value);
        }
        SetMaxROF();
    });
}

void fTolvaneMan::ControlsIntoOptions(cOptions& options) const
{
    for (const OptionSwitch& row : fTolvaneManOptionTables::switches())
        (options.*row.set)((this->*row.box)->isChecked());
    for (const OptionTime& row : fTolvaneManOptionTables::times())
        (options.*row.set)(mConvert::ValLong((this->*row.text)->text()));
}

void fTolvaneMan::ControlsIntoHyper(cHyper& ramping) const
{
    // The ramping mode is not taken from the list: the record uploads the mode it holds, and the
    // list edits only the active setting. Deliberate, and kept.
    ramping.setShots(mConvert::ValLong(txtShots->text()));
    ramping.setHyperTime(mConvert::ValLong(txtHyperTime->text()));
}

void fTolvaneMan::MoveControlsToOptions()
{
    PassErrors(kForm, kRevision, QStringLiteral("MoveControlsToOptions"), [&] {
        cOptions& options = m_session.Options();
        ControlsIntoOptions(options);
        for (const OptionTime& row : fTolvaneManOptionTables::times())
            showStored(this->*row.text, this->*row.upDown, (options.*row.get)());
    });
}

void fTolvaneMan::MoveControlsToHyper()
{
    PassErrors(kForm, kRevision, QStringLiteral("MoveControlsToHyper"), [&] {
        cHyper& ramping = m_session.Hyper();
        ControlsIntoHyper(ramping);
        showStored(txtShots, updShots, ramping.Shots());
        showStored(txtHyperTime, updHyperTime, ramping.HyperTime());
    });
}



void fTolvaneMan::SetOptionsState()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetOptionsState"), [&] {
        const bool S = m_session.Supports().Options();
        for (QWidget* control : {static_cast<QWidget*>(fraOptions), static_cast<QWidget*>(chkACE), static_cast<QWidget*>(chkUseEye),
                                 static_cast<QWidget*>(chkUseFeeder), static_cast<QWidget*>(chkTriggerFilter), static_cast<QWidget*>(chkUseLED)})
            SetControlState(control, S, true);
        const bool U = S && chkUseEye->isChecked();
        SetControlState(chkEyeCheckMax, U, true);
        SetControlState(chkEyeOKMax, U, true);
        const bool checkMax = U && chkEyeCheckMax->isChecked();
        SetControlState(txtEyeCheckMax, checkMax, true);
        SetControlState(updEyeCheckMax, checkMax, true);
        const bool okMax = U && chkEyeOKMax->isChecked();
        SetControlState(txtEyeOKMax, okMax, true);
        SetControlState(updEyeOKMax, okMax, true);
    });
}

// ---- the mode lists ------------------------------------------------------------------------

void fTolvaneMan::FillModeList(QComboBox* list, bool firing, qint32 code)
{
    const QList<mModes::tModeEntry>& table = firing ? m_session.Modes().FiringModes() : m_session.Modes().HyperModes();
    list->clear();
    for (const mModes::tModeEntry& entry : table) {
        if (entry.visible)
            list->addItem(cText::Translated(mModes::kContext, entry.caption), entry.code);
    }
    // The first item with the code; none selects nothing.
    list->setCurrentIndex(list->findData(code));
}

void fTolvaneMan::SetupFiringMode()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetupFiringMode"), [&] {
        m_session.Modes().FiringModesGlobalArraySet();
        const auto setting = ActiveSetting();
        FillModeList(cboFiringModes, true, setting ? setting->lFiringMode() : -1);
    });
}

void fTolvaneMan::SetupHyperMode()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetupHyperMode"), [&] {
        cHyper& ramping = m_session.Hyper();
        txtShots->setText(QString::number(ramping.Shots()));
        updShots->setValue(ramping.Shots());
        txtHyperTime->setText(QString::number(ramping.HyperTime()));
        updHyperTime->setValue(ramping.HyperTime());
        m_session.Modes().HyperModesGlobalArraySet();
        const auto setting = ActiveSetting();
        const qint32 mode = setting ? setting->lHyperMode() : -1;
        // A setting without a ramping mode shows "Unlimited Ramping" (code 1).
        FillModeList(cboHyperModes, false, mode == 0 ? 1 : mode);
    });
}

// ---- rate of fire and default settings ---------------------------------------------------------

void fTolvaneMan::RecalculateRPS()
{
    PassErrors(kForm, kRevision, QStringLiteral("RecalculateRPS"), [&] {
        const auto setting = ActiveSetting();
        lblROFbps->setText(setting && setting->ROF() > 0 ? setting->sROF() : QString());
        lblROFbpstxt->setText(tr("bps."));
    });
}

void fTolvaneMan::SetMaxROF()
{
    // The most balls a second that the shortest loading time allows.
    const qint32 ms = mConvert::ValLong(txtDefaultLoadTime->text());
    lblMaxROF->setText(ms > 0 ? QString::number(1000.0 / ms, 'f', 1) : QString());
}

void fTolvaneMan::SetDefaultSettings()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetDefaultSettings"), [&] {
        const auto setting = ActiveSetting();
        if (setting) {
            setting->setbCTCLikeCTO(false);
            setting->setbExpertMode(false);
            // A fresh timing record holds its initial values, not its defaults: kept so.
            mTemplateRecords::TimingToTemplate(cSettings(), *setting);
        }
        mIFSettings->Refresh();
        UpdateState();

        cOptions& options = m_session.Options();
        options.setCTOAdjust(false);
        options.setDefaultLoadTime(45);
        options.setEyeCheckMaxTime(100);
        options.setEyeCheckMaxTimeOn(false);
        options.setEyeCheckOKTime(100);
        options.setEyeCheckOKTimeOn(true); // the one switch that defaults to on
        options.setEyeMounted(false);
        options.setLedOn(false);
        options.setLoaderOn(false);
        options.setTriggerFilterOn(false);
        options.setUseEye(false);
        SetupOptionsData();

        m_session.ResetHyper();
        if (setting)
            mTemplateRecords::RampingToTemplate(m_session.Hyper(), *setting);
        UpdateState();
    });
}

// ---- events of the controls and of the binding ---------------------------------------------------

void fTolvaneMan::sldScroll(QSlider* slider, QLineEdit* text)
{
    Handle(slider->objectName() + QStringLiteral("_Scroll"), [&] {
        text->setText(QString::number(slider->sliderPosition()));
    });
}

void fTolvaneMan::followText(QLineEdit* text, QSlider* slider)
{
    const qint32 value = mConvert::ValLong(text->text());
    // A value typed outside the slider's range is refused by the slider and reported; a stored
    // one just leaves the slider at its end.
    if (text->isModified() || (value >= slider->minimum() && value <= slider->maximum()))
        mGUISupport::SetSliderValue(slider, value);
    else
        slider->setValue(value);
    RecalculateRPS();
}

void fTolvaneMan::timingTextChange(int timing)
{
    const TimingControls& c = m_timing[timing];
    Handle(QStringLiteral("mIFSettings_txtl%1Change").arg(QLatin1String(kTimingFields[timing])), [&] {
        if (timing == CTO) {
            const auto setting = ActiveSetting();
            if (setting && setting->bCTCLikeCTO())
                m_timing[CTC].text->setText(QString::number(setting->lCycleTimeOpen()));
        }
        followText(c.text, c.slider);
    });
}

void fTolvaneMan::mIFSettings_sldlCycleTimeCloseScroll()
{
    sldScroll(m_timing[CTC].slider, m_timing[CTC].text);
}

void fTolvaneMan::mIFSettings_chkbCTCLikeCTOClick()
{
    Handle(QStringLiteral("mIFSettings_chkbCTCLikeCTOClick"), [&] {
        // Ignores the expert and template flags; the next UpdateState applies them again.
        const bool follow = chkCopyCTO->isChecked();
        const TimingControls& c = m_timing[CTC];
        for (QWidget* control : {static_cast<QWidget*>(c.upDown), static_cast<QWidget*>(c.text), static_cast<QWidget*>(c.caption),
                                 static_cast<QWidget*>(c.unit), static_cast<QWidget*>(c.slider)})
            SetControlState(control, !follow, true);
        if (follow)
            c.text->setText(m_timing[CTO].text->text());
    });
}

void fTolvaneMan::mIFSettings_chkbExpertModeClick()
{
    Handle(QStringLiteral("mIFSettings_chkbExpertModeClick"), [&] { UpdateState(); });
}

void fTolvaneMan::mIFSettings_chkbAlertOneClick()
{
    Handle(QStringLiteral("mIFSettings_chkbAlertOneClick"), [&] { UpdateState(); });
}

void fTolvaneMan::mIFSettings_chkbAlertTwoClick()
{
    Handle(QStringLiteral("mIFSettings_chkbAlertTwoClick"), [&] { UpdateState(); });
}

void fTolvaneMan::chkOption_Click(const QString& procedure)
{
    Handle(procedure, [&] { SetOptionsState(); });
}

// ---- connections ---------------------------------------------------------------------------------

void fTolvaneMan::connectHandlers()
{
    for (int index = 0; index < cmdTools.size(); ++index) {
        if (QPushButton* button = cmdTools[index])
            connect(button, &QPushButton::clicked, this, [this, index] { cmdTools_Click(index); });
    }
    for (int index = 0; index < 2; ++index)
        connect(cmdReset[index], &QPushButton::clicked, this, [this, index] { cmdReset_Click(index); });

    for (int t = 0; t < 5; ++t) {
        const TimingControls& c = m_timing[t];
        connect(c.slider, &QSlider::actionTriggered, this, [this, c] { sldScroll(c.slider, c.text); });
    }
    connect(mIFSettings, &cifSetsTemplate::txtlShotTimeChange, this, [this] { timingTextChange(ST); });
    connect(mIFSettings, &cifSetsTemplate::txtlDwellTimeChange, this, [this] { timingTextChange(DT); });
    connect(mIFSettings, &cifSetsTemplate::txtlCycleTimeOpenChange, this, [this] { timingTextChange(CTO); });
    connect(mIFSettings, &cifSetsTemplate::txtlLoadTimeChange, this, [this] { timingTextChange(LT); });
    connect(mIFSettings, &cifSetsTemplate::txtlCycleTimeCloseChange, this, [this] { timingTextChange(CTC); });
    connect(mIFSettings, &cifSetsTemplate::sldlCycleTimeCloseScroll, this, &fTolvaneMan::mIFSettings_sldlCycleTimeCloseScroll);
    connect(mIFSettings, &cifSetsTemplate::chkbCTCLikeCTOClick, this, &fTolvaneMan::mIFSettings_chkbCTCLikeCTOClick);
    connect(mIFSettings, &cifSetsTemplate::chkbExpertModeClick, this, &fTolvaneMan::mIFSettings_chkbExpertModeClick);
    connect(mIFSettings, &cifSetsTemplate::chkbAlertOneClick, this, &fTolvaneMan::mIFSettings_chkbAlertOneClick);
    connect(mIFSettings, &cifSetsTemplate::chkbAlertTwoClick, this, &fTolvaneMan::mIFSettings_chkbAlertTwoClick);

    connect(chkACE, &QCheckBox::toggled, this, [this] { chkOption_Click(QStringLiteral("chkACE_Click")); });
    connect(chkUseEye, &QCheckBox::toggled, this, [this] { chkOption_Click(QStringLiteral("chkUseEye_Click")); });
    connect(chkEyeCheckMax, &QCheckBox::toggled, this, [this] { chkOption_Click(QStringLiteral("chkEyeCheckMax_Click")); });
    connect(chkEyeOKMax, &QCheckBox::toggled, this, [this] { chkOption_Click(QStringLiteral("chkEyeOKMax_Click")); });
    connect(txtDefaultLoadTime, &QLineEdit::textChanged, this, [this] {
        Handle(QStringLiteral("txtDefaultLoadTime_Change"), [&] { SetMaxROF(); });
    });
    // A finished edit of an option or ramping time goes into its record at once and the box
    // shows what the record took.
    for (const OptionTime& row : fTolvaneManOptionTables::times()) {
        QLineEdit* text = this->*row.text;
        connect(text, &QLineEdit::editingFinished, this, [this, row, text] {
            Handle(text->objectName() + QStringLiteral("_Validate"), [&] { fTolvaneManOptionTables::move(*this, row); });
        });
    }
    for (QLineEdit* text : {txtShots, txtHyperTime}) {
        connect(text, &QLineEdit::editingFinished, this, [this, text] {
            Handle(text->objectName() + QStringLiteral("_Validate"), [&] { MoveControlsToHyper(); });
        });
    }
}
