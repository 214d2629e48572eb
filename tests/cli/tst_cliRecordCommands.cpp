// marlo-cli's put and its exit statuses, against a virtual grip behind the fake port: what is
// sent, and what is read back. What the commands print is pinned by the transcripts of
// tst_cliOutputs, and the order of a command's exchanges by the grip's own tests.
#include "GripTestSupport.h"

#include "cli/CliContext.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace griptest;

namespace {

struct CliRun {
    int status = -1;
    QString out;
    QString err;
    QJsonObject json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
};

CliRun runCli(cGripSession& session, const QString& command, const QStringList& words)
{
    CliRun run;
    QTextStream out(&run.out);
    QTextStream err(&run.err);
    CliContext ctx{words, true, QString(), &out, &err, &session};
    run.status = RunRecordCommand(ctx, command);
    out.flush();
    err.flush();
    return run;
}

} // namespace

class TstCliRecordCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { clearPreferences(); }

    void put_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QJsonValue>("kept");
        QTest::newRow("timing") << "timing" << QStringList{"--ShotTime", "12"} << "ShotTime" << QJsonValue(12);
        QTest::newRow("options switch") << "options" << QStringList{"--LedOn", "1"} << "LedOn" << QJsonValue(true);
        QTest::newRow("ramping") << "ramping" << QStringList{"--HyperMode", "16"} << "HyperMode" << QJsonValue(16);
        QTest::newRow("game timer word") << "gametimer" << QStringList{"--PreAlert1Time", "300"} << "PreAlert1Time" << QJsonValue(300);
    }

    void put()
    {
        QFETCH(QString, record);
        QFETCH(QStringList, options);
        QFETCH(QString, field);
        QFETCH(QJsonValue, kept);
        GripHarness h;
        // Values unlike any default, so a field taken from anywhere but the grip shows.
        h.grip.updateState([](gripsim::GripState& s) {
            s.timing = {11, 12, 33, 44, 55, 4};
            s.options = {0x51, 150, 160, 70};
            s.ramping = {9, 99, 2};
            s.gameTimer = {25, 1, 500, 1, 700};
        });
        QJsonObject expected = runCli(h.session, QStringLiteral("get"), {record}).json();
        expected.insert(field, kept);
        const int get = h.codes().last();
        const CliRun run = runCli(h.session, QStringLiteral("put"), QStringList{record} + options);
        QCOMPARE(run.status, 0);
        QCOMPARE(run.json(), expected); // read back from the grip after the put
        QCOMPARE(run.err, QString());
        // Downloaded first, uploaded, read back.
        QCOMPARE(h.codes().mid(4), (QList<int>{0x13, 0x11, 0x13, get, 0x13, get + 0x10, 0x13, get}));
    }

    void exitStatus_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("refused"); // the command the grip refuses
        QTest::addColumn<int>("status");  // 2: a usage error, before anything reaches the grip
        QTest::addColumn<QString>("message");
        QTest::newRow("byte") << "put" << QStringList{"timing", "--ShotTime", "1", "--LoadTime", "256"} << 0 << 2
                              << "--LoadTime 256 does not fit the grip's byte (0..255)";
        QTest::newRow("refused: get all") << "get" << QStringList{"all"} << 0x17 << 3 << "refused";
        QTest::newRow("refused: put, get") << "put" << QStringList{"timing", "--ShotTime", "5"} << 0x14 << 3 << "refused";
        QTest::newRow("refused: reset") << "reset-counter" << QStringList{"1"} << 0x25 << 3 << "refused";
    }

    void exitStatus()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, words);
        QFETCH(int, refused);
        QFETCH(int, status);
        QFETCH(QString, message);
        GripHarness h;
        h.replies[refused] = refusal(refused);
        try {
            const CliRun run = runCli(h.session, command, words);
            QCOMPARE(run.status, status);
            QVERIFY2(run.err.contains(message), qPrintable(run.err));
        } catch (const CliUsageError& e) {
            QCOMPARE(status, 2);
            QVERIFY2(e.message().contains(message), qPrintable(e.message()));
            QVERIFY(h.link.port.frames.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TstCliRecordCommands)
#include "tst_cliRecordCommands.moc"
