// "get all" against the virtual grip over a pseudo-terminal, paced at 9600 baud, through the
// real serial port: the total time compared with the floor the protocol sets (per exchange the
// 100 ms pause after the code byte plus the wire time of command and report, 10 bits a byte).
#include "GripFloor.h"
#include "grip/mGripCommands.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kBaud = 9600;
constexpr int kRuns = 5;
constexpr double kGoal = 1.02;

} // namespace

int main(int argc, char* argv[])
{
    // Preferences and program folder of this run only, so the user's port settings stay out.
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    const auto grip = benchfloor::StartGrip(QStringLiteral("pace=1,baud=%1").arg(kBaud), out, QStringLiteral("bench_get_all"));
    if (!grip)
        return 1;
    gripsim::PtyServer& server = *grip;
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    cGripSession session(link);
    prefs.overrideCommDevice(server.devicePath());

    QList<double> times;
    QList<benchfloor::Floor> floors;
    try {
        mGripCommands::GetAll(session); // warm-up: first opening of the port and the preferences
        for (int run = 0; run < kRuns; ++run) {
            server.grip().clearTraffic();
            QElapsedTimer timer;
            timer.start();
            mGripCommands::GetAll(session);
            times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            floors.append(benchfloor::FloorOf(server.grip().traffic(), kBaud));
        }
    } catch (const std::exception& e) {
        out << "bench_get_all: get all failed: " << e.what() << '\n';
        return 1;
    }
    server.stop();

    benchfloor::PrintRuns(out, QStringLiteral("bench_get_all: get all"), times, floors, kBaud, kGoal);
    return 0;
}
