// marlo-cli firmware write and read against its built-in virtual grip, in real time through the
// real serial port on a pseudo-terminal: the whole write, read-back, verification and start of
// the program, a write with a backup first, a read into a file, the exit statuses and the messages
// on the terminal. Each exchange takes the real 100 ms pause, so the runs go in parallel.
#include "../firmware/FirmwareTestSupport.h"
#include "sim/GripState.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace fwtest;

class tst_FirmwareCli : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void writeAndRead()
    {
        const QString cli = QCoreApplication::applicationDirPath() + QStringLiteral("/marlo-cli");
        if (!QFileInfo::exists(cli))
            QSKIP("marlo-cli is not built beside the tests");
        // Old firmware has its program restarted at 0xF50 of the write and at 0x200 of the read-back.
        const QList<HexLine> lines{Line(0x40, Pattern(1)), Line(0xF50, Pattern(2)), Line(0, {}, 1, 0xFF)};
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("good.tvf")), Image(lines));
        // The second line overwrites the first: the read-back differs.
        mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("bad.tvf")), Image({lines[0], Line(0x40, Pattern(3)), lines[2]}));
        const QString backups = QDir(qEnvironmentVariable("MARLO_HOME")).filePath(QStringLiteral("Backups"));
        QDir(backups).removeRecursively();
        // The device and the words after "firmware"; the exit status; what stdout (1) or stderr (2) says.
        const QList<std::tuple<QString, int, int, QString>> runs{
            {"sim:firmware=1.1.70,boot=1.2.0,hardware=2.1.4,pace=1,baud=115200 write good.tvf", 0, 1,
             "Firmware uploaded successfully!\nPress OK to start using the newly uploaded firmware."},
            {"sim:firmware=2.0.20,boot=1.2.1 read fetched.tvf", 0, 1, "Firmware was fetched."},
            {"sim:firmware=4.0.0,boot=1.2.0,hardware=2.1.0 write bad.tvf", 1, 1, "Firmware uploaded failed!\n"},
            {"sim:boot=1.1.5,hardware=2.2.0 write good.tvf", 1, 2,
             "Firmwarefile version does not match the current version of the grip.\n"
             "It is not possible to upload this firmwarefile to the grip."},
            {"sim read no/such/folder/x.tvf", 1, 2, "error 75: "}, // refused before the grip is stopped
            {"sim erase x.tvf", 2, 2, "usage: marlo-cli firmware read FILE | firmware write [--backup] FILE"},
            // The backup's path comes before the write's messages.
            {"sim:firmware=4.0.0,boot=1.2.0,hardware=2.1.0,serial=CLI1 write --backup good.tvf", 0, 1,
             "Backup: " + backups + "/CLI1_4.0.0_"},
        };
        std::vector<std::unique_ptr<QProcess>> processes;
        for (const auto& [command, status, stream, text] : runs) {
            const QStringList words = command.split(QLatin1Char(' '));
            processes.push_back(std::make_unique<QProcess>());
            processes.back()->setWorkingDirectory(m_dir.path());
            processes.back()->start(cli, QStringList{QStringLiteral("--device"), words[0], QStringLiteral("firmware")} + words.mid(1));
        }
        for (qsizetype i = 0; i < runs.size(); ++i) {
            const auto& [command, status, stream, text] = runs[i];
            QProcess& process = *processes[static_cast<size_t>(i)];
            QVERIFY(process.waitForFinished(300000));
            const QString out = QString::fromLocal8Bit(process.readAllStandardOutput());
            const QString err = QString::fromLocal8Bit(process.readAllStandardError());
            const QByteArray what = (command + QStringLiteral(":\n") + out + err).toLocal8Bit();
            QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == status, what);
            QVERIFY2((stream == 2 ? err : out).contains(text), what);
        }
        // The backup holds what the grip held before the write.
        const QStringList saved = QDir(backups).entryList(QDir::Files);
        QCOMPARE(saved.size(), 1);
        FirmwareFile backup;
        mFirmware::LoadFirmwareFile(backup, QDir(backups).filePath(saved[0]));
        QCOMPARE(bytes(backup.Segments.value(251).Data), gripsim::GripState::initialMemory().mid(0xFF0, 16));
        // The read saved the grip's program with its builds.
        FirmwareFile fetched;
        mFirmware::LoadFirmwareFile(fetched, m_dir.filePath(QStringLiteral("fetched.tvf")));
        QCOMPARE(fetched.Firmware + fetched.Boot, QStringLiteral(" 2.0.20     1.2.1"));
        QCOMPARE(fetched.Segments.size(), 252);
    }
};

QTEST_GUILESS_MAIN(tst_FirmwareCli)
#include "tst_firmware_cli.moc"
