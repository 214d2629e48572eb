// The firmware commands against the virtual grip (behind the fake port): every message with its
// title and icon, the status panels, the progress display, the order of the grip commands, the
// file dialogs and the step names that error reports carry. Then the backup before a write: what
// goes over the wire with it, the backup file against the grip's memory, a backup that cannot
// read a block leaving the grip as it was, and a backup written back restoring the grip.
#include "FirmwareTestSupport.h"
#include "base/mErrCodes.h"
#include "firmware/mFirmwareWorkflows.h"
#include "shell/mMain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace fwtest;

namespace {

// The names the desktop program runs the workflows under: the trail of every error reads so.
const mFirmwareWorkflows::tCaller kUpload{QStringLiteral("fTolvaneMan"), QStringLiteral("$Revision: 1 $"), QStringLiteral("UploadFirmware")};
const mFirmwareWorkflows::tCaller kDownload{QStringLiteral("fTolvaneMan"), QStringLiteral("$Revision: 1 $"),
                                            QStringLiteral("mnuDLFirmware_Click")};

// Records every message as "83 > title: text", with the grip command that went out last.
struct OrderUi : ScriptedUi {
    FakeCommPort* port = nullptr;
    QStringList shown;
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override
    {
        shown << codes(port->frames.mid(port->frames.size() - 1)) + " > " + title + ": " + text;
        ScriptedUi::showMessage(text, title, icon);
    }
};

const QString kFits = QStringLiteral("firmware=4.0.0,boot=1.2.0,hardware=2.1.0,serial=AB 12/x");

// upload.tvf: three data lines and the end record, for boot code 1.0.0-1.2.0 and hardware 2.1.0.
FirmwareFile Upload()
{
    return Image({Line(0x40, Pattern(1)), Line(0x50, Pattern(2)), Line(0x300, Pattern(3)), Line(0, {}, 1, 0xFF)});
}

// What the grip's memory holds where the image was written.
bool HoldsUpload(const QByteArray& memory)
{
    for (const HexLine& line : Upload().Segments) {
        if (!line.Data.isEmpty() && memory.mid(line.AddrHi * 256 + line.AddrLo, line.ByteCount) != bytes(line.Data))
            return false;
    }
    return true;
}

// The backup file against the memory it was read from: every block from 0x40 up, with the
// grip's builds.
void CompareBackup(const QString& path, const QByteArray& memory)
{
    FirmwareFile backup;
    mFirmware::LoadFirmwareFile(backup, path);
    QCOMPARE(backup.Firmware + backup.Boot + backup.Protocol + backup.Hardware, QStringLiteral(" 4.0.0     1.2.0 1.1.1 2.1.0"));
    QCOMPARE(backup.Segments.size(), 252);
    for (qsizetype i = 0; i < backup.Segments.size(); ++i) {
        const HexLine& line = backup.Segments[i];
        const int address = 0x40 + 16 * int(i);
        QCOMPARE(line.AddrHi * 256 + line.AddrLo, address);
        QCOMPARE(bytes(line.Data), memory.mid(address, 16));
    }
}

// One run of a command and what it leaves behind.
struct Flow {
    QString command{};                   // put: Function > Put; upload FILE; get FILE
    bool dialog = false;                 // get: the file from the save dialog (put always asks)
    QString grip{};                      // the virtual grip's options
    QString file{};                      // in the test folder, which holds upload.tvf and bad.tvf; none: cancelled
    FirmwareResult result = FirmwareResult::Cancelled;
    int error = 0;                       // the error passed on
    QString trail{};                     // the procedures it passed through (%1: the file)
    QStringList messages{};              // "83 > title: text": the command sent last before it
    MsgIcon icon = MsgIcon::Information; // of the first message
    QString sent{};                      // the command codes
    QStringList status{};                // what the status panels were given
    int progress = 0;                    // the progress maximum, 0 for none
    int bootMode = -1;                   // the grip in boot mode afterwards (1/0); -1: exactly after an error
    QString hint{};                      // the start of the error's first hint (%2: the backup's path)
    int backup = 0;                      // upload: 1 a backup first into a folder (%2 in the trail)
    int written = -1;                    // upload.tvf in the grip's memory afterwards (1/0, 0: as it was); -1 not looked at
    bool backedUp = false;               // a backup file equal to the memory before the write
};

} // namespace

