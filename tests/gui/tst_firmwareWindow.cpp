// The firmware commands in the main window against the virtual grip: what the window shows
// during and after a transfer (progress bar, status panels, messages), the commands held while
// it runs, the command-line upload, the backup before a write, and bad files, a failing grip or a
// backup folder that cannot take the backup leaving a usable window.
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

// Everything a firmware transfer holds: the grip commands and those that would open a modal
// window or end the program.
const QStringList kHeld{"cmdTools(0)", "cmdTools(1)", "cmdReset(0)", "cmdReset(1)", "mnuDLTiming", "mnuDLCounters",
                        "mnuDLGameTimers", "mnuDLGunInfo", "mnuDLBattery", "mnuDLFirmware", "mnuULTiming", "mnuULGameTimers",
                        "mnuULFirmware", "mnuULAll", "cmdTools(2)", "cmdTools(4)", "mnuLibTemplates", "mnuProperties",
                        "mnuOptions", "mnuAbout", "mnuExit"};

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
    bool closed = false;        // closing the window, tried at the 20th pause, worked
};

// A firmware command: the grip, the file chosen ("" the dialog is cancelled), the messages
// ("title|icon: text"), the progress bar's maximum (0 no bar), panel 3 at the pauses, panel 2
// afterwards, and which of "stop", "write", "start" went out.
struct Workflow {
    QString command, grip, file;
    QStringList messages;
    int progress;
    QStringList steps;
    QString version, sent;
};

