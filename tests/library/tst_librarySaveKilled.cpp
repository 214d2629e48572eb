// A library save killed halfway: a child process saves 1,000 settings and is killed (SIGKILL)
// in the middle. The file still opens as a library and every setting written before the kill
// is intact, with its user variables.
#include "LibraryTestSupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>
#include <QtTest>
#include <cstdio>

namespace {

constexpr int kRecords = 1000;

QString valueOf(int n, int v) { return QStringLiteral("value %1/%2 \"quoted\"").arg(n).arg(v); }

// The child: one library save of kRecords new settings, each with its seven variables filled.
int saveChild(const QString& path)
{
    mDatabase::SetPathOverride(path);
    cRegistrySettings prefs;
    cApplication app(prefs);
    cColSetsTemplate& library = app.colSetsTemplate();
    for (int n = 0; n < kRecords; ++n) {
        auto r = library.Add();
        LibraryTest::fill(*r, {n % 20 + 1, 10, 30, n, 28, n * 3, 0, 1, 1}, QString::number(n),
                          QDateTime(QDate(2001, 8, 1).addDays(n), QTime(12, 0)), {false, n % 2 == 1, false, false});
        for (int v = 1; v <= 7; ++v)
            r->colUserVar().Item(v)->setsValue(valueOf(n, v));
    }
    std::puts("ready");
    std::fflush(stdout);
    QSqlDatabase connection;
    library.Save(connection);
    return 0;
}

} // namespace

class tst_librarySaveKilled : public QObject {
    Q_OBJECT

private slots:
    void killedHalfway()
    {
        LIBRARY_FIXTURE(f);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--save-child"), f.path});
        QVERIFY(child.waitForReadyRead(60000) && child.readLine().trimmed() == "ready");
        // Kill it once a good part, but not all, of the library is written.
        qint64 seen = 0;
        for (QDeadlineTimer limit(120000); seen < 200 && child.state() == QProcess::Running && !limit.hasExpired(); QThread::msleep(1))
            seen = f.count(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate"));
        child.kill();
        QVERIFY(child.waitForFinished(10000) && child.exitStatus() == QProcess::CrashExit);
        QVERIFY2(seen >= 200 && seen < kRecords, qPrintable(QStringLiteral("settings written before the kill: %1").arg(seen)));

        // The file is still a library, undamaged.
        QCOMPARE(f.row(QStringLiteral("PRAGMA integrity_check")).value(0).toString(), QStringLiteral("ok"));
        f.restart();
        QCOMPARE(mDatabase::LibraryFileProblem(f.path), QString());
        const qint32 count = f.library().Count();
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QVERIFY(count >= seen && count < kRecords);
        // Saved in collection order: exactly the first settings are there, each complete. The last
        // one may have been killed between its variables.
        for (int n = 0; n < count; ++n) {
            const auto r = f.library().Item(n + 1);
            QCOMPARE((QStringList{r->sName(), r->dtDate().date().toString(Qt::ISODate)}),
                     (QStringList{QString::number(n), QDate(2001, 8, 1).addDays(n).toString(Qt::ISODate)}));
            QCOMPARE((QList<qint32>{r->lShotTime(), r->lLoadTime(), r->lGameTime(), r->bExpertMode()}), (QList<qint32>{n % 20 + 1, n, n * 3, n % 2}));
            const qint32 vars = r->colUserVar().Count();
            QVERIFY(vars == 7 || (n == count - 1 && vars < 7));
            for (int v = 1; v <= vars; ++v)
                QCOMPARE(r->colUserVar().Item(v)->sValue(), valueOf(n, v));
        }
        // Nothing of the settings after the kill.
        QCOMPARE(f.count(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar WHERE sValue LIKE 'value %1/%'").arg(count)), 0);
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--save-child")
        return saveChild(QString::fromLocal8Bit(argv[2]));
    tst_librarySaveKilled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_librarySaveKilled.moc"
