// The pause after a command's code byte lets events run (the window repaints during long
// transfers) without being shorter than asked, and the busy flag still refuses an exchange that
// an event tries to start during it. Real time, but only a few pauses long.
#include "GripTestSupport.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cLink.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

class tst_eventWait : public QObject {
    Q_OBJECT
private slots:
    void pauseRunsEventsAndIsNeverShort_data()
    {
        QTest::addColumn<int>("ms");
        QTest::newRow("the pause after a code byte") << 100;
        QTest::newRow("shorter than the quiet end") << 3;
        QTest::newRow("none") << 0;
    }
    void pauseRunsEventsAndIsNeverShort()
    {
        QFETCH(int, ms);
        TestLink link(true);
        int ticks = 0;
        QTimer timer;
        timer.setInterval(10);
        connect(&timer, &QTimer::timeout, [&] { ++ticks; });
        timer.start();
        QElapsedTimer clock;
        clock.start();
        link.link.WaitWithEvents(ms);
        const qint64 elapsedNs = clock.nsecsElapsed();
        QVERIFY2(elapsedNs >= qint64(ms) * 1000000, qPrintable(QString::number(elapsedNs)));
        if (ms >= 100)
            QVERIFY2(ticks >= 3, qPrintable(QString::number(ticks))); // a 10 ms timer kept ticking
    }

    void secondExchangeDuringThePauseIsRefused()
    {
        griptest::GripHarness grip;
        TestLink& link = grip.link;
        link.link.SetSleepFunction(nullptr); // the real pause
        int refused = 0;
        qsizetype writesAtRefusal = -1;
        QElapsedTimer clock;
        qint64 pauseNs = 0;
        // An event during the pause after the code byte tries to start another exchange.
        QTimer::singleShot(30, [&] {
            writesAtRefusal = link.port.writes.size();
            try {
                link.link.CommHexData(QByteArray("\x15"), true);
            } catch (const MarloError& e) {
                refused += e.Number() == mErrCodes::ERR_COMM_BUSY;
            }
        });
        clock.start();
        const QByteArray report = link.link.CommHexData(QByteArray("\x13"), true);
        pauseNs = clock.nsecsElapsed();
        QVERIFY(report.startsWith('\x43')); // the first exchange went on
        QCOMPARE(refused, 1);
        QCOMPARE(writesAtRefusal, 1); // only the code byte had gone out
        QCOMPARE(link.port.writes.size(), 2); // the refused exchange wrote nothing
        QCOMPARE(link.port.frames.size(), 1);
        QVERIFY(pauseNs >= 100 * 1000000LL);
    }
};

QTEST_GUILESS_MAIN(tst_eventWait)
#include "tst_eventWait.moc"
