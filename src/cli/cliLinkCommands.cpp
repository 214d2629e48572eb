// marlo-cli: bootmode, start-program, stop-program.
#include "cli/CliContext.h"

#include "grip/cGripSession.h"
#include "grip/mCommSupportHex.h"

#include <QJsonObject>

int RunLinkCommand(CliContext& ctx, const QString& command)
{
    if (!ctx.words.isEmpty())
        throw CliUsageError(CliTexts::tr("%1 takes no arguments").arg(command));
    if (command == QLatin1String("bootmode")) {
        const bool boot = mCommSupportHex::GRIPIsBootmode(*ctx.session, true);
        if (const int refused = RefusalStatus(ctx))
            return refused;
        if (ctx.json)
            PrintJson(ctx, QJsonObject{{QStringLiteral("BootMode"), boot}});
        else
            *ctx.out << (boot ? "boot" : "application") << '\n';
        return ExitOk;
    }
    if (command == QLatin1String("start-program"))
        mCommSupportHex::GRIPStartProgram(*ctx.session, true);
    else
        mCommSupportHex::GRIPStopProgram(*ctx.session, true);
    return RefusalStatus(ctx);
}
