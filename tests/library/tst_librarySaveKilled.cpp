// A library save killed halfway: a child process saves 1,000 settings and is killed (SIGKILL)
// in the middle. The file still opens as a library and every setting written before the kill
// is intact, with its user variables.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <QtTest>
#include <cstdio>

namespace {

constexpr int kRecords = 1000;

QString nameOf(int n) { return QStringLiteral("Record %1").arg(n, 4, 10, QLatin1Char('0')); }
QString valueOf(int n, int v) { return QStringLiteral("value %1/%2 \"quoted\"").arg(n).arg(v); }

// The child: one library save of kRecords new settings, each with its seven variables filled.
int saveChild(const QString& path)
{
    mDatabase::SetPathOverride(path);
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    if (!mMain::ConnectDB().isOpen())
        return 2;
    for (int n = 0; n < kRecords; ++n) {
        auto r = library.Add();
        r->setsName(nameOf(n));
        r->setlShotTime(n % 20 + 1);
        r->setlLoadTime(n);
        r->setlGameTime(n * 3);
        r->setbExpertMode(n % 2 == 1);
        r->setdtDate(QDateTime(QDate(2001, 8, 1).addDays(n), QTime(12, 0)));
        int v = 0;
        for (const auto& variable : r->colUserVar())
            variable->setsValue(valueOf(n, v++));
    }
    std::puts("ready");
    std::fflush(stdout);
    QSqlDatabase connection;
    library.Save(connection);
    std::puts("done");
    std::fflush(stdout);
    return 0;
}

} // namespace

class tst_librarySaveKilled : public QObject {
    Q_OBJECT

private slots:
    void killedHalfway();
};

void tst_librarySaveKilled::killedHalfway()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
    LibraryTest::Fixture f;
    QVERIFY(f.ok);

    QProcess child;
    child.setProgram(QCoreApplication::applicationFilePath());
    child.setArguments({QStringLiteral("--save-child"), f.path});
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start();
    QVERIFY(child.waitForStarted());
    QElapsedTimer clock;
    clock.start();
    while (!child.canReadLine() && clock.elapsed() < 60000)
        child.waitForReadyRead(100);
    QCOMPARE(child.readLine().trimmed(), QByteArray("ready"));

    // Kill it once a good part, but not all, of the library is written.
    qint64 seen = 0;
    while (clock.elapsed() < 120000 && child.state() == QProcess::Running) {
        seen = f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate"));
        if (seen >= 200)
            break;
        QThread::msleep(1);
    }
    child.kill();
    QVERIFY(child.waitForFinished(10000));
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    QVERIFY2(seen >= 200 && seen < kRecords, qPrintable(QStringLiteral("settings written before the kill: %1").arg(seen)));
    f.closeInspector();

    // The file is still a library, undamaged.
    QCOMPARE(mDatabase::LibraryFileProblem(f.path), QString());
    QCOMPARE(f.row(QStringLiteral("PRAGMA integrity_check")).value(0).toString(), QStringLiteral("ok"));
    f.closeInspector();

    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QVERIFY2(f.ui.errors.isEmpty(), qPrintable(LibraryTest::firstError(f.ui)));
    QVERIFY(library.Count() >= seen);
    QVERIFY(library.Count() < kRecords);
    // Saved in collection order: exactly the first settings are there, each complete. The last
    // one may have been killed between its variables.
    const qint32 count = library.Count();
    for (int n = 0; n < count; ++n) {
        auto r = library.Item(n + 1);
        QVERIFY(r);
        QCOMPARE(r->sName(), nameOf(n));
        QCOMPARE(r->lShotTime(), n % 20 + 1);
        QCOMPARE(r->lLoadTime(), n);
        QCOMPARE(r->lGameTime(), n * 3);
        QCOMPARE(r->bExpertMode(), n % 2 == 1);
        QCOMPARE(r->dtDate().date(), QDate(2001, 8, 1).addDays(n));
        const qint32 vars = r->colUserVar().Count();
        if (n < count - 1)
            QCOMPARE(vars, 7);
        else
            QVERIFY(vars <= 7);
        for (int v = 0; v < vars; ++v)
            QCOMPARE(r->colUserVar().Item(v + 1)->sValue(), valueOf(n, v));
    }
    // Nothing of the records after the kill.
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE sValue LIKE ?"),
                     {QStringLiteral("value %1/%").arg(count)}), 0);

    // And it takes the rest of the work: a new save adds to it.
    library.Add()->setsName(QStringLiteral("after the crash"));
    QSqlDatabase connection;
    library.Save(connection);
    QVERIFY(f.ui.errors.isEmpty());
    QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")), count + 1);
}

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--save-child")
        return saveChild(QString::fromLocal8Bit(argv[2]));
    tst_librarySaveKilled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_librarySaveKilled.moc"
