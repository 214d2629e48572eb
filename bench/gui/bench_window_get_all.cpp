// "Get" through the main window's tool button, offscreen, against the virtual grip over a
// pseudo-terminal paced at 9600 baud, through the real serial port: the total time compared with
// the floor the protocol sets. The window's work (copying into the setting, refreshing the panes,
// the state table) is inside the measured time.
#include "GripFloor.h"
#include "gui/shell/QtUserInterface.h"
#include "gui/shell/fTolvaneMan.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "library/mDatabase.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kBaud = 9600;
constexpr int kRuns = 5;
constexpr double kGoal = 1.02;

} // namespace

int main(int argc, char* argv[])
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QFile::copy(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("instdbxx.tmp")),
                QDir(home.path()).filePath(QStringLiteral("instdbxx.tmp")));

    const auto grip = benchfloor::StartGrip(QStringLiteral("pace=1,baud=%1,firmware=4.0.5").arg(kBaud), out, QStringLiteral("bench_window_get_all"));
    if (!grip)
        return 1;
    gripsim::PtyServer& server = *grip;
    QtUserInterface ui;
    mMain::SetUserInterface(&ui);
    cRegistrySettings prefs;
    cApplication application(prefs);
    prefs.overrideCommDevice(server.devicePath());
    prefs.setShowConfirmComm(false);
    if (!mMain::CheckForDB(prefs)) {
        out << "bench_window_get_all: no library\n";
        return 1;
    }
    QList<double> times;
    QList<benchfloor::Floor> floors;
    {
        cSerialPort port;
        const cPreferencesLinkSettings linkSettings(prefs);
        cLink link(&port, linkSettings);
        cGripSession session(link);
        fTolvaneMan window(session, application);
        window.setCommandLine({});
        window.show();
        QCoreApplication::processEvents();
        window.cmdTools_Click(0); // warm-up: first opening of the port
        for (int run = 0; run < kRuns; ++run) {
            server.grip().clearTraffic();
            QElapsedTimer timer;
            timer.start();
            window.cmdTools_Click(0);
            times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            floors.append(benchfloor::FloorOf(server.grip().traffic(), kBaud));
        }
    }
    server.stop();
    benchfloor::PrintRuns(out, QStringLiteral("bench_window_get_all: get through the window"), times, floors, kBaud, kGoal);
    mDatabase::DisconnectDB();
    mMain::SetUserInterface(nullptr);
    return 0;
}
