// The firmware commands in the main window against the virtual grip: what the window shows
// during and after a transfer (progress bar, status panels), the commands held while it runs,
// the backup before a write, and bad files, a failing grip or a backup folder that cannot take
// the backup leaving a usable window.
#include "GuiTestSupport.h"
#include "../firmware/FirmwareTestSupport.h"

#include "base/mErrCodes.h"
#include "firmware/mFirmware.h"
#include "firmware/mFirmwareBackup.h"
#include "sim/GripState.h"

#include <QProgressBar>
#include <QTemporaryDir>

using namespace guitest;
using namespace fwtest;

namespace {

// What the window looked like at each pause after a code byte during a run.
struct Samples {
    QList<int> values;          // progress value, when the bar was visible
    QSet<int> maxima;           // progress maxima
    QStringList steps;          // panel 3, each change
    bool heldEverywhere = true; // every held command disabled at every pause
    int pauses = 0;
    bool closed = false;        // closing the window, tried at the 20th pause, worked
};

// A firmware command: the file chosen ("" the dialog is cancelled), the progress bar's maximum
// (0 no bar), panel 3 at the pauses, panel 2 afterwards, and whether the backup is on.
struct Workflow {
    QString command, file;
    int progress;
    QStringList steps;
    QString version;
    bool backup = false;
};

// A grip that fits the test files.
const QString kFits = QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0");

// A grip and a file that make an upload fail, the error reported and the step the
// report names (%1: the file); with the backup on, and a file where its folder should be.
struct BadUpload {
    QString grip, file;
    int error;
    QString step;
    bool backup = false, folderBlocked = false;
};

// The backup folder as a fresh test finds it: none.
void RemoveBackups()
{
    const QString folder = mFirmwareBackup::DefaultFolder();
    QFile::remove(folder);
    QDir(folder).removeRecursively();
}

} // namespace

class tst_firmwareWindow : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString path(const QString& name) const { return m_dir.filePath(name); }

    // Runs the command in the window, sampling it at every pause after a code byte; at the 20th
    // the user tries to close the window and to start a get.
    Samples sample(WindowHarness& h, const QString& command)
    {
        fTolvaneMan& w = *h.window;
        Samples s;
        auto* bar = control<QProgressBar>(&w, QStringLiteral("pgbProgress"));
        w.Link().SetSleepFunction([&](qint32) {
            ++s.pauses;
            if (bar->isVisible()) {
                s.values.append(bar->value());
                s.maxima.insert(bar->maximum());
            }
            if (s.steps.isEmpty() || s.steps.last() != w.PanelText(3))
                s.steps.append(w.PanelText(3));
            s.heldEverywhere = s.heldEverywhere && enabledCommands(&w).isEmpty();
            if (s.pauses == 20) {
                s.closed = w.close();
                run(&w, QStringLiteral("cmdTools(0)"));
            }
        });
        run(&w, command);
        w.Link().SetSleepFunction([](qint32) {});
        return s;
    }

