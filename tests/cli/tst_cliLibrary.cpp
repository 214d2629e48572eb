// marlo-cli's library commands, run as the program itself: list, show, export, import, delete,
// --db and --json, and what it says instead of asking.
#include "CliRunner.h"
#include "../library/LibraryTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

using LibraryTest::fileBytes;

namespace {

const QString kKnown = QStringLiteral("{0F0F0F0F-1111-4222-8333-444444444444}");

using Run = CliRun;

} // namespace

class tst_cliLibrary : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));

    // marlo-cli with this test's program folder and preferences; "<name>" is a file of the test.
    Run cli(const QStringList& arguments) { return RunCli(QDir(m_dir.path()), m_home, arguments); }

private slots:
    void initTestCase()
    {
        const QJsonObject known{{"ID", kKnown}, {"sName", "Spring \"12\""}, {"lShotTime", 10}, {"lDwellTime", 10},
                                {"lCycleTimeOpen", 30}, {"lLoadTime", 35}, {"lCycleTimeClose", 28}, {"dtDate", "2001-08-01"},
                                {"bExpertMode", true}, {"UserVariables", QJsonArray{QJsonObject{{"sName", "Barrel"}, {"sValue", "14\""}}}}};
        const QJsonObject second{{"sName", "Second"}, {"lDwellTime", 250}, {"lCycleTimeOpen", 250}, {"lLoadTime", 250}, {"lCycleTimeClose", 250}};
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("seed")), QJsonDocument(QJsonObject{{"templates", QJsonArray{known, second}}}).toJson());
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("access")), QByteArray("\x00\x01\x00\x00Standard Jet DB", 19) + QByteArray(2029, '\0'));
    }
    // A fresh program folder with the template, and fresh preferences.
    void init()
    {
        QDir(m_home).removeRecursively();
        QDir(m_dir.filePath(QStringLiteral("config"))).removeRecursively();
        QVERIFY(QDir().mkpath(m_home));
        QVERIFY(QFile::copy(LibraryTest::builtTemplate(), QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
    }

    void commands_data()
    {
        QTest::addColumn<QString>("start");  // "seeded": the library holds the seed; "template"; "nothing"
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("said");  // on stdout, or on stderr for a failure
        QTest::newRow("list") << "seeded" << QStringList{"library", "list"} << 0
                              << QStringList{"#  ID", kKnown, "Spring \"12\"", "01-Aug-2001", " 9.7 ", "Second", " 1.0 "};
        QTest::newRow("show --json by ID") << "seeded" << QStringList{"--json", "library", "show", kKnown} << 0
                                           << QStringList{"\"bExpertMode\":true", "\"sValue\":\"14\\\"\""};
        QTest::newRow("show unknown") << "seeded" << QStringList{"library", "show", "{NOT-THERE}"} << 1 << QStringList{"no template"};
        QTest::newRow("an Access file") << "template" << QStringList{"--db", "<access>", "library", "list"} << 1 << QStringList{"Access"};
        // It says what it would have asked, takes No, and ends as the program would.
        QTest::newRow("no library, no template") << "nothing" << QStringList{"library", "list"} << 1
            << QStringList{"The Marlo-database does not exist.", "No", "Due to a missing database, the program cannot continue execution."};
        QTest::newRow("no library command") << "template" << QStringList{"library"} << 2 << QStringList{"library"};
    }
    void commands()
    {
        QFETCH(QString, start);
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QStringList, said);
        if (start == QLatin1String("seeded"))
            QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("import"), QStringLiteral("<seed>")}).status, 0);
        if (start == QLatin1String("nothing"))
            QVERIFY(QFile::remove(QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
        const Run run = cli(arguments);
        QCOMPARE(run.status, status);
        for (const QString& part : said)
            QVERIFY2((status == 0 ? run.out : run.err).contains(part), qPrintable(part + QLatin1String(" not in: ") + run.out + run.err));
        // One clear error, not a cascade.
        QCOMPARE(run.err.count(QLatin1String("error ")), status == 1 ? 1 : 0);
        // Wrong usage, or no library to be had, never makes one.
        QCOMPARE(QFile::exists(QDir(m_home).filePath(QStringLiteral("Marlo.mdb"))), start == QLatin1String("seeded"));
    }

    // An export imported again changes nothing; a deleted template is gone from the list.
    void exportImportDelete()
    {
        QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("import"), QStringLiteral("<seed>")}).status, 0);
        QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("export"), QStringLiteral("<out.json>")}).status, 0);
        QVERIFY(cli({QStringLiteral("library"), QStringLiteral("import"), QStringLiteral("<out.json>")}).out.contains(QLatin1String("unchanged: 2")));
        QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("export"), QStringLiteral("<again.json>")}).status, 0);
        QCOMPARE(fileBytes(m_dir.filePath(QStringLiteral("again.json"))), fileBytes(m_dir.filePath(QStringLiteral("out.json"))));
        QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("delete"), kKnown}).status, 0);
        const QJsonArray left = QJsonDocument::fromJson(cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")}).out.toUtf8()).array();
        QCOMPARE(left.size(), 1);
        QCOMPARE(left[0].toObject().value(QStringLiteral("sName")).toString(), QStringLiteral("Second"));
    }
};

QTEST_GUILESS_MAIN(tst_cliLibrary)
#include "tst_cliLibrary.moc"
