// The main window's grip commands: the tool buttons and menu items, the common frame of a grip
// command, and the loaders that get a record from the grip and show it.
#include "gui/shell/fTolvaneMan.h"

#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cGunInfo.h"
#include "grip/cHyper.h"
#include "grip/cSettings.h"
#include "grip/mGripCommands.h"
#include "gui/library/cifSetsTemplate.h"
#include "gui/shell/GripCommandScope.h"
#include "gui/widgets/fAbout.h"
#include "gui/widgets/ucIProgress.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"
#include "link/cError.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

using mGripCommands::Direction;
using mGripCommands::GripRecord;
using mGripCommands::Outcome;
using mMain::Application;

namespace {

// A negative answer of the grip ends the transfer quietly; the command goes on.
bool transfer(GripRecord record, Direction direction)
{
    return mGripCommands::TransferRecord(record, direction) != Outcome::Refused;
}

bool gripRefused()
{
    return GripError().ErrorCode() != cError::NoError;
}

} // namespace

// ---- the frame -------------------------------------------------------------------------------

bool fTolvaneMan::RunGripCommand(const std::function<void()>& transfers, bool bootModeCheck)
{
    GripCommandScope hold(*this);
    ClearRefusal();
    WaitPointerScope wait;
    GripError().Clear();
    if (bootModeCheck)
        mGripCommands::StartProgramIfInBootMode();
    transfers();
    if (!gripRefused())
        return true;
    ShowRefusal();
    return false;
}

void fTolvaneMan::RunGripCommand(const QString& confirmation, const std::function<void()>& transfers)
{
    // Unlike the classic program, a command the grip refused is not confirmed: a player must not
    // be told that settings were put when they were not. The status bar says it was refused.
    if (RunGripCommand(transfers) && Application().RegistrySettings().ShowConfirmComm())
        mMain::ShowConfirm(confirmation);
}

void fTolvaneMan::ShowRefusal()
{
    m_stepBeforeRefusal = PanelText(kPanelStep);
    const QString byte = QStringLiteral("%1").arg(GripError().AnswerByte(), 2, 16, QLatin1Char('0')).toUpper();
    m_refusalText = tr("The grip refused the command (error byte 0x%1).").arg(byte);
    SetPanelText(kPanelStep, m_refusalText);
}

void fTolvaneMan::ClearRefusal()
{
    if (!m_refusalText.isEmpty() && PanelText(kPanelStep) == m_refusalText)
        SetPanelText(kPanelStep, m_stepBeforeRefusal);
    m_refusalText.clear();
}

// ---- tool buttons ----------------------------------------------------------------------------

void fTolvaneMan::cmdTools_Click(int index)
{
    for (QPushButton* button : cmdTools)
        if (button)
            button->setEnabled(false);
    Handle(QStringLiteral("cmdTools_Click(%1)").arg(index), [&] { ActivateTools(index); });
    // Every button is enabled again, whatever UpdateState decided during the command: the
    // program's behaviour, kept.
    for (QPushButton* button : cmdTools)
        if (button)
            button->setEnabled(true);
}

void fTolvaneMan::ActivateTools(int index)
{
    PassErrors(kForm, kRevision, QStringLiteral("ActivateTools(%1)").arg(index), [&] {
        switch (index) {
        case 0:
            RunGripCommand(tr("Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched."), [&] {
                InitDLTiming();
                InitCounters();
                InitDLCountDownTimers();
                InitBatteryIndicator();
                InitDLOptions();
                InitDLHyper();
                UpdateState();
                SetVersionStatus();
                mIFSettings->Refresh();
            });
            break;
        case 1:
            CheckPut({GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping});
            RunGripCommand(tr("Timinginformation and Countdowntimers were put."), [&] {
                transfer(GripRecord::Timing, Direction::Put);
                transfer(GripRecord::GameTimer, Direction::Put);
                InitULOptions();
                InitULHyper();
                SetVersionStatus();
            });
            break;
        case 2:
            ShowLibraryBrowser();
            break;
        case 4:
            ShowPropertyEditor();
            break;
        case 6:
            SetDefaultSettings();
            break;
        default:
            // 3 (library statistics), 5 (promote) and 9 (burn program) have no action: kept so.
            break;
        }
    });
}

