// Faults injected into the virtual grip's answers.

#include "sim/GripState.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QtTest>

using gripsim::GripState;
using gripsim::Reply;
using gripsim::SimOptions;
using gripsim::VirtualGrip;

namespace {

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

Reply respond(VirtualGrip& grip, const QByteArray& frame)
{
    return grip.respond({frame, 0, 0, 0});
}

// One letter per answer: O the expected report, N negative, S silent,
// B bad check byte, X anything else.
char classify(const Reply& reply, const QByteArray& expected)
{
    const QByteArray bytes = reply.bytes();
    if (reply.isSilent())
        return 'S';
    if (bytes == expected)
        return 'O';
    if (bytes == hex("5001AF"))
        return 'N';
    if (bytes.size() == expected.size() && bytes.chopped(1) == expected.chopped(1))
        return 'B';
    return 'X';
}

} // namespace

class TestSimFaults : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void garbageNeverStartsWithAValidCode_data();
    void garbageNeverStartsWithAValidCode();
    void counts_data();
    void counts();
    void refusedCommandsAreNotCarriedOut_data();
    void refusedCommandsAreNotCarriedOut();
    void failingBlocks_data();
    void failingBlocks();
    void faultsAddedWhileServing();
};

void TestSimFaults::kinds_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<int>>("delays");
    QTest::addColumn<QList<int>>("chunkSizes");

    const QByteArray timing = hex("440A0A1E231C000A0A1E231C00DA");
    QTest::newRow("no fault") << "" << hex("14EC") << timing << QList<int>{0} << QList<int>{14};
    QTest::newRow("silent") << "fault=silent@14" << hex("14EC") << QByteArray() << QList<int>{} << QList<int>{};
    QTest::newRow("nak") << "fault=nak@14" << hex("14EC") << hex("5001AF") << QList<int>{0} << QList<int>{3};
    QTest::newRow("short, first half") << "fault=short@14" << hex("14EC") << hex("440A0A1E231C00") << QList<int>{0}
                                       << QList<int>{7};
    QTest::newRow("short of three bytes") << "fault=short@11" << hex("11EF") << hex("41") << QList<int>{0}
                                          << QList<int>{1};
    QTest::newRow("long") << "fault=long@14" << hex("14EC") << timing + QByteArray(3, '\0') << QList<int>{0}
                          << QList<int>{17};
    QTest::newRow("badsum") << "fault=badsum@14" << hex("14EC") << hex("440A0A1E231C000A0A1E231C00DB")
                            << QList<int>{0} << QList<int>{14};
    QTest::newRow("badsum of an ack") << "fault=badsum@24" << hex("240A0A1E231C000A0A1E231C00FA") << hex("42BF")
                                      << QList<int>{0} << QList<int>{2};
    QTest::newRow("pieces") << "fault=pieces@14" << hex("14EC") << timing << QList<int>{0, 150, 150}
                            << QList<int>{5, 5, 4};
    QTest::newRow("pieces of an ack") << "fault=pieces@24" << hex("240A0A1E231C000A0A1E231C00FA") << hex("42BE")
                                      << QList<int>{0, 150} << QList<int>{1, 1};
    QTest::newRow("delay") << "fault=delay800@14" << hex("14EC") << timing << QList<int>{800} << QList<int>{14};
    QTest::newRow("latency") << "latency=30" << hex("14EC") << timing << QList<int>{30} << QList<int>{14};
    QTest::newRow("latency and delay") << "latency=30,fault=delay800@14" << hex("14EC") << timing << QList<int>{830}
                                       << QList<int>{14};
    QTest::newRow("latency and pieces") << "latency=30,fault=pieces@14" << hex("14EC") << timing
                                        << QList<int>{30, 150, 150} << QList<int>{5, 5, 4};
    QTest::newRow("fault on another code") << "fault=nak@15" << hex("14EC") << timing << QList<int>{0}
                                           << QList<int>{14};
    QTest::newRow("fault on a silent command") << "fault=nak@18,firmware=1.1.4" << hex("18E8") << QByteArray()
                                               << QList<int>{} << QList<int>{};
}

void TestSimFaults::kinds()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, bytes);
    QFETCH(QList<int>, delays);
    QFETCH(QList<int>, chunkSizes);

    VirtualGrip grip(options(setup));
    const Reply reply = respond(grip, command);
    QCOMPARE(reply.bytes().toHex().toUpper(), bytes.toHex().toUpper());
    QList<int> gotDelays, gotSizes;
    for (const auto& chunk : reply.chunks) {
        gotDelays.append(chunk.delayMs);
        gotSizes.append(int(chunk.bytes.size()));
    }
    QCOMPARE(gotDelays, delays);
    QCOMPARE(gotSizes, chunkSizes);
}

void TestSimFaults::garbageNeverStartsWithAValidCode_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("validCode");
    QTest::addColumn<int>("size");

    QTest::newRow("timing") << hex("14EC") << 0x44 << 14;
    QTest::newRow("gun information") << hex("13ED") << 0x43 << 28;
    QTest::newRow("acknowledged write") << hex("2914C802F9") << 0x42 << 2;
}