private slots:
    void initTestCase()
    {
        // Three data lines and the end record for boot code 1.0.0-1.2.0 and hardware 2.1.0, and
        // the same for other hardware.
        const QList<HexLine> lines{Line(0x40, Pattern(1)), Line(0x50, Pattern(2)), Line(0x300, Pattern(3)), Line(0, {}, 1, 0xFF)};
        mFirmware::SaveFirmwareFile(path(QStringLiteral("good.tvf")), Image(lines));
        FirmwareFile other = Image(lines);
        other.Hardware = QStringLiteral("3.0.0");
        mFirmware::SaveFirmwareFile(path(QStringLiteral("other.tvf")), other);
    }
    void init() { FreshStart(); }

    // What the messages say and what goes over the wire is the workflows' own; the window shows
    // the steps, the progress and the grip's firmware, and holds its commands meanwhile.
    void workflows_data()
    {
        QTest::addColumn<Workflow>("row");
        const QString put = QStringLiteral("mnuULFirmware"), get = QStringLiteral("mnuDLFirmware");
        const QStringList steps{"Preparing grip for upload", "Uploading firmware...", "Verifying uploaded firmware..."};
        QTest::newRow("put") << Workflow{put, "good.tvf", 256, steps, "4.0.7"};
        // The backup reads the grip's program first: a step of its own, in the same bar.
        QTest::newRow("put with the backup")
            << Workflow{put, "good.tvf", 508, {steps[0], "Backing up the grip's firmware...", steps[1], steps[2]}, "4.0.7", true};
        QTest::newRow("put, file for other hardware: refused before any write")
            << Workflow{put, "other.tvf", 0, {"Loading firmwarefile to be uploaded"}, "4.0.7"};
        QTest::newRow("put, dialog cancelled") << Workflow{put, "", 0, {}, "N/A"};
        QTest::newRow("get") << Workflow{get, "fetched.tvf", 252, {"Ready"}, "N/A"};
    }
    void workflows()
    {
        QFETCH(Workflow, row);
        const auto& [command, file, progress, steps, version, backup] = row;
        RemoveBackups();
        WindowHarness h(kFits);
        h.prefs().setFirmwareBackup(backup);
        fTolvaneMan& w = h.open();
        w.SetPanelText(3, QStringLiteral("Ready"));
        const QStringList before = enabledCommands(&w);
        QFile::remove(path(QStringLiteral("fetched.tvf")));
        h.ui.script.fileAnswers.enqueue(file.isEmpty() ? std::optional<QString>() : path(file));

        const Samples s = sample(h, command);
        GUITEST_NO_ERRORS(h.ui.script);
        // The bar over panel 4 with its maximum, advancing block by block up to it, gone afterwards.
        QCOMPARE(s.maxima, progress ? QSet<int>{progress} : QSet<int>{});
        if (progress) {
            QVERIFY(std::is_sorted(s.values.begin(), s.values.end()));
            QVERIFY2(s.values.size() > 200 && s.values.first() <= 1, qPrintable(QString::number(s.values.size())));
            QCOMPARE(w.ProgressValue(), progress);
        }
        QVERIFY(!control<QProgressBar>(&w, QStringLiteral("pgbProgress"))->isVisible());
        // Panel 3 named the steps and has its text back, or names the backup; panel 2 the grip's
        // firmware.
        QCOMPARE(s.steps.mid(s.steps.indexOf(steps.value(0))), steps);
        const QDir backups(mFirmwareBackup::DefaultFolder());
        const QStringList files = backups.entryList(QDir::Files);
        QCOMPARE(files.size(), backup ? 1 : 0);
        QCOMPARE(w.PanelText(3), backup ? QStringLiteral("Firmware backed up to ") + backups.filePath(files[0]) : QStringLiteral("Ready"));
        QCOMPARE(w.PanelText(2), version);
        // Held while it ran (closing was refused, the get did not start), given back afterwards.
        QVERIFY(s.heldEverywhere);
        QVERIFY(!s.closed && w.isVisible() && !w.FirmwareTransferRunning());
        QCOMPARE(enabledCommands(&w), before);
        QCOMPARE(mMain::MousePointerDepth(), 0);
        QVERIFY(!h.grip.grip.state().bootMode);
    }
    void badInputLeavesAUsableWindow_data()
    {
        QTest::addColumn<BadUpload>("badUpload");

        // One of each kind: a file, the grip, the backup's folder and the backup's reading.
        QTest::newRow("missing file")
            << BadUpload{kFits, "missing.tvf", mErrCodes::RT_FILE_NOT_FOUND, "UploadFirmware - load firmware file (%1)"};
        QTest::newRow("grip refuses a block halfway") << BadUpload{kFits + ",failblock=300*3", "good.tvf", mErrCodes::ERR_UL_FIRMWARE, "UploadFirmware - stop program for upload"};
        QTest::newRow("backup folder that cannot take the backup") << BadUpload{kFits, "good.tvf", mErrCodes::RT_FILE_ACCESS, "PrepareFolder", true, true};
        QTest::newRow("backup that cannot read a block") << BadUpload{kFits + ",failblock=300*3", "good.tvf", mErrCodes::ERR_DL_FIRMWARE, "BackUp", true};
    }
    void badInputLeavesAUsableWindow()
    {
        QFETCH(BadUpload, badUpload);
        const auto& [grip, file, error, step, backup, folderBlocked] = badUpload;

        RemoveBackups();
        if (folderBlocked)
            mFirmware::SaveFile(mFirmwareBackup::DefaultFolder(), QStringLiteral("not a folder"));
        WindowHarness h(grip);
        h.prefs().setFirmwareBackup(backup);
        fTolvaneMan& w = h.open();
        const QByteArray memory = h.grip.grip.state().memory;
        w.SetPanelText(3, QStringLiteral("Ready"));
        const QStringList before = enabledCommands(&w);
        h.ui.script.fileAnswers.enqueue(path(file));
        sample(h, QStringLiteral("mnuULFirmware"));

        // One error report, with the step it failed in; no success or failure message.
        QCOMPARE(h.ui.script.errors.size(), 1);
        const MarloError& e = h.ui.script.errors[0];
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
        QCOMPARE(enabledCommands(&w), before);
        QCOMPARE(mMain::MousePointerDepth(), 0);

        // Only a failed write changed the grip; no backup was left behind.
        QCOMPARE(h.grip.grip.state().memory != memory, error == mErrCodes::ERR_UL_FIRMWARE);
        QVERIFY(QDir(mFirmwareBackup::DefaultFolder()).isEmpty());
        // Usable: a get works, and first starts a program that an error left stopped.
        const bool leftInBootCode = h.grip.grip.state().bootMode;
        QCOMPARE(leftInBootCode, error == mErrCodes::ERR_UL_FIRMWARE);
        const qsizetype sentBefore = h.grip.codes().size();
        h.ui.script.errors.clear();
        run(&w, QStringLiteral("cmdTools(0)"));
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.grip.codes().mid(sentBefore).contains(0x83), leftInBootCode);
        QVERIFY(!h.grip.grip.state().bootMode);
        QCOMPARE(h.ui.script.messages.last().text,
                 QStringLiteral("Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched."));
    }
};

QTEST_MAIN(tst_firmwareWindow)
#include "tst_firmwareWindow.moc"
