// "get all" against the virtual grip over a pseudo-terminal, paced at 9600 baud, through the
// real serial port: the total time compared with the floor the protocol sets (per exchange the
// 100 ms pause after the code byte plus the wire time of command and report, 10 bits a byte).
#include "GripFloor.h"
#include "grip/mGripCommands.h"
#include "library/cApplication.h"
#include "link/cSerialPort.h"
#include "link/mCommBasic.h"
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

    QString error;
    const auto options = gripsim::SimOptions::parse(QStringLiteral("pace=1,baud=%1").arg(kBaud), &error);
    gripsim::PtyServer server(*options);
    if (!server.start(&error)) {
        out << "bench_get_all: cannot start the virtual grip: " << error << '\n';
        return 1;
    }
    cSerialPort port;
    mCommBasic::objComm = &port;
    mMain::Application().RegistrySettings().overrideCommDevice(server.devicePath());

    QList<double> times;
    double floor = 0.0;
    int exchanges = 0;
    QList<benchfloor::Breakdown> parts;
    try {
        mGripCommands::GetAll(); // warm-up: first opening of the port and the preferences
        for (int run = 0; run < kRuns; ++run) {
            server.grip().clearTraffic();
            QElapsedTimer timer;
            timer.start();
            mGripCommands::GetAll();
            times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            floor = benchfloor::floorMs(server.grip().traffic(), kBaud, exchanges);
            parts.append(benchfloor::breakdown(server.grip().traffic(), kBaud));
        }
    } catch (const std::exception& e) {
        out << "bench_get_all: get all failed: " << e.what() << '\n';
        return 1;
    }
    mCommBasic::objComm = nullptr;
    server.stop();

    QList<int> order;
    for (int i = 0; i < times.size(); ++i)
        order.append(i);
    std::sort(order.begin(), order.end(), [&](int a, int b) { return times[a] < times[b]; });
    const int mid = order.at(order.size() / 2);
    const double median = times.at(mid);
    const double best = times.at(order.first());
    const benchfloor::Breakdown& part = parts.at(mid);
    const double ratio = median / floor;
    out << QStringLiteral("bench_get_all: get all %1 ms (median of %2, best %3 ms), floor %4 ms "
                          "(%5 exchanges at %6 baud), ratio %7 (goal <= %8)%9; above the floor: "
                          "pauses +%10 ms, grip +%11 ms, host turn-around %12 ms\n")
               .arg(median, 0, 'f', 1).arg(kRuns).arg(best, 0, 'f', 1).arg(floor, 0, 'f', 1)
               .arg(exchanges).arg(kBaud).arg(ratio, 0, 'f', 3).arg(kGoal, 0, 'f', 2)
               .arg(ratio <= kGoal ? QString() : QStringLiteral(" OVER GOAL"))
               .arg(part.pauseExcessMs, 0, 'f', 1).arg(part.gripExcessMs, 0, 'f', 1).arg(part.turnaroundMs, 0, 'f', 1);
    mMain::ReleaseApplication();
    return 0;
}
