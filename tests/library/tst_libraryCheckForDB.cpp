// Start-up's library check (use, copy the template, or ask), and the shared connection, which
// refuses every file that is not a library and leaves it exactly as it was.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "shell/cRegistrySettings.h"

#include <QSettings>
#include <functional>
#include <QtTest>

using LibraryTest::builtTemplate;
using LibraryTest::fileBytes;
using LibraryTest::writeFile;

namespace {

// A scripted user who can do something while a question is on the screen.
class AskingUi : public ScriptedUi {
public:
    std::function<void()> onAsk;
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon) override
    {
        if (onAsk)
            onAsk();
        return ScriptedUi::askYesNo(text, title, icon);
    }
};

// Every preference, the program folder and the test's own files, empty at the start of a case.
class StartUp {
public:
    StartUp()
    {
        LibraryTest::resetLibraryState();
        QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).clear();
        QDir(mMain::ProgramFolder()).removeRecursively();
        QDir().mkpath(mMain::ProgramFolder());
        mMain::SetUserInterface(&ui);
    }
    ~StartUp()
    {
        LibraryTest::resetLibraryState();
        mMain::SetUserInterface(nullptr);
    }
    StartUp(const StartUp&) = delete;
    StartUp& operator=(const StartUp&) = delete;

    void putTemplate() { QVERIFY(QFile::copy(builtTemplate(), mMain::ProgramFile(QStringLiteral("instdbxx.tmp")))); }
    void putLibrary(const QString& path) { QVERIFY(QFile::copy(builtTemplate(), path)); }
    cRegistrySettings& settings() { return mMain::Application().RegistrySettings(); }
    // The preferences as they are stored, not as they are held.
    static QString stored(const QString& key)
    {
        return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"))
            .value(QStringLiteral("Initialize/") + key, QStringLiteral("<absent>"))
            .toString();
    }
    // A preference written before the program starts.
    static void preset(const QString& key, const QString& value)
    {
        cRegistrySettings::SaveSetting(QStringLiteral("Initialize"), key, value);
    }

    QTemporaryDir dir;
    AskingUi ui;
};

QString defaultPath() { return mMain::ProgramFile(QStringLiteral("Marlo.mdb")); }

} // namespace

class tst_libraryCheckForDB : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void existingDefaultFile();
    void emptyPreferenceMeansDefault();
    void templateCopiedToDefault();
    void templateCopiedToConfiguredPath();
    void templateCopyFails();
    void askingLoop_data();
    void askingLoop();
    void notALibrary_data();
    void notALibrary();
    void openedOnceAndInWal();
    void pathOverrideLeavesPreference();
};

