// The virtual grip's answers, command by command, in application and boot mode.

#include "sim/GripState.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QtTest>

using gripsim::GripState;
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

// A grip holding the values of the documented byte examples.
void prepare(VirtualGrip& grip)
{
    grip.updateState([](GripState& s) {
        s.timing = {10, 10, 30, 35, 28, 0};
        s.counters = {10, 65535, 197121};
        s.gameTimer = {10, 2, 300, 1, 60};
        s.battery = 0x3FF;
        s.options = {0xFF, 1, 2, 3};
        s.ramping = {3, 100, 1};
    });
}

QString answerHex(VirtualGrip& grip, const QByteArray& frame)
{
    const auto answer = grip.handleFrame(frame);
    return answer ? QString::fromLatin1(answer->toHex().toUpper()) : QStringLiteral("(silent)");
}

} // namespace

class TestVirtualGrip : public QObject
{
    Q_OBJECT

private slots:
    void reports_data();
    void reports();
    void silence_data();
    void silence();
    void badChecksum_data();
    void badChecksum();
    void modeChanges_data();
    void modeChanges();
    void writes_data();
    void writes();
    void counterReset_data();
    void counterReset();
    void blockWrite_data();
    void blockWrite();
    void blockRead_data();
    void blockRead();
    void freshImageIsNotBlank();
    void everyReportHasItsSize_data();
    void everyReportHasItsSize();
};

void TestVirtualGrip::reports_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("expected");

    QTest::newRow("boot query, application") << "" << hex("11EF") << "4100BF";
    QTest::newRow("boot query, boot mode") << "bootmode=1" << hex("11EF") << "4101BE";
    QTest::newRow("gun information") << "firmware=1.1.70,boot=1.2.0,serial=ABC1234567" << hex("13ED")
                                     << "4341424331323334353637010146000101010001020000010101003A";
    QTest::newRow("gun information, boot mode")
        << "firmware=1.1.70,boot=1.2.0,serial=ABC1234567,bootmode=1" << hex("13ED")
        << "4341424331323334353637010146000101010001020000010101003A";
    QTest::newRow("short serial padded with spaces") << "serial=X,firmware=0.0.0,boot=0.0.0,protocol=0.0.0,hardware=0.0.0"
                                                     << hex("13ED")
                                                     << "43582020202020202020200000000000000000000000000000000045";
    QTest::newRow("timing, six values twice") << "" << hex("14EC") << "440A0A1E231C000A0A1E231C00DA";
    QTest::newRow("counters, total 31 bits") << "" << hex("15EB") << "450A00FFFF01020300AD";
    QTest::newRow("game timers") << "" << hex("16EA") << "460A022C01013C0044";
    QTest::newRow("battery") << "" << hex("17E9") << "47FF03B7";
    QTest::newRow("options") << "" << hex("18E8") << "48FF010203B3";
    QTest::newRow("options, first firmware with them") << "firmware=1.1.70" << hex("18E8") << "48FF010203B3";
    QTest::newRow("ramping") << "" << hex("19E7") << "490364014F";
    QTest::newRow("stop program") << "" << hex("817F") << "916F";
    QTest::newRow("stop program, boot mode") << "bootmode=1" << hex("817F") << "916F";
    QTest::newRow("start program") << "bootmode=1" << hex("837D") << "936D";
    QTest::newRow("start program, application") << "" << hex("837D") << "936D";
    QTest::newRow("0x86, boot mode") << "bootmode=1" << hex("867A") << "42BE";
    QTest::newRow("0x87, boot mode") << "bootmode=1" << hex("8779") << "42BE";
}

void TestVirtualGrip::reports()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);
    QFETCH(QString, expected);

    VirtualGrip grip(options(setup));
    prepare(grip);
    QCOMPARE(answerHex(grip, command), expected);
}

