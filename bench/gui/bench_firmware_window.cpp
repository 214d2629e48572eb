// The firmware commands through the main window (offscreen) against the virtual grip over a
// pseudo-terminal, paced at 9600 baud: Function > Put > Firmware program (a full write and its
// verification) and Function > Get > Firmware program (a full read), with a 5 ms timer running
// in the event loop the whole time. Printed: each transfer's time against the protocol's floor
// (per exchange the 100 ms pause after the code byte and the wire time of command and report),
// the event loop's longest stall (the longest gap between two timer ticks beyond the tick), the
// pause after the code byte as the grip saw it, and the full read with the traffic window open
// against the same read with it closed.
#include "GripFloor.h"
#include "base/MarloError.h"
#include "firmware/mFirmware.h"
#include "grip/cGripSession.h"
#include "gui/link/fCommConsole.h"
#include "gui/shell/QtUserInterface.h"
#include "gui/shell/fTolvaneMan.h"
#include "library/mDatabase.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <algorithm>

namespace {

constexpr int kBaud = 9600;
constexpr int kTickMs = 5;
constexpr double kRatioGoal = 1.03;
constexpr double kStallGoalMs = 30.0;
constexpr double kLogOverheadGoal = 0.01;
// Old firmware: the program restarts in mid-transfer are part of the run.
const QString kGrip = QStringLiteral("firmware=1.1.70,boot=1.2.0,hardware=2.1.0,pace=1,baud=%1");

// The window's services with the file dialogs answered and the boxes recorded, not shown.
class BenchUi : public QtUserInterface {
public:
    QString file;
    QStringList shown;
    void showMessage(const QString& text, const QString& title, MsgIcon) override { shown << title + QStringLiteral(": ") + text; }
    bool askYesNo(const QString&, const QString&, MsgIcon, bool) override { return false; }
    std::optional<QString> openFileName(const FileDialogRequest&) override { return file; }
    std::optional<QString> saveFileName(const FileDialogRequest&) override { return file; }
    void showError(const MarloError& error, const QString&, const QString&) override
    {
        shown << QStringLiteral("error %1: %2").arg(error.Number()).arg(error.Description());
    }
};

// Ticks every 5 ms in the event loop; the longest gap between two ticks beyond the tick is the
// longest stretch in which the window could not repaint or move.
class StallMeter : public QObject {
public:
    StallMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(kTickMs);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const qint64 now = m_clock.nsecsElapsed();
            const double gap = static_cast<double>(now - m_last) / 1e6;
            if (m_gaps.isEmpty() || gap > *std::max_element(m_gaps.begin(), m_gaps.end()))
                m_longestAtMs = static_cast<double>(now) / 1e6;
            m_gaps.append(gap);
            m_last = now;
        });
    }
    void start()
    {
        m_gaps.clear();
        m_clock.start();
        m_last = 0;
        m_timer.start();
    }
    void stop() { m_timer.stop(); }
    double longestStallMs() const
    {
        return m_gaps.isEmpty() ? 0.0 : *std::max_element(m_gaps.begin(), m_gaps.end()) - kTickMs;
    }
    double percentileStallMs(double p) const
    {
        if (m_gaps.isEmpty())
            return 0.0;
        QList<double> sorted = m_gaps;
        std::sort(sorted.begin(), sorted.end());
        return sorted.at(static_cast<qsizetype>(p * static_cast<double>(sorted.size() - 1))) - kTickMs;
    }
    qsizetype ticks() const { return m_gaps.size(); }
    // When the longest stall ended, from the start of the run.
    double longestAtMs() const { return m_longestAtMs; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    QList<double> m_gaps;
    double m_longestAtMs = 0.0;
};

// The pause after each code byte as the program takes it: the product's own wait, timed.
QList<double> g_pauses;

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0.0;
    std::sort(values.begin(), values.end());
    return values.at(static_cast<qsizetype>(p * static_cast<double>(values.size() - 1)));
}

struct Run {
    QList<double> pauses;
    double ms = 0.0;
    benchfloor::Floor floor;
    double stallMs = 0.0;
    double stallAtMs = 0.0;
    double stall99Ms = 0.0;
    qsizetype ticks = 0;
};