void tst_libraryCheckForDB::initTestCase()
{
    QVERIFY2(QFile::exists(builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
    QVERIFY2(!qEnvironmentVariable("MARLO_HOME").isEmpty(), "the test needs a program folder of its own (MARLO_HOME)");
}

void tst_libraryCheckForDB::existingDefaultFile()
{
    StartUp s;
    s.putLibrary(defaultPath());
    s.putTemplate();
    const QByteArray before = fileBytes(defaultPath());
    QVERIFY(mMain::CheckForDB());
    QVERIFY(s.ui.questions.isEmpty());
    QCOMPARE(fileBytes(defaultPath()), before);
    QCOMPARE(StartUp::stored(QStringLiteral("DBName")), QStringLiteral("<absent>"));
    QCOMPARE(mDatabase::LibraryPath(), defaultPath());
}

void tst_libraryCheckForDB::emptyPreferenceMeansDefault()
{
    StartUp s;
    StartUp::preset(QStringLiteral("DBName"), QString());
    s.putLibrary(defaultPath());
    QVERIFY(mMain::CheckForDB());
    QVERIFY(s.ui.questions.isEmpty());
    QCOMPARE(s.settings().DBName(), QString());
    QCOMPARE(StartUp::stored(QStringLiteral("DBName")), QString());
    // The connection names the default file.
    QVERIFY(mMain::ConnectDB().isOpen());
    QCOMPARE(mMain::ConnectDB().databaseName(), defaultPath());
    QVERIFY(s.ui.errors.isEmpty());
}

void tst_libraryCheckForDB::templateCopiedToDefault()
{
    StartUp s;
    StartUp::preset(QStringLiteral("DBName"), QString());
    StartUp::preset(QStringLiteral("LastKey"), QStringLiteral("{KEEP}"));
    s.putTemplate();
    QVERIFY(mMain::CheckForDB());
    QVERIFY(s.ui.questions.isEmpty());
    QCOMPARE(fileBytes(defaultPath()), fileBytes(mMain::ProgramFile(QStringLiteral("instdbxx.tmp"))));
    QCOMPARE(StartUp::stored(QStringLiteral("DBName")), QString());
    QCOMPARE(StartUp::stored(QStringLiteral("LastKey")), QStringLiteral("{KEEP}"));
    // The program starts with the template's content: an empty library.
    QCOMPARE(mMain::Application().colSetsTemplate().Count(), 0);
    QVERIFY(s.ui.errors.isEmpty());
}

void tst_libraryCheckForDB::templateCopiedToConfiguredPath()
{
    StartUp s;
    const QString configured = s.dir.filePath(QStringLiteral("mine.mdb"));
    StartUp::preset(QStringLiteral("DBName"), configured);
    s.putTemplate();
    QVERIFY(mMain::CheckForDB());
    QVERIFY(QFile::exists(configured));
    QVERIFY(!QFile::exists(defaultPath()));
    QCOMPARE(StartUp::stored(QStringLiteral("DBChanged")), QStringLiteral("<absent>"));
    QVERIFY(mMain::ConnectDB().isOpen());
    QCOMPARE(mMain::ConnectDB().databaseName(), configured);
}

void tst_libraryCheckForDB::templateCopyFails()
{
    StartUp s;
    StartUp::preset(QStringLiteral("DBName"), s.dir.filePath(QStringLiteral("no/such/folder/x.mdb")));
    s.putTemplate();
    QVERIFY(!mMain::CheckForDB());
    QCOMPARE(s.ui.errors.size(), 1);
    QCOMPARE(s.ui.errors[0].Trail().last().module, QStringLiteral("mMain"));
    QCOMPARE(s.ui.errors[0].Trail().last().procedure, QStringLiteral("CheckForDB"));
    QVERIFY(s.ui.questions.isEmpty());
}

void tst_libraryCheckForDB::askingLoop_data()
{
    QTest::addColumn<QList<bool>>("yesNo");
    QTest::addColumn<QStringList>("typed");  // "<found>": a file that exists, "<configured>": DBName
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("dbChanged");   // stored DBChanged afterwards

    QTest::newRow("No at once") << QList<bool>{false} << QStringList() << false << QStringLiteral("False");
    QTest::newRow("Yes, nothing typed, asked again, No")
        << QList<bool>{true, false} << QStringList{QString()} << false << QStringLiteral("False");
    QTest::newRow("Yes, a missing file, then an existing one")
        << QList<bool>{true, true} << QStringList{QStringLiteral("/nonexistent/x.mdb"), QStringLiteral("<found>")} << true
        << QStringLiteral("True");
    QTest::newRow("Yes, an existing file") << QList<bool>{true} << QStringList{QStringLiteral("<found>")} << true
                                          << QStringLiteral("True");
    QTest::newRow("Yes, the configured path, now present")
        << QList<bool>{true} << QStringList{QStringLiteral("<configured>")} << true << QStringLiteral("False");
}

void tst_libraryCheckForDB::askingLoop()
{
    QFETCH(QList<bool>, yesNo);
    QFETCH(QStringList, typed);
    QFETCH(bool, result);
    QFETCH(QString, dbChanged);
    StartUp s;
    const QString found = s.dir.filePath(QStringLiteral("found.mdb"));
    const QString configured = s.dir.filePath(QStringLiteral("configured.mdb"));
    StartUp::preset(QStringLiteral("DBName"), configured);
    StartUp::preset(QStringLiteral("LastKey"), QStringLiteral("{LAST}"));
    StartUp::preset(QStringLiteral("DBChanged"), QStringLiteral("False"));
    s.putLibrary(found);
    for (bool answer : yesNo)
        s.ui.yesNoAnswers.enqueue(answer);
    QString chosen;
    for (const QString& text : typed) {
        chosen = text == QLatin1String("<found>") ? found : text == QLatin1String("<configured>") ? configured : text;
        s.ui.inputAnswers.enqueue(chosen);
    }
    // The user puts the configured file back while the question is on the screen.
    if (typed.contains(QStringLiteral("<configured>")))
        s.ui.onAsk = [&] { s.putLibrary(configured); };

    QCOMPARE(mMain::CheckForDB(), result);

    // Every Yes brings an input box; every question has its exact text.
    QCOMPARE(s.ui.yesNoAnswers.size(), 0);
    QCOMPARE(s.ui.inputAnswers.size(), 0);
    QCOMPARE(s.ui.questions.size(), yesNo.size() + typed.size());
    for (const ScriptedUi::Message& q : s.ui.questions) {
        if (q.title == QLatin1String("Missing database")) {
            QCOMPARE(q.text, QStringLiteral("The Marlo-database does not exist.\r\nYou must specify a path and name for a database for Marlo to work.\r\n\r\nIf you do not have a database for Marlo you cannot continue using the program\r\nunless you reinstall the program.\r\n\r\nDo you wish to look for a database-file for Marlo?"));
            QCOMPARE(q.icon, MsgIcon::Exclamation);
        } else {
            QCOMPARE(q.title, QStringLiteral("Specify database"));
            QCOMPARE(q.text, QStringLiteral("Please specify a path for the database you wish to use..."));
        }
    }
    QCOMPARE(StartUp::stored(QStringLiteral("DBChanged")), dbChanged);
    if (result) {
        QCOMPARE(s.settings().DBName(), chosen);
        QCOMPARE(StartUp::stored(QStringLiteral("DBName")), chosen);
        QCOMPARE(StartUp::stored(QStringLiteral("LastKey")), QString());
    } else {
        QCOMPARE(StartUp::stored(QStringLiteral("DBName")), configured);
        QCOMPARE(StartUp::stored(QStringLiteral("LastKey")), QStringLiteral("{LAST}"));
    }
    // Nothing is ever made from the template here (there is none), nor at a typed path or at the
    // default path an empty answer stands for.
    QVERIFY(!QFile::exists(QStringLiteral("/nonexistent/x.mdb")));
    QVERIFY(!QFile::exists(defaultPath()));
    QVERIFY(s.ui.errors.isEmpty());
}

void tst_libraryCheckForDB::notALibrary_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("kind");
    QByteArray access(4096, '\0');
    access.replace(0, 19, QByteArray("\x00\x01\x00\x00Standard Jet DB", 19));
    QByteArray ace(4096, '\x11');
    ace.replace(0, 19, QByteArray("\x00\x01\x00\x00Standard ACE DB", 19));
    QByteArray damaged = LibraryTest::fileBytes(builtTemplate());
    damaged.replace(100, 400, QByteArray(400, '\xFF'));
    QTest::newRow("Access 2000 file") << access << QStringLiteral("Access");
    QTest::newRow("Access 2007 file") << ace << QStringLiteral("Access");
    QTest::newRow("empty file") << QByteArray() << QStringLiteral("empty");
    QTest::newRow("junk") << QByteArray("This is not a database at all.\n") << QStringLiteral("not an SQLite");
    QTest::newRow("SQLite header, junk after") << QByteArray("SQLite format 3").append('\0').append(QByteArray(2000, 'x'))
                                               << QStringLiteral("damaged or not a database");
    QTest::newRow("damaged library") << damaged << QStringLiteral("");
    QTest::newRow("SQLite without the tables") << QByteArray("<other>") << QStringLiteral("no table ta_SetsTemplate");
    QTest::newRow("SQLite, a column missing") << QByteArray("<column>") << QStringLiteral("no column lAlertTwo");
    QTest::newRow("read-only library") << QByteArray("<readonly>") << QStringLiteral("read-only");
}

void tst_libraryCheckForDB::notALibrary()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    StartUp s;
    const QString path = s.dir.filePath(QStringLiteral("given.mdb"));
    if (content == "<other>" || content == "<column>") {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("make"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery q(db);
            if (content == "<other>") {
                QVERIFY(q.exec(QStringLiteral("CREATE TABLE notes (text TEXT)")));
            } else {
                QVERIFY(q.exec(QStringLiteral("CREATE TABLE ta_SetsTemplate (ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, lLoadTime, lCycleTimeClose, lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, bAlertOne, bAlertTwo, lAlertOne)")));
                QVERIFY(q.exec(QStringLiteral("CREATE TABLE ta_UserVar (ID, ParentID, Version, sName, sValue)")));
            }
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("make"));
    } else if (content == "<readonly>") {
        s.putLibrary(path);
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    } else {
        writeFile(path, content);
    }
    const QByteArray before = fileBytes(path);
    const QFileDevice::Permissions permissionsBefore = QFile::permissions(path);
    StartUp::preset(QStringLiteral("DBName"), path);

    QVERIFY(mMain::CheckForDB());  // a file is there: the check is about presence only
    QSqlDatabase connection = mMain::ConnectDB();
    QVERIFY(connection.isValid());
    QVERIFY(!connection.isOpen());
    QCOMPARE(s.ui.errors.size(), 1);
    const MarloError& error = s.ui.errors[0];
    QCOMPARE(error.Number(), 3000);
    QCOMPARE(error.Trail().last().module, QStringLiteral("mMain"));
    QCOMPARE(error.Trail().last().procedure, QStringLiteral("ConnectDB"));
    QVERIFY2(error.Description().contains(path), qPrintable(error.Description()));
    QVERIFY2(error.Description().contains(kind), qPrintable(error.Description()));

    // No retry: the library operations report that the library is not open, and go on.
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    QCOMPARE(library.Count(), 0);
    QCOMPARE(s.ui.errors.size(), 2);
    QVERIFY2(s.ui.errors[1].Description().contains(QLatin1String("not open")), qPrintable(s.ui.errors[1].Description()));
    library.Add();
    QSqlDatabase again;
    library.Save(again);
    QCOMPARE(s.ui.errors.size(), 3);
    connection = QSqlDatabase();
    again = QSqlDatabase();
    mDatabase::DisconnectDB();

    // Left exactly as it was, and nothing made beside it.
    QCOMPARE(fileBytes(path), before);
    QCOMPARE(QFile::permissions(path), permissionsBefore);
    QVERIFY(!QFile::exists(path + QStringLiteral("-wal")));
    QVERIFY(!QFile::exists(path + QStringLiteral("-journal")));
    QFile::setPermissions(path, permissionsBefore | QFileDevice::WriteOwner);
}