// ---- menu items --------------------------------------------------------------------------------

void fTolvaneMan::mnuLibTemplates_Click()
{
    Handle(QStringLiteral("mnuLibTemplates_Click"), [&] { ActivateTools(2); });
}

void fTolvaneMan::mnuLibStatistics_Click()
{
    Handle(QStringLiteral("mnuLibStatistics_Click"), [&] { ActivateTools(3); });
}

void fTolvaneMan::mnuProperties_Click()
{
    Handle(QStringLiteral("mnuProperties_Click"), [&] { ActivateTools(4); });
}

void fTolvaneMan::mnuPromote_Click()
{
    Handle(QStringLiteral("mnuPromote_Click"), [&] { ActivateTools(5); });
}

void fTolvaneMan::mnuBurnFirmware_Click()
{
    Handle(QStringLiteral("mnuBurnFirmware_Click"), [&] { ActivateTools(9); });
}

void fTolvaneMan::mnuDefaultSettings_Click()
{
    Handle(QStringLiteral("mnuDefaultSettings_Click"), [&] { SetDefaultSettings(); });
}

void fTolvaneMan::mnuNew_Click()
{
    Handle(QStringLiteral("mnuNew_Click"), [&] { NewTemplate(); });
}

void fTolvaneMan::mnuSave_Click()
{
    Handle(QStringLiteral("mnuSave_Click"), [&] {
        WaitPointerScope wait;
        Application().SaveLibrary();
    });
}

void fTolvaneMan::mnuExit_Click()
{
    Handle(QStringLiteral("mnuExit_Click"), [&] { close(); });
}

void fTolvaneMan::mnuAbout_Click()
{
    Handle(QStringLiteral("mnuAbout_Click"), [&] {
        fAbout about(this);
        about.exec();
    });
}

void fTolvaneMan::mnuDLTiming_Click()
{
    Handle(QStringLiteral("mnuDLTiming_Click"), [&] {
        RunGripCommand(tr("Timinginformation was fetched."), [&] { InitDLTiming(); });
    });
}

void fTolvaneMan::mnuULTiming_Click()
{
    Handle(QStringLiteral("mnuULTiming_Click"), [&] {
        CheckPut({GripRecord::Timing});
        RunGripCommand(tr("Timinginformation was put."), [&] { transfer(GripRecord::Timing, Direction::Put); });
    });
}

void fTolvaneMan::mnuDLCounters_Click()
{
    Handle(QStringLiteral("mnuDLCounters_Click"), [&] {
        RunGripCommand(tr("Counters were fetched."), [&] { InitCounters(); });
    });
}

void fTolvaneMan::mnuDLBattery_Click()
{
    Handle(QStringLiteral("mnuDLBattery_Click"), [&] {
        RunGripCommand(tr("Batteryinformation was fetched."), [&] { InitBatteryIndicator(); });
    });
}

void fTolvaneMan::mnuDLGunInfo_Click()
{
    Handle(QStringLiteral("mnuDLGunInfo_Click"), [&] {
        // No boot-mode check before the gun information, and no confirmation after it.
        RunGripCommand([] { GunInfo().Download(); }, false);
        SetVersionStatus();
    });
}

void fTolvaneMan::mnuDLGameTimers_Click()
{
    Handle(QStringLiteral("mnuDLGameTimers_Click"), [&] {
        RunGripCommand(tr("Countdowntimers were fetched."), [&] { InitDLCountDownTimers(); });
    });
}

void fTolvaneMan::mnuULGameTimers_Click()
{
    Handle(QStringLiteral("mnuULGameTimers_Click"), [&] {
        CheckPut({GripRecord::GameTimer});
        RunGripCommand(tr("Countdowntimers were put."), [&] { transfer(GripRecord::GameTimer, Direction::Put); });
    });
}

void fTolvaneMan::mnuULAll_Click()
{
    Handle(QStringLiteral("mnuULAll_Click"), [&] { ActivateTools(1); });
}

