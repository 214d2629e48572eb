// The grip history: what recording one entry costs (a get all records one) with a full history
// beside it, what it adds to a get all (the virtual grip unpaced and the link's pauses skipped,
// so that the exchanges do not drown the difference), and listing 10,000 entries of ten grips.
// Each figure is the median of its rounds.
#include "GripFloor.h"
#include "grip/cGripHistory.h"
#include "grip/cGripSession.h"
#include "grip/mGripCommands.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

constexpr int kGrips = 10;
constexpr int kRounds = 200;
constexpr int kGetAllRounds = 30;

cGripHistory::tEntry entry(int grip, int n)
{
    // The values of a get all, as marlo-cli names them.
    const QJsonObject timing{{"CycleTimeClose", 28}, {"CycleTimeOpen", 30}, {"Dwelltime", 10}, {"FiringMode", 0},
                             {"LoadTime", 35}, {"ROF", 9.71}, {"ShotTime", n % 256}};
    const QJsonObject options{{"CTOAdjust", false}, {"DefaultLoadTime", 45}, {"EyeCheckMaxTime", 100},
                              {"EyeCheckMaxTimeOn", false}, {"EyeCheckOKTime", 100}, {"EyeCheckOKTimeOn", false},
                              {"EyeMounted", false}, {"LedOn", false}, {"LoaderOn", false}, {"TriggerFilterOn", false},
                              {"UseEye", false}};
    const QJsonObject ramping{{"HyperMode", 1}, {"HyperTime", 100}, {"Shots", 3}};
    const QJsonObject gametimer{{"CountDownTimer", 10}, {"PreAlert1On", false}, {"PreAlert1Time", 60},
                                {"PreAlert2On", false}, {"PreAlert2Time", 30}};
    cGripHistory::tEntry e;
    e.time = QDateTime::currentDateTime().addSecs(n);
    e.serial = QStringLiteral("GRIP%1").arg(grip, 6, 10, QLatin1Char('0'));
    e.firmware = QStringLiteral("4.0.5");
    e.values = {{"timing", timing}, {"options", options}, {"ramping", ramping}, {"gametimer", gametimer}};
    return e;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Get all with and without the history, taken in turns so that both see the same machine; the
// medians in ms, or nothing when the grip cannot be reached.
std::optional<std::pair<double, double>> getAllWithAndWithout(cGripHistory& history)
{
    QTextStream out(stderr);
    const auto grip = benchfloor::StartGrip(QString(), out, QStringLiteral("bench_history"));
    if (!grip)
        return std::nullopt;
    cSerialPort port;
    const cPreferencesLinkSettings linkSettings;
    cLink link(&port, linkSettings);
    link.SetSleepFunction([](qint32) {});
    cGripSession session(link);
    mMain::Application().RegistrySettings().overrideCommDevice(grip->devicePath());
    // The virtual grip's own history full, as a grip used for long has it.
    for (int n = 0; n < int(cGripHistory::kKeptPerGrip); ++n) {
        cGripHistory::tEntry e = entry(0, n);
        e.serial = QStringLiteral("SIM0000001");
        history.Record(e);
    }
    std::vector<double> with, without;
    try {
        mGripCommands::GetAll(session); // warm-up: first opening of the port and the preferences
        for (int round = 0; round < 2 * kGetAllRounds; ++round) {
            const bool recording = round % 2 == 1;
            session.SetHistory(recording ? &history : nullptr);
            QElapsedTimer timer;
            timer.start();
            mGripCommands::GetAll(session);
            (recording ? with : without).push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    } catch (const std::exception& e) {
        out << "bench_history: get all failed: " << e.what() << '\n';
        return std::nullopt;
    }
    grip->stop();
    return std::pair{median(with), median(without)};
}

} // namespace

int main(int argc, char** argv)
{
    // Preferences and program folder of this run only, so the user's port settings stay out.
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    cGripHistory history(dir.path());
    for (int grip = 0; grip < kGrips; ++grip)
        for (int n = 0; n < int(cGripHistory::kKeptPerGrip); ++n)
            history.Record(entry(grip, n));

    std::vector<double> record;
    for (int round = 0; round < kRounds; ++round) {
        const cGripHistory::tEntry e = entry(0, 5000 + round);
        QElapsedTimer timer;
        timer.start();
        history.Record(e);
        record.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::vector<double> list;
    qsizetype listed = 0;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        listed = history.Entries().size();
        list.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    const auto getAll = getAllWithAndWithout(history);
    if (!getAll)
        return 1;
    if (!history.TakeProblem().isEmpty() || listed != kGrips * cGripHistory::kKeptPerGrip) {
        std::fprintf(stderr, "the history did not hold what was recorded (%lld listed)\n", static_cast<long long>(listed));
        return 1;
    }
    std::printf("grip history, %d grips x %lld entries: record one entry median %.3f ms, worst %.3f ms; "
                "get all %.2f ms with the history, %.2f ms without (+%.2f ms, goal <= 1 ms); "
                "list %lld entries median %.1f ms (goal <= 200 ms)\n",
                kGrips, static_cast<long long>(cGripHistory::kKeptPerGrip), median(record),
                *std::max_element(record.begin(), record.end()), getAll->first, getAll->second, getAll->first - getAll->second,
                static_cast<long long>(listed), median(list));
    mMain::ReleaseApplication();
    return 0;
}
