// marlo-cli firmware read FILE | firmware write FILE: the desktop program's firmware workflows,
// with the progress bar on stderr and the workflow's messages on the terminal.
#include "cli/CliContext.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "firmware/mFirmwareWorkflows.h"
#include "grip/cGripSession.h"

#include <QDir>
#include <QFileInfo>

namespace {


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
    const QString usage = CliTexts::tr("usage: marlo-cli firmware read FILE | firmware write FILE");
    if (ctx.words.size() != 2)
        throw CliUsageError(usage);
    const QString action = ctx.words.at(0);
    const QString file = ctx.words.at(1);
    if (file.isEmpty() || (action != QLatin1String("read") && action != QLatin1String("write")))
        throw CliUsageError(usage);

    ctx.session->GripError().Clear();
    FirmwareResult result = FirmwareResult::Cancelled;
    if (action == QLatin1String("read")) {
        requireFolder(file);
        result = mFirmwareWorkflows::DownloadFirmware(*ctx.session, file, kRead);
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
    *ctx.err << "firmware " << action << ": " << CliTexts::tr("nothing was done") << '\n';
    ctx.err->flush();
    return ExitError;
}