Q_DECLARE_METATYPE(Flow)

class tst_FirmwareWorkflows : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("upload.tvf")), Upload());
        // In bad.tvf a second line overwrites the first, so the read-back cannot match the first.
        FirmwareFile bad = Upload();
        bad.Segments.insert(1, Line(0x40, Pattern(9)));
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("bad.tvf")), bad);
        // The fourth record holds 17 bytes: one more than a block.
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("long.tvf")),
                                    Image({Line(0x40, Pattern(1)), Line(0x50, Pattern(2)), Line(0x60, Pattern(3)), Line(0x70, Pattern(4) << 0xEE)}));
        mFirmware::SaveFile(m_dir.filePath(QStringLiteral("empty.tvf")), QString());
    }

    void commands_data()
    {
        QTest::addColumn<Flow>("f");
        // The messages of a write follow the start of the program.
        const QString success = "83 > Success!: Firmware uploaded successfully!\r\nPress OK to start using the newly uploaded firmware.";
        const QString put = "83 > Confirmation: Firmware was put.";
        const QStringList steps{"step:Loading firmwarefile to be uploaded", "step:Preparing grip for upload", "step:Uploading firmware...",
                                "step:Verifying uploaded firmware...", "step:Ready"};
        const QString fits = "firmware=4.0.0,boot=1.2.0,hardware=2.1.0,";
        const QString builds = "firmware=2.0.20,boot=1.2.1,protocol=1.1.2,hardware=2.1.3,";
        // Gun information, boot-mode query, stop; the writes; the read-back (old firmware restarts
        // its program at 0x200); the start.
        QTest::newRow("put") << Flow{
            .command = "put", .grip = "firmware=1.1.70,boot=1.2.0,hardware=2.1.5", .file = "upload.tvf",
            .result = FirmwareResult::Succeeded, .messages = {success, put},
            .sent = "13 13 11 13 81 13 8A 8A 8A 8A 13 " + Repeated("85", 28) + " 13 83 13 81 " + Repeated("85", 224) + " 13 83",
            .status = steps + QStringList{"version:1.1.70"}, .progress = 256};
        QTest::newRow("put, verification fails") << Flow{
            .command = "put", .grip = fits, .file = "bad.tvf", .result = FirmwareResult::VerifyFailed,
            .messages = {"83 > Failure!: Firmware uploaded failed!\r\nYou should reset you grip (turn it off and then back on) and try "
                         "uploading again.\r\nIf the problem persists, please contact Tolvane Products' supportunit.", put},
            .sent = "13 13 11 13 81 13 8A 8A 8A 8A 8A 13 " + Repeated("85", 252) + " 13 83",
            .status = steps + QStringList{"version:4.0.0"}, .progress = 257};
        QTest::newRow("put, file does not fit") << Flow{
            .command = "put", .grip = "firmware=1.1.70,boot=1.1.5,hardware=2.2.0", .file = "upload.tvf",
            .result = FirmwareResult::VersionMismatch,
            .messages = {"13 > Firmwarefile version error: Firmwarefile version does not match the current version of the grip.\r\n"
                         "It is not possible to upload this firmwarefile to the grip.", "13 > Confirmation: Firmware was put."},
            .icon = MsgIcon::Exclamation, .sent = "13", .status = {steps[0], "step:Ready", "version:1.1.70"}};
        QTest::newRow("put, cancelled: confirmed all the same") << Flow{.command = "put", .messages = {" > Confirmation: Firmware was put."}};
        QTest::newRow("get, cancelled") << Flow{.command = "get", .dialog = true};
        QTest::newRow("get") << Flow{
            .command = "get", .grip = builds, .file = "fetched.tvf", .result = FirmwareResult::Succeeded,
            .messages = {"83 > Confirmation: Firmware was fetched."}, .sent = "13 11 13 81 13 " + Repeated("85", 252) + " 13 13 83",
            .progress = 252};
        // Errors leave the grip in its boot code (the next command starts its program). The trail
        // names the steps from the inside out. (A grip in boot mode is not stopped: here, and in
        // the backup of a grip in boot mode below.)
        const QString load = "LoadFile - open file (%1) < LoadFirmwareFile < UploadFirmware - load firmware file (%1)";
        QTest::newRow("upload: a folder") << Flow{.command = "upload", .grip = fits + "bootmode=1", .file = ".",
                                                  .error = mErrCodes::RT_FILE_ACCESS, .trail = load, .status = {steps[0]}};
        const QString ul = "ULFirmware - upload data to grip < UploadFirmware - ";
        QTest::newRow("upload: in boot mode") << Flow{
            .command = "upload", .grip = fits + "bootmode=1,failblock=40*3", .file = "upload.tvf", .error = mErrCodes::ERR_UL_FIRMWARE,
            .trail = ul + "Check bootmode", .sent = "13 13 11 13 8A 8A 8A", .status = steps.first(3), .progress = 256};
        // Put restores the step panel.
        QTest::newRow("put: block refused") << Flow{
            .command = "put", .grip = fits + "failblock=40*3", .file = "upload.tvf", .error = mErrCodes::ERR_UL_FIRMWARE,
            .trail = ul + "stop program for upload", .sent = "13 13 11 13 81 13 8A 8A 8A", .status = steps.first(3) << "step:Ready",
            .progress = 256};
        // A file the write would fail on is refused before the grip hears anything: never stopped,
        // never half-written.
        const QString check = "CheckFirmwareImage < UploadFirmware - check firmware file (%1)";
        QTest::newRow("upload: a record longer than a block") << Flow{
            .command = "upload", .grip = fits, .file = "long.tvf", .error = mErrCodes::ERR_FIRMWARE_IMAGE, .trail = check,
            .status = {steps[0]}, .bootMode = 0};
        // An empty file keeps its error, with a hint; the grip was only asked its builds.
        QTest::newRow("upload: an empty file") << Flow{
            .command = "upload", .grip = fits, .file = "empty.tvf", .error = mErrCodes::ERR_VERSION_FORMAT,
            .trail = "GetVersionInfo < str2tVersion < checkFirmwareVersion < UploadFirmware - load firmware file (%1)",
            .sent = "13", .status = {steps[0]}, .bootMode = 0, .hint = "The file has no firmware header"};
        const QString dl = "mnuDLFirmware_Click - ";
        QTest::newRow("get: block spoiled") << Flow{
            .command = "get", .grip = fits + "fault=badsum@85*3", .file = "out.tvf", .error = mErrCodes::ERR_DL_FIRMWARE,
            .trail = "DLFirmware - read PIC-memory [$0040] < " + dl + "stop program for download", .sent = "13 11 13 81 13 85 85 85",
            .progress = 252};
        QTest::newRow("get: in boot mode") << Flow{
            .command = "get", .grip = fits + "bootmode=1,fault=badsum@85*3", .file = "out.tvf", .error = mErrCodes::ERR_DL_FIRMWARE,
            .trail = "DLFirmware - read PIC-memory [$0040] < " + dl + "Check bootmode", .sent = "13 11 13 85 85 85", .progress = 252};
        QTest::newRow("get: no folder") << Flow{
            .command = "get", .grip = fits, .file = "no/such/out.tvf", .error = mErrCodes::RT_FILE_ACCESS,
            .trail = "SaveFile - open file (%1) < SaveFirmwareFile < " + dl + "stop program for download",
            .sent = "13 11 13 81 13 " + Repeated("85", 252) + " 13", .progress = 252};
        // With the backup on, the grip's program is read into the backup folder between the stop
        // and the first block; a backup that fails leaves the grip as it was, with its program.
        const QString readBack = " 13 " + Repeated("85", 252) + " 13 83";
        const QString backup = "13 " + Repeated("85", 252) + " 13 8A 8A 8A 8A";
        const QString notBackedUp = "The grip's firmware could not be backed up, so nothing was written to the grip.";
        const QStringList backupSteps = steps.first(2) + QStringList{"step:Backing up the grip's firmware..."} + steps.mid(2);
        const QStringList backedUp = backupSteps + QStringList{"version:4.0.0"};
        QTest::newRow("backup between the stop and the first block") << Flow{
            .command = "upload", .grip = kFits, .file = "upload.tvf", .result = FirmwareResult::Succeeded, .messages = {success},
            .sent = "13 13 11 13 81 " + backup + readBack, .status = backedUp, .progress = 508, .backup = 1, .written = 1,
            .backedUp = true};
        QTest::newRow("backup of a grip in boot mode") << Flow{
            .command = "upload", .grip = kFits + ",bootmode=1", .file = "upload.tvf", .result = FirmwareResult::Succeeded,
            .messages = {success}, .sent = "13 13 11 " + backup + readBack, .status = backedUp, .progress = 508, .backup = 1,
            .written = 1, .backedUp = true};
        QTest::newRow("a block the backup cannot read: program started, nothing written") << Flow{
            .command = "upload", .grip = kFits + ",failblock=300*3", .file = "upload.tvf", .error = mErrCodes::ERR_DL_FIRMWARE,
            .trail = "DLFirmware - read PIC-memory [$0300] < BackUp < UploadFirmware - back up firmware (%2)",
            .sent = "13 13 11 13 81 13 " + Repeated("85", 47) + " 13 83", .status = backupSteps.first(3), .progress = 508,
            .bootMode = 0, .hint = notBackedUp, .backup = 1, .written = 0};
        QTest::newRow("a write that fails after the backup says where it is") << Flow{
            .command = "upload", .grip = kFits + ",fault=nak@8A*3", .file = "upload.tvf", .error = mErrCodes::ERR_UL_FIRMWARE,
            .trail = "ULFirmware - upload data to grip < UploadFirmware - stop program for upload",
            .sent = "13 13 11 13 81 " + backup.chopped(3), .status = backupSteps.first(4), .progress = 508,
            .hint = "The grip's firmware as it was before this write is backed up in %2.", .backup = 1, .written = 0, .backedUp = true};
    }

    void commands()
    {
        QFETCH(Flow, f);
        TestLink link;
        OrderUi ui;
        ui.port = &link.port;
        mMain::SetUserInterface(&ui);
        link.prefs.setShowConfirmComm(true);
        auto sim = Grip(link.port, f.grip);
        const QString file = f.file.isEmpty() ? QString() : m_dir.filePath(f.file);
        ui.fileAnswers.enqueue(f.file.isEmpty() ? std::optional<QString>() : file);
        ui.setStepText(QStringLiteral("Ready"));
        ui.statusHistory.clear();
        const QByteArray before = sim->state().memory;
        const QTemporaryDir home;
        const QString folder = QDir(home.path()).filePath(QStringLiteral("Backups"));
        QStringList told;
        mFirmwareWorkflows::tUploadOptions options;
        options.backupFolder = f.backup ? folder : QString();
        options.backedUp = [&told](const QString& path) { told << path; };

        FirmwareResult result = FirmwareResult::Cancelled;
        const MarloError e = ErrorOf([&] {
            if (f.command == QLatin1String("put"))
                result = mFirmwareWorkflows::PutFirmwareProgram(link.session, link.prefs, kUpload);
            else
                result = f.command == QLatin1String("upload") ? mFirmwareWorkflows::UploadFirmware(link.session, file, kUpload, options)
                                                              : mFirmwareWorkflows::DownloadFirmware(link.session, link.prefs, f.dialog ? QString() : file, kDownload);
        });
        QCOMPARE(e.Number(), f.error);
        QCOMPARE(result, f.result);
        QStringList trail;
        for (const ErrorFrame& frame : e.Trail())
            trail << frame.procedure;
        QCOMPARE(trail.join(QStringLiteral(" < ")),
                 QString(f.trail).replace(QStringLiteral("%1"), file).replace(QStringLiteral("%2"), folder));
        QVERIFY(!f.error || e.Trail().last().module == QLatin1String("fTolvaneMan"));
        QVERIFY((f.error != mErrCodes::RT_FILE_NOT_FOUND && f.error != mErrCodes::RT_FILE_ACCESS) ||
                e.Description().contains(f.backup ? folder : file));
        QCOMPARE(codes(link.port.frames), f.sent);
        QCOMPARE(ui.shown, f.messages);
        QVERIFY(ui.messages.isEmpty() || ui.messages[0].icon == f.icon);
        QCOMPARE(ui.statusHistory, f.status);
        QCOMPARE(ui.progressMaxima, f.progress ? QList<int>{f.progress} : QList<int>{});
        QVERIFY(ui.progressEnds >= ui.progressMaxima.size());
        QCOMPARE(sim->state().bootMode, f.bootMode < 0 ? f.error != 0 : f.bootMode == 1);
        const QString hint = QString(f.hint).replace(QStringLiteral("%2"), told.value(0));
        QVERIFY2(e.Hints().value(0).startsWith(hint), qPrintable(e.Hints().join('\n')));
        QVERIFY(ui.errors.isEmpty()); // errors are passed on, not shown: the caller reports them
        QCOMPARE(mMain::MousePointerDepth(), 0);
        const bool dialog = f.command == QLatin1String("put") || f.dialog;
        QCOMPARE(ui.fileRequests.size(), dialog ? 1 : 0);
        if (dialog) {
            QCOMPARE(ui.fileRequests[0].filter, QStringLiteral("All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"));
            QVERIFY(ui.fileRequests[0].filterIndex == 2 && ui.fileRequests[0].pathMustExist && ui.fileRequests[0].overwritePrompt);
            QCOMPARE(ui.fileRequests[0].hideReadOnly, f.command == QLatin1String("get"));
        }
        if (f.command == QLatin1String("get") && result == FirmwareResult::Succeeded) {
            FirmwareFile saved;
            mFirmware::LoadFirmwareFile(saved, file);
            QCOMPARE(saved.Firmware + saved.Boot + saved.Protocol + saved.Hardware, QStringLiteral(" 2.0.20     1.2.1 1.1.2 2.1.3"));
            QCOMPARE(saved.Segments.size(), 252);
        }
        if (f.written >= 0)
            QVERIFY(f.written ? HoldsUpload(sim->state().memory) : sim->state().memory == before);
        const QStringList files = f.backup ? QDir(folder).entryList(QDir::Files) : QStringList();
        QCOMPARE(files.size(), f.backedUp ? 1 : 0);
        QCOMPARE(told, f.backedUp ? QStringList{QDir(folder).filePath(files.value(0))} : QStringList());
        if (f.backedUp) {
            QVERIFY2(files[0].startsWith(QStringLiteral("AB_12_x_4.0.0_")), qPrintable(files[0]));
            CompareBackup(told[0], before);
        }
    }

    // A backup written back gives the grip back what it held; two backups within a second keep
    // apart.
    void restore()
    {
        TestLink link;
        mMain::SetUserInterface(&link.ui);
        auto sim = Grip(link.port, kFits);
        const QByteArray before = sim->state().memory;
        const QTemporaryDir home;
        mFirmwareWorkflows::tUploadOptions options;
        options.backupFolder = home.path();
        QStringList told;
        options.backedUp = [&told](const QString& path) { told << path; };

        QCOMPARE(mFirmwareWorkflows::UploadFirmware(link.session, m_dir.filePath("upload.tvf"), kUpload, options), FirmwareResult::Succeeded);
        QVERIFY(HoldsUpload(sim->state().memory));
        QCOMPARE(mFirmwareWorkflows::UploadFirmware(link.session, told.value(0), kUpload, options), FirmwareResult::Succeeded);
        QVERIFY(sim->state().memory == before);
        QCOMPARE(told.size(), 2);
        QVERIFY(told[0] != told[1]);
        QCOMPARE(QDir(home.path()).entryList(QDir::Files).size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_FirmwareWorkflows)
#include "tst_firmwareworkflows.moc"
