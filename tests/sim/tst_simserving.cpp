// The virtual grip's byte stream in time: the host's bytes cut into command frames as they
// arrive. Then the grip served on a pseudo-terminal, by the server and by marlo-gripsim, driven
// with plain POSIX calls the way a serial program drives a port.

#include "SimTestSupport.h"

#include "sim/FrameAssembler.h"
#include "sim/PtyServer.h"
#include "sim/StateFile.h"
#include "sim/TrafficLog.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <ctime>

using gripsim::FrameAssembler;
using gripsim::kNsPerMs;
using gripsim::PtyServer;
using gripsim::TrafficEvent;
using simtest::bytes;

namespace {

QList<TrafficEvent> eventsOf(const PtyServer& server, TrafficEvent::Kind kind)
{
    QList<TrafficEvent> found;
    for (const auto& event : server.grip().traffic()) {
        if (event.kind == kind)
            found.append(event);
    }
    return found;
}

qint64 processCpuNs()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec;
}

} // namespace

class TestSimServing : public QObject {
    Q_OBJECT

private slots:
    void frames_data()
    {
        // "MS:HEX" is a read at MS milliseconds; "MS:" only looks for a stale frame then.
        QTest::addColumn<QString>("reads");
        // Each frame as "HEX/PAUSE", the pause after its code byte in ms; "~" marks a dropped frame.
        QTest::addColumn<QString>("frames");

        QTest::newRow("code, pause, rest") << "0:14 100:EC" << "14EC/100";
        QTest::newRow("two in one read") << "5:14EC15EB" << "14EC/0 15EB/0";
        QTest::newRow("upload in three reads") << "0:24 100:0A0A1E23 101:1C000A0A1E231C00FA"
                                               << "240A0A1E231C000A0A1E231C00FA/100";
        QTest::newRow("block write, size from count") << "0:82 100:0020041122334432" << "820020041122334432/100";
        QTest::newRow("split before the count") << "0:8A 100:0020 102:0411 103:223344A8" << "8A00200411223344A8/100";
        QTest::newRow("empty block write") << "0:8A00200056" << "8A00200056/0";
        QTest::newRow("unknown byte alone") << "0:FF14EC" << "FF/0 14EC/0";
        // Silence counts from the last byte.
        QTest::newRow("dropped after silence") << "0:24 50:0A 1050: 1051:14EC" << "~240A/50 14EC/0";
        QTest::newRow("kept until then") << "0:24 50:0A 1049: 1049:0A1E231C000A0A1E231C00FA"
                                         << "240A0A1E231C000A0A1E231C00FA/50";
    }
    void frames()
    {
        QFETCH(QString, reads);

        FrameAssembler assembler;
        QStringList frames;
        const auto note = [&](const gripsim::ReceivedFrame& frame, const char* mark) {
            frames << QStringLiteral("%1%2/%3").arg(QLatin1String(mark), QString::fromLatin1(frame.bytes.toHex().toUpper()))
                          .arg(frame.pauseAfterCodeNs() / kNsPerMs);
        };
        for (const QString& read : reads.split(QLatin1Char(' '))) {
            const qint64 nowNs = read.section(QLatin1Char(':'), 0, 0).toLongLong() * kNsPerMs;
            const QByteArray bytes = simtest::bytes(read.section(QLatin1Char(':'), 1));
            if (bytes.isEmpty()) {
                if (const auto dropped = assembler.dropIfStale(nowNs))
                    note(*dropped, "~");
            }
            for (const auto& frame : assembler.push(bytes, nowNs))
                note(frame, "");
        }
        QTEST(frames.join(QLatin1Char(' ')), "frames");
        QVERIFY(!assembler.hasPartialFrame());
        QVERIFY(!assembler.staleDeadlineNs().has_value());
    }
    // Paced at 9600 baud, through the symbolic link, keeping its state in a file.
    void exchangesWithThePause()
    {
        QTemporaryDir dir;
        const QString link = dir.filePath(QStringLiteral("grip"));
        const QString stateFile = dir.filePath(QStringLiteral("grip.json"));
        {
            PtyServer server(simtest::options(QStringLiteral("pace=1,link=%1,state=%2").arg(link, stateFile)));
            QString error;
            QVERIFY2(server.start(&error), qPrintable(error));
            QCOMPARE(QFileInfo(link).symLinkTarget(), server.devicePath());
            QCOMPARE(simtest::exchange(link, bytes("2914C802F9"), 100, 2), bytes("42BE"));
            QCOMPARE(simtest::exchange(link, bytes("13ED"), 100, 28),
                     bytes("4353494D303030303030310400000001010100010201000101010075"));

            // Each byte is stamped when the server thread reads it, so scheduling on a
            // busy machine can shift either stamp: the bounds are loose.
            const QList<qint64> pauses = gripsim::pausesAfterCodeNs(server.grip().traffic());
            QCOMPARE(pauses.size(), 2);
            for (const qint64 pause : pauses)
                QVERIFY2(pause > 60 * kNsPerMs && pause < 400 * kNsPerMs, qPrintable(QString::number(pause)));
            QTRY_COMPARE(eventsOf(server, TrafficEvent::Kind::Report).size(), 2);
            // Paced: 28 bytes of 1.04 ms each, counted from the command's arrival.
            const qint64 took = eventsOf(server, TrafficEvent::Kind::Report).last().lastNs
                              - eventsOf(server, TrafficEvent::Kind::Command).last().lastNs;
            QVERIFY2(took >= 29 * kNsPerMs, qPrintable(QString::number(took)));
            // Saved while still serving.
            gripsim::GripState saved;
            QTRY_VERIFY(gripsim::StateFile(stateFile).load(saved, nullptr) && saved.ramping.shots == 20);
        }
        QVERIFY(!QFileInfo(link).isSymLink());
    }
    // Idle, with an incomplete frame waiting to be dropped and with an answer
    // waiting for its delay: the server sleeps, and stops at once.
    void idleServerSleepsAndStopsAtOnce()
    {
        PtyServer server(simtest::options(QStringLiteral("fault=delay5000@14")));
        QVERIFY(server.start());
        const QString device = server.devicePath();
        const qint64 cpuBefore = processCpuNs();
        QThread::msleep(100);
        QCOMPARE(simtest::exchange(device, bytes("240A"), 0, 0), QByteArray());
        QThread::msleep(1100);
        const qint64 cpuUsed = processCpuNs() - cpuBefore;
        QVERIFY2(cpuUsed < 100 * kNsPerMs, qPrintable(QStringLiteral("%1 ms of CPU while idle").arg(cpuUsed / kNsPerMs)));
        QCOMPARE(simtest::exchange(device, bytes("11EF"), 0, 3), bytes("4100BF"));
        const auto dropped = eventsOf(server, TrafficEvent::Kind::Dropped);
        QCOMPARE(dropped.size(), 1);
        QCOMPARE(dropped.first().bytes, bytes("240A"));

        QCOMPARE(simtest::exchange(device, bytes("14EC"), 0, 0), QByteArray());
        QThread::msleep(50);
        const qint64 start = gripsim::monotonicNs();
        server.stop();
        QVERIFY(gripsim::monotonicNs() - start < 500 * kNsPerMs);
        QVERIFY(!server.isRunning());
        QVERIFY(server.devicePath().isEmpty());
        QCOMPARE(eventsOf(server, TrafficEvent::Kind::Report).size(), 1);
    }
    // marlo-gripsim, the stand-alone virtual grip, run as a user runs it.
    void program_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("command"); // empty: the options are refused
        QTest::addColumn<QString>("report");
        QTest::addColumn<QString>("mentions"); // on stderr