void TestVirtualGrip::silence_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");

    QTest::newRow("options before firmware 1.1.70") << "firmware=1.1.69" << hex("18E8");
    QTest::newRow("options upload before 1.1.70") << "firmware=1.1.4" << hex("280064642DE3");
    QTest::newRow("ramping before firmware 4.0.0") << "firmware=3.255.65535" << hex("19E7");
    QTest::newRow("ramping upload before 4.0.0") << "firmware=2.0.20" << hex("290364016F");
    QTest::newRow("unknown code 0x12") << "" << hex("12EE");
    QTest::newRow("unknown code 0x00") << "" << hex("00");
    QTest::newRow("read block in application") << "" << hex("85001C5F");
    QTest::newRow("0x86 in application") << "" << hex("867A");
    QTest::newRow("block write in application") << "boot=1.2.0" << hex("8A00200411223344A8");
    QTest::newRow("timing in boot mode") << "bootmode=1" << hex("14EC");
    QTest::newRow("timing upload in boot mode") << "bootmode=1" << hex("240A0A1E231C000A0A1E231C00FA");
    QTest::newRow("counter reset in boot mode") << "bootmode=1" << hex("2501000000DA");
    QTest::newRow("battery in boot mode") << "bootmode=1" << hex("17E9");
    QTest::newRow("frame too short") << "" << hex("14");
    QTest::newRow("frame too long") << "" << hex("14EC00");
    QTest::newRow("block write cut before its data") << "bootmode=1,boot=1.2.0" << hex("8A002004");
}

void TestVirtualGrip::silence()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);

    VirtualGrip grip(options(setup));
    const GripState before = grip.state();
    QCOMPARE(answerHex(grip, command), QStringLiteral("(silent)"));
    QVERIFY(grip.state() == before);
}

void TestVirtualGrip::badChecksum_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");

    QTest::newRow("timing query") << "" << hex("14ED");
    QTest::newRow("gun information") << "" << hex("1300");
    QTest::newRow("timing upload") << "" << hex("240A0A1E231C000A0A1E231C00FB");
    QTest::newRow("counter reset") << "" << hex("2501000000DB");
    QTest::newRow("stop program") << "" << hex("8170");
    QTest::newRow("boot query, boot mode") << "bootmode=1" << hex("11EE");
    QTest::newRow("read block") << "bootmode=1" << hex("85001C60");
}

void TestVirtualGrip::badChecksum()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);

    VirtualGrip grip(options(setup));
    const GripState before = grip.state();
    QCOMPARE(answerHex(grip, command), QStringLiteral("5001AF"));
    QVERIFY(grip.state() == before);
}

void TestVirtualGrip::modeChanges_data()
{
    QTest::addColumn<bool>("bootBefore");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("bootAfter");

    QTest::newRow("stop enters boot mode") << false << hex("817F") << true;
    QTest::newRow("stop in boot mode stays") << true << hex("817F") << true;
    QTest::newRow("start leaves boot mode") << true << hex("837D") << false;
    QTest::newRow("start in application stays") << false << hex("837D") << false;
    QTest::newRow("query changes nothing") << true << hex("11EF") << true;
    QTest::newRow("stop with bad checksum") << false << hex("8100") << false;
    QTest::newRow("start with bad checksum") << true << hex("8300") << true;
}

void TestVirtualGrip::modeChanges()
{
    QFETCH(bool, bootBefore);
    QFETCH(QByteArray, command);
    QFETCH(bool, bootAfter);

    VirtualGrip grip;
    grip.updateState([&](GripState& s) { s.bootMode = bootBefore; });
    grip.handleFrame(command);
    QCOMPARE(grip.state().bootMode, bootAfter);
    QCOMPARE(answerHex(grip, hex("11EF")), QString(bootAfter ? "4101BE" : "4100BF"));
}

void TestVirtualGrip::writes_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("put");
    QTest::addColumn<QByteArray>("get");
    QTest::addColumn<QString>("expected");

    QTest::newRow("timing, the first block counts") << "" << hex("240102030405060708091011127C") << hex("14EC")
                                                    << "4401020304050601020304050692";
    QTest::newRow("game timers") << "" << hex("260A012C01003C0066") << hex("16EA") << "460A012C01003C0046";
    QTest::newRow("options") << "" << hex("28810A142D0C") << hex("18E8") << "48810A142DEC";
    QTest::newRow("options at 1.1.70") << "firmware=1.1.70" << hex("28FF010203D3") << hex("18E8")
                                       << "48FF010203B3";
    QTest::newRow("ramping") << "" << hex("2914C802F9") << hex("19E7") << "4914C802D9";
}

void TestVirtualGrip::writes()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, put);
    QFETCH(QByteArray, get);
    QFETCH(QString, expected);

    VirtualGrip grip(options(setup));
    const quint64 revision = grip.stateRevision();
    QCOMPARE(answerHex(grip, put), QStringLiteral("42BE"));
    QVERIFY(grip.stateRevision() > revision);
    QCOMPARE(answerHex(grip, get), expected);
}

