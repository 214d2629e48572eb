// The virtual grip's answers, command by command, in application and boot mode,
// and the faults injected into them.

#include "SimTestSupport.h"

#include "sim/GripState.h"
#include "sim/VirtualGrip.h"

#include <QtTest>

#include <algorithm>

using gripsim::GripState;
using gripsim::Reply;
using gripsim::VirtualGrip;
using simtest::bytes;

namespace {

const QByteArray kTimingUpload = bytes(QStringLiteral("24010203040506010203040506B2"));

Reply respond(VirtualGrip& grip, const QByteArray& frame)
{
    return grip.respond({frame, 0, 0, 0});
}

// O as without faults, N negative, S silent, B bad check byte, X anything else.
char classify(const QByteArray& got, const QByteArray& expected)
{
    if (got == expected)
        return 'O';
    if (got == bytes(QStringLiteral("5001AF")))
        return 'N';
    if (got.isEmpty())
        return 'S';
    return got.size() == expected.size() && got.chopped(1) == expected.chopped(1) ? 'B' : 'X';
}

} // namespace

class TestVirtualGrip : public QObject {
    Q_OBJECT

private slots:
    void answers_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("frames");
        QTest::addColumn<QString>("expected"); // one answer per frame, "-" for silence

        // The grip holds the values of the documented examples (see answers()).
        QTest::newRow("gun info") << "firmware=1.1.70,boot=1.2.0,serial=ABC1234567" << "13ED"
                                  << "4341424331323334353637010146000101010001020000010101003A";
        QTest::newRow("gun info, boot mode, revision 300") << "bootmode=1,protocol=1.1.300" << "13ED"
                                                           << "4353494D303030303030310400000001012C01010201000101010049";
        QTest::newRow("timing") << "" << "14EC" << "440A0A1E231C000A0A1E231C00DA";
        QTest::newRow("counters") << "" << "15EB" << "450A00FFFF01020300AD";
        QTest::newRow("game timers") << "" << "16EA" << "460A022C01013C0044";
        QTest::newRow("battery") << "" << "17E9" << "47FF03B7";
        QTest::newRow("options at 1.1.70") << "firmware=1.1.70" << "18E8" << "48FF010203B3";
        QTest::newRow("ramping") << "" << "19E7" << "490364014F";
        QTest::newRow("stop, start, twice") << "" << "817F 817F 11EF 837D 837D 11EF"
                                            << "916F 916F 4101BE 936D 936D 4100BF";
        QTest::newRow("block below memory") << "bootmode=1" << "85001C5F" << "95FFFFFFFFFFFFFFFFEEEEEEEEEEEEEEEE03";

        QTest::newRow("timing upload") << "" << "240102030405060708091011127C 14EC" << "42BE 4401020304050601020304050692";
        QTest::newRow("game timer upload") << "" << "260A012C01003C0066 16EA" << "42BE 460A012C01003C0046";
        QTest::newRow("options upload") << "firmware=1.1.70" << "280064642DE3 18E8" << "42BE 480064642DC3";
        QTest::newRow("ramping upload") << "" << "2914C802F9 19E7" << "42BE 4914C802D9";

        // Firmware up to 1.1.70 takes a selector, newer firmware the counters' values.
        QTest::newRow("reset 1.1.70, selectors 0, 3") << "firmware=1.1.70" << "2500000000DB 15EB 2503000000D8 15EB"
                                                     << "42BE 450A00FFFF01020300AD 42BE 450000000001020300B5";
        QTest::newRow("reset 1.1.71, values") << "firmware=1.1.71" << "252C010000AE 15EB"
                                              << "42BE 452C0100000102030088";

        // Boot code up to 1.2.0 writes with 0x8A, its check byte covering the code byte;
        // newer boot code writes with 0x82 and leaves the code byte out.
        QTest::newRow("write, boot 1.2.0") << "bootmode=1,boot=1.2.0" << "8A00200411223344A8 8500205B"
                                           << "42BE 9511223344EEEEEEEEEEEEEEEEEEEEEEEE99";
        QTest::newRow("write refused, boot 1.2.0") << "bootmode=1,boot=1.2.0"
                                                   << "8A0020041122334432 820020041122334432 8200200411223344B0"
                                                   << "5001AF 5001AF 5001AF";
        QTest::newRow("write, boot 1.2.1") << "bootmode=1,boot=1.2.1" << "820020041122334432 8500205B"
                                           << "42BE 9511223344EEEEEEEEEEEEEEEEEEEEEEEE99";
        QTest::newRow("write refused, boot 1.10.0") << "bootmode=1,boot=1.10.0"
                                                    << "8200200411223344B0 8A0020041122334432 8A00200411223344A8"
                                                    << "5001AF 5001AF 5001AF";
        QTest::newRow("write from below memory") << "bootmode=1,boot=1.2.0" << "8A001E08AABBCCDD1122334498 85001C5F"
                                                 << "42BE 95FFFFFFFFFFFFFFFF11223344EEEEEEEE11";
        QTest::newRow("write past memory") << "bootmode=1,boot=1.2.0" << "8A07FF0411223344C2 8507F87C"
                                           << "42BE 95EEEEEEEEEEEEEEEEEEEEEEEEEEEE112234";
        QTest::newRow("empty write") << "bootmode=1,boot=1.2.0" << "8A00200056 8500205B"
                                     << "42BE 95EEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEE8B";

        QTest::newRow("bad check bytes") << "" << "14ED 1300 240A0A1E231C000A0A1E231C00FB 2501000000DB 8170"
                                         << "5001AF 5001AF 5001AF 5001AF 5001AF";

