// The main window's grip commands: the tool buttons and menu items, the common frame of a grip
// command, the window's part of the core's gets and puts, and the loaders that show a record the
// core has just got from the grip.
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
#include <optional>

using mGripCommands::Direction;
using mGripCommands::GripRecord;
using mGripCommands::Outcome;

namespace {

bool gripRefused(cGripSession& session)
{
    return session.GripError().ErrorCode() != cError::NoError;
}

} // namespace

// ---- the window's part of a get or put -------------------------------------------------------

// Follows the core's get and put transfer by transfer. Each transfer carries the name of the
// window's loader in the error trail, as it always has (none: the handler's own frame holds it),
// runs the window's work just before the exchange and its loader, which shows the record, right
// after it, before the next record is exchanged.
class fTolvaneMan::TransferSteps : public mGripCommands::cTransferObserver {
public:
    explicit TransferSteps(fTolvaneMan& window) : m_window(window) {}

    // The handler (or ActivateTools) that runs the command frames it already.
    std::optional<ErrorFrame> CommandFrame(const ErrorFrame&) const override { return std::nullopt; }

    std::optional<ErrorFrame> TransferFrame(GripRecord record, Direction direction) const override
    {
        const Step* step = find(record, direction);
        if (!step || !step->procedure)
            return std::nullopt;
        return ErrorFrame{kForm, kRevision, QLatin1String(step->procedure)};
    }

    void TransferStarting(GripRecord record, Direction direction) override
    {
        const Step* step = find(record, direction);
        if (step && step->before)
            (m_window.*step->before)();
    }

    void TransferEnded(const mGripCommands::Transfer& transfer) override
    {
        const Step* step = find(transfer.record, transfer.direction);
        if (step && step->loader)
            (m_window.*step->loader)(transfer.outcome);
    }

private:
    struct Step {
        GripRecord record;
        Direction direction;
        const char* procedure;
        void (fTolvaneMan::*before)();
        void (fTolvaneMan::*loader)(Outcome);
    };

    static const Step* find(GripRecord record, Direction direction)
    {
        // The timing and the game timer are put as the binder left their records; the option and
        // ramping boxes go into their records just before theirs are put.
        static const Step steps[] = {
            {GripRecord::Timing, Direction::Get, "InitDLTiming", nullptr, &fTolvaneMan::InitDLTiming},
            {GripRecord::Counters, Direction::Get, "InitCounters", nullptr, &fTolvaneMan::InitCounters},
            {GripRecord::GameTimer, Direction::Get, "InitDLCountDownTimers", nullptr, &fTolvaneMan::InitDLCountDownTimers},
            {GripRecord::Battery, Direction::Get, "InitBatteryIndicator", nullptr, &fTolvaneMan::InitBatteryIndicator},
            {GripRecord::Options, Direction::Get, "InitDLOptions", nullptr, &fTolvaneMan::InitDLOptions},
            {GripRecord::Ramping, Direction::Get, "InitDLHyper", nullptr, &fTolvaneMan::InitDLHyper},
            {GripRecord::Options, Direction::Put, "InitULOptions", &fTolvaneMan::MoveControlsToOptions, nullptr},
            {GripRecord::Ramping, Direction::Put, "InitULHyper", &fTolvaneMan::MoveControlsToHyper, nullptr},
        };
        for (const Step& step : steps)
            if (step.record == record && step.direction == direction)
                return &step;
        return nullptr;
    }

    fTolvaneMan& m_window;
};

// ---- the frame -------------------------------------------------------------------------------

bool fTolvaneMan::RunGripCommand(const std::function<void()>& command)
{
    GripCommandScope hold(*this);
    ClearRefusal();
    WaitPointerScope wait;
    m_session.GripError().Clear();
    command();
    if (!gripRefused(m_session))
        return true;
    ShowRefusal();
    return false;
}

void fTolvaneMan::RunGripCommand(const QString& confirmation, const std::function<void()>& command)
{
    // Unlike the classic program, a command the grip refused is not confirmed: a player must not
    // be told that settings were put when they were not. The status bar says it was refused.
    if (RunGripCommand(command) && m_application.RegistrySettings().ShowConfirmComm())
        mMain::ShowConfirm(confirmation);
}

void fTolvaneMan::ShowRefusal()
{
    m_stepBeforeRefusal = PanelText(kPanelStep);
    const QString byte = QStringLiteral("%1").arg(m_session.GripError().AnswerByte(), 2, 16, QLatin1Char('0')).toUpper();
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
                TransferSteps steps(*this);
                mGripCommands::GetAll(m_session, &steps);
                UpdateState();
                SetVersionStatus();
                mIFSettings->Refresh();
            });
            break;
        case 1:
            CheckPut({GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping});
            RunGripCommand(tr("Timinginformation and Countdowntimers were put."), [&] {
                // PutAll checks the records again; they hold what was checked above.
                TransferSteps steps(*this);
                mGripCommands::PutAll(m_session, &steps);
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
        m_application.SaveLibrary();
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
        RunGripCommand(tr("Timinginformation was fetched."), [&] {
            TransferSteps steps(*this);
            mGripCommands::GetRecord(m_session, GripRecord::Timing, &steps);
        });
    });
}

