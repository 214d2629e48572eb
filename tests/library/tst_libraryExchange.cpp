// The library as a JSON document: every stored field out, templates in by ID, exactly the user
// variables of the document, nothing changed by importing an export again, and a clear error
// for a malformed document.
#include "LibraryTestSupport.h"

#include "library/cColSetsTemplate.h"
#include "library/mGUIDTools.h"
#include "library/mLibraryExchange.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using LibraryTest::Fixture;

namespace {

const QString kKnown = QStringLiteral("{ABCDEF01-2345-4678-89AB-CDEF01234567}");

// Every row of both tables, in a stable order, as text.
QStringList dump(Fixture& f)
{
    QStringList rows;
    for (const QString& sql : {QStringLiteral("SELECT * FROM ta_SetsTemplate ORDER BY ID"),
                               QStringLiteral("SELECT * FROM ta_UserVar ORDER BY ID")}) {
        QSqlQuery query(f.inspector());
        query.exec(sql);
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            rows.append(values.join(QLatin1Char('|')));
        }
    }
    return rows;
}

std::shared_ptr<cSetsTemplate> sample(cColSetsTemplate& library)
{
    auto r = std::make_shared<cSetsTemplate>();
    r->setID(kKnown);
    r->colUserVar().Clear();
    r->setlShotTime(10);
    r->setlDwellTime(11);
    r->setlCycleTimeOpen(30);
    r->setlLoadTime(35);
    r->setlCycleTimeClose(28);
    r->setlFiringMode(2);
    r->setlGameTime(600);
    r->setlAlertOne(60);
    r->setlAlertTwo(-1);
    r->setbAlertOne(true);
    r->setbExpertMode(true);
    r->setsName(QStringLiteral("Cold \"wet\" day"));
    r->setdtDate(QDateTime(QDate(2001, 8, 1), QTime(15, 30)));
    r->setlShots(7);
    r->AddUserVar(QStringLiteral("Barrel"), QStringLiteral("14\""));
    r->AddUserVar(QStringLiteral("Paint"), QString());
    library.AddByObject(r);
    return r;
}

} // namespace

class tst_libraryExchange : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void exportFields();
    void exportSkipsDeleted();
    void importAdds_data();
    void importAdds();
    void importUpdatesById();
    void importUserVariables_data();
    void importUserVariables();
    void importExportAgainChangesNothing();
    void malformed_data();
    void malformed();
    void files();
};

void tst_libraryExchange::initTestCase()
{
    QVERIFY2(QFile::exists(LibraryTest::builtTemplate()), "the built template instdbxx.tmp is missing (MARLO_TEMPLATE_DIR)");
}

void tst_libraryExchange::exportFields()
{
    cColSetsTemplate library;
    auto r = sample(library);
    const QJsonDocument document = QJsonDocument::fromJson(mLibraryExchange::ExportDocument(library));
    QVERIFY(document.isObject());
    QCOMPARE(document.object().keys(), QStringList{QStringLiteral("templates")});
    const QJsonArray templates = document.object().value(QStringLiteral("templates")).toArray();
    QCOMPARE(templates.size(), 1);
    const QJsonObject t = templates[0].toObject();
    QStringList keys = t.keys();
    keys.sort();
    QStringList expected = {"ID", "ParentID", "Version", "lShotTime", "lDwellTime", "lCycleTimeOpen", "lLoadTime",
                            "lCycleTimeClose", "lGameTime", "lFiringMode", "sName", "dtDate", "bCTCLikeCTO",
                            "bExpertMode", "bAlertOne", "bAlertTwo", "lAlertOne", "lAlertTwo", "UserVariables"};
    expected.sort();
    // Every stored field and nothing that is not stored (lShots, lHyperTime, lHyperMode).
    QCOMPARE(keys, expected);
    QCOMPARE(t.value(QStringLiteral("ID")).toString(), kKnown);
    QCOMPARE(t.value(QStringLiteral("Version")).toString(), r->Version());
    QCOMPARE(t.value(QStringLiteral("ParentID")).toString(), QString());
    QCOMPARE(t.value(QStringLiteral("sName")).toString(), QStringLiteral("Cold \"wet\" day"));
    QCOMPARE(t.value(QStringLiteral("dtDate")).toString(), QStringLiteral("2001-08-01"));
    QCOMPARE(t.value(QStringLiteral("lShotTime")).toInt(), 10);
    QCOMPARE(t.value(QStringLiteral("lDwellTime")).toInt(), 11);
    QCOMPARE(t.value(QStringLiteral("lCycleTimeOpen")).toInt(), 30);
    QCOMPARE(t.value(QStringLiteral("lLoadTime")).toInt(), 35);
    QCOMPARE(t.value(QStringLiteral("lCycleTimeClose")).toInt(), 28);
    QCOMPARE(t.value(QStringLiteral("lFiringMode")).toInt(), 2);
    QCOMPARE(t.value(QStringLiteral("lGameTime")).toInt(), 600);
    QCOMPARE(t.value(QStringLiteral("lAlertOne")).toInt(), 60);
    QCOMPARE(t.value(QStringLiteral("lAlertTwo")).toInt(), -1);
    QVERIFY(t.value(QStringLiteral("bAlertOne")).isBool() && t.value(QStringLiteral("bAlertOne")).toBool());
    QVERIFY(!t.value(QStringLiteral("bAlertTwo")).toBool());
    QVERIFY(!t.value(QStringLiteral("bCTCLikeCTO")).toBool());
    QVERIFY(t.value(QStringLiteral("bExpertMode")).toBool());
    const QJsonArray vars = t.value(QStringLiteral("UserVariables")).toArray();
    QCOMPARE(vars.size(), 2);
    QCOMPARE(vars[0].toObject(), (QJsonObject{{"sName", "Barrel"}, {"sValue", "14\""}}));
    QCOMPARE(vars[1].toObject(), (QJsonObject{{"sName", "Paint"}, {"sValue", ""}}));
}

