// Fuzz target: marlo-cli's library import. Whatever the JSON, the import either refuses it with
// a clear error (13: not an export, 380: a value no grip record can carry) and changes nothing,
// or takes it: then every value is one a grip record can carry, and the library saved in one
// transaction to a real SQLite file and read again holds exactly what was imported (a lone
// surrogate half as U+FFFD).
#include "FuzzSupport.h"

#include "base/mErrCodes.h"
#include "library/cColSetsTemplate.h"
#include "library/mLibraryExchange.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>

namespace {

QSqlDatabase g_connection;

// A JSON value with every text as the library stores it.
QJsonValue storedValue(const QJsonValue& value)
{
    if (value.isString())
        return fuzz::stored(value.toString());
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue& item : value.toArray())
            array.append(storedValue(item));
        return array;
    }
    if (value.isObject()) {
        QJsonObject object;
        const QJsonObject in = value.toObject();
        for (auto it = in.begin(); it != in.end(); ++it)
            object.insert(fuzz::stored(it.key()), storedValue(it.value()));
        return object;
    }
    return value;
}

// The templates of a library as the file would hold them, one JSON text each, in order.
QStringList storedTemplates(cColSetsTemplate& library)
{
    QStringList texts;
    for (const QJsonValue& value : mLibraryExchange::TemplatesToJson(library))
        texts.append(QString::fromUtf8(QJsonDocument(storedValue(value).toObject()).toJson(QJsonDocument::Compact)));
    texts.sort();
    return texts;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    g_connection = fuzz::openLibrary(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray document(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    cColSetsTemplate library;
    auto sample = library.AddOrThrow();
    sample->setIsNew(false);
    sample->setIsDirtySelf(false);
    for (const auto& variable : sample->colUserVar()) {
        variable->setIsNew(false);
        variable->setIsDirtySelf(false);
    }
    const QStringList before = storedTemplates(library);
    try {
        mLibraryExchange::ImportDocument(library, document);
    } catch (const MarloError& e) {
        fuzz::check(e.Number() == mErrCodes::RT_TYPE_MISMATCH || e.Number() == mErrCodes::RT_INVALID_PROPERTY,
                    QStringLiteral("the import raised %1: %2").arg(e.Number()).arg(e.Description().left(200)));
        fuzz::check(library.Count() == 1 && !library.IsDirty() && storedTemplates(library) == before,
                    QStringLiteral("a refused import changed the library"));
        return 0;
    }
    for (const auto& record : library) {
        for (const qint32 value : {record->lShotTime(), record->lDwellTime(), record->lCycleTimeOpen(), record->lLoadTime(),
                                   record->lCycleTimeClose(), record->lFiringMode(), record->lGameTime()})
            fuzz::check(value >= 0 && value <= 255, QStringLiteral("a value beyond a byte was imported"));
        fuzz::check(record->lAlertOne() >= 0 && record->lAlertOne() <= 65535 && record->lAlertTwo() >= 0 && record->lAlertTwo() <= 65535,
                    QStringLiteral("an alert beyond two bytes was imported"));
        fuzz::check(!record->sROF().isEmpty(), QStringLiteral("no rate of fire"));
    }

    // Saved in one transaction (the sample is not new, so it is not written) and read again.
    QSqlQuery(g_connection).exec(QStringLiteral("DELETE FROM ta_SetsTemplate"));
    QSqlQuery(g_connection).exec(QStringLiteral("DELETE FROM ta_UserVar"));
    library.Remove(1);
    const QStringList imported = storedTemplates(library);
    mDatabase::RunInTransaction(g_connection, [&] { library.SaveOrThrow(g_connection); });
    cColSetsTemplate reread;
    reread.LoadOrThrow(g_connection);
    const QStringList read = storedTemplates(reread);
    fuzz::check(read == imported, QStringLiteral("the library read back differs from the import:\n%1\n%2")
                                      .arg(imported.join(QLatin1Char(10)).left(2000), read.join(QLatin1Char(10)).left(2000)));
    return 0;
}