void tst_libraryCheckForDB::openedOnceAndInWal()
{
    StartUp s;
    s.putLibrary(defaultPath());
    QVERIFY(mMain::CheckForDB());
    QSqlDatabase first = mMain::ConnectDB();
    QVERIFY(first.isOpen());
    QSqlQuery mode(first);
    QVERIFY(mode.exec(QStringLiteral("PRAGMA journal_mode")) && mode.next());
    QCOMPARE(mode.value(0).toString(), QStringLiteral("wal"));
    QVERIFY(mode.exec(QStringLiteral("PRAGMA synchronous")) && mode.next());
    QCOMPARE(mode.value(0).toInt(), 1);  // NORMAL
    mode = QSqlQuery();
    QSqlDatabase second = mMain::ConnectDB();
    QCOMPARE(second.connectionName(), first.connectionName());
    QStringList connections = QSqlDatabase::connectionNames();
    connections.removeAll(QStringLiteral("inspect"));
    QCOMPARE(connections, QStringList{mDatabase::kConnectionName});
    // A change of DBName during the run takes effect at the next start only.
    s.settings().setDBName(s.dir.filePath(QStringLiteral("later.mdb")));
    QCOMPARE(mMain::ConnectDB().databaseName(), defaultPath());
}

void tst_libraryCheckForDB::pathOverrideLeavesPreference()
{
    StartUp s;
    s.putTemplate();
    const QString given = s.dir.filePath(QStringLiteral("for-this-run.mdb"));
    mDatabase::SetPathOverride(given);
    QVERIFY(mMain::CheckForDB());
    QVERIFY(QFile::exists(given));
    QVERIFY(!QFile::exists(defaultPath()));
    QVERIFY(mMain::ConnectDB().isOpen());
    QCOMPARE(mMain::ConnectDB().databaseName(), given);
    QCOMPARE(StartUp::stored(QStringLiteral("DBName")), QStringLiteral("<absent>"));
}

QTEST_GUILESS_MAIN(tst_libraryCheckForDB)
#include "tst_libraryCheckForDB.moc"
