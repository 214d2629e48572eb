// marlo-cli firmware read FILE | firmware write [--backup] FILE: the desktop program's firmware
// workflows, with the progress bar on stderr and the workflow's messages on the terminal.
#include "cli/CliContext.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "firmware/mFirmwareBackup.h"
#include "firmware/mFirmwareWorkflows.h"
#include "grip/cGripSession.h"
#include "shell/cApplication.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString kBackupFlag = QStringLiteral("--backup");

// The names the workflows' errors carry when the command runs them.
const mFirmwareWorkflows::tCaller kRead{QStringLiteral("cliFirmwareCommands"), QStringLiteral("$Revision: 1 $"),
                                        QStringLiteral("firmware read")};
const mFirmwareWorkflows::tCaller kWrite{QStringLiteral("cliFirmwareCommands"), QStringLiteral("$Revision: 1 $"),
                                         QStringLiteral("firmware write")};

// The save dialog of the desktop program insists on an existing folder; so does the command,
// before the grip is stopped for a read that could not be saved anyway.
void requireFolder(const QString& file)
{
    const QDir folder = QFileInfo(file).absoluteDir();
    if (!folder.exists())
        RaiseError(mErrCodes::RT_FILE_ACCESS, QString(),
                   cText("CliTexts", QT_TRANSLATE_NOOP("CliTexts", "%1: the folder %2 does not exist"),
                         {mErrCodes::RuntimeError(mErrCodes::RT_FILE_ACCESS), QDir::toNativeSeparators(folder.path())}));
}

} // namespace

int RunFirmwareCommand(CliContext& ctx)
{
    const QString usage = CliTexts::tr("usage: marlo-cli firmware read FILE | firmware write [--backup] FILE");
    QStringList words = ctx.words;
    const QString action = words.value(0);
    // --backup belongs to a write, before its file.
    const bool backup = action == QLatin1String("write") && words.value(1) == kBackupFlag;
    if (backup)
        words.removeAt(1);
    if (words.size() != 2)
        throw CliUsageError(usage);
    const QString file = words.at(1);
    if (file.isEmpty() || (action != QLatin1String("read") && action != QLatin1String("write")))
        throw CliUsageError(usage);

    ctx.session->GripError().Clear();
    FirmwareResult result = FirmwareResult::Cancelled;
    if (action == QLatin1String("read")) {
        requireFolder(file);
        result = mFirmwareWorkflows::DownloadFirmware(*ctx.session, ctx.application->RegistrySettings(), file, kRead);
    } else {
        mFirmwareWorkflows::tUploadOptions options;
        if (backup)
            options.backupFolder = mFirmwareBackup::DefaultFolder();
        // Said as soon as the backup is saved: a write that fails after it leaves the path on the terminal.
        options.backedUp = [&ctx](const QString& path) {
            *ctx.out << CliTexts::tr("Backup: %1").arg(CliText(QDir::toNativeSeparators(path))) << '\n';
            ctx.out->flush();
        };
        result = mFirmwareWorkflows::UploadFirmware(*ctx.session, file, kWrite, options);
    }

    switch (result) {
    case FirmwareResult::Succeeded:
        return RefusalStatus(ctx);
    case FirmwareResult::VersionMismatch:
    case FirmwareResult::VerifyFailed:
        // The workflow has said why (its message reaches the terminal).
        return ExitError;
    case FirmwareResult::Cancelled:
        break;
    }
    *ctx.err << "firmware " << action << ": " << CliTexts::tr("nothing was done") << '\n';
    ctx.err->flush();
    return ExitError;
}