void tst_libraryExchange::exportSkipsDeleted()
{
    cColSetsTemplate library;
    auto gone = library.Add();
    auto kept = library.Add();
    gone->setIsDeleted(true);
    kept->colUserVar().Item(1)->setIsDeleted(true);
    const QJsonArray templates = mLibraryExchange::TemplatesToJson(library);
    QCOMPARE(templates.size(), 1);
    QCOMPARE(templates[0].toObject().value(QStringLiteral("ID")).toString(), kept->ID());
    QCOMPARE(templates[0].toObject().value(QStringLiteral("UserVariables")).toArray().size(), 6);
}

void tst_libraryExchange::importAdds_data()
{
    QTest::addColumn<QJsonValue>("id");
    QTest::addColumn<bool>("keepsId");
    QTest::newRow("well-formed, unknown") << QJsonValue(kKnown) << true;
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << false;
    QTest::newRow("null") << QJsonValue(QJsonValue::Null) << false;
    QTest::newRow("lower case") << QJsonValue(kKnown.toLower()) << false;
    QTest::newRow("hostile") << QJsonValue(QStringLiteral("x' OR '1'='1")) << false;
    QTest::newRow("empty") << QJsonValue(QString()) << false;
}

void tst_libraryExchange::importAdds()
{
    QFETCH(QJsonValue, id);
    QFETCH(bool, keepsId);
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColSetsTemplate library;
    auto existing = library.Add();
    QJsonObject t{{"sName", "Imported"}, {"lLoadTime", 40}, {"dtDate", "2020-02-29"}, {"bCTCLikeCTO", true},
                  {"Version", "{11111111-1111-4111-8111-111111111111}"}, {"ParentID", "{IGNORED}"}};
    if (!id.isUndefined())
        t.insert(QStringLiteral("ID"), id);
    const auto summary = mLibraryExchange::ImportDocument(
        library, QJsonDocument(QJsonObject{{"templates", QJsonArray{t}}}).toJson());
    QCOMPARE(summary.added, 1);
    QCOMPARE(summary.updated, 0);
    QCOMPARE(library.Count(), 2);
    auto added = library.Item(2);
    QVERIFY(mGUIDTools::IsGUIDString(added->ID()));
    QCOMPARE(added->ID() == kKnown, keepsId);
    QVERIFY(added->ID() != existing->ID());
    QCOMPARE(added->Version(), QStringLiteral("{11111111-1111-4111-8111-111111111111}"));
    QCOMPARE(added->ParentID(), QString());
    QCOMPARE(added->sName(), QStringLiteral("Imported"));
    QCOMPARE(added->lLoadTime(), 40);
    QCOMPARE(added->dtDate(), QDateTime(QDate(2020, 2, 29), QTime(0, 0)));
    QVERIFY(added->bCTCLikeCTO());
    // Fields the document does not give keep a new record's defaults.
    QCOMPARE(added->lGameTime(), 10);
    QCOMPARE(added->lAlertOne(), 1);
    // No user variables in the document: none, not the seven standard ones.
    QCOMPARE(added->colUserVar().Count(), 0);
    QCOMPARE(added->colUserVar().ParentID(), added->ID());
    QVERIFY(added->IsNew());
    QVERIFY(ui.errors.isEmpty());
    mMain::SetUserInterface(nullptr);
}