FirmwareFile fullImage()
{
    FirmwareFile image{QStringLiteral("1.1.71"), QStringLiteral("1.0.0-1.2.0"), QStringLiteral("1.1.1"), QStringLiteral("2.1.0"), {}};
    for (int address = 0x40; address < 0xFFF; address += 16) {
        HexLine line{16, static_cast<quint8>(address & 0xFF), static_cast<quint8>(address >> 8), 0, {}, 0};
        for (int i = 0; i < 16; ++i)
            line.Data.append(static_cast<quint8>((address * 13 + i * 29) & 0xFF));
        image.Segments.append(line);
    }
    image.Segments.append(HexLine{0, 0, 0, 1, {}, 0xFF});
    return image;
}

} // namespace

int main(int argc, char* argv[])
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    // Other programs on the machine show up as stalls: say how busy it was.
    QFile load(QStringLiteral("/proc/loadavg"));
    if (load.open(QIODevice::ReadOnly))
        out << "bench_firmware_window: load average at the start " << QString::fromLatin1(load.readAll().split(' ').mid(0, 3).join(' ')) << '\n';
    const bool withLog = !(argc > 1 && QByteArray(argv[1]) == "upload");

    BenchUi ui;
    mMain::SetUserInterface(&ui);
    QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/instdbxx.tmp"), home.filePath(QStringLiteral("instdbxx.tmp")));
    cRegistrySettings prefs;
    cApplication application(prefs);
    prefs.setShowSplash(false);
    if (!mMain::CheckForDB(prefs)) {
        out << "bench_firmware_window: no library (instdbxx.tmp beside the benchmark?)\n";
        return 1;
    }
    // The program's way to the grip, and the mode tables its window shows.
    cSerialPort port;
    const cPreferencesLinkSettings linkSettings(prefs);
    cLink link(&port, linkSettings);
    cGripSession session(link);
    session.Modes().FiringModesGlobalArraySet();
    session.Modes().HyperModesGlobalArraySet();

    QString error;
    gripsim::PtyServer server(*gripsim::SimOptions::parse(kGrip.arg(kBaud), &error));
    if (!server.start(&error)) {
        out << "bench_firmware_window: cannot start the virtual grip: " << error << '\n';
        return 1;
    }
    prefs.overrideCommDevice(server.devicePath());
    const QString upload = home.filePath(QStringLiteral("upload.tvf"));
    mFirmware::SaveFirmwareFile(upload, fullImage());

    int status = 0;
    {
        fTolvaneMan window(session, application);
        window.setCommandLine({});
        // The product's wait after the code byte, timed (the replaced sleep stands in for it).
        window.Link().SetSleepFunction([&ui](qint32 ms) {
            QElapsedTimer pause;
            pause.start();
            ui.waitWithEvents(ms);
            g_pauses.append(static_cast<double>(pause.nsecsElapsed()) / 1e6);
        });
        window.show();
        QApplication::processEvents();
        StallMeter meter;
        const auto measure = [&](const QString& item, const QString& file) {
            ui.file = file;
            ui.shown.clear();
            server.grip().clearTraffic();
            Run run;
            g_pauses.clear();
            meter.start();
            QElapsedTimer timer;
            timer.start();
            // Through the event loop, as a click on the menu item runs it.
            QTimer::singleShot(0, &window, [&] { window.findChild<QAction*>(item)->trigger(); });
            QApplication::processEvents();
            while (run.ms == 0.0) {
                QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
                if (!window.FirmwareTransferRunning() && server.grip().traffic().size() > 10)
                    run.ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            }
            meter.stop();
            run.pauses = g_pauses;
            run.floor = benchfloor::FloorOf(server.grip().traffic(), kBaud);
            run.stallMs = meter.longestStallMs();
            run.stallAtMs = meter.longestAtMs();
            run.stall99Ms = meter.percentileStallMs(0.99);
            run.ticks = meter.ticks();
            for (const QString& line : ui.shown)
                if (line.startsWith(QLatin1String("error")) || line.startsWith(QLatin1String("Failure")))
                    status = 1;
            return run;
        };
        const auto print = [&](const QString& name, const Run& r) {
            // The goal is judged against what the pseudo-terminal imposes (the stricter floor).
            const double ratio = r.ms / r.floor.pacedMs;
            out << QStringLiteral("bench_firmware_window: %1 %2 ms, floor %3 ms without the unpaced command bytes (%17 ms with them; "
                                  "%4 exchanges at %5 baud), ratio %6 (goal <= %7)%8, host turn-around %18 ms per exchange; "
                                  "event loop: longest stall %9 ms (goal <= %10)%11 ending %22 ms into the run, 99th percentile %12 ms, %13 ticks; "
                                  "pause after the code byte %19-%20 ms (99th percentile %21 ms; as the grip saw it %14-%15 ms)%16\n")
                       .arg(name).arg(r.ms, 0, 'f', 0).arg(r.floor.pacedMs, 0, 'f', 0).arg(r.floor.exchanges).arg(kBaud)
                       .arg(ratio, 0, 'f', 4).arg(kRatioGoal, 0, 'f', 2).arg(ratio <= kRatioGoal ? QString() : QStringLiteral(" OVER GOAL"))
                       .arg(r.stallMs, 0, 'f', 1).arg(kStallGoalMs, 0, 'f', 0)
                       .arg(r.stallMs <= kStallGoalMs ? QString() : QStringLiteral(" OVER GOAL"))
                       .arg(r.stall99Ms, 0, 'f', 1).arg(r.ticks).arg(r.floor.minPauseMs, 0, 'f', 1).arg(r.floor.maxPauseMs, 0, 'f', 1)
                       .arg(ui.shown.isEmpty() ? QString() : QStringLiteral(" [") + ui.shown.join(QStringLiteral("; ")).replace(QLatin1String("\r\n"), QLatin1String(" ")) + QLatin1Char(']'))
                       .arg(r.floor.ms, 0, 'f', 0).arg(r.floor.turnaroundMs / r.floor.exchanges, 0, 'f', 2)
                       .arg(percentile(r.pauses, 0.0), 0, 'f', 2).arg(percentile(r.pauses, 1.0), 0, 'f', 2)
                       .arg(percentile(r.pauses, 0.99), 0, 'f', 2).arg(r.stallAtMs, 0, 'f', 0);
            out.flush();
        };

        print(QStringLiteral("put firmware (write 253 lines + verification)"),
              measure(QStringLiteral("mnuULFirmware"), upload));
        if (withLog) {
            // The read with the traffic window closed and open, twice each, alternating.
            const QString fetched = home.filePath(QStringLiteral("fetched.tvf"));
            QList<double> closed, open;
            for (int round = 0; round < 2; ++round) {
                window.ShowCommLog(false);
                const Run without = measure(QStringLiteral("mnuDLFirmware"), fetched);
                print(QStringLiteral("get firmware, traffic window closed"), without);
                closed.append(without.ms / without.floor.pacedMs);
                window.ShowCommLog(true);
                const Run with = measure(QStringLiteral("mnuDLFirmware"), fetched);
                print(QStringLiteral("get firmware, traffic window open"), with);
                open.append(with.ms / with.floor.pacedMs);
            }
            const double a = (closed[0] + closed[1]) / 2.0;
            const double b = (open[0] + open[1]) / 2.0;
            const double overhead = b / a - 1.0;
            const qsizetype lines = window.CommLogWindow()->LogText().count(QStringLiteral("\r\n"));
            out << QStringLiteral("bench_firmware_window: traffic window open: full read %1 %2 % against closed (goal <= %3 %)%4, "
                                  "mean ratios to the floor %5 open, %6 closed; %7 log lines shown\n")
                       .arg(overhead >= 0 ? QStringLiteral("+") : QString()).arg(overhead * 100.0, 0, 'f', 2)
                       .arg(kLogOverheadGoal * 100.0, 0, 'f', 0)
                       .arg(overhead <= kLogOverheadGoal ? QString() : QStringLiteral(" OVER GOAL"))
                       .arg(b, 0, 'f', 4).arg(a, 0, 'f', 4).arg(lines);
        }
        window.ShowCommLog(false);
        prefs.setCommLogToConsole(false);
    }
    server.stop();
    mMain::SetUserInterface(nullptr);
    return status;
}
