// marlo-cli's record commands. What marlo-cli prints, byte for byte, against the virtual grip:
// the usage, get and put of every record as text and JSON, put's options and their refusals,
// info, and the exit status. The cases are listed in outputs/cases; outputs/NAME holds what the
// case printed when its output was last settled (outputs/capture.sh writes them). Then put and
// the exit statuses against a virtual grip behind the fake port: what is sent, and what is read
// back. (The order of a command's exchanges is pinned by the grip's own tests.)
#include "CliRunner.h"
#include "GripTestSupport.h"
#include "TestFiles.h"

#include "cli/CliContext.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

using namespace griptest;

namespace {

const QString kOutputs = QStringLiteral(MARLO_CLI_OUTPUTS);

QJsonObject json(const CliRun& run)
{
    return QJsonDocument::fromJson(run.out.toUtf8()).object();
}

// The command run in this process, with the session given.
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

    void outputs_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");
        const QList<QByteArray> lines = fileBytes(kOutputs + QStringLiteral("/cases")).split('\n');
        int cases = 0;
        for (const QByteArray& line : lines) {
            if (line.trimmed().isEmpty() || line.startsWith('#'))
                continue;
            const qsizetype colon = line.indexOf(':');
            QVERIFY2(colon > 0, line.constData());
            const QByteArray name = line.left(colon);
            const QString expected = QString::fromUtf8(fileBytes(kOutputs + QLatin1Char('/') + QString::fromUtf8(name)));
            QVERIFY2(expected.startsWith(QLatin1String("status: ")), name.constData());
            QTest::newRow(name.constData()) << QString::fromUtf8(line.mid(colon + 1)).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                            << expected;
            ++cases;
        }
        QVERIFY(cases > 0);
    }

    void outputs()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        // A program folder with the template, and preferences, of the case's own.
        QTemporaryDir dir;
        const QString home = dir.filePath(QStringLiteral("prog"));
        QVERIFY(QDir().mkpath(home));
        QVERIFY(QFile::copy(QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("instdbxx.tmp")),
                            QDir(home).filePath(QStringLiteral("instdbxx.tmp"))));
        CliRun run = RunCli(QDir(dir.path()), home, arguments);
        // The usage names the program by the path it was started with.
        const QString program = QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("marlo-cli"));
        const QString printed = QStringLiteral("status: %1\n--- stdout\n").arg(run.status) +
                                run.out.replace(program, QStringLiteral("marlo-cli")) + QStringLiteral("--- stderr\n") +
                                run.err.replace(program, QStringLiteral("marlo-cli"));
        QCOMPARE(printed.split(QLatin1Char('\n')), expected.split(QLatin1Char('\n'))); // names the first line that differs
    }

    void put_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QJsonValue>("kept");
        QTest::newRow("options switch") << "options" << QStringList{"--LedOn", "1"} << "LedOn" << QJsonValue(true);
        QTest::newRow("ramping") << "ramping" << QStringList{"--HyperMode", "16"} << "HyperMode" << QJsonValue(16);
    }

    void put()
    {
        QFETCH(QString, record);
        QFETCH(QStringList, options);
        QFETCH(QString, field);
        QFETCH(QJsonValue, kept);
        GripHarness h;
        // Values unlike any default, so a field taken from anywhere but the grip shows. (A new
        // timing or game timer record differs from the grip's own values, so the transcripts
        // put-timing and put-gametimer-json already show theirs; a new options or ramping record
        // holds the grip's defaults.)
        h.grip.updateState([](gripsim::GripState& s) {
            s.options = {0x51, 150, 160, 70};
            s.ramping = {9, 99, 2};
        });
        QJsonObject expected = json(runCli(h.session, QStringLiteral("get"), {record}));
        expected.insert(field, kept);
        const int get = h.codes().last();
        const CliRun run = runCli(h.session, QStringLiteral("put"), QStringList{record} + options);
        QCOMPARE(run.status, 0);
        QCOMPARE(json(run), expected); // read back from the grip after the put
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
