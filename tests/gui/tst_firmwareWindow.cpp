// The firmware commands in the main window against the virtual grip: what the window shows
// during and after a transfer (progress bar, status panels, messages), the commands held while
// it runs, the command-line upload, and bad files or a failing grip leaving a usable window.
#include "GuiTestSupport.h"
#include "../firmware/FirmwareTestSupport.h"

#include "firmware/mFirmware.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"
#include "sim/GripState.h"

#include <QAction>
#include <QCloseEvent>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace guitest;
using namespace fwtest;

namespace {

// Everything a firmware transfer holds: the grip commands and those that would open a modal
// window or end the program.
const QStringList kHeld{"cmdTools(0)", "cmdTools(1)", "cmdReset(0)", "cmdReset(1)", "mnuDLTiming", "mnuDLCounters",
                        "mnuDLGameTimers", "mnuDLGunInfo", "mnuDLBattery", "mnuDLFirmware", "mnuULTiming", "mnuULGameTimers",
                        "mnuULFirmware", "mnuULAll", "cmdTools(2)", "cmdTools(4)", "mnuLibTemplates", "mnuProperties",
                        "mnuOptions", "mnuAbout", "mnuExit"};

bool enabled(QObject* window, const QString& name)
{
    QObject* command = window->findChild<QObject*>(name);
    if (auto* action = qobject_cast<QAction*>(command))
        return action->isEnabled();
    auto* widget = qobject_cast<QWidget*>(command);
    return widget && widget->isEnabled();
}

QMap<QString, bool> commandStates(QObject* window)
{
    QMap<QString, bool> states;
    for (const QString& name : kHeld)
        states.insert(name, enabled(window, name));
    return states;
}

// What the window looked like at each pause after a code byte during a run.
struct Samples {
    QList<int> values;          // progress value, when the bar was visible
    QSet<int> maxima;           // progress maxima
    QStringList steps;          // panel 3, each change
    bool heldEverywhere = true; // every held command disabled at every pause
    int pauses = 0;
};

} // namespace

class tst_firmwareWindow : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString path(const QString& name) const { return m_dir.filePath(name); }

    // Runs the command in the window, sampling it at every pause after a code byte.
    Samples run(WindowHarness& h, const std::function<void()>& command)
    {
        fTolvaneMan& w = *h.window;
        Samples s;
        auto* bar = control<QProgressBar>(&w, QStringLiteral("pgbProgress"));
        mCommBasic::SetSleepFunction([&](qint32) {
            ++s.pauses;
            if (bar->isVisible()) {
                s.values.append(bar->value());
                s.maxima.insert(bar->maximum());
            }
            if (s.steps.isEmpty() || s.steps.last() != w.PanelText(3))
                s.steps.append(w.PanelText(3));
            for (const QString& name : kHeld)
                s.heldEverywhere = s.heldEverywhere && !enabled(&w, name);
        });
        command();
        mCommBasic::SetSleepFunction([](qint32) {});
        return s;
    }

private slots:
    void initTestCase()
    {
        // Three data lines and the end record for boot code 1.0.0-1.2.0 and hardware 2.1.0; in
        // bad.tvf a later line overwrites the first, so the read-back cannot match it.
        QList<HexLine> lines{Line(0x40, Pattern(1)), Line(0x50, Pattern(2)), Line(0x300, Pattern(3)), Line(0, {}, 1, 0xFF)};
        mFirmware::SaveFirmwareFile(path(QStringLiteral("good.tvf")), Image(lines));
        lines.insert(1, Line(0x40, Pattern(9)));
        mFirmware::SaveFirmwareFile(path(QStringLiteral("bad.tvf")), Image(lines));
        FirmwareFile other = Image(lines);
        other.Hardware = QStringLiteral("3.0.0");
        mFirmware::SaveFirmwareFile(path(QStringLiteral("other.tvf")), other);
        QFile garbage(path(QStringLiteral("garbage.tvf")));
        QVERIFY(garbage.open(QIODevice::WriteOnly));
        garbage.write(";Firmware: 1\r\n:10XYZ0QQ\r\n\x01\x02\xff binary\r\n");
    }
    void init() { FreshStart(); }

    void workflows_data();
    void workflows();
    void badInputLeavesAUsableWindow_data();
    void badInputLeavesAUsableWindow();
    void commandLineUploadsOnceShown();
    void closingIsRefusedDuringATransfer();
};

