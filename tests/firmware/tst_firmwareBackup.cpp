// The backup before a firmware write, against the virtual grip behind the fake port: what goes
// over the wire with and without it, the backup file against the grip's memory, a backup that
// fails (a block that cannot be read, a folder that cannot take the file) leaving the grip as it
// was, and a backup written back restoring the grip.
#include "FirmwareTestSupport.h"
#include "base/mErrCodes.h"
#include "firmware/mFirmwareBackup.h"
#include "firmware/mFirmwareWorkflows.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace fwtest;

namespace {

const mFirmwareWorkflows::tCaller kWrite{QStringLiteral("cliFirmwareCommands"), QStringLiteral("$Revision: 1 $"),
                                         QStringLiteral("firmware write")};
const QString kFits = QStringLiteral("firmware=4.0.0,boot=1.2.0,hardware=2.1.0,serial=AB 12/x");

// The image every write sends: three data lines and the end record.
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

struct Flow {
    QString grip{};        // besides kFits
    bool backup = true;
    bool folderBlocked = false; // a file stands where the backup folder should be
    int error = 0;
    QString trail{};       // %1: the backup folder
    QString hint{};        // part of the error's hints (%1: the backup's path)
    QString sent{};
    int progress = 0;
    bool written = false;  // else the memory is as it was
    bool backedUp = false; // a backup file equal to the memory before the write
    bool bootMode = false; // the grip left in its boot code (a failed write)
};

} // namespace

Q_DECLARE_METATYPE(Flow)

class tst_FirmwareBackup : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void write_data()
    {
        QTest::addColumn<Flow>("f");
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("upload.tvf")), Upload());
        const QString readBack = " 13 " + Repeated("85", 252) + " 13 83";
        const QString backup = "13 " + Repeated("85", 252) + " 13 8A 8A 8A 8A";
        const QString notBackedUp = "The grip's firmware could not be backed up, so nothing was written to the grip.";
        QTest::newRow("without a backup: the write as it always was") << Flow{
            .backup = false, .sent = "13 13 11 13 81 13 8A 8A 8A 8A" + readBack, .progress = 256, .written = true};
        QTest::newRow("backup between the stop and the first block") << Flow{
            .sent = "13 13 11 13 81 " + backup + readBack, .progress = 508, .written = true, .backedUp = true};
        QTest::newRow("backup of a grip in boot mode") << Flow{
            .grip = ",bootmode=1", .sent = "13 13 11 " + backup + readBack, .progress = 508, .written = true, .backedUp = true};
        QTest::newRow("a block the backup cannot read: program started, nothing written") << Flow{
            .grip = ",failblock=300*3", .error = mErrCodes::ERR_DL_FIRMWARE,
            .trail = "DLFirmware - read PIC-memory [$0300] < BackUp < firmware write - back up firmware (%1)", .hint = notBackedUp,
            .sent = "13 13 11 13 81 13 " + Repeated("85", 47) + " 13 83", .progress = 508};
        QTest::newRow("a folder that cannot take the backup: the grip not even stopped") << Flow{
            .folderBlocked = true, .error = mErrCodes::RT_FILE_ACCESS, .trail = "PrepareFolder < firmware write - back up firmware (%1)",
            .hint = notBackedUp, .sent = "13"};
        QTest::newRow("a write that fails after the backup says where it is") << Flow{
            .grip = ",fault=nak@8A*3", .error = mErrCodes::ERR_UL_FIRMWARE,
            .trail = "ULFirmware - upload data to grip < firmware write - stop program for upload",
            .hint = "The grip's firmware as it was before this write is backed up in %1.",
            .sent = "13 13 11 13 81 " + backup.chopped(3), .progress = 508, .backedUp = true, .bootMode = true};
    }

    void write()
    {
        QFETCH(Flow, f);
        TestLink link;
        mMain::SetUserInterface(&link.ui);
        auto sim = Grip(link.port, kFits + f.grip);
        const QByteArray before = sim->state().memory;
        const QTemporaryDir home;
        const QString folder = QDir(home.path()).filePath(QStringLiteral("Backups"));
        if (f.folderBlocked)
            mFirmware::SaveFile(folder, QStringLiteral("not a folder"));
        QStringList told;
        mFirmwareWorkflows::tUploadOptions options;
        options.backupFolder = f.backup ? folder : QString();
        options.backedUp = [&told](const QString& path) { told << path; };

        const MarloError e = ErrorOf([&] { mFirmwareWorkflows::UploadFirmware(link.session, m_dir.filePath("upload.tvf"), kWrite, options); });

        QCOMPARE(e.Number(), f.error);
        QStringList trail;
        for (const ErrorFrame& frame : e.Trail())
            trail << frame.procedure;
        QCOMPARE(trail.join(QStringLiteral(" < ")), QString(f.trail).replace(QStringLiteral("%1"), folder));
        QCOMPARE(codes(link.port.frames), f.sent);
        QCOMPARE(link.ui.progressMaxima, f.progress ? QList<int>{f.progress} : QList<int>{});
        QCOMPARE(sim->state().bootMode, f.bootMode);
        QCOMPARE(HoldsUpload(sim->state().memory), f.written);
        if (!f.written)
            QVERIFY(sim->state().memory == before);
        const QStringList files = f.folderBlocked ? QStringList() : QDir(folder).entryList(QDir::Files);
        QCOMPARE(files.size(), f.backedUp ? 1 : 0);
        QCOMPARE(told, f.backedUp ? QStringList{QDir(folder).filePath(files.value(0))} : QStringList());
        if (f.backedUp) {
            QVERIFY2(files[0].startsWith(QStringLiteral("AB_12_x_4.0.0_")), qPrintable(files[0]));
            CompareBackup(told[0], before);
        }
        QVERIFY2(e.Hints().join('\n').contains(QString(f.hint).replace(QStringLiteral("%1"), told.value(0))), qPrintable(e.Hints().join('\n')));
        QVERIFY(link.ui.errors.isEmpty());
        QCOMPARE(mMain::MousePointerDepth(), 0);
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

        QCOMPARE(mFirmwareWorkflows::UploadFirmware(link.session, m_dir.filePath("upload.tvf"), kWrite, options), FirmwareResult::Succeeded);
        QVERIFY(HoldsUpload(sim->state().memory));
        QCOMPARE(mFirmwareWorkflows::UploadFirmware(link.session, told.value(0), kWrite, options), FirmwareResult::Succeeded);
        QVERIFY(sim->state().memory == before);
        QCOMPARE(told.size(), 2);
        QVERIFY(told[0] != told[1]);
        QCOMPARE(QDir(home.path()).entryList(QDir::Files).size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_FirmwareBackup)
#include "tst_firmwareBackup.moc"
