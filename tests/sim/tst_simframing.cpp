// The byte stream in time: the host's bytes cut into command frames as they arrive,
// the grip's answers sent in time, and the measurements taken from the traffic record.

#include "SimTestSupport.h"

#include "sim/FrameAssembler.h"
#include "sim/ReplyScheduler.h"
#include "sim/TrafficLog.h"

#include <QtTest>

using gripsim::FrameAssembler;
using gripsim::kNsPerMs;
using gripsim::Reply;
using gripsim::ReplyScheduler;
using gripsim::TrafficEvent;

namespace {

struct Step
{
    qint64 nowMs;        // when the server looks
    QByteArray expected; // the piece due then; empty: nothing due
    qint64 writeTakesMs; // how long writing it takes
};

} // namespace

Q_DECLARE_METATYPE(QList<Step>)
Q_DECLARE_METATYPE(QList<Reply>)

class TestSimFraming : public QObject {
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
        QTest::newRow("16 bytes, then a query") << "0:82 100:00201000112233445566778899AABBCCDDEEFFD8 200:11EF"
                                                << "8200201000112233445566778899AABBCCDDEEFFD8/100 11EF/0";
        QTest::newRow("empty block write") << "0:8A00200056" << "8A00200056/0";
        QTest::newRow("unknown byte alone") << "0:FF14EC" << "FF/0 14EC/0";
        QTest::newRow("read block") << "0:85 100:00205B" << "8500205B/100";
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
    void schedule_data()
    {
        QTest::addColumn<QList<Reply>>("replies"); // all to commands that arrived at 0 ms
        QTest::addColumn<QList<Step>>("steps");
        QTest::addColumn<qint64>("lastFirstMs"); // when the last answer's first and last byte went out
        QTest::addColumn<qint64>("lastLastMs");

        QTest::newRow("at once") << QList<Reply>{Reply{{{0, "AB"}}}} << QList<Step>{{0, "AB", 2}} << qint64(0) << qint64(2);
        QTest::newRow("latency") << QList<Reply>{Reply{{{40, "AB"}}}} << QList<Step>{{39, "", 0}, {40, "AB", 1}}
                                 << qint64(40) << qint64(41);
        QTest::newRow("pieces, each after the previous one")
            << QList<Reply>{Reply{{{0, "A"}, {150, "B"}, {150, "C"}}}}
            << QList<Step>{{0, "A", 10}, {159, "", 0}, {160, "B", 10}, {319, "", 0}, {320, "C", 5}} << qint64(0)
            << qint64(325);
        QTest::newRow("one answer after another, silence skipped")
            << QList<Reply>{Reply{{{100, "A"}}}, Reply{}, Reply{{{0, "B"}}}}
            << QList<Step>{{0, "", 0}, {100, "A", 5}, {105, "B", 5}} << qint64(105) << qint64(110);
    }
    void schedule()
    {
        QFETCH(QList<Reply>, replies);
        QFETCH(QList<Step>, steps);

        ReplyScheduler scheduler;
        for (const auto& reply : replies)
            scheduler.add(reply, 0);
        std::optional<ReplyScheduler::SentReport> last;
        for (const auto& step : steps) {
            const auto chunk = scheduler.dueChunk(step.nowMs * kNsPerMs);
            QCOMPARE(chunk.value_or(QByteArray()), step.expected);
            if (!chunk)
                QVERIFY(scheduler.nextDueNs().value() > step.nowMs * kNsPerMs);
            else if (auto sent = scheduler.chunkWritten(step.nowMs * kNsPerMs, (step.nowMs + step.writeTakesMs) * kNsPerMs))
                last = sent;
        }
        QVERIFY(scheduler.isEmpty());
        QVERIFY(last.has_value());
        QCOMPARE(last->bytes, replies.last().bytes());
        QTEST(last->firstNs / kNsPerMs, "lastFirstMs");
        QTEST(last->lastNs / kNsPerMs, "lastLastMs");
    }
    void measurements_data()
    {
        using K = TrafficEvent::Kind;
        QTest::addColumn<QList<TrafficEvent>>("events");
        QTest::addColumn<QList<qint64>>("pauses");
        QTest::addColumn<QList<qint64>>("turnarounds");

        QTest::newRow("two exchanges") << QList<TrafficEvent>{{K::Command, "ab", 0, 100, 100},
                                                              {K::Report, "xyz", 110, 110, 120},
                                                              {K::Command, "cd", 150, 251, 251},
                                                              {K::Report, "xyz", 260, 260, 270}}
                                       << QList<qint64>{100, 101} << QList<qint64>{30};
        QTest::newRow("one byte, silence, dropped") << QList<TrafficEvent>{{K::Command, "ab", 0, 100, 100},
                                                                           {K::Report, "xy", 110, 110, 120},
                                                                           {K::Command, "q", 500, 500, 500},
                                                                           {K::Dropped, "c", 600, 0, 600},
                                                                           {K::Command, "cd", 1700, 1800, 1800}}
                                                    << QList<qint64>{100, 100} << QList<qint64>{380};
    }
    void measurements()
    {
        QFETCH(QList<TrafficEvent>, events);
        QTEST(gripsim::pausesAfterCodeNs(events), "pauses");
        QTEST(gripsim::turnaroundsNs(events), "turnarounds");
    }
};

QTEST_GUILESS_MAIN(TestSimFraming)
#include "tst_simframing.moc"
