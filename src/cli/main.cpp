// marlo-cli: the command-line front end of Marlo, for scripts and headless use.
#include "cli/CliContext.h"
#include "cli/CliUserInterface.h"
#include "cli/StderrConsole.h"

#include "base/MarloError.h"
#include "grip/cGripHistory.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "shell/cApplication.h"
#include "shell/mLanguage.h"
#include "shell/mMain.h"
#include "sim/SimDevice.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>

namespace {

// A command's line of the usage: its words, then what it does.
QString commandLine(const char* words, const QString& what)
{
    return QStringLiteral("  %1%2\n").arg(QLatin1String(words), -34).arg(what);
}

QString usage()
{
    return CliTexts::tr("Commands:") + QLatin1Char('\n') +
           commandLine("info", CliTexts::tr("gun information and the feature flags")) +
           QStringLiteral("  bootmode | start-program | stop-program\n") + RecordCommandsUsage() +
           QStringLiteral("  reset-counter 1|2|3\n"
                          "  firmware read FILE | firmware write [--backup] FILE\n") +
           QStringLiteral("                                    ") + CliTexts::tr("--backup: first save the grip's program in the Backups folder") +
           QStringLiteral("\n  library list | show ID | export FILE | import FILE | delete ID\n") +
           commandLine("diff ID", CliTexts::tr("compare library template ID with the grip")) +
           commandLine("ports [DEVICE...]", CliTexts::tr("the serial ports and what stands in the way of each")) +
           commandLine("history [--serial S]", CliTexts::tr("the settings each grip held after every get and put")) +
           QLatin1Char('\n') +
           CliTexts::tr("Exit status: 0 done, 1 error, 2 wrong usage, 3 the grip refused, 4 the grip differs (diff).\n"
                        "DEVICE is a serial device such as /dev/ttyUSB0, or 'sim' / 'sim:KEY=VALUE,...' for the\n"
                        "built-in virtual grip (keys: firmware, boot, protocol, hardware, serial, bootmode, pace,\n"
                        "baud, latency, battery, state=FILE, fault=KIND@CODE[*N], failblock=ADDR*N).\n");
}

QString helpHint()
{
    return CliTexts::tr("Run 'marlo-cli --help' for the commands and their options.") + QLatin1Char('\n');
}

int dispatch(CliContext& ctx, const QString& command)
{
    if (command == QLatin1String("bootmode") || command == QLatin1String("start-program") ||
        command == QLatin1String("stop-program"))
        return RunLinkCommand(ctx, command);
    if (command == QLatin1String("info") || command == QLatin1String("get") ||
        command == QLatin1String("put") || command == QLatin1String("reset-counter"))
        return RunRecordCommand(ctx, command);
    if (command == QLatin1String("firmware"))
        return RunFirmwareCommand(ctx);
    if (command == QLatin1String("library"))
        return RunLibraryCommand(ctx);
    if (command == QLatin1String("diff"))
        return RunDiffCommand(ctx);
    if (command == QLatin1String("ports"))
        return RunPortsCommand(ctx);
    if (command == QLatin1String("history"))
        return RunHistoryCommand(ctx);
    throw CliUsageError(QStringLiteral("unknown command '%1'").arg(CliText(command)));
}

int run(CliContext& ctx, CliUserInterface& ui, const QString& command)
{
    try {
        const int status = dispatch(ctx, command);
        return status == ExitOk && ui.errorsShown() > 0 ? ExitError : status;
    } catch (const CliUsageError& e) {
        *ctx.err << "marlo-cli " << CliText(command) << ": " << CliText(e.message()) << '\n' << helpHint();
        return ExitUsage;
    } catch (const MarloError& e) {
        *ctx.err << CliUserInterface::ErrorReport(e, &ctx.session->Link()) << '\n';
        return ExitError;
    } catch (const std::exception& e) {
        *ctx.err << CliTexts::tr("error: %1").arg(CliText(QString::fromLocal8Bit(e.what()))) << '\n';
        return ExitError;
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marlo-cli"));
    QCoreApplication::setApplicationVersion(mMain::kProgramVersion);
    mLanguage::Install();
    QTextStream out(stdout);
    QTextStream err(stderr);

    QCommandLineParser parser;
    parser.setApplicationDescription(CliTexts::tr("Configures a Tolvane grip from the command line.") + QStringLiteral("\n\n") + usage());
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption deviceOption(QStringLiteral("device"), CliTexts::tr("Serial device for this run."), QStringLiteral("DEV"));
    const QCommandLineOption jsonOption(QStringLiteral("json"), CliTexts::tr("Print JSON."));
    const QCommandLineOption dbOption(QStringLiteral("db"), CliTexts::tr("Library file for this run."), QStringLiteral("PATH"));
    parser.addOptions({deviceOption, jsonOption, dbOption});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), CliTexts::tr("What to do (see above)."), QStringLiteral("COMMAND [ARGS...]"));
    if (!parser.parse(app.arguments())) {
        err << CliText(parser.errorText()) << '\n' << helpHint();
        return ExitUsage;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        out << parser.helpText();
        return ExitOk;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        out << "marlo-cli " << mMain::kProgramVersion << '\n';
        return ExitOk;
    }
    QStringList words = parser.positionalArguments();
    if (words.isEmpty()) {
        err << "marlo-cli: " << CliTexts::tr("no command given.") << "\n\n" << usage();
        return ExitUsage;
    }

    CliUserInterface ui(out, err);
    mMain::SetUserInterface(&ui);
    mMain::CheckErrorComponent();
    cSerialPort::SetDeviceResolver(SimDevice::Resolve);
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    link.SetConsoleFactory([] { return std::make_unique<StderrConsole>(); });
    cGripSession session(link);
    cApplication application(prefs);
    cGripHistory history(cGripHistory::DefaultFolder());
    session.SetHistory(&history);
    ui.setLink(&link);

    if (parser.isSet(deviceOption)) {
        const QString device = parser.value(deviceOption);
        // An empty device would silently mean the port of the preferences: a usage error instead.
        const QString problem = device.trimmed().isEmpty()
                                    ? CliTexts::tr("the device is empty (give a device such as /dev/ttyUSB0, or sim)")
                                    : SimDevice::Validate(device);
        if (!problem.isEmpty()) {
            err << "marlo-cli: --device '" << CliText(device) << "': " << CliText(problem) << '\n';
            return ExitUsage;
        }
        prefs.overrideCommDevice(device);
    }

    if (parser.isSet(dbOption) && parser.value(dbOption).trimmed().isEmpty()) {
        err << "marlo-cli: --db '" << CliText(parser.value(dbOption))
            << "': " << CliTexts::tr("the library file is empty (give the path of a library file)") << '\n';
        return ExitUsage;
    }

    // Values of the preferences that cannot be read stand at their defaults: said once, and the
    // command still runs.
    const QStringList unreadable = mMain::UnreadablePreferencesReport(mMain::UnreadablePreferences(prefs));
    for (qsizetype line = 0; line < unreadable.size(); ++line)
        err << (line == 0 ? "marlo-cli: " : "  ") << CliText(unreadable[line]) << '\n';
    err.flush();

    CliContext ctx;
    ctx.json = parser.isSet(jsonOption);
    ctx.db = parser.value(dbOption);
    ctx.out = &out;
    ctx.err = &err;
    ctx.session = &session;
    ctx.application = &application;
    const QString command = words.takeFirst();
    ctx.words = words;
    const int status = run(ctx, ui, command);

    out.flush();
    err.flush();
    SimDevice::Stop();
    mMain::SetUserInterface(nullptr);
    return status;
}
