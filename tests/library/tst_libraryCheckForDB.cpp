// Start-up's library check (use the file, copy the template, or ask), and the shared connection,
// which refuses every file that is not a library and leaves it exactly as it was.
#include "LibraryTestSupport.h"

#include "base/cRegistrySettings.h"

#include <QSettings>
#include <QtTest>

using LibraryTest::builtTemplate;
using LibraryTest::fileBytes;

namespace {

// The preference as it is stored, not as it is held.
QString stored(const QString& key)
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"))
        .value(QStringLiteral("Initialize/") + key, QStringLiteral("-")).toString();
}

// Every preference, the program folder and the test's own files empty at the start of a case.
class StartUp {
public:
    StartUp()
    {
        mDatabase::SetPathOverride(QString());
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).clear();
        QDir(mMain::ProgramFolder()).removeRecursively();
        QDir().mkpath(mMain::ProgramFolder());
    }
    ~StartUp()
    {
        program.restart();
        mDatabase::SetPathOverride(QString());
    }
    // The check of a program started now, with the preferences as they are stored.
    bool check()
    {
        program.restart();
        return mMain::CheckForDB(program.prefs);
    }
    // "<default>", "<name>" a file of the test, or as it is.
    QString path(const QString& token) const
    {
        if (token == QLatin1String("<default>"))
            return mMain::ProgramFile(QStringLiteral("Marlo.mdb"));
        return token.startsWith(QLatin1Char('<')) ? dir.filePath(token.mid(1, token.size() - 2)) : token;
    }

    TestLink program;
    ScriptedUi& ui = program.ui;
    QTemporaryDir dir;
};

// One start of the program: what is there before, and what CheckForDB does.
struct Start {
    QString dbName;          // the preference DBName ("-": none; "<given>": none, and --db <given>)
    QString present;         // a library already there
    bool withTemplate;
    QStringList answers;     // "No", or Yes and what is typed
    bool result;
    QString storedName;      // DBName afterwards
    QString opened;          // the file the connection opens then
};

} // namespace

class tst_libraryCheckForDB : public QObject {
    Q_OBJECT

private slots:
    void checkForDB_data()
    {
        QTest::addColumn<Start>("start");
        const QStringList none;
        QTest::newRow("library at the default") << Start{"-", "<default>", true, none, true, "-", "<default>"};
        QTest::newRow("template to the default") << Start{"", "", true, none, true, "", "<default>"};
        QTest::newRow("template to DBName") << Start{"<configured>", "", true, none, true, "<configured>", "<configured>"};
        QTest::newRow("template to the given file") << Start{"<given>", "", true, none, true, "-", "<given>"};
        QTest::newRow("template copy fails") << Start{"<no/such/x.mdb>", "", true, none, false, "<no/such/x.mdb>", ""};
        QTest::newRow("nothing typed, No") << Start{"<configured>", "", false, {"", "No"}, false, "<configured>", ""};
        QTest::newRow("missing typed, found typed") << Start{"<configured>", "", false, {"/nonexistent/x.mdb", "<found>"}, true, "<found>", "<found>"};
        QTest::newRow("given, found typed") << Start{"<given>", "", false, {"<found>"}, true, "-", "<found>"};
    }
    void checkForDB()
    {
        QFETCH(Start, start);
        const auto& [dbName, present, withTemplate, answers, result, storedName, opened] = start;
        StartUp s;
        const bool given = dbName == QLatin1String("<given>");
        if (given)
            mDatabase::SetPathOverride(s.path(dbName));
        else if (dbName != QLatin1String("-"))
            cRegistrySettings::SaveSetting(QStringLiteral("Initialize"), QStringLiteral("DBName"), s.path(dbName));
        cRegistrySettings::SaveSetting(QStringLiteral("Initialize"), QStringLiteral("LastKey"), QStringLiteral("{LAST}"));
        QVERIFY(QFile::copy(builtTemplate(), s.path(QStringLiteral("<found>"))));
        QByteArray presentBytes;
        if (!present.isEmpty()) {
            QVERIFY(QFile::copy(builtTemplate(), s.path(present)));
            QVERIFY(LibraryTest::runSql(s.path(present), {LibraryTest::templateRow(QStringLiteral("{P}"))}));
            presentBytes = fileBytes(s.path(present));
        }
        if (withTemplate)
            QVERIFY(QFile::copy(builtTemplate(), mDatabase::TemplatePath()));
        for (const QString& answer : answers) {
            s.ui.yesNoAnswers.enqueue(answer != QLatin1String("No"));
            if (answer != QLatin1String("No"))
                s.ui.inputAnswers.enqueue(s.path(answer));
        }

        QCOMPARE(s.check(), result);
        // Every Yes brings an input box.
        QVERIFY(s.ui.yesNoAnswers.isEmpty() && s.ui.inputAnswers.isEmpty());
        QCOMPARE(s.ui.questions.size(), answers.size() * 2 - answers.count(QStringLiteral("No")));
        QCOMPARE(stored(QStringLiteral("DBName")), s.path(storedName));
        // A library chosen by asking is a new one: the last key no longer applies.
        QCOMPARE(stored(QStringLiteral("LastKey")), result && !answers.isEmpty() && !given ? QString() : QStringLiteral("{LAST}"));
        // Only the template makes a file, and only where no question was asked.
        QCOMPARE(QFile::exists(s.path(QStringLiteral("<default>"))), present == QLatin1String("<default>") || opened == QLatin1String("<default>"));
        // Only a template that cannot be copied is an error.
        QCOMPARE(s.ui.errors.size(), !result && answers.isEmpty() ? 1 : 0);
        if (opened.isEmpty())
            return;
        // An existing library is used as it is; a new one is the template, byte for byte.
        QCOMPARE(fileBytes(s.path(opened)), opened == present ? presentBytes : fileBytes(builtTemplate()));
        QSqlDatabase connection = mMain::ConnectDB();
        QCOMPARE(connection.databaseName(), s.path(opened));
        QSqlQuery mode(connection);
        QVERIFY(mode.exec(QStringLiteral("PRAGMA journal_mode")) && mode.next() && mode.value(0).toString() == QLatin1String("wal"));
        QVERIFY(mode.exec(QStringLiteral("PRAGMA synchronous")) && mode.next() && mode.value(0).toInt() == 1);  // NORMAL
    }

