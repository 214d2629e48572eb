// What marlo-cli prints, byte for byte, against the virtual grip: the usage, get and put of
// every record as text and JSON, put's options and their refusals, info, and the exit status.
// The cases are listed in outputs/cases; outputs/NAME holds what the case printed when its
// output was last settled (outputs/capture.sh writes them).
#include "CliRunner.h"
#include "TestFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

const QString kOutputs = QStringLiteral(MARLO_CLI_OUTPUTS);

class tst_cliOutputs : public QObject {
    Q_OBJECT

private slots:
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
};

QTEST_GUILESS_MAIN(tst_cliOutputs)
#include "tst_cliOutputs.moc"
