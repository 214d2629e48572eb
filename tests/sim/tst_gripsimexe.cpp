// marlo-gripsim, the stand-alone virtual grip, run as a user runs it.

#include <QProcess>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

QString executable()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/marlo-gripsim");
}

QByteArray exchange(const QString& device, const QByteArray& frame, int reportSize)
{
    const int fd = ::open(device.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    if (fd < 0)
        return {};
    termios settings{};
    tcgetattr(fd, &settings);
    cfmakeraw(&settings);
    tcsetattr(fd, TCSANOW, &settings);
    QByteArray got;
    if (::write(fd, frame.constData(), size_t(frame.size())) == frame.size()) {
        pollfd in{fd, POLLIN, 0};
        char buffer[64];
        while (got.size() < reportSize && poll(&in, 1, 2000) > 0) {
            const ssize_t n = ::read(fd, buffer, sizeof buffer);
            if (n <= 0)
                break;
            got.append(buffer, n);
        }
    }
    ::close(fd);
    return got;
}

} // namespace

class TestGripSimExe : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void badOptions_data();
    void badOptions();
    void informationOptions_data();
    void informationOptions();
    void servesUntilSignalled_data();
    void servesUntilSignalled();
};

void TestGripSimExe::initTestCase()
{
    if (!QFileInfo(executable()).isExecutable())
        QSKIP("marlo-gripsim is not built beside the tests");
}

void TestGripSimExe::badOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("unknown key") << QStringList{"speed=3"} << "unknown key 'speed'";
    QTest::newRow("bad version") << QStringList{"sim:firmware=4"} << "firmware='4'";
    QTest::newRow("bad fault") << QStringList{"fault=boom@14"} << "unknown fault kind";
    QTest::newRow("bad second word") << QStringList{"pace=1", "baud=x"} << "baud='x'";
}

void TestGripSimExe::badOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentions);
    QProcess process;
    process.start(executable(), arguments);
    QVERIFY(process.waitForFinished(5000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardOutput().isEmpty());
    const QString error = QString::fromLocal8Bit(process.readAllStandardError());
    QVERIFY2(error.contains(mentions), qPrintable(error));
}

void TestGripSimExe::informationOptions_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("version") << "--version" << "marlo-gripsim 1.0.0";
    QTest::newRow("help") << "--help" << "fault=KIND@CODE[*COUNT]";
}

void TestGripSimExe::informationOptions()
{
    QFETCH(QString, option);
    QFETCH(QString, mentions);
    QProcess process;
    process.start(executable(), {option});
    QVERIFY(process.waitForFinished(5000));
    QCOMPARE(process.exitCode(), 0);
    const QString out = QString::fromLocal8Bit(process.readAllStandardOutput());
    QVERIFY2(out.contains(mentions), qPrintable(out));
}

void TestGripSimExe::servesUntilSignalled_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("SIGTERM, defaults") << QStringList{} << SIGTERM << QByteArray::fromHex("11EF")
                                       << QByteArray::fromHex("4100BF");
    QTest::newRow("SIGINT, sim: prefix, boot mode") << QStringList{"sim:bootmode=1"} << SIGINT
                                                    << QByteArray::fromHex("11EF") << QByteArray::fromHex("4101BE");
    QTest::newRow("several words") << QStringList{"firmware=1.1.4", "fault=nak@17"} << SIGTERM
                                   << QByteArray::fromHex("17E9") << QByteArray::fromHex("5001AF");
}

void TestGripSimExe::servesUntilSignalled()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, signal);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, report);

    QProcess process;
    process.start(executable(), arguments);
    QVERIFY(process.waitForStarted(5000));
    QVERIFY(process.waitForReadyRead(5000));
    QTRY_VERIFY_WITH_TIMEOUT(process.canReadLine(), 5000);
    const QString device = QString::fromLocal8Bit(process.readLine()).trimmed();
    QVERIFY2(device.startsWith(QLatin1String("/dev/")), qPrintable(device));
    QCOMPARE(exchange(device, command, int(report.size())).toHex(), report.toHex());

    QCOMPARE(::kill(pid_t(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished(5000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestGripSimExe)
#include "tst_gripsimexe.moc"
