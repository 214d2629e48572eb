// marlo-cli's library import killed (SIGKILL) at random moments: the library is left as it was
// or holds the whole import, never a part of it, and never a template with some of its user
// variables. The moments are spread over the whole run of an import timed first.
#include "LibraryTestSupport.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>
#include <QtTest>

namespace {

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

class tst_libraryImportKilled : public QObject {
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
    void killedAtRandomMoments()
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

QTEST_GUILESS_MAIN(tst_libraryImportKilled)
#include "tst_libraryImportKilled.moc"
