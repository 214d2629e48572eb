// marlo-cli's library commands, run as the program itself: list, show, export, import, delete,
// --db and --json, and what it says instead of asking.
#include "LibraryTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QtTest>

using LibraryTest::fileBytes;

namespace {

struct Run {
    int status = -1;
    QString out;
    QString err;
};

} // namespace

class tst_libraryCli : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void emptyLibraryFromTemplate();
    void importListShowExportDelete();
    void reimportChangesNothing();
    void importHostileAndBadFiles();
    void dbOverrideLeavesPreference();
    void noLibraryNoTemplate();
    void notALibrary();
    void usage_data();
    void usage();

private:
    Run cli(const QStringList& arguments);
    QString m_program;
    QTemporaryDir m_dir;
    QString m_home;
};

Run tst_libraryCli::cli(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MARLO_HOME"), m_home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir.filePath(QStringLiteral("config")));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_dir.path());
    process.start(m_program, arguments);
    Run run;
    if (!process.waitForFinished(60000))
        return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

void tst_libraryCli::initTestCase()
{
    m_program = QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("marlo-cli"));
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
    QVERIFY2(QFileInfo(m_program).isExecutable(), qPrintable(QStringLiteral("marlo-cli is not built: %1").arg(m_program)));
}

void tst_libraryCli::init()
{
    m_home = m_dir.filePath(QStringLiteral("prog-%1").arg(QString::fromLatin1(QTest::currentTestFunction())));
    QDir(m_home).removeRecursively();
    QDir().mkpath(m_home);
    QDir(m_dir.filePath(QStringLiteral("config"))).removeRecursively();
    QVERIFY(QFile::copy(LibraryTest::builtTemplate(), QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
}

void tst_libraryCli::emptyLibraryFromTemplate()
{
    const Run run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out.trimmed(), QStringLiteral("[]"));
    QVERIFY(QFile::exists(QDir(m_home).filePath(QStringLiteral("Marlo.mdb"))));
    const Run text = cli({QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(text.status, 0);
    QVERIFY(text.out.startsWith(QLatin1String("#  ID  Name  Date  ROF bps")));
}

void tst_libraryCli::importListShowExportDelete()
{
    const QString input = m_dir.filePath(QStringLiteral("in.json"));
    const QString known = QStringLiteral("{0F0F0F0F-1111-4222-8333-444444444444}");
    QJsonArray templates;
    templates.append(QJsonObject{{"ID", known}, {"sName", "Spring \"12\""}, {"lShotTime", 10}, {"lDwellTime", 10},
                                 {"lCycleTimeOpen", 30}, {"lLoadTime", 35}, {"lCycleTimeClose", 28},
                                 {"dtDate", "2001-08-01"}, {"bExpertMode", true},
                                 {"UserVariables", QJsonArray{QJsonObject{{"sName", "Barrel"}, {"sValue", "14\""}}}}});
    templates.append(QJsonObject{{"sName", "Second"}});
    LibraryTest::writeFile(input, QJsonDocument(QJsonObject{{"templates", templates}}).toJson());

    Run run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("import"), input});
    QCOMPARE(run.status, 0);
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).object(),
             (QJsonObject{{"added", 2}, {"updated", 0}, {"unchanged", 0}}));

    run = cli({QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(run.status, 0);
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines[1].contains(known) && lines[1].contains(QLatin1String("Spring \"12\"")) && lines[1].contains(QLatin1String("01-Aug-2001"))
                 && lines[1].contains(QLatin1String(" 9.7 ")),
             qPrintable(lines[1]));

    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("show"), known});
    QCOMPARE(run.status, 0);
    const QJsonObject shown = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(shown.value(QStringLiteral("sName")).toString(), QStringLiteral("Spring \"12\""));
    QCOMPARE(shown.value(QStringLiteral("bExpertMode")).toBool(), true);
    QCOMPARE(shown.value(QStringLiteral("UserVariables")).toArray().size(), 1);

    run = cli({QStringLiteral("library"), QStringLiteral("show"), QStringLiteral("2")});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.out.contains(QLatin1String("sName:")) && run.out.contains(QLatin1String("Second")), qPrintable(run.out));
    QVERIFY(run.out.contains(QLatin1String("UserVariables: 0")));

    run = cli({QStringLiteral("library"), QStringLiteral("show"), QStringLiteral("{NOT-THERE}")});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(QLatin1String("no template")), qPrintable(run.err));

    const QString output = m_dir.filePath(QStringLiteral("out.json"));
    run = cli({QStringLiteral("library"), QStringLiteral("export"), output});
    QCOMPARE(run.status, 0);
    const QJsonArray exported = QJsonDocument::fromJson(fileBytes(output)).object().value(QStringLiteral("templates")).toArray();
    QCOMPARE(exported.size(), 2);
    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).array(), exported);

    run = cli({QStringLiteral("library"), QStringLiteral("delete"), known});
    QCOMPARE(run.status, 0);
    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    const QJsonArray left = QJsonDocument::fromJson(run.out.toUtf8()).array();
    QCOMPARE(left.size(), 1);
    QCOMPARE(left[0].toObject().value(QStringLiteral("sName")).toString(), QStringLiteral("Second"));
}

