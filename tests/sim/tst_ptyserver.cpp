// The virtual grip served on a pseudo-terminal, driven with plain POSIX calls
// the way a serial program drives a port.

#include "sim/PtyServer.h"
#include "sim/SimClock.h"
#include "sim/SimOptions.h"

#include <QTemporaryDir>
#include <QtTest>

#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using gripsim::PtyServer;
using gripsim::SimOptions;
using gripsim::TrafficEvent;

namespace {

constexpr qint64 kMs = 1'000'000;

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

SimOptions options(const QString& text)
{
    QString error;
    const auto parsed = SimOptions::parse(text, &error);
    if (!parsed)
        qFatal("bad options in test: %s", qPrintable(error));
    return *parsed;
}

void sleepMs(int ms)
{
    QThread::usleep(static_cast<unsigned long>(ms) * 1000);
}

// The device opened as a program opens a serial port: raw, no controlling tty.
class PosixPort
{
public:
    explicit PosixPort(const QString& path)
        : m_fd(::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY))
    {
        termios settings{};
        if (m_fd >= 0 && tcgetattr(m_fd, &settings) == 0) {
            cfmakeraw(&settings);
            tcsetattr(m_fd, TCSANOW, &settings);
        }
    }
    ~PosixPort()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    PosixPort(const PosixPort&) = delete;
    PosixPort& operator=(const PosixPort&) = delete;

    bool isOpen() const { return m_fd >= 0; }

    bool send(const QByteArray& bytes)
    {
        return ::write(m_fd, bytes.constData(), size_t(bytes.size())) == bytes.size();
    }

    // The code byte, a pause, the rest: as the program sends every command.
    bool sendCommand(const QByteArray& frame, int pauseMs)
    {
        if (pauseMs == 0)
            return send(frame);
        const bool first = send(frame.left(1));
        sleepMs(pauseMs);
        return first && send(frame.mid(1));
    }

    // Up to count bytes within the time; arrival times (monotonic ns) per byte.
    QByteArray receive(int count, int timeoutMs, QList<qint64>* arrivals = nullptr)
    {
        QByteArray got;
        const qint64 deadline = gripsim::monotonicNs() + timeoutMs * kMs;
        while (got.size() < count) {
            const qint64 left = deadline - gripsim::monotonicNs();
            pollfd in{m_fd, POLLIN, 0};
            if (left <= 0 || poll(&in, 1, int(left / kMs) + 1) <= 0)
                break;
            char buffer[64];
            const ssize_t n = ::read(m_fd, buffer, sizeof buffer);
            if (n <= 0)
                break;
            for (ssize_t i = 0; arrivals && i < n; ++i)
                arrivals->append(gripsim::monotonicNs());
            got.append(buffer, n);
        }
        return got;
    }

private:
    int m_fd = -1;
};

std::unique_ptr<PtyServer> started(const QString& setup)
{
    auto server = std::make_unique<PtyServer>(options(setup));
    QString error;
    if (!server->start(&error))
        qFatal("virtual grip did not start: %s", qPrintable(error));
    return server;
}

QList<TrafficEvent> eventsOf(const PtyServer& server, TrafficEvent::Kind kind)
{
    QList<TrafficEvent> found;
    for (const auto& event : server.grip().traffic()) {
        if (event.kind == kind)
            found.append(event);
    }
    return found;
}

// The traffic record is written by the server thread just after the last byte.
QList<TrafficEvent> reportsOf(const PtyServer& server, int atLeast)
{
    for (int i = 0; i < 100; ++i) {
        const auto reports = eventsOf(server, TrafficEvent::Kind::Report);
        if (reports.size() >= atLeast)
            return reports;
        sleepMs(5);
    }
    return eventsOf(server, TrafficEvent::Kind::Report);
}

qint64 processCpuNs()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec;
}

} // namespace

class TestPtyServer : public QObject
{
    Q_OBJECT

private slots:
    void exchange_data();
    void exchange();
    void pacing_data();
    void pacing();
    void portReopenedBetweenExchanges();
    void incompleteFrameIsDroppedAndLinkRecovers();
    void piecesArriveApart();
    void idleServerDoesNotSpin();
    void stopIsPromptEvenWhileAnAnswerWaits();
    void symbolicLink();
};

void TestPtyServer::exchange_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("pauseMs");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("timing with the 100 ms pause") << "" << hex("14EC") << 100 << hex("440A0A1E231C000A0A1E231C00DA");
    QTest::newRow("gun information") << "serial=ABC1234567,firmware=1.1.70,boot=1.2.0" << hex("13ED") << 100
                                     << hex("4341424331323334353637010146000101010001020000010101003A");
    QTest::newRow("boot query in boot mode") << "bootmode=1" << hex("11EF") << 100 << hex("4101BE");
    QTest::newRow("upload") << "" << hex("2914C802F9") << 100 << hex("42BE");
    QTest::newRow("without a pause") << "" << hex("11EF") << 0 << hex("4100BF");
    QTest::newRow("bad check byte") << "" << hex("14ED") << 100 << hex("5001AF");
}

