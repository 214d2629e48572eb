// The desktop program in a terminal without a display: help and version print and exit, anything
// else says in one line that a display is needed and points to marlo-cli, and nothing aborts.
#include <QDir>
#include <QProcess>
#include <QtTest>

class tst_desktopCommandLine : public QObject {
    Q_OBJECT
private slots:
    void withoutDisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out"); // how stdout begins
        QTest::addColumn<QString>("err");
        QTest::newRow("--help") << QStringList{"--help"} << 0 << "Usage: marlo [-F FILE]\n" << "";
        QTest::newRow("-h after a firmware file") << QStringList{"-F", "x.tvf", "-h"} << 0 << "Usage: marlo [-F FILE]\n" << "";
        QTest::newRow("--version") << QStringList{"--version"} << 0 << "marlo " MARLO_VERSION "\n" << "";
        const QString needed = QStringLiteral("marlo needs a graphical display; without one, use marlo-cli (marlo-cli --help).\n");
        QTest::newRow("no arguments") << QStringList{} << 1 << "" << needed;
        QTest::newRow("a firmware file") << QStringList{"-F", "x.tvf"} << 1 << "" << needed;
    }
    void withoutDisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        QProcess marlo;
        marlo.setProcessEnvironment(environment);
        marlo.start(QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("marlo")), arguments);
        QVERIFY(marlo.waitForFinished(20000));
        QCOMPARE(marlo.exitStatus(), QProcess::NormalExit);
        QCOMPARE(marlo.exitCode(), status);
        QCOMPARE(QString::fromLocal8Bit(marlo.readAllStandardOutput()).left(out.size()), out);
        QCOMPARE(QString::fromLocal8Bit(marlo.readAllStandardError()), err);
    }
};

QTEST_GUILESS_MAIN(tst_desktopCommandLine)
#include "tst_desktopCommandLine.moc"