// ---- the two workflows from the menu ------------------------------------------------------------

void tst_firmwareWindow::workflows_data()
{
    QTest::addColumn<QString>("command");  // put or get
    QTest::addColumn<QString>("grip");
    QTest::addColumn<QString>("file");     // none: the dialog is cancelled
    QTest::addColumn<QStringList>("messages"); // "title|icon: text"
    QTest::addColumn<int>("progress");     // the bar's maximum, 0 for no bar
    QTest::addColumn<QStringList>("steps"); // panel 3 at the pauses
    QTest::addColumn<QString>("version");  // panel 2 afterwards
    QTest::addColumn<QString>("sent");     // "stop", "write", "start": which of them went out

    const QString fits = QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0");
    const QString put = QStringLiteral("Confirmation|1: Firmware was put.");
    const QString success = QStringLiteral("Success!|1: Firmware uploaded successfully!\r\nPress OK to start using the newly uploaded firmware.");
    const QStringList steps{"Preparing grip for upload", "Uploading firmware...", "Verifying uploaded firmware..."};
    QTest::newRow("put") << "put" << fits << "good.tvf" << QStringList{success, put} << 256 << steps << "4.0.7" << "stop write start";
    QTest::newRow("put, grip in boot mode: no stop") << "put" << fits + ",bootmode=1" << "good.tvf" << QStringList{success, put} << 256
                                                    << steps << "4.0.7" << "write start";
    QTest::newRow("put, verification fails: program started all the same")
        << "put" << fits << "bad.tvf"
        << QStringList{"Failure!|1: Firmware uploaded failed!\r\nYou should reset you grip (turn it off and then back on) and try "
                       "uploading again.\r\nIf the problem persists, please contact Tolvane Products' supportunit.", put}
        << 257 << steps << "4.0.7" << "stop write start";
    QTest::newRow("put, file for other hardware: refused before any write")
        << "put" << fits << "other.tvf"
        << QStringList{"Firmwarefile version error|2: Firmwarefile version does not match the current version of the grip.\r\n"
                       "It is not possible to upload this firmwarefile to the grip.", put}
        << 0 << QStringList{"Loading firmwarefile to be uploaded"} << "4.0.7" << "";
    QTest::newRow("put, dialog cancelled: confirmed all the same") << "put" << fits << "" << QStringList{put} << 0 << QStringList{}
                                                                  << "N/A" << "";
    QTest::newRow("get") << "get" << fits << "fetched.tvf" << QStringList{"Confirmation|1: Firmware was fetched."} << 252
                         << QStringList{"Ready"} << "N/A" << "stop start";
    QTest::newRow("get, grip in boot mode: no stop") << "get" << fits + ",bootmode=1" << "fetched.tvf"
                                                    << QStringList{"Confirmation|1: Firmware was fetched."} << 252
                                                    << QStringList{"Ready"} << "N/A" << "start";
    QTest::newRow("get, dialog cancelled") << "get" << fits << "" << QStringList{} << 0 << QStringList{} << "N/A" << "";
}

