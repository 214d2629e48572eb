// marlo-cli and the grip history, run as the program itself: get and put record, history lists
// (text and JSON, one grip or all), wrong usage, a damaged history said once as a warning, and a
// marlo-cli killed at any moment of a get that leaves the history readable and whole.
#include "CliRunner.h"
#include "TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

namespace {

const QString kGripA = QStringLiteral("sim:serial=CLIA000001");
const QString kGripB = QStringLiteral("sim:serial=CLIB000001,firmware=1.1.0");

// "serial: record record ..." of each entry of a JSON listing, in its order.
QStringList entries(const QString& json)
{
    QStringList lines;
    for (const QJsonValue& value : QJsonDocument::fromJson(json.toUtf8()).array()) {
        QJsonObject entry = value.toObject();
        const QString serial = entry.take(QStringLiteral("serial")).toString();
        entry.remove(QStringLiteral("time"));
        entry.remove(QStringLiteral("firmware"));
        lines << serial + QStringLiteral(": ") + entry.keys().join(QLatin1Char(' '));
    }
    return lines;
}

} // namespace

class tst_cliHistory : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));

    CliRun cli(const QStringList& arguments) { return RunCli(QDir(m_dir.path()), m_home, arguments); }

private slots:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(m_home));
        for (const QStringList& command : {QStringList{"--device", kGripA, "get", "all"},
                                           QStringList{"--device", kGripB, "put", "timing", "--ShotTime", "12"},
                                           QStringList{"--device", kGripA, "get", "counters"}}) {
            const CliRun run = cli(command);
            QVERIFY2(run.status == 0 && !run.err.contains(QLatin1String("warning")), qPrintable(run.err));
            QTest::qWait(5);
        }
    }

    void listing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("listed"); // JSON: entries(); text: the lines that begin an entry or a record
        QTest::newRow("all, json") << QStringList{"--json", "history"} << 0
                                   << QStringList{"CLIB000001: timing", "CLIA000001: gametimer options ramping timing"};
        QTest::newRow("--serial=S, json") << QStringList{"--json", "history", "--serial=CLIB000001"} << 0
                                          << QStringList{"CLIB000001: timing"};
        QTest::newRow("a grip never seen, json") << QStringList{"--json", "history", "--serial", "NOBODY"} << 0 << QStringList{};
        QTest::newRow("one grip, text") << QStringList{"history", "--serial", "CLIB000001"} << 0
                                        << QStringList{"serial CLIB000001  firmware 1.1.0",
                                                       "  timing: ShotTime=12 Dwelltime=10 CycleTimeOpen=30 LoadTime=35 "
                                                       "CycleTimeClose=28 FiringMode=0 ROF=9.71"};
        QTest::newRow("--serial without S") << QStringList{"history", "--serial"} << 2 << QStringList{};
    }
    void listing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QStringList, listed);
        const CliRun run = cli(arguments);
        QCOMPARE(run.status, status);
        if (status != 0) {
            QVERIFY(run.out.isEmpty());
            QVERIFY(run.err.contains(QLatin1String("marlo-cli history: ")));
            return;
        }
        if (arguments.first() == QLatin1String("--json")) {
            QCOMPARE(entries(run.out), listed);
            return;
        }
        QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), listed.size());
        QVERIFY2(lines.first().endsWith(listed.first()), qPrintable(lines.first())); // after the time
        QCOMPARE(lines.mid(1), listed.mid(1));
    }

    // Killed at some moment of a get: whatever was cut, the history lists without a problem and
    // holds every entry of a get that ended, and at most the one of the killed get besides.
    void killedWhileRecording_data()
    {
        QTest::addColumn<int>("delay");
        for (int delay = 0; delay <= 300; delay += 20)
            QTest::addRow("after %d ms", delay) << delay;
    }
    void killedWhileRecording()
    {
        QFETCH(int, delay);
        const CliRun before = cli({"--json", "history", "--serial", "CLIK000001"});
        const qsizetype held = QJsonDocument::fromJson(before.out.toUtf8()).array().size();
        QProcess process;
        StartCli(process, QDir(m_dir.path()), m_home, {"--device", "sim:serial=CLIK000001", "get", "timing"});
        QVERIFY(process.waitForStarted());
        QTest::qWait(delay);
        process.kill();
        process.waitForFinished();
        const bool ended = process.exitStatus() == QProcess::NormalExit;
        const CliRun after = cli({"--json", "history", "--serial", "CLIK000001"});
        QCOMPARE(after.status, 0);
        QVERIFY2(after.err.isEmpty(), qPrintable(after.err));
        const qsizetype now = QJsonDocument::fromJson(after.out.toUtf8()).array().size();
        QVERIFY2(ended ? now == held + 1 : (now == held || now == held + 1), qPrintable(QStringLiteral("%1 -> %2").arg(held).arg(now)));
        // The next get records whole, after whatever the kill left.
        QCOMPARE(cli({"--device", "sim:serial=CLIK000001", "get", "timing"}).status, 0);
        QCOMPARE(QJsonDocument::fromJson(cli({"--json", "history", "--serial", "CLIK000001"}).out.toUtf8()).array().size(), now + 1);
    }

    // Garbage in place of a grip's history: the get goes on, sets it aside and says so once on
    // stderr; the history begins anew with that get, and the other grips' entries are listed.
    void damagedHistory()
    {
        writeFile(QDir(m_home).filePath(QStringLiteral("GripHistory/CLIA000001.jsonl")), QByteArray("\x00\x01garbage\xff", 11));
        const CliRun got = cli({"--device", kGripA, "get", "timing"});
        QCOMPARE(got.status, 0);
        QVERIFY(got.out.startsWith(QLatin1String("ShotTime")));
        QVERIFY2(got.err.startsWith(QLatin1String("The grip history ")) && got.err.count(QLatin1String("set aside")) == 1,
                 qPrintable(got.err));
        const CliRun listed = cli({"--json", "history"});
        QVERIFY2(listed.status == 0 && listed.err.isEmpty(), qPrintable(listed.err));
        QCOMPARE(entries(listed.out).filter(QLatin1String("CLIA000001")), QStringList{"CLIA000001: timing"});
        QVERIFY(entries(listed.out).contains(QLatin1String("CLIB000001: timing")));
    }
};

QTEST_GUILESS_MAIN(tst_cliHistory)
#include "tst_cliHistory.moc"
