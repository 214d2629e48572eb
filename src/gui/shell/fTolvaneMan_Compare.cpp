// Function > "Compare with grip...": what Put all would send beside what the grip holds. The grip
// is read into a scratch session on the window's link, so that no record of the window's session,
// no preference and no library setting changes, and the next put sends exactly what it would have.
#include "gui/shell/fTolvaneMan.h"

#include "grip/mGripComparison.h"
#include "gui/grip/fCompareGrip.h"
#include "shell/cApplication.h"
#include "gui/shell/GripCommandScope.h"
#include "shell/mMain.h"

namespace {

// The window's progress bar, a step for each record read; ended on every way out.
class CompareProgress : public mGripCommands::cTransferObserver {
public:
    explicit CompareProgress(int records) { mMain::StartProgress(records); }
    ~CompareProgress() override { mMain::EndProgress(); }
    CompareProgress(const CompareProgress&) = delete;
    CompareProgress& operator=(const CompareProgress&) = delete;

    void TransferEnded(const mGripCommands::Transfer&) override { mMain::UI().setProgress(++m_done); }

private:
    int m_done = 0;
};

// The step panel says what the window does until the end of the scope.
class StepText {
public:
    StepText(fTolvaneMan& window, const QString& text) : m_window(window), m_before(window.PanelText(fTolvaneMan::kPanelStep))
    {
        m_window.SetPanelText(fTolvaneMan::kPanelStep, text);
    }
    ~StepText() { m_window.SetPanelText(fTolvaneMan::kPanelStep, m_before); }
    StepText(const StepText&) = delete;
    StepText& operator=(const StepText&) = delete;

private:
    fTolvaneMan& m_window;
    QString m_before;
};

} // namespace

void fTolvaneMan::mnuCompare_Click()
{
    Handle(QStringLiteral("mnuCompare_Click"), [&] { CompareWithGrip(); });
}

void fTolvaneMan::PutValuesInto(cGripSession& put)
{
    PassErrors(kForm, kRevision, QStringLiteral("PutValuesInto"), [&] {
        // Put all sends the timing and game-timer records as the binder left them, and the option
        // and ramping boxes through their records (the ramping mode is the record's own).
        put.Timing() = m_session.Timing();
        put.CountdownTimer() = m_session.CountdownTimer();
        put.Hyper().setHyperMode(m_session.Hyper().HyperMode());
        ControlsIntoOptions(put.Options());
        ControlsIntoHyper(put.Hyper());
        // A value a put would refuse is refused here too, before the grip is asked.
        mGripCommands::CheckPut(put, mGripComparison::PutRecords());
    });
}

void fTolvaneMan::CompareWithGrip()
{
    PassErrors(kForm, kRevision, QStringLiteral("CompareWithGrip"), [&] {
        cGripSession put(Link(), cGripSession::tKind::Scratch);
        PutValuesInto(put);
        mGripComparison::tComparison comparison;
        {
            GripCommandScope hold(*this);
            ClearRefusal();
            WaitPointerScope wait;
            const StepText step(*this, tr("Reading the grip to compare..."));
            CompareProgress progress(static_cast<int>(mGripComparison::PutRecords().size()));
            comparison = mGripComparison::Compare(m_session, put, mGripComparison::PutRecords(), &progress);
        }
        if (comparison.refused) {
            ShowRefusal();
            return;
        }
        SetVersionStatus();
        fCompareGrip window(comparison, m_application.RegistrySettings(), this);
        window.exec();
    });
}