void fTolvaneMan::mnuCut_Click()
{
    if (auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
        edit->cut();
}

void fTolvaneMan::mnuCopy_Click()
{
    if (auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
        edit->copy();
}

void fTolvaneMan::mnuPaste_Click()
{
    if (auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget()))
        edit->paste();
}

void fTolvaneMan::cmdReset_Click(int index)
{
    Handle(QStringLiteral("cmdReset_Click(%1)").arg(index), [&] {
        const QString shown = txtCounters[index]->text();
        const bool reset = RunGripCommand([&] {
            txtCounters[index]->setText(QStringLiteral("0"));
            mGripCommands::ResetCounterTransfer(static_cast<quint8>(index + 1));
        });
        if (!reset) {
            txtCounters[index]->setText(shown); // refused: the counter was not reset
            return;
        }
        if (Application().RegistrySettings().ShowConfirmComm())
            mMain::ShowConfirm(tr("Counter ") + QString::number(index + 1) + tr(" was reset."));
    });
}

// ---- loaders -----------------------------------------------------------------------------------

void fTolvaneMan::CheckPut(const QList<mGripCommands::GripRecord>& records)
{
    PassErrors(kForm, kRevision, QStringLiteral("CheckPut"), [&] {
        // The option and ramping boxes go into their records first, as the put sends them.
        if (records.contains(GripRecord::Options))
            MoveControlsToOptions();
        if (records.contains(GripRecord::Ramping))
            MoveControlsToHyper();
        mGripCommands::CheckPut(records);
    });
}

void fTolvaneMan::SetVersionStatus()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetVersionStatus"), [&] {
        SetPanelText(kPanelFirmware, GunInfo().FirmwareBuild());
    });
}

void fTolvaneMan::InitDLTiming()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitDLTiming"), [&] {
        // A refused download copies nothing and leaves the setting's state as it was.
        if (!transfer(GripRecord::Timing, Direction::Get))
            return;
        if (const auto setting = ActiveSetting())
            mTemplateRecords::TimingToTemplate(TimingRecord(), *setting);
        // What came from the grip is shown read-only.
        mIFSettings->Refresh();
        setIsTemplate(false);
    });
}

void fTolvaneMan::InitCounters()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitCounters"), [&] {
        if (!transfer(GripRecord::Counters, Direction::Get))
            return;
        const cCounters& counters = CountersRecord();
        txtCounters[0]->setText(QString::number(counters.Counter1()));
        txtCounters[1]->setText(QString::number(counters.Counter2()));
        txtCounters[2]->setText(QString::number(counters.Total()));
    });
}

void fTolvaneMan::InitDLCountDownTimers()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitDLCountDownTimers"), [&] {
        if (!transfer(GripRecord::GameTimer, Direction::Get))
            return;
        if (const auto setting = ActiveSetting())
            mTemplateRecords::GameTimerToTemplate(CountdownTimerRecord(), *setting);
        mIFSettings->Refresh();
    });
}

void fTolvaneMan::InitBatteryIndicator()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitBatteryIndicator"), [&] {
        if (!transfer(GripRecord::Battery, Direction::Get))
            return;
        ucIProgress1->setValue(qRound(BatteryRecord().VoltageLevel() * 100.0));
    });
}

void fTolvaneMan::InitDLOptions()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitDLOptions"), [&] {
        if (!transfer(GripRecord::Options, Direction::Get))
            return;
        SetupOptionsData();
    });
}

void fTolvaneMan::InitULOptions()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitULOptions"), [&] {
        MoveControlsToOptions();
        transfer(GripRecord::Options, Direction::Put);
    });
}

void fTolvaneMan::InitDLHyper()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitDLHyper"), [&] {
        if (!transfer(GripRecord::Ramping, Direction::Get))
            return;
        if (const auto setting = ActiveSetting())
            mTemplateRecords::RampingToTemplate(HyperRecord(), *setting);
    });
}

void fTolvaneMan::InitULHyper()
{
    PassErrors(kForm, kRevision, QStringLiteral("InitULHyper"), [&] {
        MoveControlsToHyper();
        transfer(GripRecord::Ramping, Direction::Put);
    });
}
