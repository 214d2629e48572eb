// marlo-cli firmware read|write against its built-in virtual grip: exit statuses, the messages
// on the terminal, and the file written. Each run takes the real 100 ms pause per exchange, so
// the long runs go in parallel.
#include "../firmware/FirmwareTestSupport.h"
#include "firmware/mFirmware.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

struct Run {
    QStringList arguments;
    int exitCode = -1;
    QString out;
    QString err;
};

} // namespace

class tst_FirmwareCli : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void usage_data();
    void usage();
    void readAndWrite();

private:
    std::unique_ptr<QProcess> start(const QStringList& arguments);
    static void finish(QProcess& process, Run& run);
    QString m_cli;
    QTemporaryDir m_dir;
};

void tst_FirmwareCli::initTestCase()
{
    m_cli = QCoreApplication::applicationDirPath() + QStringLiteral("/marlo-cli");
    if (!QFileInfo::exists(m_cli))
        QSKIP("marlo-cli is not built beside the tests");
}

std::unique_ptr<QProcess> tst_FirmwareCli::start(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setWorkingDirectory(m_dir.path());
    process->start(m_cli, arguments);
    return process;
}

void tst_FirmwareCli::finish(QProcess& process, Run& run)
{
    QVERIFY(process.waitForFinished(300000));
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
}

void tst_FirmwareCli::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no action") << QStringList{QStringLiteral("firmware")};
    QTest::newRow("no file") << QStringList{QStringLiteral("firmware"), QStringLiteral("read")};
    QTest::newRow("unknown action") << QStringList{QStringLiteral("firmware"), QStringLiteral("erase"), QStringLiteral("x.tvf")};
    QTest::newRow("extra word")
        << QStringList{QStringLiteral("firmware"), QStringLiteral("write"), QStringLiteral("a"), QStringLiteral("b")};
}

void tst_FirmwareCli::usage()
{
    QFETCH(QStringList, arguments);
    auto process = start(QStringList{QStringLiteral("--device"), QStringLiteral("sim")} + arguments);
    Run run;
    finish(*process, run);
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.err.contains(QStringLiteral("firmware read FILE | firmware write FILE")));
}

void tst_FirmwareCli::readAndWrite()
{
    const QString fits = QStringLiteral("sim:firmware=4.0.0,boot=1.2.0,hardware=2.1.0");
    FirmwareFile good;
    good.Firmware = QStringLiteral("4.0.1");
    good.Boot = QStringLiteral("1.0.0-1.2.0");
    good.Protocol = QStringLiteral("1.1.1");
    good.Hardware = QStringLiteral("2.1.0");
    good.Segments = {fwtest::Line(0x40, fwtest::Pattern(1)), fwtest::Line(0, {}, 1, 0xFF)};
    mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("good.tvf")), good);
    FirmwareFile overwritten = good;
    overwritten.Segments.insert(1, fwtest::Line(0x40, fwtest::Pattern(2)));
    mFirmware::SaveFirmwareFile(m_dir.filePath(QStringLiteral("overwritten.tvf")), overwritten);

    const QList<QStringList> commands = {
        {QStringLiteral("--device"), QStringLiteral("sim:boot=1.1.5,hardware=2.2.0"), QStringLiteral("firmware"),
         QStringLiteral("write"), QStringLiteral("good.tvf")},
        {QStringLiteral("--device"), QStringLiteral("sim:firmware=2.0.20,boot=1.2.1"), QStringLiteral("firmware"),
         QStringLiteral("read"), QStringLiteral("fetched.tvf")},
        {QStringLiteral("--device"), fits, QStringLiteral("firmware"), QStringLiteral("write"), QStringLiteral("good.tvf")},
        {QStringLiteral("--device"), fits, QStringLiteral("firmware"), QStringLiteral("write"),
         QStringLiteral("overwritten.tvf")},
        {QStringLiteral("--device"), fits, QStringLiteral("firmware"), QStringLiteral("read"),
         QStringLiteral("no/such/folder/x.tvf")},
    };
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QStringList& arguments : commands)
        processes.push_back(start(arguments));
    QList<Run> runs(commands.size());
    for (qsizetype i = 0; i < commands.size(); ++i) {
        finish(*processes[static_cast<size_t>(i)], runs[i]);
        runs[i].arguments = commands[i];
    }

    // A file that does not fit: the two lines, status 1, nothing written.
    const Run& refused = runs[0];
    QCOMPARE(refused.exitCode, 1);
    QVERIFY(refused.err.contains(QStringLiteral("Firmwarefile version does not match the current version of the grip.\n"
                                                "It is not possible to upload this firmwarefile to the grip.")));
    QVERIFY(!refused.out.contains(QStringLiteral("Firmware uploaded")));

    // A read: status 0, the confirmation, and the grip's program in the file.
    const Run& read = runs[1];
    QCOMPARE(read.exitCode, 0);
    QVERIFY(read.out.contains(QStringLiteral("Firmware was fetched.")));
    FirmwareFile fetched;
    mFirmware::LoadFirmwareFile(fetched, m_dir.filePath(QStringLiteral("fetched.tvf")));
    QCOMPARE(fetched.Firmware, QStringLiteral(" 2.0.20"));
    QCOMPARE(fetched.Boot, QStringLiteral("     1.2.1"));
    QCOMPARE(fetched.Segments.size(), 252);

    // A write that verifies: status 0 and the success lines.
    const Run& written = runs[2];
    QCOMPARE(written.exitCode, 0);
    QVERIFY2(written.out.contains(QStringLiteral("Firmware uploaded successfully!\n"
                                                 "Press OK to start using the newly uploaded firmware.")),
             qPrintable(written.out + written.err));

    // A write whose read-back differs: status 1 and the failure lines.
    const Run& failed = runs[3];
    QCOMPARE(failed.exitCode, 1);
    QVERIFY(failed.out.contains(QStringLiteral("Firmware uploaded failed!\n")));
    QVERIFY(failed.out.contains(QStringLiteral("If the problem persists, please contact Tolvane Products' supportunit.")));

    // A read into a folder that does not exist is refused before the grip is touched.
    const Run& nowhere = runs[4];
    QCOMPARE(nowhere.exitCode, 1);
    QVERIFY(nowhere.err.contains(QStringLiteral("error 75: ")));
}

QTEST_GUILESS_MAIN(tst_FirmwareCli)
#include "tst_firmware_cli.moc"
