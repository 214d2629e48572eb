// The library as a JSON document read in: templates by ID, exactly the user variables of the
// document, and a clear error for a malformed document or a value no grip record carries. (The
// export, byte for byte: tst_libraryStorage's recorded session; importing an export again,
// through marlo-cli: tst_cliLibrary.)
#include "LibraryTestSupport.h"

#include "base/mErrCodes.h"
#include "library/mGUIDTools.h"
#include "library/mLibraryExchange.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

const QString kKnown = QStringLiteral("{ABCDEF01-2345-4678-89AB-CDEF01234567}");

QJsonArray variables(const QStringList& names)
{
    QJsonArray vars;
    for (const QString& name : names)
        vars.append(QJsonObject{{"sName", name}, {"sValue", name == QLatin1String("Barrel") ? "14\"" : ""}});
    return vars;
}

// A setting with every kind of field, the variables Barrel and Paint, and lShots in memory; as
// if stored (nothing new or changed).
std::shared_ptr<cSetsTemplate> sample(cColSetsTemplate& library)
{
    auto r = std::make_shared<cSetsTemplate>();
    r->setID(kKnown);
    r->colUserVar().Clear();
    LibraryTest::fill(*r, {10, 11, 30, 35, 28, 600, 2, 60, -1}, QStringLiteral("Cold \"wet\" day"),
                      QDateTime(QDate(2001, 8, 1), QTime(15, 30)), {false, true, true, false});
    r->setlShots(7);
    r->AddUserVar(QStringLiteral("Barrel"), QStringLiteral("14\""));
    r->AddUserVar(QStringLiteral("Paint"), QString());
    for (const auto& variable : r->colUserVar()) {
        variable->setIsNew(false);
        variable->setIsDirtySelf(false);
    }
    r->setIsNew(false);
    r->setIsDirtySelf(false);
    library.AddByObject(r);
    return r;
}

QByteArray document(const QJsonObject& t) { return QJsonDocument(QJsonObject{{"templates", QJsonArray{t}}}).toJson(); }

} // namespace

class tst_libraryExchange : public QObject {
    Q_OBJECT

private slots:
    void init() { mMain::SetUserInterface(&m_ui); }
    void cleanup() { QVERIFY(m_ui.errors.isEmpty()); mMain::SetUserInterface(nullptr); }

    void importAdds_data()
    {
        QTest::addColumn<QJsonValue>("id");
        QTest::addColumn<bool>("keepsId");
        QTest::newRow("well-formed, unknown") << QJsonValue(kKnown) << true;
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << false;
        QTest::newRow("hostile") << QJsonValue(QStringLiteral("x' OR '1'='1")) << false;
    }
    // Any other ID gets a new one; fields the document leaves out keep a new record's defaults,
    // the user variables included (the seven standard ones).
    void importAdds()
    {
        QFETCH(QJsonValue, id);
        QFETCH(bool, keepsId);
        cColSetsTemplate library;
        library.Add();
        QJsonObject t{{"sName", "Imported"}, {"dtDate", "2020-02-29"}, {"bCTCLikeCTO", true},
                      {"Version", "{11111111-1111-4111-8111-111111111111}"}, {"ParentID", "{IGNORED}"}};
        if (!id.isUndefined())
            t.insert(QStringLiteral("ID"), id);
        QCOMPARE(mLibraryExchange::ImportDocument(library, document(t)).added, 1);
        auto added = library.Item(2);
        QVERIFY(mGUIDTools::IsGUIDString(added->ID()) && added->ID() != library.Item(1)->ID() && added->IsNew());
        QCOMPARE(added->ID() == kKnown, keepsId);
        QCOMPARE((QStringList{added->Version(), added->ParentID(), added->sName(), added->dtDate().toString(Qt::ISODate)}),
                 (QStringList{"{11111111-1111-4111-8111-111111111111}", "", "Imported", "2020-02-29T00:00:00"}));
        QVERIFY(added->bCTCLikeCTO() && added->lGameTime() == 10 && added->lAlertOne() == 1 && added->lAlertTwo() == 1);
        QCOMPARE(LibraryTest::liveNames(added->colUserVar()), (QStringList{"Name", "Date", "Temperature", "Humidity", "Sun", "Barrel", "Paint"}));
        for (const auto& variable : added->colUserVar())
            QCOMPARE(variable->ParentID(), added->ID());  // they belong to the ID it ends up with
        QCOMPARE(added->colUserVar().Add()->ParentID(), added->ID());
    }

