#pragma once
// The two firmware commands of the main window, as core procedures that the desktop program
// and marlo-cli share: write a firmware file into the grip (with verification) and fetch the
// grip's program into a file. Errors are passed on with the step they happened in; the desktop
// handlers show them, marlo-cli prints them.
#include "base/cText.h"

#include <QString>
#include <functional>

class cGripSession;
class cRegistrySettings;

enum class FirmwareResult {
    Cancelled,       // the file dialog was cancelled: nothing happened
    VersionMismatch, // the file does not fit the grip: nothing was written
    VerifyFailed,    // written, but the read-back differs
    Succeeded,
};

namespace mFirmwareWorkflows {

// Whose procedure a workflow runs as: its errors carry the caller's module and revision, and
// its steps are named after the caller's procedure ("<procedure> - Check bootmode"). The
// desktop program hands its window's names, so that the error trail reads as it always has.
struct tCaller {
    QString module;
    QString revision;
    QString procedure;
};

// What a write does beyond writing.
struct tUploadOptions {
    // When set, the grip's program is backed up into this folder after it is stopped and before
    // the first block is written; without, the write sends what it always has.
    QString backupFolder{};
    // Told the backup's path as soon as the backup is saved.
    std::function<void(const QString& path)> backedUp{};
};

// Blocks read back after a write (the whole readable program memory).
constexpr int kReadBackBlocks = 252;

// Texts of the workflows, in English; the workflows show them translated in kContext. Lines of one
// message are joined with CR LF.
inline constexpr char kContext[] = "mFirmwareWorkflows";
inline const QString kStatusLoading = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Loading firmwarefile to be uploaded"));
inline const QString kStatusPreparing = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Preparing grip for upload"));
inline const QString kStatusBackingUp = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Backing up the grip's firmware..."));
inline const QString kStatusUploading = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Uploading firmware..."));
inline const QString kStatusVerifying = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Verifying uploaded firmware..."));
inline const QString kVersionMismatchText = QStringLiteral(QT_TRANSLATE_NOOP(
    "mFirmwareWorkflows", "Firmwarefile version does not match the current version of the grip.\r\n"
                          "It is not possible to upload this firmwarefile to the grip."));
inline const QString kVersionMismatchTitle = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Firmwarefile version error"));
inline const QString kUploadSucceededText = QStringLiteral(QT_TRANSLATE_NOOP(
    "mFirmwareWorkflows", "Firmware uploaded successfully!\r\nPress OK to start using the newly uploaded firmware."));
inline const QString kUploadSucceededTitle = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Success!"));
inline const QString kUploadFailedText = QStringLiteral(QT_TRANSLATE_NOOP(
    "mFirmwareWorkflows", "Firmware uploaded failed!\r\n"
                          "You should reset you grip (turn it off and then back on) and try uploading again.\r\n"
                          "If the problem persists, please contact Tolvane Products' supportunit."));
inline const QString kUploadFailedTitle = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Failure!"));
inline const QString kFirmwarePut = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Firmware was put."));
inline const QString kFirmwareFetched = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Firmware was fetched."));
inline const QString kOpenFileTitle = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Open firmware file"));
inline const QString kSaveFileTitle = QStringLiteral(QT_TRANSLATE_NOOP("mFirmwareWorkflows", "Save firmware file"));

// Writes a firmware file into the session's grip: load, check the whole image (a file the write would
// fail on raises 10802 before the grip is asked anything), check it against the grip's builds,
// stop the program, write, read back, start the program, compare and say how it went. An empty file
// asks for one with the open dialog (cancel ends silently). The steps are shown as the step
// text and the grip's version at the end as its firmware version. Errors are passed on with the
// step name ("<caller's procedure> - Check bootmode", ...); the progress display is ended on the
// way out. With a backup folder, a folder that cannot take the backup is refused before the grip
// is stopped, and a failed backup starts the program again and writes nothing.
FirmwareResult UploadFirmware(cGripSession& session, const QString& file, const tCaller& caller,
                              const tUploadOptions& options = {});

// Function > Put > Firmware program: UploadFirmware with the dialog, then the confirmation
// "Firmware was put." when the preferences ask for confirmations (ShowConfirmComm), whatever the
// upload ended with. On an error the progress display is ended and the step text restored before
// the error goes on.
FirmwareResult PutFirmwareProgram(cGripSession& session, const cRegistrySettings& preferences, const tCaller& caller,
                                  const tUploadOptions& options = {});

// Function > Get > Firmware program: stop the program, read the whole program memory, save it
// with the grip's builds into the file, start the program again and confirm "Firmware was
// fetched." when the preferences ask for confirmations. An empty file asks with the save dialog
// (cancel ends silently). Errors are passed on with the step name ("<caller's procedure> - Check
// bootmode", ...); the progress display is ended on the way out.
FirmwareResult DownloadFirmware(cGripSession& session, const cRegistrySettings& preferences, const QString& file,
                                const tCaller& caller);

} // namespace mFirmwareWorkflows
