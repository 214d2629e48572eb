// The virtual grip's state kept in a JSON file across runs.

#include "SimTestSupport.h"
#include "TestFiles.h"

#include "sim/GripState.h"
#include "sim/PtyServer.h"
#include "sim/StateFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

using gripsim::GripState;
using gripsim::PtyServer;
using gripsim::StateFile;

namespace {

// Every member away from its default.
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

} // namespace

class TestSimStateFile : public QObject {
    Q_OBJECT

private slots:
    void roundTrip()
    {
        QTemporaryDir dir;
        const StateFile file(dir.filePath(QStringLiteral("grip.json")));
        QString error;
        QVERIFY2(file.save(changedState(), &error), qPrintable(error));
        GripState loaded;
        QVERIFY2(file.load(loaded, &error), qPrintable(error));
        QVERIFY(loaded == changedState());
        // Readable by people: the records' own names.
        QFile saved(file.path());
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QJsonObject json = QJsonDocument::fromJson(saved.readAll()).object();
        QCOMPARE(json.value(QStringLiteral("FirmwareBuild")).toString(), QStringLiteral("1.1.70"));
        QCOMPARE(json.value(QStringLiteral("Counters")).toObject().value(QStringLiteral("Counter1")).toInt(), 65535);
    }
    void missingMembersKeepTheirValue()
    {
        GripState state = changedState();
        QString error;
        QVERIFY2(state.readJson({{"FirmwareBuild", "2.0.20"}, {"Timing", QJsonObject{{"ShotTime", 15}}}}, &error),
                 qPrintable(error));
        GripState expected = changedState();
        expected.firmware = {2, 0, 20};
        expected.timing.shotTime = 15;
        QVERIFY(state == expected);
    }
    void refused_data()
    {
        QTest::addColumn<QByteArray>("content"); // empty: no file at all
        QTest::addColumn<QString>("mentions");

        QTest::newRow("missing") << QByteArray() << "cannot read";
        QTest::newRow("not JSON") << QByteArray("firmware=4.0.0") << "not a JSON object";
        QTest::newRow("version") << QByteArray(R"({"BootBuild": "1.2"})") << "BootBuild";
        QTest::newRow("byte 256") << QByteArray(R"({"Timing": {"LoadTime": 256}})") << "LoadTime";
        QTest::newRow("fraction") << QByteArray(R"({"Ramping": {"Shots": 1.5}})") << "Shots";
        QTest::newRow("text for a number") << QByteArray(R"({"GameTimer": {"PreAlert1Time": "60"}})") << "PreAlert1Time";
        QTest::newRow("serial of 11") << QByteArray(R"({"Serial": "ABCDEFGHIJK"})") << "Serial";
        QTest::newRow("boot mode 1") << QByteArray(R"({"BootMode": 1})") << "BootMode";
        QTest::newRow("memory too short") << QByteArray(R"({"Memory": "00FF"})") << "Memory";
    }
    void refused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, mentions);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grip.json"));
        if (!content.isEmpty())
            writeFile(path, content);
        GripState state = changedState();
        QString error;
        QVERIFY(!StateFile(path).load(state, &error));
        QVERIFY2(error.contains(mentions), qPrintable(error));
        QVERIFY(state == changedState());
        // A server given such a file does not start, and says why (a missing file it makes).
        if (!content.isEmpty()) {
            PtyServer server(simtest::options(QStringLiteral("state=") + path));
            QVERIFY(!server.start(&error));
            QVERIFY2(error.contains(mentions), qPrintable(error));
        }
    }
    void givenKeysWinOverTheFile_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<bool>("bootMode");
        QTest::addColumn<int>("battery");

        // The file holds firmware 1.1.70, boot mode, battery 1023.
        QTest::newRow("nothing given") << "" << "1.1.70" << true << 1023;
        QTest::newRow("firmware") << "firmware=4.0.5" << "4.0.5" << true << 1023;
        QTest::newRow("boot mode, battery") << "bootmode=0,battery=500" << "1.1.70" << false << 500;
    }
    void givenKeysWinOverTheFile()
    {
        QFETCH(QString, setup);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grip.json"));
        QVERIFY(StateFile(path).save(changedState(), nullptr));
        PtyServer server(simtest::options(setup + QStringLiteral(",state=") + path));
        QVERIFY(server.start());
        const GripState state = server.grip().state();
        QTEST(state.firmware.toString(), "firmware");
        QTEST(state.bootMode, "bootMode");
        QTEST(int(state.battery), "battery");
        QCOMPARE(state.timing, changedState().timing); // never given: from the file
        // A change made while serving is in the file once the server stops.
        server.grip().updateState([](GripState& s) { s.counters.counter1 = 7; });
        server.stop();
        GripState saved;
        QVERIFY(StateFile(path).load(saved, nullptr));
        QCOMPARE(int(saved.counters.counter1), 7);
        QVERIFY(saved == server.grip().state());
    }
};

QTEST_GUILESS_MAIN(TestSimStateFile)
#include "tst_simstatefile.moc"