    // A folder is said to be one, the template at hand: nothing is made in it or in its place, and nobody is asked.
    void folder()
    {
        StartUp s;
        QVERIFY(QFile::copy(builtTemplate(), mDatabase::TemplatePath()));
        mDatabase::SetPathOverride(s.dir.path());
        QVERIFY(!s.check());
        QCOMPARE(s.ui.errors.size(), 1);
        QCOMPARE(s.ui.errors[0].Description(),
                 QStringLiteral("The library file \"%1\" is a folder: give the path of a library file.").arg(s.dir.path()));
        QVERIFY(s.ui.questions.isEmpty() && QDir(s.dir.path()).isEmpty());
    }

    void notALibrary_data()
    {
        QTest::addColumn<QByteArray>("content");  // "<template>": a copy of the template
        QTest::addColumn<QString>("sql");         // then run on it
        QTest::addColumn<QString>("kind");
        QTest::newRow("empty file") << QByteArray() << "" << "empty";
        QTest::newRow("junk") << QByteArray("This is not a database at all.\n") << "" << "not an SQLite";
        QTest::newRow("SQLite header, junk after") << QByteArray("SQLite format 3\0", 16) + QByteArray(2000, 'x') << "" << "damaged or not a database";
        QTest::newRow("a column missing") << QByteArray("<template>") << "ALTER TABLE ta_UserVar DROP COLUMN sValue" << "no column sValue";
        QTest::newRow("read-only") << QByteArray("<template>") << "" << "read-only";
        // Another program's database in WAL mode: recognised without SQLite making its -wal and
        // -shm files beside it, let alone switching it.
        QTest::newRow("another program's, WAL") << QByteArray("<template>")
            << "PRAGMA journal_mode=WAL;DROP TABLE ta_SetsTemplate;CREATE TABLE accounts (id, owner)" << "no table ta_SetsTemplate";
    }

    void notALibrary()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, sql);
        QFETCH(QString, kind);
        StartUp s;
        const QString path = s.dir.filePath(QStringLiteral("given.mdb"));
        if (content == "<template>")
            QVERIFY(QFile::copy(builtTemplate(), path));
        else
            LibraryTest::writeFile(path, content);
        if (!sql.isEmpty())
            QVERIFY2(LibraryTest::runSql(path, sql.split(QLatin1Char(';'))), qPrintable(sql));
        if (kind == QLatin1String("read-only"))
            QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
        const QByteArray before = fileBytes(path);
        const QFileDevice::Permissions permissionsBefore = QFile::permissions(path);
        mDatabase::SetPathOverride(path);

        QVERIFY(s.check());  // a file is there: the check is about presence only
        QVERIFY(!mMain::ConnectDB().isOpen());
        QCOMPARE(s.ui.errors.size(), 1);
        const MarloError& error = s.ui.errors[0];
        QVERIFY2(error.Number() == 3000 && error.Description().contains(path) && error.Description().contains(kind), qPrintable(error.Description()));
        // No retry, and no second report: loading the library that could not be opened leaves
        // it empty, the reason having been shown once.
        QCOMPARE(s.program.app().colSetsTemplate().Count(), 0);
        QCOMPARE(s.ui.errors.size(), 1);
        s.program.restart();

        // Left exactly as it was, and nothing made beside it.
        QCOMPARE(fileBytes(path), before);
        QCOMPARE(QFile::permissions(path), permissionsBefore);
        for (const char* beside : {"-wal", "-shm", "-journal"})
            QVERIFY2(!QFile::exists(path + QLatin1String(beside)), beside);
        QFile::setPermissions(path, permissionsBefore | QFileDevice::WriteOwner);
    }
};

QTEST_GUILESS_MAIN(tst_libraryCheckForDB)
#include "tst_libraryCheckForDB.moc"