void tst_firmwareWindow::workflows()
{
    QFETCH(QString, command);
    QFETCH(QString, grip);
    QFETCH(QString, file);
    QFETCH(QStringList, messages);
    QFETCH(int, progress);
    QFETCH(QStringList, steps);
    QFETCH(QString, version);
    QFETCH(QString, sent);

    WindowHarness h(grip);
    fTolvaneMan& w = h.open();
    w.SetPanelText(3, QStringLiteral("Ready"));
    const QMap<QString, bool> before = commandStates(&w);
    QFile::remove(path(QStringLiteral("fetched.tvf")));
    h.ui.script.fileAnswers.enqueue(file.isEmpty() ? std::optional<QString>() : path(file));

    const Samples s = run(h, [&] {
        const QString item = command == QLatin1String("put") ? QStringLiteral("mnuULFirmware") : QStringLiteral("mnuDLFirmware");
        control<QAction>(&w, item)->trigger();
    });

    QVERIFY2(h.ui.script.errors.isEmpty(), h.ui.script.errors.isEmpty() ? "" : qPrintable(h.ui.script.errors[0].Description()));
    QStringList shown;
    for (const auto& m : h.ui.script.messages)
        shown << QStringLiteral("%1|%2: %3").arg(m.title).arg(int(m.icon)).arg(m.text);
    QCOMPARE(shown, messages);
    // The file dialog: the classic filter with the firmware entry preselected.
    QCOMPARE(h.ui.script.fileRequests.size(), 1);
    QCOMPARE(h.ui.script.fileRequests[0].filter, QStringLiteral("All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"));
    QCOMPARE(h.ui.script.fileRequests[0].filterIndex, 2);
    QCOMPARE(h.ui.script.fileRequests[0].hideReadOnly, command == QLatin1String("get"));
    // The bar over panel 4 with its maximum, advancing block by block up to it, gone afterwards.
    QCOMPARE(s.maxima, progress ? QSet<int>{progress} : QSet<int>{});
    if (progress) {
        QVERIFY(std::is_sorted(s.values.begin(), s.values.end()));
        QVERIFY2(s.values.size() > 200 && s.values.first() <= 1, qPrintable(QString::number(s.values.size())));
        QCOMPARE(w.ProgressValue(), progress);
    }
    QVERIFY(!control<QProgressBar>(&w, QStringLiteral("pgbProgress"))->isVisible());
    // Panel 3 named the steps and has its text back; panel 2 the grip's firmware.
    QCOMPARE(s.steps.mid(s.steps.indexOf(steps.value(0))), steps);
    QCOMPARE(w.PanelText(3), QStringLiteral("Ready"));
    QCOMPARE(w.PanelText(2), version);
    // Held while it ran, given back afterwards.
    QVERIFY(s.heldEverywhere);
    QCOMPARE(commandStates(&w), before);
    QCOMPARE(mMain::MousePointerDepth(), 0);
    const QList<int> codes = h.grip.codes();
    QStringList went;
    if (codes.contains(0x81))
        went << QStringLiteral("stop");
    if (codes.contains(0x8A) || codes.contains(0x82))
        went << QStringLiteral("write");
    if (!codes.isEmpty() && codes.last() == 0x83)
        went << QStringLiteral("start");
    QCOMPARE(went.join(QLatin1Char(' ')), sent);
    QVERIFY(!h.grip.grip.state().bootMode);
    if (command == QLatin1String("get") && !file.isEmpty()) {
        FirmwareFile saved;
        mFirmware::LoadFirmwareFile(saved, path(file));
        QCOMPARE(saved.Segments.size(), 252);
        QCOMPARE(saved.Firmware, QStringLiteral(" 4.0.7"));
    }
}

// ---- bad files and a failing grip ---------------------------------------------------------------

void tst_firmwareWindow::badInputLeavesAUsableWindow_data()
{
    QTest::addColumn<QString>("grip");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("step"); // the step the error report names (%1: the file)

    const QString fits = QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0");
    const QString load = QStringLiteral("UploadFirmware - load firmware file (%1)");
    QTest::newRow("missing file") << fits << "missing.tvf" << mErrCodes::RT_FILE_NOT_FOUND << load;
    QTest::newRow("a folder, not a file") << fits << "." << mErrCodes::RT_FILE_ACCESS << load;
    QTest::newRow("garbage") << fits << "garbage.tvf" << -1 << load;
    QTest::newRow("grip refuses a block halfway") << fits + ",failblock=300*3" << "good.tvf" << mErrCodes::ERR_UL_FIRMWARE
                                                  << "UploadFirmware - stop program for upload";
    QTest::newRow("grip in boot mode refuses a block") << fits + ",bootmode=1,failblock=50*3" << "good.tvf"
                                                       << mErrCodes::ERR_UL_FIRMWARE << "UploadFirmware - Check bootmode";
}