void fTolvaneMan::mnuULTiming_Click()
{
    Handle(QStringLiteral("mnuULTiming_Click"), [&] {
        CheckPut({GripRecord::Timing});
        RunGripCommand(tr("Timinginformation was put."), [&] {
            TransferSteps steps(*this);
            mGripCommands::PutRecord(m_session, GripRecord::Timing, &steps);
        });
    });
}

void fTolvaneMan::mnuDLCounters_Click()
{
    Handle(QStringLiteral("mnuDLCounters_Click"), [&] {
        RunGripCommand(tr("Counters were fetched."), [&] {
            TransferSteps steps(*this);
            mGripCommands::GetRecord(m_session, GripRecord::Counters, &steps);
        });
    });
}

void fTolvaneMan::mnuDLBattery_Click()
{
    Handle(QStringLiteral("mnuDLBattery_Click"), [&] {
        RunGripCommand(tr("Batteryinformation was fetched."), [&] {
            TransferSteps steps(*this);
            mGripCommands::GetRecord(m_session, GripRecord::Battery, &steps);
        });
    });
}

void fTolvaneMan::mnuDLGunInfo_Click()
{
    Handle(QStringLiteral("mnuDLGunInfo_Click"), [&] {
        // No boot-mode check before the gun information, and no confirmation after it.
        RunGripCommand([&] { m_session.GunInfo().Download(m_session.Link(), m_session.GripError()); });
        SetVersionStatus();
    });
}

void fTolvaneMan::mnuDLGameTimers_Click()
{
    Handle(QStringLiteral("mnuDLGameTimers_Click"), [&] {
        RunGripCommand(tr("Countdowntimers were fetched."), [&] {
            TransferSteps steps(*this);
            mGripCommands::GetRecord(m_session, GripRecord::GameTimer, &steps);
        });
    });
}

void fTolvaneMan::mnuULGameTimers_Click()
{
    Handle(QStringLiteral("mnuULGameTimers_Click"), [&] {
        CheckPut({GripRecord::GameTimer});
        RunGripCommand(tr("Countdowntimers were put."), [&] {
            TransferSteps steps(*this);
            mGripCommands::PutRecord(m_session, GripRecord::GameTimer, &steps);
        });
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
            mGripCommands::StartProgramIfInBootMode(m_session);
            txtCounters[index]->setText(QStringLiteral("0"));
            mGripCommands::ResetCounterTransfer(m_session, static_cast<quint8>(index + 1));
        });
        if (!reset) {
            txtCounters[index]->setText(shown); // refused: the counter was not reset
            return;
        }
        if (m_application.RegistrySettings().ShowConfirmComm())
            mMain::ShowConfirm(tr("Counter %1 was reset.").arg(index + 1));
    });
}

// ---- before a put, and after any command ------------------------------------------------------

void fTolvaneMan::CheckPut(const QList<mGripCommands::GripRecord>& records)
{
    PassErrors(kForm, kRevision, QStringLiteral("CheckPut"), [&] {
        // The option and ramping boxes go into their records first, as the put sends them.
        if (records.contains(GripRecord::Options))
            MoveControlsToOptions();
        if (records.contains(GripRecord::Ramping))
            MoveControlsToHyper();
        mGripCommands::CheckPut(m_session, records);
    });
}

void fTolvaneMan::SetVersionStatus()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetVersionStatus"), [&] {
        SetPanelText(kPanelFirmware, m_session.GunInfo().FirmwareBuild());
    });
}

// ---- loaders: the record just got from the grip, shown -----------------------------------------
// A refused get left the record as it was: its loader copies and shows nothing.

void fTolvaneMan::InitDLTiming(Outcome got)
{
    if (got == Outcome::Refused)
        return; // and the setting stays what it was, a template or not
    if (const auto setting = ActiveSetting())
        mTemplateRecords::TimingToTemplate(m_session.Timing(), *setting);
    // What came from the grip is shown read-only.
    mIFSettings->Refresh();
    setIsTemplate(false);
}

void fTolvaneMan::InitCounters(Outcome got)
{
    if (got == Outcome::Refused)
        return;
    const cCounters& counters = m_session.Counters();
    txtCounters[0]->setText(QString::number(counters.Counter1()));
    txtCounters[1]->setText(QString::number(counters.Counter2()));
    txtCounters[2]->setText(QString::number(counters.Total()));
}

void fTolvaneMan::InitDLCountDownTimers(Outcome got)
{
    if (got == Outcome::Refused)
        return;
    if (const auto setting = ActiveSetting())
        mTemplateRecords::GameTimerToTemplate(m_session.CountdownTimer(), *setting);
    mIFSettings->Refresh();
}

void fTolvaneMan::InitBatteryIndicator(Outcome got)
{
    if (got == Outcome::Refused)
        return;
    ucIProgress1->setValue(qRound(m_session.Battery().VoltageLevel() * 100.0));
}

// A firmware without options or ramping exchanges neither; the loaders show what the records
// hold all the same.
void fTolvaneMan::InitDLOptions(Outcome got)
{
    if (got == Outcome::Refused)
        return;
    SetupOptionsData();
}

void fTolvaneMan::InitDLHyper(Outcome got)
{
    if (got == Outcome::Refused)
        return;
    if (const auto setting = ActiveSetting())
        mTemplateRecords::RampingToTemplate(m_session.Hyper(), *setting);
}
