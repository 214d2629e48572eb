// marlo-cli diff ID, run as the program itself against the built-in virtual grip: the same and
// differing values as a table and as JSON (named as get all --json names them), the exit status,
// a template that does not exist, a grip that refuses or says nothing; the library and the grip
// stay as they were.
#include "CliRunner.h"
#include "../library/LibraryTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

const QString kSame = QStringLiteral("{0F0F0F0F-1111-4222-8333-444444444444}");
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

class tst_cliDiff : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));

    CliRun cli(const QStringList& arguments) { return RunCli(QDir(m_dir.path()), m_home, arguments); }

private slots:
    void initTestCase()
    {
        const QJsonArray templates{
            setting(kSame, {}),
            setting(kOneOff, {{"lLoadTime", 36}}),
            setting(kAllOff, {{"lShotTime", 11}, {"lDwellTime", 11}, {"lCycleTimeOpen", 31}, {"lLoadTime", 36}, {"lCycleTimeClose", 29},
                              {"lFiringMode", 1}, {"lGameTime", 11}, {"bAlertOne", true}, {"lAlertOne", 61}, {"bAlertTwo", true},
                              {"lAlertTwo", 31}}),
        };
        LibraryTest::writeFile(m_dir.filePath(QStringLiteral("seed")), QJsonDocument(QJsonObject{{"templates", templates}}).toJson());
        QVERIFY(QDir().mkpath(m_home));
        QVERIFY(QFile::copy(LibraryTest::builtTemplate(), QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
        QCOMPARE(cli({"library", "import", "<seed>"}).status, 0);
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
        QTest::newRow("a switch differs, JSON") << QStringList{"--json", "diff", kAllOff} << "" << 4
                                                << "{\"field\":\"PreAlert1On\",\"grip\":false,\"template\":true}";
        QTest::newRow("all differ") << QStringList{"diff", kAllOff} << "" << 4 << "PreAlert2Time   30    31\n11 values differ\n";
        QTest::newRow("no such template") << QStringList{"diff", "{NOT-THERE}"} << "" << 1 << "The library holds no template \"{NOT-THERE}\".";
        QTest::newRow("two IDs") << QStringList{"diff", kSame, kOneOff} << "" << 2 << "diff needs the ID";
        QTest::newRow("grip refusing the game timer") << QStringList{"diff", kSame} << ",fault=nak@16" << 3 << "refused";
        QTest::newRow("grip silent on the timing") << QStringList{"diff", kSame} << ",fault=silent@14" << 1 << "error 10213";
    }
    void diff()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, grip);
        QFETCH(int, status);
        QFETCH(QString, said);
        const QString state = m_dir.filePath(QStringLiteral("grip.json"));
        QFile::remove(state);
        const QString device = QStringLiteral("sim:state=") + state;
        QCOMPARE(cli({"--device", device, "get", "timing"}).status, 0); // the state file, as the grip holds it
        const QByteArray gripBefore = LibraryTest::fileBytes(state);
        const QString library = QDir(m_home).filePath(QStringLiteral("Marlo.mdb"));
        const QByteArray libraryBefore = LibraryTest::fileBytes(library);

        const CliRun run = cli(QStringList{"--device", device + grip} + arguments);
        QCOMPARE(run.status, status);
        QVERIFY2((status == 0 || status == 4 ? run.out : run.err).contains(said), qPrintable(run.out + run.err));
        QCOMPARE(LibraryTest::fileBytes(state), gripBefore);
        QCOMPARE(LibraryTest::fileBytes(library), libraryBefore);
    }

    // The fields are named as get all --json names those of the timing and the game timer.
    void namesAreThoseOfGetAll()
    {
        const CliRun get = cli({"--device", "sim", "--json", "get", "all"});
        const QJsonObject all = QJsonDocument::fromJson(get.out.toUtf8()).object();
        const CliRun diff = cli({"--device", "sim", "--json", "diff", kAllOff});
        QStringList named;
        for (const QJsonValue& row : QJsonDocument::fromJson(diff.out.toUtf8()).object().value("differences").toArray())
            named << row["field"].toString();
        QStringList got = all.value("timing").toObject().keys() + all.value("gametimer").toObject().keys();
        got.removeAll(QStringLiteral("ROF")); // worked out, not held
        named.sort();
        got.sort();
        QCOMPARE(named, got);
    }
};

QTEST_GUILESS_MAIN(tst_cliDiff)
#include "tst_cliDiff.moc"
