// marlo-cli's library commands, run as the program itself: list, show, export, import, delete,
// --db and --json, and what it says instead of asking. And diff ID against the built-in virtual
// grip: the same and differing values as a table and as JSON, the exit status, a grip that
// refuses (said as the grip's own error, with no table) or says nothing; the library and the grip
// stay as they were.
#include "CliRunner.h"
#include "../library/LibraryTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using LibraryTest::fileBytes;

namespace {

const QString kKnown = QStringLiteral("{0F0F0F0F-1111-4222-8333-444444444444}");
const QString kSame = QStringLiteral("{0F0F0F0F-1111-4222-8333-333333333333}");
const QString kOneOff = QStringLiteral("{0F0F0F0F-1111-4222-8333-555555555555}");
const QString kAllOff = QStringLiteral("{0F0F0F0F-1111-4222-8333-666666666666}");

// A template with the virtual grip's own values, some of them changed.
QJsonObject setting(const QString& id, const QJsonObject& changed)
{
    QJsonObject object{{"ID", id}, {"sName", id.right(4)}, {"lShotTime", 10}, {"lDwellTime", 10}, {"lCycleTimeOpen", 30},
                       {"lLoadTime", 35}, {"lCycleTimeClose", 28}, {"lFiringMode", 0}, {"lGameTime", 10},
                       {"bAlertOne", false}, {"lAlertOne", 60}, {"bAlertTwo", false}, {"lAlertTwo", 30}};
    for (auto it = changed.begin(); it != changed.end(); ++it)
        object.insert(it.key(), it.value());
    return object;
}

} // namespace

class tst_cliLibrary : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));

    // marlo-cli with this test's program folder and preferences; "<name>" is a file of the test.
    CliRun cli(const QStringList& arguments) { return RunCli(QDir(m_dir.path()), m_home, arguments); }

private slots:
    void initTestCase()
    {
        const QJsonObject known{{"ID", kKnown}, {"sName", "Spring \"12\""}, {"lShotTime", 10}, {"lDwellTime", 10},
                                {"lCycleTimeOpen", 30}, {"lLoadTime", 35}, {"lCycleTimeClose", 28}, {"dtDate", "2001-08-01"},
                                {"bExpertMode", true}, {"UserVariables", QJsonArray{QJsonObject{{"sName", "Barrel"}, {"sValue", "14\""}}}}};
        const QJsonObject second{{"sName", "Second"}, {"lDwellTime", 250}, {"lCycleTimeOpen", 250}, {"lLoadTime", 250}, {"lCycleTimeClose", 250}};
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("seed")), QJsonDocument(QJsonObject{{"templates", QJsonArray{known, second}}}).toJson());
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("access")), QByteArray("\x00\x01\x00\x00Standard Jet DB", 19) + QByteArray(2029, '\0'));
        // For diff: a template with the virtual grip's values, one with one of them changed, one with all.
        const QJsonArray templates{
            setting(kSame, {}),
            setting(kOneOff, {{"lLoadTime", 36}}),
            setting(kAllOff, {{"lShotTime", 11}, {"lDwellTime", 11}, {"lCycleTimeOpen", 31}, {"lLoadTime", 36}, {"lCycleTimeClose", 29},
                              {"lFiringMode", 1}, {"lGameTime", 11}, {"bAlertOne", true}, {"lAlertOne", 61}, {"bAlertTwo", true},
                              {"lAlertTwo", 31}}),
        };
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("settings")), QJsonDocument(QJsonObject{{"templates", templates}}).toJson());
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
        QTest::newRow("an Access file") << "template" << QStringList{"--db", "<access>", "library", "list"} << 1 << QStringList{"Access"};
        // It says what it would have asked, takes No, and ends as the program would.
        QTest::newRow("no library, no template") << "nothing" << QStringList{"library", "list"} << 1
            << QStringList{"The Marlo-database does not exist.", "No", "Due to a missing database, the program cannot continue execution."};
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
        const CliRun run = cli(arguments);
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

    void diff_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("grip"); // the virtual grip's options beside its state file
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("said"); // stdout, or for a failure stderr, contains it

        QTest::newRow("same") << QStringList{"diff", kSame} << "" << 0 << "The grip holds these settings\n";
        QTest::newRow("same, JSON") << QStringList{"--json", "diff", kSame} << "" << 0 << "{\"differences\":[],\"same\":true}\n";
        QTest::newRow("one differs") << QStringList{"diff", kOneOff} << "" << 4 << "Field     Grip  Template\nLoadTime  35    36\n1 value differs\n";
        QTest::newRow("one differs, by number") << QStringList{"diff", "2"} << "" << 4 << "1 value differs\n";
        QTest::newRow("one differs, JSON") << QStringList{"--json", "diff", kOneOff} << "" << 4
                                           << "{\"differences\":[{\"field\":\"LoadTime\",\"grip\":35,\"template\":36}],\"same\":false}\n";
        QTest::newRow("all differ") << QStringList{"diff", kAllOff} << "" << 4 << "PreAlert2Time   30    31\n11 values differ\n";
        QTest::newRow("two IDs") << QStringList{"diff", kSame, kOneOff} << "" << 2 << "diff needs the ID";
        QTest::newRow("grip refusing the game timer") << QStringList{"diff", kSame} << ",fault=nak@16" << 3
                                                      << "the grip refused the command (negative answer): Checksum error.\n";
        QTest::newRow("grip silent on the timing") << QStringList{"diff", kSame} << ",fault=silent@14" << 1 << "error 10213";
    }
    void diff()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, grip);
        QFETCH(int, status);
        QFETCH(QString, said);
        QCOMPARE(cli({"library", "import", "<settings>"}).status, 0);
        const QString state = m_dir.filePath(QStringLiteral("grip.json"));
        QFile::remove(state);
        const QString device = QStringLiteral("sim:state=") + state;
        QCOMPARE(cli({"--device", device, "get", "timing"}).status, 0); // the state file, as the grip holds it
        const QByteArray gripBefore = fileBytes(state);
        const QString library = QDir(m_home).filePath(QStringLiteral("Marlo.mdb"));
        const QByteArray libraryBefore = fileBytes(library);

        const CliRun run = cli(QStringList{"--device", device + grip} + arguments);
        QCOMPARE(run.status, status);
        QVERIFY2((status == 0 || status == 4 ? run.out : run.err).contains(said), qPrintable(run.out + run.err));
        QVERIFY2(status == 0 || status == 4 || run.out.isEmpty(), qPrintable(run.out)); // no comparison cut short is shown
        QCOMPARE(fileBytes(state), gripBefore);
        QCOMPARE(fileBytes(library), libraryBefore);
    }
};

QTEST_GUILESS_MAIN(tst_cliLibrary)
#include "tst_cliLibrary.moc"