void tst_libraryExchange::importUpdatesById()
{
    ScriptedUi ui;
    mMain::SetUserInterface(&ui);
    cColSetsTemplate library;
    auto r = sample(library);
    r->setIsNew(false);
    r->setIsDirtySelf(false);
    const QString version = r->Version();
    const QJsonObject t{{"ID", kKnown}, {"lShotTime", 12}, {"sName", "Renamed"}, {"Version", "{22222222-2222-4222-8222-222222222222}"}};
    const auto summary = mLibraryExchange::ImportDocument(library, QJsonDocument(QJsonArray{t}).toJson());
    QCOMPARE(summary.updated, 1);
    QCOMPARE(summary.added, 0);
    QCOMPARE(library.Count(), 1);
    QCOMPARE(r->lShotTime(), 12);
    QCOMPARE(r->sName(), QStringLiteral("Renamed"));
    // What the document leaves out stays; the version of a row is never rewritten.
    QCOMPARE(r->lDwellTime(), 11);
    QCOMPARE(r->Version(), version);
    QCOMPARE(r->colUserVar().Count(), 2);
    QVERIFY(r->IsDirtySelf());
    QVERIFY(ui.errors.isEmpty());
    mMain::SetUserInterface(nullptr);
}

void tst_libraryExchange::importUserVariables_data()
{
    QTest::addColumn<QStringList>("names");  // what the document gives for the sample's two variables
    QTest::addColumn<int>("deleted");        // members marked deleted afterwards
    QTest::addColumn<bool>("changed");
    QTest::newRow("the same two") << QStringList{"Barrel", "Paint"} << 0 << false;
    QTest::newRow("one fewer") << QStringList{"Barrel"} << 1 << true;
    QTest::newRow("none") << QStringList() << 2 << true;
    QTest::newRow("one more") << QStringList{"Barrel", "Paint", "Sun"} << 0 << true;
    QTest::newRow("renamed") << QStringList{"Barrel", "Colour"} << 0 << true;
}

void tst_libraryExchange::importUserVariables()
{
    QFETCH(QStringList, names);
    QFETCH(int, deleted);
    QFETCH(bool, changed);
    cColSetsTemplate library;
    auto r = sample(library);
    r->setIsNew(false);
    r->setIsDirtySelf(false);
    for (const auto& variable : r->colUserVar()) {
        variable->setIsNew(false);
        variable->setIsDirtySelf(false);
    }
    QJsonArray vars;
    for (const QString& name : names)
        vars.append(QJsonObject{{"sName", name}, {"sValue", name == QLatin1String("Barrel") ? "14\"" : ""}});
    const auto summary = mLibraryExchange::ImportDocument(
        library, QJsonDocument(QJsonArray{QJsonObject{{"ID", kKnown}, {"UserVariables", vars}}}).toJson());
    QCOMPARE(summary.updated, changed ? 1 : 0);
    QCOMPARE(summary.unchanged, changed ? 0 : 1);
    QCOMPARE(r->IsDirty(), changed);
    QStringList live;
    int marked = 0;
    for (const auto& variable : r->colUserVar()) {
        if (variable->IsDeleted())
            ++marked;
        else
            live.append(variable->sName());
    }
    QCOMPARE(live, names);
    QCOMPARE(marked, deleted);
}

void tst_libraryExchange::importExportAgainChangesNothing()
{
    Fixture f;
    QVERIFY(f.ok);
    {
        cColSetsTemplate& library = mMain::Application().colSetsTemplate();
        sample(library);
        library.Add()->setsName(QStringLiteral("second, with the standard variables"));
        QSqlDatabase connection;
        library.Save(connection);
        library.Save(connection);
    }
    f.restart();
    const QString file = f.dir.filePath(QStringLiteral("export.json"));
    mLibraryExchange::ExportFile(mMain::Application().colSetsTemplate(), file);
    const QStringList before = dump(f);
    QCOMPARE(before.size(), 2 + 2 + 7);

    f.restart();
    cColSetsTemplate& library = mMain::Application().colSetsTemplate();
    const auto summary = mLibraryExchange::ImportFile(library, file);
    QCOMPARE(summary.added, 0);
    QCOMPARE(summary.updated, 0);
    QCOMPARE(summary.unchanged, 2);
    QVERIFY(!mMain::Application().AnythingNeedSave());
    QSqlDatabase connection;
    library.Save(connection);
    connection = QSqlDatabase();
    QCOMPARE(dump(f), before);

    // Into an empty library: the same rows (keys, versions and values) come out of it.
    f.restart();
    QVERIFY(f.exec(QStringLiteral("DELETE FROM ta_SetsTemplate")));
    QVERIFY(f.exec(QStringLiteral("DELETE FROM ta_UserVar")));
    f.restart();
    cColSetsTemplate& empty = mMain::Application().colSetsTemplate();
    QCOMPARE(mLibraryExchange::ImportFile(empty, file).added, 2);
    QSqlDatabase again;
    empty.Save(again);
    again = QSqlDatabase();
    f.restart();
    mLibraryExchange::ExportFile(mMain::Application().colSetsTemplate(), f.dir.filePath(QStringLiteral("second.json")));
    QCOMPARE(LibraryTest::fileBytes(f.dir.filePath(QStringLiteral("second.json"))), LibraryTest::fileBytes(file));
    QVERIFY(f.ui.errors.isEmpty());
}

