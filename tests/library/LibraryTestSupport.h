#pragma once
// Shared by the library's tests: a fresh library file made from the built template, a scripted
// user, and a second connection that looks at the file directly, past the record classes.
#include "ScriptedUi.h"
#include "library/cApplication.h"
#include "library/mDatabase.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

namespace LibraryTest {

// The template the build made (CTest gives its folder).
inline QString builtTemplate()
{
    const QString dir = qEnvironmentVariable("MARLO_TEMPLATE_DIR");
    return dir.isEmpty() ? QString() : QDir(dir).filePath(QStringLiteral("instdbxx.tmp"));
}

inline QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    file.write(bytes);
}

// The first error the scripted user was shown, for failure messages.
inline QString firstError(const ScriptedUi& ui)
{
    return ui.errors.isEmpty() ? QString() : ui.errors.first().Description();
}

// Forgets the shared connection and the application object, so the next use starts afresh.
inline void resetLibraryState()
{
    mDatabase::DisconnectDB();
    mMain::ReleaseApplication();
    mDatabase::SetPathOverride(QString());
}

// A library file of its own for one test, the scripted user, and a clean slate on both ends.
class Fixture {
public:
    Fixture()
    {
        resetLibraryState();
        mMain::SetUserInterface(&ui);
        path = dir.filePath(QStringLiteral("Marlo.mdb"));
        const QString source = builtTemplate();
        ok = !source.isEmpty() && QFile::copy(source, path);
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
        mDatabase::SetPathOverride(path);
    }
    ~Fixture()
    {
        closeInspector();
        resetLibraryState();
        mMain::SetUserInterface(nullptr);
    }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;

    // Reopens the library as the program would at its next start.
    void restart()
    {
        closeInspector();
        mDatabase::DisconnectDB();
        mMain::ReleaseApplication();
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
    void closeInspector()
    {
        if (QSqlDatabase::contains(QStringLiteral("inspect"))) {
            QSqlDatabase::database(QStringLiteral("inspect"), false).close();
            QSqlDatabase::removeDatabase(QStringLiteral("inspect"));
        }
    }
    qint64 count(const QString& sql, const QVariantList& bindings = {})
    {
        QSqlQuery query(inspector());
        query.prepare(sql);
        for (const QVariant& value : bindings)
            query.addBindValue(value);
        if (!query.exec() || !query.next())
            return -1;
        return query.value(0).toLongLong();
    }
    // The first row of a query as a record (empty when there is none).
    QSqlRecord row(const QString& sql)
    {
        QSqlQuery query(inspector());
        if (!query.exec(sql) || !query.next())
            return QSqlRecord();
        return query.record();
    }
    bool exec(const QString& sql)
    {
        QSqlQuery query(inspector());
        return query.exec(sql);
    }

    QTemporaryDir dir;
    QString path;
    bool ok = false;
    ScriptedUi ui;
};

} // namespace LibraryTest
