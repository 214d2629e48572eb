#include "firmware/mFirmwareWorkflows.h"

#include "base/cRegistrySettings.h"
#include "base/mErrorReport.h"
#include "firmware/mCommSupport.h"
#include "firmware/mFirmware.h"
#include "firmware/mFirmwareBackup.h"
#include "grip/cGripSession.h"
#include "grip/mCommSupportHex.h"

#include <exception>
#include <optional>

namespace mFirmwareWorkflows {
namespace {

// A text of the workflows in the user's language.
QString shown(const QString& english)
{
    return cText::Translated(kContext, english);
}

// The progress display of one workflow: ended on every way out, errors included.
class ProgressScope {
public:
    ProgressScope() = default;
    ~ProgressScope() { end(); }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    void start(int maximum)
    {
        mMain::StartProgress(maximum);
        m_active = true;
    }
    void end()
    {
        if (m_active)
            mMain::EndProgress();
        m_active = false;
    }

private:
    bool m_active = false;
};

// What the menu command does when an error leaves it: end the progress display and put the
// step text back.
class CleanUpOnError {
public:
    CleanUpOnError() : m_stepText(mMain::UI().stepText()), m_exceptions(std::uncaught_exceptions()) {}
    ~CleanUpOnError()
    {
        if (std::uncaught_exceptions() <= m_exceptions)
            return;
        mMain::EndProgress();
        mMain::UI().setStepText(m_stepText);
    }
    CleanUpOnError(const CleanUpOnError&) = delete;
    CleanUpOnError& operator=(const CleanUpOnError&) = delete;

private:
    QString m_stepText;
    int m_exceptions;
};

// The file a workflow works on: the one given, else the one chosen in the firmware file dialog
// (an open dialog for a write, a save dialog for a read). Nothing when the dialog is cancelled.
std::optional<QString> firmwareFile(const QString& file, bool save)
{
    if (!file.isEmpty())
        return file;
    FileDialogRequest request;
    request.title = shown(save ? kSaveFileTitle : kOpenFileTitle);
    request.filter = cText::Translated(mFirmware::kContext, mFirmware::kFileFilter);
    request.filterIndex = mFirmware::kFileFilterIndex;
    request.overwritePrompt = true;
    request.pathMustExist = true;
    request.hideReadOnly = save;
    const std::optional<QString> chosen = save ? mMain::UI().saveFileName(request) : mMain::UI().openFileName(request);
    if (!chosen || chosen->isEmpty())
        return std::nullopt;
    return chosen;
}

// Puts the grip into its boot code unless it is there already; the steps are named after the
// workflow ("UploadFirmware - Check bootmode", "... - stop program for upload").
void stopProgramUnlessInBootCode(cGripSession& session, Procedure& proc, const QString& workflow, const QString& transfer)
{
    proc.setName(workflow + QStringLiteral(" - Check bootmode"));
    if (!mCommSupportHex::GRIPIsBootmode(session)) {
        proc.setName(workflow + QStringLiteral(" - stop program for ") + transfer);
        mCommSupportHex::GRIPStopProgram(session);
    }
}

// Backs the grip's program up before the write and tells where. Its errors name the backup step;
// those of the write go on naming the step before it, as they always have.
QString backUpProgram(cGripSession& session, Procedure& proc, const QString& step, const tUploadOptions& options)
{
    const QString previous = proc.name();
    proc.setName(step);
    mMain::UI().setStepText(shown(kStatusBackingUp));
    const QString path = mFirmwareBackup::BackUp(session, options.backupFolder);
    proc.setName(previous);
    if (options.backedUp)
        options.backedUp(path);
    return path;
}

// Writes the image and reads the grip's program back. An error after a backup says where the
// backup is.
void writeAndReadBack(cGripSession& session, const FirmwareFile& image, FirmwareFile& readBack, const QString& backup)
{
    cUserInterface& ui = mMain::UI();
    try {
        ui.setStepText(shown(kStatusUploading));
        mCommSupport::ULFirmware(session, image);
        ui.setStepText(shown(kStatusVerifying));
        mCommSupport::DLFirmware(session, readBack);
    } catch (MarloError& e) {
        if (!backup.isEmpty())
            e.addHint(mFirmwareBackup::BackedUpHint(backup));
        throw;
    }
}

} // namespace

FirmwareResult UploadFirmware(cGripSession& session, const QString& file, const tCaller& caller, const tUploadOptions& options)
{
    return PassErrors(caller.module, caller.revision, caller.procedure, [&](Procedure& proc) {
        WaitPointerScope wait;
        cUserInterface& ui = mMain::UI();
        const std::optional<QString> chosen = firmwareFile(file, false);
        if (!chosen)
            return FirmwareResult::Cancelled;
        const QString path = *chosen;

        const QString previousStep = ui.stepText();
        ui.setStepText(shown(kStatusLoading));
        const QString loadStep = caller.procedure + QStringLiteral(" - load firmware file (") + path + QLatin1Char(')');
        proc.setName(loadStep);
        FirmwareFile image;
        mFirmware::LoadFirmwareFile(image, path);
        // The whole image is checked before the grip hears a word of it: a file the write would
        // fail on never leaves the grip stopped and half-written.
        proc.setName(caller.procedure + QStringLiteral(" - check firmware file (") + path + QLatin1Char(')'));
        mCommSupport::CheckFirmwareImage(image);
        proc.setName(loadStep);
        RefreshGunInfo(session, true);

        FirmwareResult result = FirmwareResult::VersionMismatch;
        if (!mFirmware::checkFirmwareVersion(image, session.GunInfo())) {
            ui.showMessage(shown(kVersionMismatchText), shown(kVersionMismatchTitle), MsgIcon::Exclamation);
        } else {
            ui.setStepText(shown(kStatusPreparing));
            const bool backUp = !options.backupFolder.isEmpty();
            const QString backupStep = caller.procedure + QStringLiteral(" - back up firmware (") + options.backupFolder + QLatin1Char(')');
            if (backUp) {
                // A folder that cannot take the backup is refused while the grip still runs its program.
                proc.setName(backupStep);
                mFirmwareBackup::PrepareFolder(options.backupFolder);
            }
            stopProgramUnlessInBootCode(session, proc, caller.procedure, QStringLiteral("upload"));
            ProgressScope progress;
            progress.start(static_cast<int>(image.Segments.size()) + kReadBackBlocks + (backUp ? mCommSupport::kBlockCount : 0));
            const QString backup = backUp ? backUpProgram(session, proc, backupStep, options) : QString();
            FirmwareFile readBack;
            writeAndReadBack(session, image, readBack, backup);
            progress.end();
            // The grip runs the new firmware whatever the comparison says.
            mCommSupportHex::GRIPStartProgram(session);
            if (mCommSupport::CompareProgramData(image, readBack)) {
                ui.showMessage(shown(kUploadSucceededText), shown(kUploadSucceededTitle), MsgIcon::Information);
                result = FirmwareResult::Succeeded;
            } else {
                ui.showMessage(shown(kUploadFailedText), shown(kUploadFailedTitle), MsgIcon::Information);
                result = FirmwareResult::VerifyFailed;
            }
        }
        ui.setStepText(previousStep);
        ui.setFirmwareVersion(session.GunInfo().FirmwareBuild());
        return result;
    });
}

FirmwareResult PutFirmwareProgram(cGripSession& session, const cRegistrySettings& preferences, const tCaller& caller,
                                  const tUploadOptions& options)
{
    CleanUpOnError cleanUp;
    FirmwareResult result = FirmwareResult::Cancelled;
    {
        WaitPointerScope wait;
        result = UploadFirmware(session, QString(), caller, options);
    }
    // The confirmation follows whatever the upload ended with (a cancelled dialog, a refused
    // file or a failed verification included). Keep it so.
    if (preferences.ShowConfirmComm())
        mMain::ShowConfirm(shown(kFirmwarePut));
    return result;
}

FirmwareResult DownloadFirmware(cGripSession& session, const cRegistrySettings& preferences, const QString& file,
                                const tCaller& caller)
{
    return PassErrors(caller.module, caller.revision, caller.procedure, [&](Procedure& proc) {
        {
            WaitPointerScope wait;
            const std::optional<QString> chosen = firmwareFile(file, true);
            if (!chosen)
                return FirmwareResult::Cancelled;
            stopProgramUnlessInBootCode(session, proc, caller.procedure, QStringLiteral("download"));
            FirmwareFile image;
            {
                ProgressScope progress;
                progress.start(mCommSupport::kBlockCount);
                mCommSupport::DLFirmware(session, image);
            }
            RefreshGunInfo(session, true);
            mFirmware::TakeBuilds(image, session.GunInfo());
            mFirmware::SaveFirmwareFile(*chosen, image);
            mCommSupportHex::GRIPStartProgram(session);
        }
        if (preferences.ShowConfirmComm())
            mMain::ShowConfirm(shown(kFirmwareFetched));
        return FirmwareResult::Succeeded;
    });
}

} // namespace mFirmwareWorkflows