void tst_firmwareWindow::badInputLeavesAUsableWindow()
{
    QFETCH(QString, grip);
    QFETCH(QString, file);
    QFETCH(int, error);
    QFETCH(QString, step);

    WindowHarness h(grip);
    fTolvaneMan& w = h.open();
    w.SetPanelText(3, QStringLiteral("Ready"));
    const QMap<QString, bool> before = commandStates(&w);
    h.ui.script.fileAnswers.enqueue(path(file));
    run(h, [&] { control<QAction>(&w, QStringLiteral("mnuULFirmware"))->trigger(); });

    // One error report, with the step it failed in; no success or failure message.
    QCOMPARE(h.ui.script.errors.size(), 1);
    const MarloError& e = h.ui.script.errors[0];
    if (error >= 0)
        QCOMPARE(e.Number(), error);
    QStringList trail;
    for (const ErrorFrame& frame : e.Trail())
        trail << frame.procedure;
    QVERIFY2(trail.contains(QString(step).arg(path(file))), qPrintable(trail.join(QStringLiteral(" < "))));
    QCOMPARE(trail.last(), QStringLiteral("mnuULFirmware_Click"));
    for (const auto& m : h.ui.script.messages)
        QVERIFY(m.title != QLatin1String("Success!") && m.title != QLatin1String("Failure!"));
    // The window as it was: no bar, panel 3 back, every command back, the normal pointer.
    QVERIFY(!control<QProgressBar>(&w, QStringLiteral("pgbProgress"))->isVisible());
    QCOMPARE(w.PanelText(3), QStringLiteral("Ready"));
    QCOMPARE(commandStates(&w), before);
    QCOMPARE(mMain::MousePointerDepth(), 0);

    // Usable: a get works, and first starts a program that an error left stopped.
    const bool leftInBootCode = h.grip.grip.state().bootMode;
    QCOMPARE(leftInBootCode, error == mErrCodes::ERR_UL_FIRMWARE);
    const qsizetype sentBefore = h.grip.codes().size();
    h.ui.script.errors.clear();
    control<QPushButton>(&w, QStringLiteral("cmdTools(0)"))->click();
    QVERIFY(h.ui.script.errors.isEmpty());
    QCOMPARE(h.grip.codes().mid(sentBefore).contains(0x83), leftInBootCode);
    QVERIFY(!h.grip.grip.state().bootMode);
    QCOMPARE(h.ui.script.messages.last().text,
             QStringLiteral("Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched."));
}

// ---- the command line -----------------------------------------------------------------------------

void tst_firmwareWindow::commandLineUploadsOnceShown()
{
    WindowHarness h(QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0"));
    fTolvaneMan& w = h.open(false);
    w.setCommandLine({QStringLiteral("-f\"") + path(QStringLiteral("good.tvf")) + QLatin1Char('"')});
    QTest::qWait(0);
    QVERIFY(h.grip.codes().isEmpty()); // nothing before the window is shown
    w.show();
    QTRY_VERIFY(h.grip.codes().contains(0x83));
    QVERIFY(h.ui.script.errors.isEmpty());
    QCOMPARE(h.ui.script.messages.size(), 1); // the upload's own message; no confirmation
    QCOMPARE(h.ui.script.messages[0].title, QStringLiteral("Success!"));
    QCOMPARE(w.PanelText(2), QStringLiteral("4.0.7"));
    QCOMPARE(h.ui.script.fileRequests.size(), 0);
    // Shown again: the command line is read once.
    const qsizetype sent = h.grip.codes().size();
    w.hide();
    w.show();
    QTest::qWait(10);
    QCOMPARE(h.grip.codes().size(), sent);
}

void tst_firmwareWindow::closingIsRefusedDuringATransfer()
{
    WindowHarness h(QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0"));
    fTolvaneMan& w = h.open();
    h.ui.script.fileAnswers.enqueue(path(QStringLiteral("good.tvf")));
    int refused = 0;
    int pauses = 0;
    mCommBasic::SetSleepFunction([&](qint32) {
        if (++pauses != 20)
            return;
        refused += !w.close();
        // A second grip command cannot start: Get is held.
        control<QPushButton>(&w, QStringLiteral("cmdTools(0)"))->click();
    });
    control<QAction>(&w, QStringLiteral("mnuULFirmware"))->trigger();
    QCOMPARE(refused, 1);
    QVERIFY(w.isVisible());
    QVERIFY(h.ui.script.errors.isEmpty());
    QCOMPARE(h.ui.script.messages.size(), 2); // success and the confirmation, no get
    h.ui.script.yesNoAnswers.enqueue(false);
    QVERIFY(w.close()); // afterwards the window closes as usual
}

QTEST_MAIN(tst_firmwareWindow)
#include "tst_firmwareWindow.moc"