void tst_libraryExchange::malformed_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("problem");
    QTest::newRow("not JSON") << QByteArray("{\"templates\": [") << QStringLiteral("cannot be read");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("cannot be read");
    QTest::newRow("other member") << QByteArray(R"({"templates": [], "extra": 1})") << QStringLiteral("extra");
    QTest::newRow("templates not an array") << QByteArray(R"({"templates": {}})") << QStringLiteral("templates");
    QTest::newRow("template not an object") << QByteArray(R"({"templates": [{}, 5]})") << QStringLiteral("template 2");
    QTest::newRow("unknown field") << QByteArray(R"([{"lShotTim": 5}])") << QStringLiteral("lShotTim");
    QTest::newRow("memory-only field") << QByteArray(R"([{"lShots": 5}])") << QStringLiteral("lShots");
    QTest::newRow("text for a number") << QByteArray(R"([{"lShotTime": "5"}])") << QStringLiteral("lShotTime");
    QTest::newRow("fraction") << QByteArray(R"([{"lShotTime": 5.5}])") << QStringLiteral("whole number");
    QTest::newRow("too big") << QByteArray(R"([{"lAlertOne": 2147483648}])") << QStringLiteral("lAlertOne");
    QTest::newRow("yes/no as text") << QByteArray(R"([{"bExpertMode": "True"}])") << QStringLiteral("bExpertMode");
    QTest::newRow("yes/no as 2") << QByteArray(R"([{"bExpertMode": 2}])") << QStringLiteral("bExpertMode");
    QTest::newRow("date in another form") << QByteArray(R"([{"dtDate": "08-01-2001"}])") << QStringLiteral("yyyy-mm-dd");
    QTest::newRow("impossible date") << QByteArray(R"([{"dtDate": "2001-02-30"}])") << QStringLiteral("dtDate");
    QTest::newRow("name not a text") << QByteArray(R"([{"sName": null}])") << QStringLiteral("sName");
    QTest::newRow("variables not an array") << QByteArray(R"([{"UserVariables": {}}])") << QStringLiteral("UserVariables");
    QTest::newRow("variable value a number") << QByteArray(R"([{"UserVariables": [{"sName": "a", "sValue": 1}]}])")
                                             << QStringLiteral("user variable 1");
    QTest::newRow("variable with an ID") << QByteArray(R"([{"UserVariables": [{"ID": "x"}]}])") << QStringLiteral("ID");
    QTest::newRow("bad one after a good one") << QByteArray(R"([{"sName": "fine"}, {"lLoadTime": true}])")
                                              << QStringLiteral("template 2");
}

void tst_libraryExchange::malformed()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, problem);
    cColSetsTemplate library;
    auto r = sample(library);
    try {
        mLibraryExchange::ImportDocument(library, document);
        QFAIL("the document was accepted");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), 13);
        QVERIFY2(e.Description().startsWith(QLatin1String("Not a Marlo library export")), qPrintable(e.Description()));
        QVERIFY2(e.Description().contains(problem), qPrintable(e.Description()));
    }
    // Nothing changed, not even by the good templates before the bad one.
    QCOMPARE(library.Count(), 1);
    QCOMPARE(r->sName(), QStringLiteral("Cold \"wet\" day"));
}

void tst_libraryExchange::files()
{
    QTemporaryDir dir;
    cColSetsTemplate library;
    sample(library);
    try {
        mLibraryExchange::ImportFile(library, dir.filePath(QStringLiteral("absent.json")));
        QFAIL("a missing file was read");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), 53);
    }
    try {
        mLibraryExchange::ExportFile(library, dir.filePath(QStringLiteral("no/folder/out.json")));
        QFAIL("a file was written into a missing folder");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), 75);
    }
    const QString out = dir.filePath(QStringLiteral("out.json"));
    mLibraryExchange::ExportFile(library, out);
    cColSetsTemplate other;
    QCOMPARE(mLibraryExchange::ImportFile(other, out).added, 1);
    QCOMPARE(other.Item(1)->ID(), kKnown);
    QCOMPARE(other.Item(1)->colUserVar().Count(), 2);
}

QTEST_GUILESS_MAIN(tst_libraryExchange)
#include "tst_libraryExchange.moc"
