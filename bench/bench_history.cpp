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
#include "base/cRegistrySettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdio>
#include <ctime>
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

struct tGetAll {
    double without; // get all, median ms
    double step;    // what the history adds to it: the recording step, median ms
    double worstStep;
};

// Get all without the history, each followed by the step that a get all with the history runs
// at its end (recording its four settings records), timed on its own: the exchanges vary by
// milliseconds from one get to the next, far more than the step costs, so that two medians of
// whole gets could not show it.
std::optional<tGetAll> getAllCost(cGripHistory& history)
{
    QTextStream out(stderr);
    const auto grip = benchfloor::StartGrip(QString(), out, QStringLiteral("bench_history"));
    if (!grip)
        return std::nullopt;
    cSerialPort port;
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cLink link(&port, linkSettings);
    link.SetSleepFunction([](qint32) {});
    cGripSession session(link);
    prefs.overrideCommDevice(grip->devicePath());
    // The virtual grip's own history full, as a grip used for long has it.
    for (int n = 0; n < int(cGripHistory::kKeptPerGrip); ++n) {
        cGripHistory::tEntry e = entry(0, n);
        e.serial = QStringLiteral("SIM0000001");
        history.Record(e);
    }
    using mGripCommands::GripRecord;
    // What a get all exchanged; the step keeps the four settings records of them.
    const QList<GripRecord> exchanged = {GripRecord::Timing, GripRecord::Counters, GripRecord::GameTimer,
                                         GripRecord::Battery, GripRecord::Options, GripRecord::Ramping};
    std::vector<double> gets, steps;
    try {
        mGripCommands::GetAll(session); // warm-up: first opening of the port and the preferences
        for (int round = 0; round < kGetAllRounds; ++round) {
            session.SetHistory(nullptr);
            QElapsedTimer timer;
            timer.start();
            mGripCommands::GetAll(session);
            gets.push_back(double(timer.nsecsElapsed()) / 1e6);
            session.SetHistory(&history);
            timer.restart();
            mGripCommands::RecordHistory(session, exchanged);
            steps.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    } catch (const std::exception& e) {
        out << "bench_history: get all failed: " << e.what() << '\n';
        return std::nullopt;
    }
    grip->stop();
    return tGetAll{median(gets), median(steps), *std::max_element(steps.begin(), steps.end())};
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
    // Wall time, and the processor time of this program: on a shared machine the first also
    // holds the time others had the processor.
    std::vector<double> list, listCpu;
    qsizetype listed = 0;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        const std::clock_t cpu = std::clock();
        listed = history.Entries().size();
        listCpu.push_back(double(std::clock() - cpu) * 1000.0 / CLOCKS_PER_SEC);
        list.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    const auto getAll = getAllCost(history);
    if (!getAll)
        return 1;
    if (!history.TakeProblem().isEmpty() || listed != kGrips * cGripHistory::kKeptPerGrip) {
        std::fprintf(stderr, "the history did not hold what was recorded (%lld listed)\n", static_cast<long long>(listed));
        return 1;
    }
    std::printf("grip history, %d grips x %lld entries: record one entry median %.3f ms, worst %.3f ms; "
                "get all (virtual grip, pauses skipped) %.2f ms without the history, %.2f ms with it "
                "(+%.3f ms median, worst +%.3f ms; goal <= 1 ms); "
                "list %lld entries median %.1f ms, %.1f ms of processor time (goal <= 200 ms)\n",
                kGrips, static_cast<long long>(cGripHistory::kKeptPerGrip), median(record),
                *std::max_element(record.begin(), record.end()), getAll->without, getAll->without + getAll->step,
                getAll->step, getAll->worstStep, static_cast<long long>(listed), median(list), median(listCpu));
    return 0;
}