        QTest::newRow("options before 1.1.70") << "firmware=1.1.69" << "18E8 280064642DE3" << "- -";
        QTest::newRow("ramping before 4.0.0") << "firmware=3.255.65535" << "19E7 290364016F" << "- -";
        QTest::newRow("unknown codes") << "" << "12EE 00" << "- -";
        QTest::newRow("boot commands, application") << "boot=1.2.0" << "85001C5F 867A 8A00200411223344A8" << "- - -";
        QTest::newRow("application commands, boot mode") << "bootmode=1"
                                                         << "14EC 240A0A1E231C000A0A1E231C00FA 2501000000DA 17E9"
                                                         << "- - - -";
        QTest::newRow("wrong sizes") << "" << "14 14EC00" << "- -";
    }
    void answers()
    {
        QFETCH(QString, setup);
        QFETCH(QString, frames);
        QFETCH(QString, expected);

        VirtualGrip grip(simtest::options(setup));
        grip.updateState([](GripState& s) {
            s.counters = {10, 65535, 197121};
            s.gameTimer = {10, 2, 300, 1, 60};
            s.battery = 0x3FF;
            s.options = {0xFF, 1, 2, 3};
            for (int i = 0; i < 16; ++i) {
                s.setMemoryAt(0x40 + i, 0xEE);
                s.setMemoryAt(0xFF0 + i, 0xEE);
            }
        });
        const GripState before = grip.state();
        QStringList answers;
        for (const QString& frame : frames.split(QLatin1Char(' '))) {
            const auto answer = grip.handleFrame(bytes(frame));
            answers << (answer ? QString::fromLatin1(answer->toHex().toUpper()) : QStringLiteral("-"));
        }
        QCOMPARE(answers.join(QLatin1Char(' ')), expected);
        // A refused or unheard command changes nothing.
        if (std::all_of(answers.begin(), answers.end(), [](const QString& a) { return a == "-" || a == "5001AF"; }))
            QVERIFY(grip.state() == before);
    }
    void faults_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QList<int>>("delays");
        QTest::addColumn<QList<int>>("sizes");
        QTest::addColumn<bool>("carriedOut");

        const QString put = QString::fromLatin1(kTimingUpload.toHex());
        const char* timing = "440A0A1E231C000A0A1E231C00DA";
        using L = QList<int>;
        QTest::newRow("none") << "" << "14EC" << timing << L{0} << L{14} << false;
        QTest::newRow("silent") << "fault=silent@24" << put << "" << L{} << L{} << false;
        QTest::newRow("nak") << "fault=nak@24" << put << "5001AF" << L{0} << L{3} << false;
        QTest::newRow("short") << "fault=short@14" << "14EC" << "440A0A1E231C00" << L{0} << L{7} << false;
        QTest::newRow("long") << "fault=long@24" << put << "42BE000000" << L{0} << L{5} << true;
        QTest::newRow("badsum") << "fault=badsum@24" << put << "42BF" << L{0} << L{2} << true;
        QTest::newRow("pieces") << "fault=pieces@14" << "14EC" << timing << L{0, 150, 150} << L{5, 5, 4} << false;
        QTest::newRow("delay") << "fault=delay800@24" << put << "42BE" << L{800} << L{2} << true;
        QTest::newRow("latency") << "latency=30" << "14EC" << timing << L{30} << L{14} << false;
        QTest::newRow("unserved command") << "fault=nak@18,firmware=1.1.4" << "18E8" << "" << L{} << L{} << false;
    }
    void faults()
    {
        QFETCH(QString, setup);
        QFETCH(QString, command);
        QFETCH(bool, carriedOut);

        VirtualGrip grip(simtest::options(setup));
        const Reply reply = respond(grip, bytes(command));
        QList<int> delays, sizes;
        for (const auto& chunk : reply.chunks) {
            delays.append(chunk.delayMs);
            sizes.append(int(chunk.bytes.size()));
        }
        QTEST(QString::fromLatin1(reply.bytes().toHex().toUpper()), "answer");
        QTEST(delays, "delays");
        QTEST(sizes, "sizes");
        QCOMPARE(grip.stateRevision() > 0, carriedOut);
    }
    void counts_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("frames");
        QTest::addColumn<QString>("outcomes"); // one letter per answer, see classify()

        const char* timing4 = "14EC 14EC 14EC 14EC";
        QTest::newRow("twice") << "fault=nak@14*2" << timing4 << "NNOO";
        QTest::newRow("one rule after another") << "fault=silent@14*1,fault=badsum@14*1" << timing4 << "SBOO";
        QTest::newRow("first rule hides second") << "fault=silent@14,fault=nak@14" << timing4 << "SSSS";
        QTest::newRow("block read twice") << "bootmode=1,failblock=40*2" << "8500205B 8500205B 8500205B" << "NNO";
        QTest::newRow("other block") << "bootmode=1,failblock=40*2" << "85002853 8500205B 85002853" << "ONO";
        QTest::newRow("once by default") << "bootmode=1,failblock=0x40" << "8500205B 8500205B" << "NO";
    }
    void counts()
    {
        QFETCH(QString, setup);
        QFETCH(QString, frames);

        VirtualGrip grip(simtest::options(setup));
        gripsim::SimOptions faultless = simtest::options(setup);
        faultless.faults.clear();
        faultless.blockFailures.clear();
        VirtualGrip clean(faultless);
        QString outcomes;
        for (const QString& frame : frames.split(QLatin1Char(' '))) {
            const QByteArray got = respond(grip, bytes(frame)).bytes();
            const QByteArray expected = respond(clean, bytes(frame)).bytes();
            outcomes += QLatin1Char(classify(got, expected));
        }
        QTEST(outcomes, "outcomes");
    }
};

QTEST_GUILESS_MAIN(TestVirtualGrip)
#include "tst_virtualgrip.moc"
