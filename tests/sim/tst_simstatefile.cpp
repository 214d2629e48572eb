// The virtual grip's state kept in a JSON file across runs.

#include "sim/GripState.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"
#include "sim/StateFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using gripsim::GripState;
using gripsim::PtyServer;
using gripsim::SimOptions;
using gripsim::StateFile;

namespace {

GripState changedState()
{
    GripState s;
    s.bootMode = true;
    s.serial = "XY12345678";
    s.firmware = {1, 1, 70};
    s.protocol = {2, 3, 4};
    s.boot = {1, 2, 0};
    s.hardware = {9, 8, 700};
    s.timing = {1, 2, 3, 4, 5, 16};
    s.options = {0x81, 7, 8, 126};
    s.ramping = {9, 200, 8};
    s.gameTimer = {99, 1, 65535, 2, 1};
    s.counters = {65535, 1, 0x7FFFFFFF};
    s.battery = 1023;
    for (int a = gripsim::kMemoryFirst; a <= gripsim::kMemoryLast; a += 7)
        s.setMemoryAt(a, quint8(a * 13));
    return s;
}

SimOptions options(const QString& text)
{
    QString error;
    const auto parsed = SimOptions::parse(text, &error);
    if (!parsed)
        qFatal("bad options in test: %s", qPrintable(error));
    return *parsed;
}

// One exchange through the device with plain POSIX calls.
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

QJsonObject readJsonFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

class TestSimStateFile : public QObject
{
    Q_OBJECT

private slots:
    void jsonRoundTrip();
    void missingMembersKeepTheirValue();
    void badMembersRejected_data();
    void badMembersRejected();
    void fileRoundTrip();
    void unreadableFiles_data();
    void unreadableFiles();
    void serverKeepsStateAcrossRuns();
    void givenKeysWinOverTheFile_data();
    void givenKeysWinOverTheFile();
};

void TestSimStateFile::jsonRoundTrip()
{
    const GripState original = changedState();
    QVERIFY(!(original == GripState()));
    GripState copy;
    QString error;
    QVERIFY2(copy.readJson(original.toJson(), &error), qPrintable(error));
    QVERIFY(copy == original);
}

void TestSimStateFile::missingMembersKeepTheirValue()
{
    GripState state = changedState();
    const QJsonObject json{{"FirmwareBuild", "2.0.20"}, {"Timing", QJsonObject{{"ShotTime", 15}}}};
    QString error;
    QVERIFY2(state.readJson(json, &error), qPrintable(error));
    QCOMPARE(state.firmware.toString(), QStringLiteral("2.0.20"));
    QCOMPARE(int(state.timing.shotTime), 15);
    QCOMPARE(int(state.timing.dwellTime), 2);
    QCOMPARE(state.serial, QByteArray("XY12345678"));
    QVERIFY(state.memory == changedState().memory);
}

void TestSimStateFile::badMembersRejected_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("version") << QByteArray(R"({"BootBuild": "1.2"})") << "BootBuild";
    QTest::newRow("byte too big") << QByteArray(R"({"Timing": {"LoadTime": 256}})") << "LoadTime";
    QTest::newRow("negative") << QByteArray(R"({"Counters": {"Counter1": -1}})") << "Counter1";
    QTest::newRow("fraction") << QByteArray(R"({"Ramping": {"Shots": 1.5}})") << "Shots";
    QTest::newRow("total beyond 31 bits") << QByteArray(R"({"Counters": {"Total": 2147483648}})") << "Total";
    QTest::newRow("battery beyond 10 bits") << QByteArray(R"({"Battery": 1024})") << "Battery";
    QTest::newRow("text for a number") << QByteArray(R"({"GameTimer": {"PreAlert1Time": "60"}})") << "PreAlert1Time";
    QTest::newRow("serial too long") << QByteArray(R"({"Serial": "ABCDEFGHIJK"})") << "Serial";
    QTest::newRow("boot mode not a switch") << QByteArray(R"({"BootMode": 1})") << "BootMode";
    QTest::newRow("memory too short") << QByteArray(R"({"Memory": "00FF"})") << "Memory";
}

void TestSimStateFile::badMembersRejected()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, mentions);
    GripState state = changedState();
    QString error;
    QVERIFY(!state.readJson(QJsonDocument::fromJson(json).object(), &error));
    QVERIFY2(error.contains(mentions), qPrintable(error));
    QVERIFY(state == changedState());
}