void TestPtyServer::exchange()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);
    QFETCH(int, pauseMs);
    QFETCH(QByteArray, report);

    const auto server = started(setup);
    PosixPort port(server->devicePath());
    QVERIFY(port.isOpen());
    QVERIFY(port.sendCommand(command, pauseMs));
    QCOMPARE(port.receive(int(report.size()), 2000).toHex(), report.toHex());

    const auto commands = eventsOf(*server, TrafficEvent::Kind::Command);
    QCOMPARE(commands.size(), 1);
    QCOMPARE(commands.first().bytes, command);
    // Each byte is stamped when the server thread reads it, so scheduling on a
    // busy machine can shift either stamp by a few milliseconds.
    const qint64 pause = commands.first().pauseAfterCodeNs();
    QVERIFY2(pause >= (pauseMs - 10) * kMs, qPrintable(QString::number(pause)));
    QVERIFY2(pause < (pauseMs + 100) * kMs, qPrintable(QString::number(pause)));
    const auto reports = reportsOf(*server, 1);
    QCOMPARE(reports.size(), 1);
    QCOMPARE(reports.first().bytes, report);
    QVERIFY(reports.first().lastNs >= commands.first().lastNs);
}

void TestPtyServer::pacing_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<qint64>("atLeastMs");
    QTest::addColumn<qint64>("belowMs");

    // The 28 bytes of the gun information: 280 bits.
    QTest::newRow("paced at 2400 baud") << "pace=1,baud=2400" << qint64(114) << qint64(1000);
    QTest::newRow("paced at 9600 baud") << "pace=1" << qint64(28) << qint64(500);
    QTest::newRow("not paced") << "pace=0,baud=2400" << qint64(0) << qint64(100);
}

void TestPtyServer::pacing()
{
    QFETCH(QString, setup);
    QFETCH(qint64, atLeastMs);
    QFETCH(qint64, belowMs);

    const auto server = started(setup);
    PosixPort port(server->devicePath());
    QVERIFY(port.sendCommand(hex("13ED"), 0));
    QList<qint64> arrivals;
    QCOMPARE(port.receive(28, 3000, &arrivals).size(), 28);
    const auto commands = eventsOf(*server, TrafficEvent::Kind::Command);
    QCOMPARE(commands.size(), 1);
    const qint64 took = arrivals.last() - commands.first().lastNs;
    QVERIFY2(took >= atLeastMs * kMs, qPrintable(QString::number(took / kMs)));
    QVERIFY2(took < belowMs * kMs, qPrintable(QString::number(took / kMs)));
    const auto reports = reportsOf(*server, 1);
    QCOMPARE(reports.size(), 1);
    QVERIFY(reports.first().lastNs - commands.first().lastNs >= (atLeastMs - 1) * kMs);
}

void TestPtyServer::portReopenedBetweenExchanges()
{
    const auto server = started(QString());
    for (int i = 0; i < 3; ++i) {
        PosixPort port(server->devicePath());
        QVERIFY(port.isOpen());
        QVERIFY(port.sendCommand(hex("17E9"), 20));
        QCOMPARE(port.receive(4, 2000).size(), 4);
    }
    QCOMPARE(eventsOf(*server, TrafficEvent::Kind::Command).size(), 3);
    QVERIFY(server->lastError().isEmpty());
}

void TestPtyServer::incompleteFrameIsDroppedAndLinkRecovers()
{
    const auto server = started(QString());
    PosixPort port(server->devicePath());
    QVERIFY(port.send(hex("240A")));
    sleepMs(1200);
    QVERIFY(port.sendCommand(hex("11EF"), 100));
    QCOMPARE(port.receive(3, 2000).toHex(), hex("4100BF").toHex());
    const auto dropped = eventsOf(*server, TrafficEvent::Kind::Dropped);
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.first().bytes, hex("240A"));
}

void TestPtyServer::piecesArriveApart()
{
    const auto server = started(QStringLiteral("fault=pieces@14"));
    PosixPort port(server->devicePath());
    QVERIFY(port.sendCommand(hex("14EC"), 0));
    QList<qint64> arrivals;
    QCOMPARE(port.receive(14, 3000, &arrivals).toHex(), hex("440A0A1E231C000A0A1E231C00DA").toHex());
    QVERIFY2(arrivals.last() - arrivals.first() >= 280 * kMs,
             qPrintable(QString::number((arrivals.last() - arrivals.first()) / kMs)));
}

void TestPtyServer::idleServerDoesNotSpin()
{
    const auto server = started(QString());
    PosixPort port(server->devicePath());
    const qint64 before = processCpuNs();
    sleepMs(500);
    const qint64 used = processCpuNs() - before;
    QVERIFY2(used < 50 * kMs, qPrintable(QStringLiteral("%1 ms of CPU while idle").arg(used / kMs)));
}

void TestPtyServer::stopIsPromptEvenWhileAnAnswerWaits()
{
    const auto server = started(QStringLiteral("fault=delay5000@14"));
    PosixPort port(server->devicePath());
    QVERIFY(port.sendCommand(hex("14EC"), 0));
    sleepMs(50);
    QVERIFY(server->isRunning());
    const QString device = server->devicePath();
    const qint64 start = gripsim::monotonicNs();
    server->stop();
    QVERIFY(gripsim::monotonicNs() - start < 500 * kMs);
    QVERIFY(!server->isRunning());
    QVERIFY(server->devicePath().isEmpty());
    QVERIFY(eventsOf(*server, TrafficEvent::Kind::Report).isEmpty());
}

void TestPtyServer::symbolicLink()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString link = dir.filePath(QStringLiteral("grip"));
    {
        const auto server = started(QStringLiteral("link=") + link);
        QCOMPARE(server->linkPath(), link);
        QCOMPARE(QFileInfo(link).symLinkTarget(), server->devicePath());
        PosixPort port(link);
        QVERIFY(port.sendCommand(hex("11EF"), 10));
        QCOMPARE(port.receive(3, 2000).toHex(), hex("4100BF").toHex());
    }
    QVERIFY(!QFileInfo(link).isSymLink());
}

QTEST_GUILESS_MAIN(TestPtyServer)
#include "tst_ptyserver.moc"
