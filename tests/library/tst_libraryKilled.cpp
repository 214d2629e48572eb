// Killed (SIGKILL) while writing the library, the file still opens as a library, undamaged:
// - a library save in a child process of 1,000 settings, killed in the middle: every setting
//   written before the kill is intact, with its user variables;
// - marlo-cli's library import, killed at random moments spread over the whole run of an import
//   timed first: the library is left as it was or holds the whole import, never a part of it,
//   and never a template with some of its user variables.
#include "LibraryTestSupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
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

constexpr int kTemplates = 3000;
constexpr int kVariables = 2;

struct Counts {
    qint64 templates = -1;
    qint64 variables = -1;
    qint64 incomplete = -1;  // templates whose variables are not all there
    QString integrity;
};

Counts counts(const QString& path)
{
    Counts c;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("look"));
        db.setDatabaseName(path);
        const auto value = [&](const QString& sql) {
            QSqlQuery query(db);
            return query.exec(sql) && query.next() ? query.value(0) : QVariant();
        };
        if (db.open()) {
            c.templates = value(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate")).toLongLong();
            c.variables = value(QStringLiteral("SELECT COUNT(*) FROM ta_UserVar")).toLongLong();
            c.incomplete = value(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate t WHERE t.sName LIKE 'imported %' AND "
                                                "(SELECT COUNT(*) FROM ta_UserVar v WHERE v.ParentID = t.ID) <> %1").arg(kVariables)).toLongLong();
            c.integrity = value(QStringLiteral("PRAGMA integrity_check")).toString();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("look"));
    return c;
}

} // namespace

class tst_libraryKilled : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));
    QString m_library = QDir(m_home).filePath(QStringLiteral("Marlo.mdb"));

    QProcess* start(QProcess& process, const QString& document)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("MARLO_HOME"), m_home);
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir.filePath(QStringLiteral("config")));
        process.setProcessEnvironment(environment);
        process.start(QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("marlo-cli")),
                      {QStringLiteral("library"), QStringLiteral("import"), m_dir.filePath(document)});
        return &process;
    }
    // A library holding one template with one variable (imported once, then copied).
    void seed()
    {
        const QString seeded = m_dir.filePath(QStringLiteral("seeded.mdb"));
        QDir(m_home).removeRecursively();
        QVERIFY(QDir().mkpath(m_home));
        QVERIFY(QFile::copy(LibraryTest::builtTemplate(), QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
        if (!QFile::exists(seeded)) {
            QProcess process;
            start(process, QStringLiteral("seed.json"));
            QVERIFY(process.waitForFinished(60000) && process.exitCode() == 0);
            QVERIFY(QFile::copy(m_library, seeded));
        }
        QFile::remove(m_library);
        QVERIFY(QFile::copy(seeded, m_library));
    }

private slots:
    void saveKilledHalfway()
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

    void importKilledAtRandomMoments()
    {
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("seed.json")),
                               R"([{"sName": "seed", "UserVariables": [{"sName": "s", "sValue": "t"}]}])");
        QJsonArray templates;
        for (int n = 0; n < kTemplates; ++n) {
            QJsonArray vars;
            for (int v = 0; v < kVariables; ++v)
                vars.append(QJsonObject{{"sName", QStringLiteral("var %1").arg(v)}, {"sValue", QStringLiteral("%1/%2 \"q\"").arg(n).arg(v)}});
            templates.append(QJsonObject{{"sName", QStringLiteral("imported %1").arg(n)}, {"lShotTime", n % 256}, {"UserVariables", vars}});
        }
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("import.json")), QJsonDocument(QJsonObject{{"templates", templates}}).toJson());

        // One whole import, timed.
        seed();
        QElapsedTimer timer;
        timer.start();
        QProcess whole;
        start(whole, QStringLiteral("import.json"));
        QVERIFY(whole.waitForFinished(120000) && whole.exitCode() == 0);
        const qint64 duration = qMax<qint64>(timer.elapsed(), 50);
        const Counts all = counts(m_library);
        QCOMPARE((QList<qint64>{all.templates, all.variables, all.incomplete}), (QList<qint64>{1 + kTemplates, 1 + kTemplates * kVariables, 0}));

        // Killed at moments spread over that run, and twice while the transaction's pages are
        // being written (once its journal has grown past a random size).
        QRandomGenerator random(QRandomGenerator::global()->generate());
        int nothing = 0, everything = 0;
        for (int attempt = 0; attempt < 6; ++attempt) {
            seed();
            QProcess process;
            start(process, QStringLiteral("import.json"));
            QVERIFY(process.waitForStarted());
            qint64 moment = duration * (attempt * 3 + 1 + random.bounded(3)) / 12;
            if (attempt < 4) {
                QThread::msleep(static_cast<unsigned long>(moment));
            } else {
                const qint64 walSize = 64 * 1024 + random.bounded(512 * 1024);
                QElapsedTimer waited;
                waited.start();
                while (QFileInfo(m_library + QStringLiteral("-wal")).size() < walSize && process.state() == QProcess::Running &&
                       waited.elapsed() < 4 * duration)
                    QThread::usleep(100);
                moment = waited.elapsed();
            }
            process.kill();
            QVERIFY(process.waitForFinished(10000));
            const Counts c = counts(m_library);
            const QString what = QStringLiteral("killed after %1 of %2 ms: %3 templates, %4 variables, %5 incomplete, %6")
                                     .arg(moment).arg(duration).arg(c.templates).arg(c.variables).arg(c.incomplete).arg(c.integrity);
            QVERIFY2(c.integrity == QLatin1String("ok") && c.incomplete == 0, qPrintable(what));
            if (c.templates == 1 && c.variables == 1)
                ++nothing;
            else if (c.templates == 1 + kTemplates && c.variables == 1 + kTemplates * kVariables)
                ++everything;
            else
                QFAIL(qPrintable(QStringLiteral("a part of the import: ") + what));
            QCOMPARE(mDatabase::LibraryFileProblem(m_library), QString());
        }
        qInfo("an import of %d templates took %lld ms; 6 kills: %d left the library as it was, %d after the whole import",
              kTemplates, duration, nothing, everything);
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--save-child")
        return saveChild(QString::fromLocal8Bit(argv[2]));
    tst_libraryKilled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_libraryKilled.moc"
