// Cutting the host's byte stream into command frames, as the bytes arrive.

#include "sim/FrameAssembler.h"
#include "sim/VirtualGrip.h"

#include <QtTest>

using gripsim::FrameAssembler;
using gripsim::ReceivedFrame;
using gripsim::TrafficEvent;
using gripsim::VirtualGrip;

namespace {

constexpr qint64 kMs = 1'000'000;

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

struct Piece
{
    qint64 atMs;
    QByteArray bytes;
};

} // namespace

Q_DECLARE_METATYPE(QList<Piece>)

class TestSimFraming : public QObject
{
    Q_OBJECT

private slots:
    void frames_data();
    void frames();
    void incompleteFrameDroppedAfterSilence_data();
    void incompleteFrameDroppedAfterSilence();
    void gripAnswersFedBytes();
    void gripRecordsDroppedInput();
};

void TestSimFraming::frames_data()
{
    QTest::addColumn<QList<Piece>>("pieces");
    QTest::addColumn<QStringList>("frames");
    QTest::addColumn<QList<qint64>>("pausesMs");

    QTest::newRow("code, pause, rest") << QList<Piece>{{0, hex("14")}, {100, hex("EC")}} << QStringList{"14EC"}
                                       << QList<qint64>{100};
    QTest::newRow("all at once") << QList<Piece>{{5, hex("14EC")}} << QStringList{"14EC"} << QList<qint64>{0};
    QTest::newRow("two frames in one read") << QList<Piece>{{0, hex("14EC15EB")}} << QStringList{"14EC", "15EB"}
                                            << QList<qint64>{0, 0};
    QTest::newRow("upload in three reads") << QList<Piece>{{0, hex("24")}, {100, hex("0A0A1E23")},
                                                           {101, hex("1C000A0A1E231C00FA")}}
                                           << QStringList{"240A0A1E231C000A0A1E231C00FA"} << QList<qint64>{100};
    QTest::newRow("block write, size from its count")
        << QList<Piece>{{0, hex("82")}, {100, hex("0020041122334432")}} << QStringList{"820020041122334432"}
        << QList<qint64>{100};
    QTest::newRow("block write split before the count")
        << QList<Piece>{{0, hex("8A")}, {100, hex("0020")}, {102, hex("0411")}, {103, hex("223344A8")}}
        << QStringList{"8A00200411223344A8"} << QList<qint64>{100};
    QTest::newRow("block write of 16 then a query")
        << QList<Piece>{{0, hex("82")}, {100, hex("00201000112233445566778899AABBCCDDEEFFD8")}, {200, hex("11EF")}}
        << QStringList{"82002010" "00112233445566778899AABBCCDDEEFF" "D8", "11EF"} << QList<qint64>{100, 0};
    QTest::newRow("empty block write") << QList<Piece>{{0, hex("8A00200056")}} << QStringList{"8A00200056"}
                                       << QList<qint64>{0};
    QTest::newRow("unknown byte stands alone") << QList<Piece>{{0, hex("FF14EC")}} << QStringList{"FF", "14EC"}
                                               << QList<qint64>{0, 0};
    QTest::newRow("read block") << QList<Piece>{{0, hex("85")}, {100, hex("00205B")}} << QStringList{"8500205B"}
                                << QList<qint64>{100};
}

void TestSimFraming::frames()
{
    QFETCH(QList<Piece>, pieces);
    QFETCH(QStringList, frames);
    QFETCH(QList<qint64>, pausesMs);

    FrameAssembler assembler;
    QList<ReceivedFrame> got;
    for (const auto& piece : pieces)
        got += assembler.push(piece.bytes, piece.atMs * kMs);
    QStringList gotHex;
    QList<qint64> gotPauses;
    for (const auto& frame : got) {
        gotHex.append(QString::fromLatin1(frame.bytes.toHex().toUpper()));
        gotPauses.append(frame.pauseAfterCodeNs() / kMs);
    }
    QCOMPARE(gotHex, frames);
    QCOMPARE(gotPauses, pausesMs);
    QVERIFY(!assembler.hasPartialFrame());
    QVERIFY(!assembler.staleDeadlineNs().has_value());
}

void TestSimFraming::incompleteFrameDroppedAfterSilence_data()
{
    QTest::addColumn<qint64>("checkAtMs");
    QTest::addColumn<bool>("dropped");

    // "24 0A" arrives at 0 and 50 ms; silence counts from the last byte.
    QTest::newRow("before the silence") << qint64(1049) << false;
    QTest::newRow("after the silence") << qint64(1050) << true;
}

void TestSimFraming::incompleteFrameDroppedAfterSilence()
{
    QFETCH(qint64, checkAtMs);
    QFETCH(bool, dropped);

    FrameAssembler assembler;
    QVERIFY(assembler.push(hex("24"), 0).isEmpty());
    QVERIFY(assembler.push(hex("0A"), 50 * kMs).isEmpty());
    QCOMPARE(assembler.staleDeadlineNs(), std::optional<qint64>(1050 * kMs));
    const auto gone = assembler.dropIfStale(checkAtMs * kMs);
    QCOMPARE(gone.has_value(), dropped);
    if (dropped)
        QCOMPARE(gone->bytes, hex("240A"));
    // What comes next is a new frame only when the old one was dropped.
    const auto next = assembler.push(hex("14EC"), (checkAtMs + 1) * kMs);
    QCOMPARE(next.isEmpty(), !dropped);
}

void TestSimFraming::gripAnswersFedBytes()
{
    VirtualGrip grip;
    QVERIFY(grip.feed(hex("14"), 0).isEmpty());
    const auto replies = grip.feed(hex("EC11"), 100 * kMs);
    QCOMPARE(replies.size(), 1);
    QCOMPARE(replies.first().bytes(), hex("440A0A1E231C000A0A1E231C00DA"));
    QCOMPARE(grip.feed(hex("EF"), 101 * kMs).first().bytes(), hex("4100BF"));

    const auto traffic = grip.traffic();
    QCOMPARE(traffic.size(), 2);
    QCOMPARE(traffic.at(0).kind, TrafficEvent::Kind::Command);
    QCOMPARE(traffic.at(0).firstNs, 0);
    QCOMPARE(traffic.at(0).pauseAfterCodeNs(), 100 * kMs);
    QCOMPARE(traffic.at(1).firstNs, 100 * kMs);
    QCOMPARE(traffic.at(1).lastNs, 101 * kMs);
}

void TestSimFraming::gripRecordsDroppedInput()
{
    VirtualGrip grip;
    grip.feed(hex("2601"), 0);
    QCOMPARE(grip.staleInputDeadlineNs(), std::optional<qint64>(FrameAssembler::kDefaultSilenceNs));
    QVERIFY(!grip.dropStaleInput(999 * kMs));
    QVERIFY(grip.dropStaleInput(1000 * kMs));
    const auto traffic = grip.traffic();
    QCOMPARE(traffic.size(), 1);
    QCOMPARE(traffic.first().kind, TrafficEvent::Kind::Dropped);
    QCOMPARE(traffic.first().bytes, hex("2601"));
    QCOMPARE(grip.feed(hex("11EF"), 1001 * kMs).size(), 1);
}

QTEST_GUILESS_MAIN(TestSimFraming)
#include "tst_simframing.moc"
