// marlo-gripsim, the stand-alone virtual grip, run as a user runs it.

#include "SimTestSupport.h"

#include <QProcess>
#include <QtTest>

#include <csignal>

class TestGripSimExe : public QObject {
    Q_OBJECT

private slots:
    void run_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("command"); // empty: the options are refused
        QTest::addColumn<QString>("report");
        QTest::addColumn<QString>("mentions"); // on stderr

        QTest::newRow("bad second word") << QStringList{"pace=1", "baud=x"} << "" << "" << "baud='x'";
        QTest::newRow("defaults") << QStringList{} << "11EF" << "4100BF" << "firmware 4.0.0";
        QTest::newRow("sim: prefix, words") << QStringList{"sim:bootmode=1", "fault=nak@11"} << "11EF" << "5001AF"
                                            << "virtual grip on /dev/";
    }
    void run()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, command);
        QFETCH(QString, report);
        QFETCH(QString, mentions);

        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/marlo-gripsim"), arguments);
        QVERIFY(process.waitForStarted(5000));
        if (command.isEmpty()) {
            QVERIFY(process.waitForFinished(5000));
            QCOMPARE(process.exitCode(), 2);
        } else {
            while (!process.canReadLine() && process.waitForReadyRead(5000)) {
            }
            const QString device = QString::fromLocal8Bit(process.readLine()).trimmed();
            QVERIFY2(device.startsWith(QLatin1String("/dev/")), qPrintable(device));
            const QByteArray answer = simtest::exchange(device, simtest::bytes(command), 0, int(report.size() / 2));
            QCOMPARE(answer.toHex().toUpper(), report.toLatin1());
            QCOMPARE(::kill(pid_t(process.processId()), SIGTERM), 0);
            QVERIFY(process.waitForFinished(5000));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
        }
        QVERIFY(process.readAllStandardOutput().isEmpty());
        const QString error = QString::fromLocal8Bit(process.readAllStandardError());
        QVERIFY2(error.contains(mentions), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestGripSimExe)
#include "tst_gripsimexe.moc"
