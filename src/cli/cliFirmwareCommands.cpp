// marlo-cli firmware read FILE | firmware write FILE: the desktop program's firmware workflows,
// with the progress bar on stderr and the workflow's messages on the terminal.
#include "cli/CliContext.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "firmware/mFirmwareWorkflows.h"
#include "grip/cGripSession.h"
#include "shell/cApplication.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString kUsage = QStringLiteral("usage: marlo-cli firmware read FILE | firmware write FILE");

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
                   mErrCodes::RuntimeErrorText(mErrCodes::RT_FILE_ACCESS) + QStringLiteral(": the folder ") +
                       QDir::toNativeSeparators(folder.path()) + QStringLiteral(" does not exist"));
}

} // namespace

int RunFirmwareCommand(CliContext& ctx)
{
    if (ctx.words.size() != 2)
        throw CliUsageError(kUsage);
    const QString action = ctx.words.at(0);
    const QString file = ctx.words.at(1);
    if (file.isEmpty() || (action != QLatin1String("read") && action != QLatin1String("write")))
        throw CliUsageError(kUsage);

    ctx.session->GripError().Clear();
    FirmwareResult result = FirmwareResult::Cancelled;
    if (action == QLatin1String("read")) {
        requireFolder(file);
        result = mFirmwareWorkflows::DownloadFirmware(*ctx.session, ctx.application->RegistrySettings(), file, kRead);
    } else {
        result = mFirmwareWorkflows::UploadFirmware(*ctx.session, file, kWrite);
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
    *ctx.err << "firmware " << action << ": nothing was done\n";
    ctx.err->flush();
    return ExitError;
}
