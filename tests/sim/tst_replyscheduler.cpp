// Timing of the grip's answers and the measurements taken from its traffic record.

#include "sim/ReplyScheduler.h"
#include "sim/TrafficLog.h"

#include <QtTest>

using gripsim::Reply;
using gripsim::ReplyScheduler;
using gripsim::TrafficEvent;

namespace {

constexpr qint64 kMs = 1'000'000;

struct Step
{
    qint64 nowMs;        // when the server looks
    QByteArray expected; // the piece due then; empty: nothing due
    qint64 writeTakesMs; // how long writing it takes
};

} // namespace

Q_DECLARE_METATYPE(QList<Step>)
Q_DECLARE_METATYPE(QList<Reply>)

class TestReplyScheduler : public QObject
{
    Q_OBJECT

private slots:
    void schedule_data();
    void schedule();
    void silenceQueuesNothing();
    void measurements_data();
    void measurements();
};

void TestReplyScheduler::schedule_data()
{
    QTest::addColumn<QList<Reply>>("replies"); // all arriving at 0 ms
    QTest::addColumn<QList<Step>>("steps");
    QTest::addColumn<qint64>("lastSentFirstMs");
    QTest::addColumn<qint64>("lastSentLastMs");

    QTest::newRow("immediate") << QList<Reply>{Reply{{{0, "AB"}}}}
                               << QList<Step>{{0, "AB", 2}} << qint64(0) << qint64(2);
    QTest::newRow("latency") << QList<Reply>{Reply{{{40, "AB"}}}}
                             << QList<Step>{{39, "", 0}, {40, "AB", 1}} << qint64(40) << qint64(41);
    QTest::newRow("pieces counted from the end of the previous piece")
        << QList<Reply>{Reply{{{0, "A"}, {150, "B"}, {150, "C"}}}}
        << QList<Step>{{0, "A", 10}, {159, "", 0}, {160, "B", 10}, {319, "", 0}, {320, "C", 5}} << qint64(0)
        << qint64(325);
    QTest::newRow("second answer waits for the first")
        << QList<Reply>{Reply{{{100, "A"}}}, Reply{{{0, "B"}}}}
        << QList<Step>{{0, "", 0}, {100, "A", 5}, {105, "B", 5}} << qint64(105) << qint64(110);
}

void TestReplyScheduler::schedule()
{
    QFETCH(QList<Reply>, replies);
    QFETCH(QList<Step>, steps);
    QFETCH(qint64, lastSentFirstMs);
    QFETCH(qint64, lastSentLastMs);

    ReplyScheduler scheduler;
    for (const auto& reply : replies)
        scheduler.add(reply, 0);
    std::optional<ReplyScheduler::SentReport> last;
    for (const auto& step : steps) {
        const auto chunk = scheduler.dueChunk(step.nowMs * kMs);
        QCOMPARE(chunk.value_or(QByteArray()), step.expected);
        if (!chunk) {
            QVERIFY(scheduler.nextDueNs().value() > step.nowMs * kMs);
            continue;
        }
        if (auto sent = scheduler.chunkWritten(step.nowMs * kMs, (step.nowMs + step.writeTakesMs) * kMs))
            last = sent;
    }
    QVERIFY(scheduler.isEmpty());
    QVERIFY(last.has_value());
    QCOMPARE(last->bytes, replies.last().bytes());
    QCOMPARE(last->firstNs, lastSentFirstMs * kMs);
    QCOMPARE(last->lastNs, lastSentLastMs * kMs);
}

void TestReplyScheduler::silenceQueuesNothing()
{
    ReplyScheduler scheduler;
    scheduler.add(Reply{}, 0);
    QVERIFY(scheduler.isEmpty());
    QVERIFY(!scheduler.nextDueNs().has_value());
    QVERIFY(!scheduler.dueChunk(1'000 * kMs).has_value());
}

void TestReplyScheduler::measurements_data()
{
    using K = TrafficEvent::Kind;
    QTest::addColumn<QList<TrafficEvent>>("events");
    QTest::addColumn<QList<qint64>>("pauses");
    QTest::addColumn<QList<qint64>>("turnarounds");

    QTest::newRow("two exchanges")
        << QList<TrafficEvent>{{K::Command, "ab", 0, 100, 100},
                               {K::Report, "xyz", 110, 110, 120},
                               {K::Command, "cd", 150, 251, 251},
                               {K::Report, "xyz", 260, 260, 270}}
        << QList<qint64>{100, 101} << QList<qint64>{30};
    QTest::newRow("silence, a single byte and a dropped frame")
        << QList<TrafficEvent>{{K::Command, "ab", 0, 100, 100},
                               {K::Command, "q", 500, 500, 500},
                               {K::Report, "xy", 510, 510, 520},
                               {K::Dropped, "c", 600, 0, 600},
                               {K::Command, "cd", 1700, 1800, 1800}}
        << QList<qint64>{100, 100} << QList<qint64>{1180};
    QTest::newRow("nothing") << QList<TrafficEvent>{} << QList<qint64>{} << QList<qint64>{};
}

void TestReplyScheduler::measurements()
{
    QFETCH(QList<TrafficEvent>, events);
    QTEST(gripsim::pausesAfterCodeNs(events), "pauses");
    QTEST(gripsim::turnaroundsNs(events), "turnarounds");
}

QTEST_GUILESS_MAIN(TestReplyScheduler)
#include "tst_replyscheduler.moc"