void TestVirtualGrip::counterReset_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("counter1");
    QTest::addColumn<int>("counter2");

    // The grip holds 300 and 40 before each reset.
    QTest::newRow("1.1.70, selector 1") << "1.1.70" << hex("2501000000DA") << 0 << 40;
    QTest::newRow("1.1.70, selector 2") << "1.1.70" << hex("2502000000D9") << 300 << 0;
    QTest::newRow("1.1.70, selector 3") << "1.1.70" << hex("2503000000D8") << 0 << 0;
    QTest::newRow("1.1.70, selector 0") << "1.1.70" << hex("2500000000DB") << 300 << 40;
    QTest::newRow("1.1.4, selector 2") << "1.1.4" << hex("2502000000D9") << 300 << 0;
    QTest::newRow("1.1.71, values") << "1.1.71" << hex("252C010000AE") << 300 << 0;
    QTest::newRow("4.0.0, values") << "4.0.0" << hex("250A001400BD") << 10 << 20;
    QTest::newRow("4.0.0, a selector is read as values") << "4.0.0" << hex("2502000000D9") << 2 << 0;
}

void TestVirtualGrip::counterReset()
{
    QFETCH(QString, firmware);
    QFETCH(QByteArray, command);
    QFETCH(int, counter1);
    QFETCH(int, counter2);

    VirtualGrip grip(options(QStringLiteral("firmware=") + firmware));
    grip.updateState([](GripState& s) { s.counters = {300, 40, 5000}; });
    QCOMPARE(answerHex(grip, command), QStringLiteral("42BE"));
    const GripState after = grip.state();
    QCOMPARE(int(after.counters.counter1), counter1);
    QCOMPARE(int(after.counters.counter2), counter2);
    QCOMPARE(after.counters.total, 5000u);
}

void TestVirtualGrip::blockWrite_data()
{
    QTest::addColumn<QString>("boot");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("written"); // empty: memory unchanged

    const QByteArray data = hex("11223344");
    QTest::newRow("old boot code, 0x8A, sum over all") << "1.2.0" << hex("8A00200411223344A8") << "42BE" << 0x40 << data;
    QTest::newRow("old boot code 1.1.9") << "1.1.9" << hex("8A00200411223344A8") << "42BE" << 0x40 << data;
    QTest::newRow("old boot code, check without code byte") << "1.2.0" << hex("8A0020041122334432") << "5001AF" << 0x40
                                                             << QByteArray();
    QTest::newRow("old boot code refuses 0x82") << "1.2.0" << hex("820020041122334432") << "5001AF" << 0x40
                                                << QByteArray();
    QTest::newRow("old boot code refuses 0x82 with full sum") << "1.2.0" << hex("8200200411223344B0") << "5001AF"
                                                              << 0x40 << QByteArray();
    QTest::newRow("new boot code, 0x82, code byte left out") << "1.2.1" << hex("820020041122334432") << "42BE" << 0x40
                                                             << data;
    QTest::newRow("new boot code 1.10.0 (numeric compare)") << "1.10.0" << hex("820020041122334432") << "42BE" << 0x40
                                                            << data;
    QTest::newRow("new boot code, check over all bytes") << "1.2.1" << hex("8200200411223344B0") << "5001AF" << 0x40
                                                         << QByteArray();
    QTest::newRow("new boot code refuses 0x8A") << "1.2.1" << hex("8A0020041122334432") << "5001AF" << 0x40
                                                << QByteArray();
    QTest::newRow("new boot code refuses 0x8A with full sum") << "2.0.0" << hex("8A00200411223344A8") << "5001AF"
                                                              << 0x40 << QByteArray();
    QTest::newRow("bytes below 0x40 ignored") << "1.2.0" << hex("8A001E08AABBCCDD1122334498") << "42BE" << 0x40 << data;
    QTest::newRow("count 0, old") << "1.2.0" << hex("8A00200056") << "42BE" << 0x40 << QByteArray();
    QTest::newRow("count 0, new") << "1.2.1" << hex("82002000E0") << "42BE" << 0x40 << QByteArray();
    QTest::newRow("beyond 0xFFF ignored") << "1.2.0" << hex("8A080002112239") << "42BE" << 0xFFE << QByteArray();
}