// A grip and a file that make an upload fail, the error reported (-1 any) and the step the
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
            for (const QString& name : kHeld)
                s.heldEverywhere = s.heldEverywhere && !enabled(&w, name);
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

    void workflows_data()
    {
        QTest::addColumn<Workflow>("row");
        const QString put = QStringLiteral("mnuULFirmware"), get = QStringLiteral("mnuDLFirmware");
        const QString fits = QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0");
        const QString putMsg = QStringLiteral("Confirmation|1: Firmware was put.");
        const QString success = QStringLiteral("Success!|1: Firmware uploaded successfully!\r\nPress OK to start using the newly uploaded firmware.");
        const QStringList steps{"Preparing grip for upload", "Uploading firmware...", "Verifying uploaded firmware..."};
        QTest::newRow("put") << Workflow{put, fits, "good.tvf", {success, putMsg}, 256, steps, "4.0.7", "stop write start"};
        QTest::newRow("put, grip in boot mode: no stop") << Workflow{put, fits + ",bootmode=1", "good.tvf", {success, putMsg}, 256, steps, "4.0.7", "write start"};
        QTest::newRow("put, verification fails: program started all the same")
            << Workflow{put, fits, "bad.tvf",
                        {"Failure!|1: Firmware uploaded failed!\r\nYou should reset you grip (turn it off and then back on) and try "
                         "uploading again.\r\nIf the problem persists, please contact Tolvane Products' supportunit.", putMsg},
                        257, steps, "4.0.7", "stop write start"};
        QTest::newRow("put, file for other hardware: refused before any write")
            << Workflow{put, fits, "other.tvf",
                        {"Firmwarefile version error|2: Firmwarefile version does not match the current version of the grip.\r\n"
                         "It is not possible to upload this firmwarefile to the grip.", putMsg},
                        0, {"Loading firmwarefile to be uploaded"}, "4.0.7", ""};
        QTest::newRow("put, dialog cancelled: confirmed all the same") << Workflow{put, fits, "", {putMsg}, 0, {}, "N/A", ""};
        const QStringList fetched{"Confirmation|1: Firmware was fetched."};
        QTest::newRow("get") << Workflow{get, fits, "fetched.tvf", fetched, 252, {"Ready"}, "N/A", "stop start"};
        QTest::newRow("get, grip in boot mode: no stop") << Workflow{get, fits + ",bootmode=1", "fetched.tvf", fetched, 252, {"Ready"}, "N/A", "start"};
        QTest::newRow("get, dialog cancelled") << Workflow{get, fits, "", {}, 0, {}, "N/A", ""};
    }
    void workflows()
    {
        QFETCH(Workflow, row);
        const auto& [command, grip, file, messages, progress, steps, version, sent] = row;
        WindowHarness h(grip);
        fTolvaneMan& w = h.open();
        w.SetPanelText(3, QStringLiteral("Ready"));
        const QMap<QString, bool> before = commandStates(&w);
        QFile::remove(path(QStringLiteral("fetched.tvf")));
        h.ui.script.fileAnswers.enqueue(file.isEmpty() ? std::optional<QString>() : path(file));

        const Samples s = sample(h, command);
        GUITEST_NO_ERRORS(h.ui.script);
        QStringList shown;
        for (const auto& m : h.ui.script.messages)
            shown << QStringLiteral("%1|%2: %3").arg(m.title).arg(int(m.icon)).arg(m.text);
        QCOMPARE(shown, messages);
        // The file dialog: the classic filter with the firmware entry preselected.
        QCOMPARE(h.ui.script.fileRequests.size(), 1);
        QCOMPARE(h.ui.script.fileRequests[0].filter, QStringLiteral("All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"));
        QCOMPARE(h.ui.script.fileRequests[0].filterIndex, 2);
        QCOMPARE(h.ui.script.fileRequests[0].hideReadOnly, command == QLatin1String("mnuDLFirmware"));
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
        // Held while it ran (closing was refused, the get did not start), given back afterwards.
        QVERIFY(s.heldEverywhere);
        QVERIFY(!s.closed && w.isVisible() && !w.FirmwareTransferRunning());
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
        if (command == QLatin1String("mnuDLFirmware") && !file.isEmpty()) {
            FirmwareFile saved;
            mFirmware::LoadFirmwareFile(saved, path(file));
            QCOMPARE(saved.Segments.size(), 252);
            QCOMPARE(saved.Firmware, QStringLiteral(" 4.0.7"));
        }
    }
    // With the backup on, a put first reads the grip's program into the backup folder: a step of
    // its own on panel 3 and the progress bar, and panel 3 names the file afterwards.
    void putWithBackup()
    {
        RemoveBackups();
        WindowHarness h(QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0"));
        h.prefs().setFirmwareBackup(true);
        fTolvaneMan& w = h.open();
        w.SetPanelText(3, QStringLiteral("Ready"));
        const QByteArray memory = h.grip.grip.state().memory;
        h.ui.script.fileAnswers.enqueue(path(QStringLiteral("good.tvf")));

        const Samples s = sample(h, QStringLiteral("mnuULFirmware"));
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(s.maxima, QSet<int>{508});
        const QStringList steps{"Preparing grip for upload", "Backing up the grip's firmware...", "Uploading firmware...",
                                "Verifying uploaded firmware..."};
        QCOMPARE(s.steps.mid(s.steps.indexOf(steps[0])), steps);
        const QDir folder(mFirmwareBackup::DefaultFolder());
        const QStringList files = folder.entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QCOMPARE(w.PanelText(3), QStringLiteral("Firmware backed up to ") + folder.filePath(files[0]));
        FirmwareFile saved;
        mFirmware::LoadFirmwareFile(saved, folder.filePath(files[0]));
        QCOMPARE(saved.Segments.size(), 252);
        QCOMPARE(bytes(saved.Segments.last().Data), memory.mid(0xFF0, 16));
        QVERIFY(h.grip.grip.state().memory != memory);
    }
    void badInputLeavesAUsableWindow_data()
    {
        QTest::addColumn<BadUpload>("badUpload");

        const QString fits = QStringLiteral("firmware=4.0.7,boot=1.2.0,hardware=2.1.0");
        const QString load = QStringLiteral("UploadFirmware - load firmware file (%1)");
        QTest::newRow("missing file") << BadUpload{fits, "missing.tvf", mErrCodes::RT_FILE_NOT_FOUND, load};
        QTest::newRow("a folder, not a file") << BadUpload{fits, ".", mErrCodes::RT_FILE_ACCESS, load};
        QTest::newRow("garbage") << BadUpload{fits, "garbage.tvf", -1, load};
        QTest::newRow("grip refuses a block halfway") << BadUpload{fits + ",failblock=300*3", "good.tvf", mErrCodes::ERR_UL_FIRMWARE, "UploadFirmware - stop program for upload"};
        QTest::newRow("grip in boot mode refuses a block") << BadUpload{fits + ",bootmode=1,failblock=50*3", "good.tvf", mErrCodes::ERR_UL_FIRMWARE, "UploadFirmware - Check bootmode"};
        QTest::newRow("backup folder that cannot take the backup") << BadUpload{fits, "good.tvf", mErrCodes::RT_FILE_ACCESS, "PrepareFolder", true, true};
        QTest::newRow("backup that cannot read a block") << BadUpload{fits + ",failblock=300*3", "good.tvf", mErrCodes::ERR_DL_FIRMWARE, "BackUp", true};
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
        const QMap<QString, bool> before = commandStates(&w);
        h.ui.script.fileAnswers.enqueue(path(file));
        sample(h, QStringLiteral("mnuULFirmware"));

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
    void commandLineUploadsOnceShown()
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
};

QTEST_MAIN(tst_firmwareWindow)
#include "tst_firmwareWindow.moc"
