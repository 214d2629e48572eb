// marlo-gripsim: serves a virtual grip on a pseudo-terminal until SIGINT or
// SIGTERM. The first line on stdout is the device to open.

#include "MarloVersion.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <pthread.h>

namespace {

constexpr int kExitUsage = 2;
constexpr int kExitFailure = 1;

QString optionsText(const QStringList& words)
{
    QStringList parts;
    for (QString word : words) {
        if (word == QLatin1String("sim"))
            continue;
        if (word.startsWith(QLatin1String("sim:")))
            word = word.mid(4);
        parts.append(word);
    }
    return parts.join(QLatin1Char(','));
}

// Blocks the stop signals in this thread and in every thread started after,
// so that only sigwait() receives them.
sigset_t blockStopSignals()
{
    sigset_t stopSet;
    sigemptyset(&stopSet);
    sigaddset(&stopSet, SIGINT);
    sigaddset(&stopSet, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSet, nullptr);
    return stopSet;
}

void describe(const gripsim::PtyServer& server)
{
    const gripsim::SimOptions& o = server.options();
    std::fprintf(stderr, "virtual grip on %s: firmware %s, boot %s, protocol %s, hardware %s, %s\n",
                 qPrintable(server.devicePath()), qPrintable(o.firmware.toString()),
                 qPrintable(o.boot.toString()), qPrintable(o.protocol.toString()),
                 qPrintable(o.hardware.toString()), o.pace ? "paced" : "unpaced");
}

} // namespace

int main(int argc, char* argv[])
{
    const sigset_t stopSignals = blockStopSignals();
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marlo-gripsim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MARLO_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Serves a virtual grip on a pseudo-terminal and prints the device path.\n\n"
        "OPTIONS-TEXT is KEY=VALUE items separated by commas (a leading \"sim:\" is allowed):\n"
        "  firmware, boot, protocol, hardware=a.b.c   builds (4.0.0, 1.2.1, 1.1.1, 1.1.1)\n"
        "  serial=TEXT        up to 10 characters (SIM0000001)\n"
        "  bootmode=0|1       start in boot mode\n"
        "  pace=0|1           send every byte at the baud rate\n"
        "  baud=N             baud rate for pacing (9600)\n"
        "  latency=MS         delay before every answer (0)\n"
        "  battery=N          raw 10-bit battery reading (880)\n"
        "  state=FILE         keep the grip's state in FILE (JSON)\n"
        "  link=PATH          make a symbolic link PATH to the device\n"
        "  fault=KIND@CODE[*COUNT]   KIND: silent nak short long badsum garbage pieces delayMS\n"
        "  failblock=ADDR[*N] refuse the next N exchanges of the block at ADDR (hex)"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("OPTIONS-TEXT"), QStringLiteral("How the grip is set up."),
                                 QStringLiteral("[OPTIONS-TEXT]"));
    parser.process(app);

    QString error;
    const auto options = gripsim::SimOptions::parse(optionsText(parser.positionalArguments()), &error);
    if (!options) {
        std::fprintf(stderr, "marlo-gripsim: %s\n", qPrintable(error));
        return kExitUsage;
    }
    gripsim::PtyServer server(*options);
    if (!server.start(&error)) {
        std::fprintf(stderr, "marlo-gripsim: %s\n", qPrintable(error));
        return kExitFailure;
    }
    std::printf("%s\n", qPrintable(server.devicePath()));
    std::fflush(stdout);
    describe(server);

    int received = 0;
    sigwait(&stopSignals, &received);
    server.stop();
    if (!server.lastError().isEmpty())
        std::fprintf(stderr, "marlo-gripsim: %s\n", qPrintable(server.lastError()));
    return 0;
}