        QTest::newRow("bad second word") << QStringList{"pace=1", "baud=x"} << "" << "" << "baud='x'";
        QTest::newRow("defaults") << QStringList{} << "11EF" << "4100BF" << "firmware 4.0.0";
        QTest::newRow("sim: prefix, words") << QStringList{"sim:bootmode=1", "fault=nak@11"} << "11EF" << "5001AF"
                                            << "virtual grip on /dev/";
    }
    void program()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, command);
        QFETCH(QString, report);
        QFETCH(QString, mentions);

        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/marlo-gripsim"), arguments);
        QVERIFY(process.waitForStarted(5000));
        if (command.isEmpty()) {
            QVERIFY(process.waitForFinished(5000));
            QCOMPARE(process.exitCode(), 2);
        } else {
            while (!process.canReadLine() && process.waitForReadyRead(5000)) {
            }
            const QString device = QString::fromLocal8Bit(process.readLine()).trimmed();
            QVERIFY2(device.startsWith(QLatin1String("/dev/")), qPrintable(device));
            const QByteArray answer = simtest::exchange(device, simtest::bytes(command), 0, int(report.size() / 2));
            QCOMPARE(answer.toHex().toUpper(), report.toLatin1());
            QCOMPARE(::kill(pid_t(process.processId()), SIGTERM), 0);
            QVERIFY(process.waitForFinished(5000));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
        }
        QVERIFY(process.readAllStandardOutput().isEmpty());
        const QString error = QString::fromLocal8Bit(process.readAllStandardError());
        QVERIFY2(error.contains(mentions), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestSimServing)
#include "tst_simserving.moc"
