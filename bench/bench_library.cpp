// The settings library with 1,000 templates of 7 user variables each: import and save, load, and
// list; and, in the same run, the same 8,000 single-statement inserts sent straight to SQLite
// (WAL, synchronous=NORMAL, no transaction) to show what the record classes cost on top.
// Each figure is the best of three rounds.
#include "library/mDatabase.h"
#include "library/mGUIDTools.h"
#include "library/mLibraryExchange.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kTemplates = 1000;
constexpr int kUserVars = 7;
constexpr int kRounds = 3;

QString templatePath()
{
    const QString dir = qEnvironmentVariable("MARLO_TEMPLATE_DIR", QCoreApplication::applicationDirPath());
    return QDir(dir).filePath(QStringLiteral("instdbxx.tmp"));
}

QByteArray document()
{
    QJsonArray templates;
    for (int n = 0; n < kTemplates; ++n) {
        QJsonArray vars;
        for (int v = 0; v < kUserVars; ++v)
            vars.append(QJsonObject{{"sName", QStringLiteral("Variable %1").arg(v)},
                                    {"sValue", QStringLiteral("value \"%1\" of %2").arg(v).arg(n)}});
        templates.append(QJsonObject{{"sName", QStringLiteral("Template %1").arg(n)},
                                     {"lShotTime", n % 20 + 1}, {"lDwellTime", 10}, {"lCycleTimeOpen", 30},
                                     {"lLoadTime", 35}, {"lCycleTimeClose", 28}, {"lFiringMode", n % 4},
                                     {"dtDate", QDate(2001, 8, 1).addDays(n).toString(Qt::ISODate)},
                                     {"bExpertMode", n % 2 == 0}, {"UserVariables", vars}});
    }
    return QJsonDocument(QJsonObject{{"templates", templates}}).toJson();
}

struct Round {
    double importAndSave = 0;
    double save = 0;
    double load = 0;
    double list = 0;
    double direct = 0;
};

bool freshCopy(const QString& path)
{
    QFile::remove(path);
    return QFile::copy(templatePath(), path);
}

Round oneRound(const QByteArray& json, const QString& folder, int round)
{
    cRegistrySettings prefs;
    auto application = std::make_unique<cApplication>(prefs);
    Round r;
    QElapsedTimer clock;

    // Through the library: import into an empty library, then the one library save.
    const QString library = QDir(folder).filePath(QStringLiteral("library-%1.mdb").arg(round));
    freshCopy(library);
    mDatabase::SetPathOverride(library);
    cColSetsTemplate& collection = application->colSetsTemplate();
    clock.start();
    mLibraryExchange::ImportDocument(collection, json);
    const qint64 imported = clock.nsecsElapsed();
    {
        QSqlDatabase connection;
        collection.SaveOrThrow(connection);
    }
    r.importAndSave = clock.nsecsElapsed() / 1e9;
    r.save = (clock.nsecsElapsed() - imported) / 1e9;
    mDatabase::DisconnectDB();
    application = std::make_unique<cApplication>(prefs);

    // Load: opening the library and reading every template with its variables.
    clock.start();
    cColSetsTemplate& loaded = application->colSetsTemplate();
    r.load = clock.nsecsElapsed() / 1e9;
    if (loaded.Count() != kTemplates)
        std::fprintf(stderr, "loaded %d templates instead of %d\n", loaded.Count(), kTemplates);

    // List: what "library list" prints, for every template.
    clock.start();
    QString listing;
    for (const auto& t : loaded)
        listing += t->ID() + t->sName() + t->dtDate().toString(QStringLiteral("dd-MMM-yyyy")) + t->sROF()
                   + QString::number(t->lShotTime()) + QLatin1Char('\n');
    const QByteArray listed = QJsonDocument(mLibraryExchange::TemplatesToJson(loaded)).toJson(QJsonDocument::Compact);
    r.list = clock.nsecsElapsed() / 1e9;
    if (listing.isEmpty() || listed.isEmpty())
        std::fprintf(stderr, "nothing listed\n");
    mDatabase::DisconnectDB();
    application.reset();
    mDatabase::SetPathOverride(QString());

    // The same inserts straight to SQLite.
    const QString direct = QDir(folder).filePath(QStringLiteral("direct-%1.mdb").arg(round));
    freshCopy(direct);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("direct"));
        db.setDatabaseName(direct);
        db.open();
        QSqlQuery query(db);
        query.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        query.exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
        QStringList statements;
        for (int n = 0; n < kTemplates; ++n) {
            const QString id = GetNewGUIDStr();
            statements.append(QStringLiteral("INSERT INTO ta_SetsTemplate (ID, ParentID, Version, lShotTime, lDwellTime, "
                                             "lCycleTimeOpen, lLoadTime, lCycleTimeClose, lGameTime, lFiringMode, sName, "
                                             "dtDate, bCTCLikeCTO, bExpertMode, bAlertOne, bAlertTwo, lAlertOne, lAlertTwo) "
                                             "VALUES ('%1', '', '%2', %3, 10, 30, 35, 28, 10, %4, 'Template %5', '%6', 0, %7, 0, 0, 1, 1);")
                                  .arg(id, GetNewGUIDStr())
                                  .arg(n % 20 + 1)
                                  .arg(n % 4)
                                  .arg(n)
                                  .arg(QDate(2001, 8, 1).addDays(n).toString(Qt::ISODate))
                                  .arg(n % 2 == 0 ? 1 : 0));
            for (int v = 0; v < kUserVars; ++v)
                statements.append(QStringLiteral("INSERT INTO ta_UserVar (ID, ParentID, Version, sName, sValue) "
                                                 "VALUES ('%1', '%2', '%3', 'Variable %4', 'value \"%4\" of %5');")
                                      .arg(GetNewGUIDStr(), id, GetNewGUIDStr())
                                      .arg(v)
                                      .arg(n));
        }
        clock.start();
        for (const QString& statement : statements) {
            if (!query.exec(statement))
                std::fprintf(stderr, "direct insert failed: %s\n", qPrintable(query.lastError().text()));
        }
        r.direct = clock.nsecsElapsed() / 1e9;
        query = QSqlQuery();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("direct"));
    return r;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (!QFile::exists(templatePath())) {
        std::fprintf(stderr, "the library template is missing: %s\n", qPrintable(templatePath()));
        return 2;
    }
    QTemporaryDir folder;
    const QByteArray json = document();
    Round best{1e9, 1e9, 1e9, 1e9, 1e9};
    for (int round = 0; round < kRounds; ++round) {
        const Round r = oneRound(json, folder.path(), round);
        best.importAndSave = std::min(best.importAndSave, r.importAndSave);
        best.save = std::min(best.save, r.save);
        best.load = std::min(best.load, r.load);
        best.list = std::min(best.list, r.list);
        best.direct = std::min(best.direct, r.direct);
    }
    const double ratio = best.save / best.direct;
    const bool ok = best.importAndSave <= 1.5 && best.load <= 0.2 && ratio <= 3.0;
    std::printf("library, %d templates x %d user variables (best of %d): import and save %.3f s (save alone %.3f s; "
                "floor 1.5 s), load %.3f s (floor 0.2 s), list %.3f s; the same inserts straight to SQLite %.3f s, "
                "save / direct %.2f (floor 3.0) %s\n",
                kTemplates, kUserVars, kRounds, best.importAndSave, best.save, best.load, best.list, best.direct, ratio,
                ok ? "OK" : "MISSED");
    return ok ? 0 : 1;
}
