// One exchange against the virtual grip over its pseudo-terminal: the program's turn-around
// (grip's report to the next command byte), the pause actually made after the code byte, and
// the CPU the program uses while it waits for a grip that takes 0.8 s to answer.
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"
#include "sim/TrafficLog.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

double median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    if (values.isEmpty())
        return 0;
    const qsizetype mid = values.size() / 2;
    return values.size() % 2 ? double(values[mid]) : (values[mid - 1] + values[mid]) / 2.0;
}

double threadCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

std::unique_ptr<gripsim::PtyServer> startGrip(cRegistrySettings& prefs, const QString& options)
{
    auto server = std::make_unique<gripsim::PtyServer>(*gripsim::SimOptions::parse(options));
    QString error;
    if (!server->start(&error)) {
        std::fprintf(stderr, "virtual grip: %s\n", qPrintable(error));
        std::exit(1);
    }
    prefs.overrideCommDevice(server->devicePath());
    return server;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    const int rounds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 30;

    {
        auto grip = startGrip(prefs, QString());
        for (int i = 0; i < rounds; ++i)
            link.CommHexData(QByteArray("\x11"), true);
        const auto traffic = grip->grip().traffic();
        const double turnaround = median(gripsim::turnaroundsNs(traffic)) / 1e6;
        const QList<qint64> pauses = gripsim::pausesAfterCodeNs(traffic);
        const double pause = median(pauses) / 1e6;
        const double pauseMax = *std::max_element(pauses.begin(), pauses.end()) / 1e6;
        std::printf("exchange turn-around: median %.3f ms over %d exchanges (goal <= 2 ms)\n", turnaround, rounds - 1);
        std::printf("pause after the code byte: median %.3f ms, max %.3f ms (floor 100 ms, goal 100-103 ms)\n", pause, pauseMax);
    }
    {
        auto grip = startGrip(prefs, QStringLiteral("latency=800"));
        QElapsedTimer wall;
        const double cpuBefore = threadCpuSeconds();
        wall.start();
        const QByteArray report = link.CommHexData(QByteArray("\x11"), true);
        const double elapsed = wall.nsecsElapsed() / 1e9;
        const double cpu = threadCpuSeconds() - cpuBefore;
        // The 100 ms pause is a sleep too; the share is over the whole exchange.
        std::printf("CPU while waiting 0.8 s for the grip: %.2f %% of %.3f s (%.1f ms CPU; goal <= 5 %%)%s\n",
                    100.0 * cpu / elapsed, elapsed, cpu * 1e3, report.isEmpty() ? "  [no answer!]" : "");
    }
    return 0;
}