void TestVirtualGrip::blockWrite()
{
    QFETCH(QString, boot);
    QFETCH(QByteArray, command);
    QFETCH(QString, expected);
    QFETCH(int, address);
    QFETCH(QByteArray, written);

    VirtualGrip grip(options(QStringLiteral("bootmode=1,boot=") + boot));
    const GripState before = grip.state();
    QCOMPARE(answerHex(grip, command), expected);
    GripState after = grip.state();
    for (int i = 0; i < written.size(); ++i)
        QCOMPARE(after.memoryAt(address + i), quint8(written.at(i)));
    for (int i = 0; i < written.size(); ++i)
        after.setMemoryAt(address + i, before.memoryAt(address + i));
    QVERIFY2(after.memory == before.memory, "bytes outside the written range changed");
    QCOMPARE(after.memory.size(), before.memory.size());
}

void TestVirtualGrip::blockRead_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("expected");

    // Memory holds (address - 0x100) * 3 from 0x100 to 0x10F and 0xEE at 0x40..0x47, 0xFF8..0xFFF.
    QTest::newRow("block 0x100") << hex("850080FB") << "95000306090C0F1215181B1E2124272A2D03";
    QTest::newRow("block 0x38 starts below memory") << hex("85001C5F") << "95FFFFFFFFFFFFFFFFEEEEEEEEEEEEEEEE03";
    QTest::newRow("last block 0xFF0") << hex("8507F87C") << "95";
}

void TestVirtualGrip::blockRead()
{
    QFETCH(QByteArray, command);
    QFETCH(QString, expected);

    VirtualGrip grip(options(QStringLiteral("bootmode=1")));
    grip.updateState([](GripState& s) {
        for (int i = 0; i < 16; ++i)
            s.setMemoryAt(0x100 + i, quint8(i * 3));
        for (int i = 0; i < 8; ++i) {
            s.setMemoryAt(0x40 + i, 0xEE);
            s.setMemoryAt(0xFF8 + i, 0xEE);
        }
    });
    const QString answer = answerHex(grip, command);
    QCOMPARE(answer.size(), 36);
    if (expected.size() > 2) {
        QCOMPARE(answer, expected);
        return;
    }
    // The last block ends with the eight prepared bytes.
    QVERIFY2(answer.startsWith(expected), qPrintable(answer));
    QCOMPARE(answer.mid(18, 16), QStringLiteral("EEEEEEEEEEEEEEEE"));
}

void TestVirtualGrip::freshImageIsNotBlank()
{
    VirtualGrip grip(options(QStringLiteral("bootmode=1")));
    const QString first = answerHex(grip, hex("8500205B")).mid(2, 32);
    const QString second = answerHex(grip, hex("85002853")).mid(2, 32);
    QCOMPARE(first.size(), 32);
    QVERIFY(first != second);
    QVERIFY(first != QString(32, QLatin1Char('F')));
    QVERIFY(first != QString(32, QLatin1Char('0')));
}

void TestVirtualGrip::everyReportHasItsSize_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("size");

    const QList<std::tuple<const char*, const char*, int>> rows{
        {"", "11EF", 3},          {"", "13ED", 28},          {"", "14EC", 14},
        {"", "15EB", 10},         {"", "16EA", 9},           {"", "17E9", 4},
        {"", "18E8", 6},          {"", "19E7", 5},           {"", "2914C802F9", 2},
        {"", "817F", 2},          {"", "837D", 2},           {"bootmode=1", "8500205B", 18},
        {"bootmode=1", "867A", 2}, {"bootmode=1", "8779", 2},
    };
    for (const auto& [setup, command, size] : rows)
        QTest::newRow(command) << QString::fromLatin1(setup) << hex(command) << size;
}

void TestVirtualGrip::everyReportHasItsSize()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, command);
    QFETCH(int, size);

    VirtualGrip grip(options(setup));
    const auto answer = grip.handleFrame(command);
    QVERIFY(answer.has_value());
    QCOMPARE(int(answer->size()), size);
    int sum = 0;
    for (const char c : *answer)
        sum += quint8(c);
    QCOMPARE(sum % 256, 0);
}

QTEST_GUILESS_MAIN(TestVirtualGrip)
#include "tst_virtualgrip.moc"