void tst_libraryCli::reimportChangesNothing()
{
    const QString input = m_dir.filePath(QStringLiteral("seed.json"));
    LibraryTest::writeFile(input, QByteArray(R"({"templates": [{"sName": "a"}, {"sName": "b", "UserVariables": [{"sName": "x", "sValue": "y"}]}]})"));
    QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("import"), input}).status, 0);
    const QString exported = m_dir.filePath(QStringLiteral("export.json"));
    QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("export"), exported}).status, 0);
    const Run run = cli({QStringLiteral("library"), QStringLiteral("import"), exported});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.out.contains(QLatin1String("added:     0")) && run.out.contains(QLatin1String("updated:   0"))
                 && run.out.contains(QLatin1String("unchanged: 2")),
             qPrintable(run.out));
    const QString again = m_dir.filePath(QStringLiteral("again.json"));
    QCOMPARE(cli({QStringLiteral("library"), QStringLiteral("export"), again}).status, 0);
    QCOMPARE(fileBytes(again), fileBytes(exported));
}

void tst_libraryCli::importHostileAndBadFiles()
{
    const QString hostile = m_dir.filePath(QStringLiteral("hostile.json"));
    LibraryTest::writeFile(hostile, QByteArray(R"([{"ID": "x' OR '1'='1", "sName": "'; DELETE FROM ta_SetsTemplate; --"}])"));
    Run run = cli({QStringLiteral("library"), QStringLiteral("import"), hostile});
    QCOMPARE(run.status, 0);
    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    const QJsonArray list = QJsonDocument::fromJson(run.out.toUtf8()).array();
    QCOMPARE(list.size(), 1);
    QVERIFY(list[0].toObject().value(QStringLiteral("ID")).toString().startsWith(QLatin1Char('{')));
    QCOMPARE(list[0].toObject().value(QStringLiteral("sName")).toString(), QStringLiteral("'; DELETE FROM ta_SetsTemplate; --"));

    const QString bad = m_dir.filePath(QStringLiteral("bad.json"));
    LibraryTest::writeFile(bad, QByteArray(R"({"templates": [{"sName": "ok"}, {"lShotTime": "fast"}]})"));
    run = cli({QStringLiteral("library"), QStringLiteral("import"), bad});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(QLatin1String("template 2")) && run.err.contains(QLatin1String("lShotTime")), qPrintable(run.err));
    run = cli({QStringLiteral("library"), QStringLiteral("import"), m_dir.filePath(QStringLiteral("absent.json"))});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(QLatin1String("does not exist")), qPrintable(run.err));
    // Nothing of the bad file was saved.
    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).array().size(), 1);
}

void tst_libraryCli::dbOverrideLeavesPreference()
{
    const QString other = m_dir.filePath(QStringLiteral("elsewhere.mdb"));
    QFile::remove(other);
    const QString seed = m_dir.filePath(QStringLiteral("one.json"));
    LibraryTest::writeFile(seed, QByteArray(R"([{"sName": "only in the other library"}])"));
    Run run = cli({QStringLiteral("--db"), other, QStringLiteral("library"), QStringLiteral("import"), seed});
    QCOMPARE(run.status, 0);
    QVERIFY(QFile::exists(other));
    run = cli({QStringLiteral("--db"), other, QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).array().size(), 1);
    // The default library is untouched and the preference never named the other file.
    run = cli({QStringLiteral("--json"), QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).array().size(), 0);
    const QSettings stored(m_dir.filePath(QStringLiteral("config/Marlo/Marlo.ini")), QSettings::IniFormat);
    QVERIFY(!stored.value(QStringLiteral("Initialize/DBName")).toString().contains(QLatin1String("elsewhere")));
}

void tst_libraryCli::noLibraryNoTemplate()
{
    QFile::remove(QDir(m_home).filePath(QStringLiteral("instdbxx.tmp")));
    const Run run = cli({QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(run.status, 1);
    // It says what it would have asked, takes No, and ends as the program would.
    QVERIFY2(run.err.contains(QLatin1String("The Marlo-database does not exist.")), qPrintable(run.err));
    QVERIFY2(run.err.contains(QLatin1String("No")), qPrintable(run.err));
    QVERIFY2(run.err.contains(QLatin1String("Due to a missing database, the program cannot continue execution.")), qPrintable(run.err));
    QVERIFY(!QFile::exists(QDir(m_home).filePath(QStringLiteral("Marlo.mdb"))));
}

void tst_libraryCli::notALibrary()
{
    const QString access = m_dir.filePath(QStringLiteral("old.mdb"));
    QByteArray bytes(2048, '\0');
    bytes.replace(0, 19, QByteArray("\x00\x01\x00\x00Standard Jet DB", 19));
    LibraryTest::writeFile(access, bytes);
    const Run run = cli({QStringLiteral("--db"), access, QStringLiteral("library"), QStringLiteral("list")});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(QLatin1String("Access")), qPrintable(run.err));
    // One clear error, not a cascade.
    QCOMPARE(run.err.count(QLatin1String("error ")), 1);
    QCOMPARE(fileBytes(access), bytes);
}

void tst_libraryCli::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no library command") << QStringList{QStringLiteral("library")};
    QTest::newRow("unknown") << QStringList{QStringLiteral("library"), QStringLiteral("purge")};
    QTest::newRow("show without ID") << QStringList{QStringLiteral("library"), QStringLiteral("show")};
    QTest::newRow("list with extra") << QStringList{QStringLiteral("library"), QStringLiteral("list"), QStringLiteral("x")};
    QTest::newRow("import two files") << QStringList{QStringLiteral("library"), QStringLiteral("import"), QStringLiteral("a"), QStringLiteral("b")};
}

void tst_libraryCli::usage()
{
    QFETCH(QStringList, arguments);
    const Run run = cli(arguments);
    QCOMPARE(run.status, 2);
    QVERIFY(!run.err.isEmpty());
    // Wrong usage never touches the library.
    QVERIFY(!QFile::exists(QDir(m_home).filePath(QStringLiteral("Marlo.mdb"))));
}

QTEST_GUILESS_MAIN(tst_libraryCli)
#include "tst_libraryCli.moc"
