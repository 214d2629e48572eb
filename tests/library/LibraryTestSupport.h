#pragma once
// Shared by the library's tests: a fresh library file made from the built template, the program's
// objects with a scripted user, a second connection that looks at the file past the record classes, and record helpers.
#include "TestFiles.h"
#include "TestLink.h"
#include "library/mDatabase.h"
#include "shell/cApplication.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

namespace LibraryTest {

// The template the build made (CTest gives its folder).
inline QString builtTemplate() { return QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("instdbxx.tmp")); }

using ::fileBytes;
using ::writeFile;

// The row a library made elsewhere might hold: shot time 11, firing mode 3, dated 2003-04-05.
inline QString templateRow(const QString& id, const QString& parent = QString())
{
    return QStringLiteral("INSERT INTO ta_SetsTemplate VALUES ('%1', '%2', 'v', 11, 12, 13, 14, 15, 16, 3, 'row', "
                          "'2003-04-05', 1, 0, 1, 0, 17, 18)").arg(id, parent);
}

// Runs statements on the file through a connection of its own; false from the first that fails.
inline bool runSql(const QString& path, const QStringList& statements)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("make"));
        db.setDatabaseName(path);
        ok = db.open();
        for (const QString& one : statements)
            ok = ok && QSqlQuery(db).exec(one);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("make"));
    return ok;
}

// Every stored field: the whole numbers in the insert's order (shot, dwell, open, load, close,
// game time, firing mode, alert one, alert two), then CTC like CTO, expert mode and the alerts.
inline void fill(cSetsTemplate& r, const QList<qint32>& l, const QString& name, const QDateTime& date, const QList<bool>& b)
{
    using R = cSetsTemplate;
    const QList<void (R::*)(qint32)> longs = {&R::setlShotTime, &R::setlDwellTime, &R::setlCycleTimeOpen, &R::setlLoadTime,
                                              &R::setlCycleTimeClose, &R::setlGameTime, &R::setlFiringMode, &R::setlAlertOne, &R::setlAlertTwo};
    const QList<void (R::*)(bool)> flags = {&R::setbCTCLikeCTO, &R::setbExpertMode, &R::setbAlertOne, &R::setbAlertTwo};
    for (qsizetype i = 0; i < longs.size(); ++i)
        (r.*longs[i])(l[i]);
    for (qsizetype i = 0; i < flags.size(); ++i)
        (r.*flags[i])(b[i]);
    r.setsName(name);
    r.setdtDate(date);
}

// The names of the members not marked deleted, in order.
template <typename Collection>
QStringList liveNames(const Collection& members)
{
    QStringList names;
    for (const auto& member : members) {
        if (!member->IsDeleted())
            names.append(member->sName());
    }
    return names;
}

// A library file of its own for one test, the scripted user and the program's application
// object (TestLink's, over its preferences).
class Fixture {
public:
    Fixture()
    {
        ok = QFile::copy(builtTemplate(), path);
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
        mDatabase::SetPathOverride(path);
    }
    ~Fixture()
    {
        restart();
        mDatabase::SetPathOverride(QString());
    }

    // Reopens the library as the program would at its next start.
    void restart()
    {
        forgetInspector();
        program.restart();
    }
    cApplication& app() { return program.app(); }
    cColSetsTemplate& library() { return app().colSetsTemplate(); }
    void save()
    {
        QSqlDatabase connection;
        library().Save(connection);
    }
    // A separate connection on the same file, for looking at the rows themselves.
    QSqlDatabase inspector()
    {
        if (!QSqlDatabase::contains(QStringLiteral("inspect"))) {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("inspect"));
            db.setDatabaseName(path);
            db.open();
        }
        return QSqlDatabase::database(QStringLiteral("inspect"));
    }
    bool exec(const QString& sql) { return QSqlQuery(inspector()).exec(sql); }
    // The first row of a query (empty when there is none), or its first value as a number.
    QSqlRecord row(const QString& sql)
    {
        QSqlQuery query(inspector());
        return query.exec(sql) && query.next() ? query.record() : QSqlRecord();
    }
    qint64 count(const QString& sql) { const QVariant v = row(sql).value(0); return v.isValid() ? v.toLongLong() : -1; }
    QString firstError() const { return ui.errors.isEmpty() ? QString() : ui.errors.first().Description(); }

    TestLink program;
    ScriptedUi& ui = program.ui;
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("Marlo.mdb"));
    bool ok = false;

private:
    static void forgetInspector()
    {
        if (QSqlDatabase::contains(QStringLiteral("inspect")))
            QSqlDatabase::removeDatabase(QStringLiteral("inspect"));
    }
};

} // namespace LibraryTest

// A library file of its own for the rest of the test function, named f.
#define LIBRARY_FIXTURE(f) LibraryTest::Fixture f; QVERIFY2(f.ok, "the built template instdbxx.tmp is missing")