    void importUpdates_data()
    {
        QTest::addColumn<QJsonObject>("given");  // what the document gives for the sample
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QStringList>("live");   // its user variables afterwards, not deleted
        const QStringList two = {"Barrel", "Paint"};
        QTest::newRow("the same variables") << QJsonObject{{"UserVariables", variables(two)}} << false << two;
        QTest::newRow("one fewer") << QJsonObject{{"UserVariables", variables({"Barrel"})}} << true << QStringList{"Barrel"};
        QTest::newRow("one more") << QJsonObject{{"UserVariables", variables({"Barrel", "Paint", "Sun"})}} << true
                                  << QStringList{"Barrel", "Paint", "Sun"};
        QTest::newRow("same fields, date only") << QJsonObject{{"lShotTime", 10}, {"bExpertMode", true}, {"dtDate", "2001-08-01"}}
                                                << false << two;
        QTest::newRow("fields, a new version") << QJsonObject{{"lShotTime", 12}, {"Version", "{22222222-2222-4222-8222-222222222222}"}}
                                               << true << two;
    }
    // By ID: what the document gives changes, what it leaves out stays, the version never changes.
    void importUpdates()
    {
        QFETCH(QJsonObject, given);
        QFETCH(bool, changed);
        QFETCH(QStringList, live);
        cColSetsTemplate library;
        auto r = sample(library);
        const QString version = r->Version();
        given.insert(QStringLiteral("ID"), kKnown);
        const auto summary = mLibraryExchange::ImportDocument(library, document(given));
        QCOMPARE((QList<qint32>{summary.added, summary.updated, summary.unchanged}), (QList<qint32>{0, changed, !changed}));
        QCOMPARE(r->IsDirty(), changed);
        QCOMPARE(r->lShotTime(), given.value(QStringLiteral("lShotTime")).toInt(10));
        QCOMPARE(r->lDwellTime(), 11);
        QCOMPARE(r->Version(), version);
        QCOMPARE(LibraryTest::liveNames(r->colUserVar()), live);
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("problem");
        const int malformed = 13, outOfReach = mErrCodes::RT_INVALID_PROPERTY;
        QTest::newRow("not JSON") << QByteArray("{\"templates\": [") << malformed << "cannot be read";
        QTest::newRow("memory-only field") << QByteArray(R"([{"lShots": 5}])") << malformed << "lShots";
        QTest::newRow("bad one after a good one") << QByteArray(R"([{"sName": "fine"}, {"lLoadTime": true}])") << malformed << "template 2";
        // A value no grip record can carry, or a text beyond any sane length, names the template and the field.
        QTest::newRow("a negative time") << QByteArray(R"([{"lDwellTime": -1}])") << outOfReach << "template 1: lDwellTime is -1";
        QTest::newRow("a mode beyond a byte, after a good one")
            << QByteArray(R"([{}, {"sName": "x", "lFiringMode": 256}])") << outOfReach
            << "template 2 (\"x\"): lFiringMode is 256, but the grip carries it in one byte (0 to 255)";
        QTest::newRow("an alert beyond two bytes") << QByteArray(R"([{"lAlertTwo": 65536}])") << outOfReach
                                                   << "lAlertTwo is 65536, but the grip carries it in two bytes (0 to 65535)";
        QTest::newRow("a long value") << "[{\"UserVariables\": [{\"sName\": \"a\", \"sValue\": \"" + QByteArray(70000, 'v') + "\"}]}]"
                                      << outOfReach << "template 1, user variable 1: sValue is 70000 characters long";
    }
    // A clear error, and nothing changed, not even by the good templates before the bad one.
    void refused()
    {
        QFETCH(QByteArray, document);
        QFETCH(int, number);
        QFETCH(QString, problem);
        cColSetsTemplate library;
        auto r = sample(library);
        try {
            mLibraryExchange::ImportDocument(library, document);
            QFAIL("the document was accepted");
        } catch (const MarloError& e) {
            QCOMPARE(e.Number(), number);
            const bool framed = number == 13 ? e.Description().startsWith(QLatin1String("Not a Marlo library export"))
                                             : e.Description().startsWith(QLatin1String("Cannot import "))
                                                   && e.Description().endsWith(QLatin1String("Nothing was imported."));
            QVERIFY2(framed && e.Description().contains(problem), qPrintable(e.Description()));
        }
        QCOMPARE(library.Count(), 1);
        QVERIFY(!r->IsDirty());
    }

private:
    ScriptedUi m_ui;
};

QTEST_GUILESS_MAIN(tst_libraryExchange)
#include "tst_libraryExchange.moc"