void TestSimStateFile::fileRoundTrip()
{
    QTemporaryDir dir;
    const StateFile file(dir.filePath(QStringLiteral("grip.json")));
    QVERIFY(!file.exists());
    QString error;
    QVERIFY2(file.save(changedState(), &error), qPrintable(error));
    QVERIFY(file.exists());
    GripState loaded;
    QVERIFY2(file.load(loaded, &error), qPrintable(error));
    QVERIFY(loaded == changedState());
    // Readable by people: the documented names are there.
    const QJsonObject json = readJsonFile(file.path());
    QCOMPARE(json.value(QStringLiteral("FirmwareBuild")).toString(), QStringLiteral("1.1.70"));
    QCOMPARE(json.value(QStringLiteral("Counters")).toObject().value(QStringLiteral("Counter1")).toInt(), 65535);
}

void TestSimStateFile::unreadableFiles_data()
{
    QTest::addColumn<QByteArray>("content"); // empty: no file at all
    QTest::addColumn<QString>("mentions");

    QTest::newRow("missing") << QByteArray() << "cannot read";
    QTest::newRow("not JSON") << QByteArray("firmware=4.0.0") << "not a JSON object";
    QTest::newRow("JSON array") << QByteArray("[1, 2]") << "not a JSON object";
    QTest::newRow("bad member") << QByteArray(R"({"Battery": "full"})") << "Battery";
}

void TestSimStateFile::unreadableFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, mentions);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grip.json"));
    if (!content.isEmpty()) {
        QFile out(path);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    GripState state;
    QString error;
    QVERIFY(!StateFile(path).load(state, &error));
    QVERIFY2(error.contains(mentions), qPrintable(error));
    QVERIFY(state == GripState());

    // A server with such a file does not start, and says why.
    if (!content.isEmpty()) {
        PtyServer server(options(QStringLiteral("state=") + path));
        QVERIFY(!server.start(&error));
        QVERIFY2(error.contains(mentions), qPrintable(error));
        QVERIFY(!server.isRunning());
    }
}

void TestSimStateFile::serverKeepsStateAcrossRuns()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grip.json"));
    const SimOptions first = options(QStringLiteral("firmware=1.1.70,state=") + path);
    {
        PtyServer server(first);
        QVERIFY(server.start());
        QVERIFY(QFileInfo::exists(path)); // written at once
        QCOMPARE(exchange(server.devicePath(), QByteArray::fromHex("24010203040506010203040506B2"), 2),
                 QByteArray::fromHex("42BE"));
        QCOMPARE(exchange(server.devicePath(), QByteArray::fromHex("817F"), 2), QByteArray::fromHex("916F"));
        // Written after the change, while still serving.
        QTRY_COMPARE(readJsonFile(path).value(QStringLiteral("BootMode")).toBool(), true);
        QCOMPARE(readJsonFile(path).value(QStringLiteral("Timing")).toObject().value(QStringLiteral("ShotTime")).toInt(),
                 1);
    }
    PtyServer again(options(QStringLiteral("state=") + path));
    QVERIFY(again.start());
    const GripState state = again.grip().state();
    QCOMPARE(state.firmware.toString(), QStringLiteral("1.1.70"));
    QCOMPARE(int(state.timing.shotTime), 1);
    QCOMPARE(int(state.timing.firingMode), 6);
    QVERIFY(state.bootMode);
    QCOMPARE(exchange(again.devicePath(), QByteArray::fromHex("11EF"), 3), QByteArray::fromHex("4101BE"));
}

void TestSimStateFile::givenKeysWinOverTheFile_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("bootMode");
    QTest::addColumn<int>("battery");

    // The file holds firmware 1.1.70, boot mode, battery 1023.
    QTest::newRow("nothing given") << "" << "1.1.70" << true << 1023;
    QTest::newRow("firmware given") << "firmware=4.0.5" << "4.0.5" << true << 1023;
    QTest::newRow("boot mode and battery given") << "bootmode=0,battery=500" << "1.1.70" << false << 500;
}

void TestSimStateFile::givenKeysWinOverTheFile()
{
    QFETCH(QString, setup);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grip.json"));
    QVERIFY(StateFile(path).save(changedState(), nullptr));

    PtyServer server(options(setup + QStringLiteral(",state=") + path));
    QVERIFY(server.start());
    const GripState state = server.grip().state();
    QTEST(state.firmware.toString(), "firmware");
    QTEST(state.bootMode, "bootMode");
    QTEST(int(state.battery), "battery");
    QCOMPARE(state.timing, changedState().timing); // never given: from the file
    server.stop();
    GripState saved;
    QVERIFY(StateFile(path).load(saved, nullptr));
    QVERIFY(saved == state);
}

QTEST_GUILESS_MAIN(TestSimStateFile)
#include "tst_simstatefile.moc"