void TestSimFaults::garbageNeverStartsWithAValidCode()
{
    QFETCH(QByteArray, command);
    QFETCH(int, validCode);
    QFETCH(int, size);

    VirtualGrip grip(options(QStringLiteral("fault=garbage@%1").arg(quint8(command.at(0)), 2, 16)));
    QSet<QByteArray> seen;
    for (int i = 0; i < 200; ++i) {
        const QByteArray bytes = respond(grip, command).bytes();
        QCOMPARE(int(bytes.size()), size);
        QVERIFY(quint8(bytes.at(0)) != validCode);
        QVERIFY(quint8(bytes.at(0)) != 0x50);
        seen.insert(bytes);
    }
    QVERIFY2(seen.size() > 100, "the garbage hardly changes");
}

void TestSimFaults::counts_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("outcomes");

    QTest::newRow("always") << "fault=nak@14" << QByteArray("NNNN");
    QTest::newRow("twice") << "fault=nak@14*2" << QByteArray("NNOO");
    QTest::newRow("once silent, then bad sum once") << "fault=silent@14*1,fault=badsum@14*1" << QByteArray("SBOO");
    QTest::newRow("first rule always hides the second") << "fault=silent@14,fault=nak@14" << QByteArray("SSSS");
    QTest::newRow("only other codes") << "fault=silent@15,fault=nak@13*3" << QByteArray("OOOO");
}

void TestSimFaults::counts()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, outcomes);

    VirtualGrip grip(options(setup));
    const QByteArray expected = hex("440A0A1E231C000A0A1E231C00DA");
    QByteArray got;
    for (int i = 0; i < outcomes.size(); ++i)
        got.append(classify(respond(grip, hex("14EC")), expected));
    QCOMPARE(got, outcomes);
}

void TestSimFaults::refusedCommandsAreNotCarriedOut_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<bool>("carriedOut");

    QTest::newRow("silent: not heard") << "fault=silent@24" << false;
    QTest::newRow("nak: refused") << "fault=nak@24" << false;
    QTest::newRow("short: answer spoiled") << "fault=short@24" << true;
    QTest::newRow("long") << "fault=long@24" << true;
    QTest::newRow("badsum") << "fault=badsum@24" << true;
    QTest::newRow("garbage") << "fault=garbage@24" << true;
    QTest::newRow("pieces") << "fault=pieces@24" << true;
    QTest::newRow("delay") << "fault=delay10@24" << true;
}

void TestSimFaults::refusedCommandsAreNotCarriedOut()
{
    QFETCH(QString, setup);
    QFETCH(bool, carriedOut);

    VirtualGrip grip(options(setup));
    respond(grip, hex("24010203040506010203040506B2"));
    QCOMPARE(grip.state().timing.shotTime == 1, carriedOut);
}

void TestSimFaults::failingBlocks_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QList<QByteArray>>("commands");
    QTest::addColumn<QByteArray>("outcomes"); // N negative, A answered

    const QByteArray read40 = hex("8500205B");
    const QByteArray read50 = hex("85002853");
    const QByteArray write40 = hex("820020041122334432");
    QTest::newRow("read fails twice") << "failblock=40*2" << QList<QByteArray>{read40, read40, read40}
                                      << QByteArray("NNA");
    QTest::newRow("other blocks unaffected") << "failblock=40*2" << QList<QByteArray>{read50, read40, read50}
                                             << QByteArray("ANA");
    QTest::newRow("reads and writes both count") << "failblock=40*2"
                                                 << QList<QByteArray>{write40, read40, write40}
                                                 << QByteArray("NNA");
    QTest::newRow("default once") << "failblock=0x40" << QList<QByteArray>{read40, read40} << QByteArray("NA");
}

void TestSimFaults::failingBlocks()
{
    QFETCH(QString, setup);
    QFETCH(QList<QByteArray>, commands);
    QFETCH(QByteArray, outcomes);

    VirtualGrip grip(options(setup + QStringLiteral(",bootmode=1")));
    QByteArray got;
    for (const auto& command : commands) {
        const QByteArray bytes = respond(grip, command).bytes();
        got.append(bytes == hex("5001AF") ? 'N' : bytes.isEmpty() ? 'S' : 'A');
    }
    QCOMPARE(got, outcomes);
}

void TestSimFaults::faultsAddedWhileServing()
{
    VirtualGrip grip;
    const auto rule = gripsim::FaultRule::parse(QStringLiteral("nak@13*1"), nullptr);
    QVERIFY(rule.has_value());
    grip.addFault(*rule);
    QCOMPARE(grip.faults().size(), 1);
    QCOMPARE(respond(grip, hex("13ED")).bytes(), hex("5001AF"));
    QVERIFY(grip.faults().isEmpty());
    QCOMPARE(int(respond(grip, hex("13ED")).bytes().size()), 28);
}

QTEST_GUILESS_MAIN(TestSimFaults)
#include "tst_simfaults.moc"
