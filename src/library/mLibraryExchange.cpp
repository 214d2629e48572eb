#include "library/mLibraryExchange.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "library/cColSetsTemplate.h"
#include "library/mGUIDTools.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QList>
#include <QPair>
#include <QSaveFile>
#include <QVariant>
#include <cmath>
#include <cstddef>
#include <functional>
#include <optional>

namespace mLibraryExchange {
namespace {

enum class Kind { Key, Text, Long, Bool, Date, Vars };

struct Field {
    const char* name;
    Kind kind;
};

// The stored fields of a setting, in the order of its table.
const Field kFields[] = {
    {"ID", Kind::Key},           {"ParentID", Kind::Key},        {"Version", Kind::Key},
    {"lShotTime", Kind::Long},   {"lDwellTime", Kind::Long},     {"lCycleTimeOpen", Kind::Long},
    {"lLoadTime", Kind::Long},   {"lCycleTimeClose", Kind::Long}, {"lGameTime", Kind::Long},
    {"lFiringMode", Kind::Long}, {"sName", Kind::Text},          {"dtDate", Kind::Date},
    {"bCTCLikeCTO", Kind::Bool}, {"bExpertMode", Kind::Bool},    {"bAlertOne", Kind::Bool},
    {"bAlertTwo", Kind::Bool},   {"lAlertOne", Kind::Long},      {"lAlertTwo", Kind::Long},
    {"UserVariables", Kind::Vars},
};

using UserVars = QList<QPair<QString, QString>>;

// One template of a document, checked: only the fields it gives.
struct Incoming {
    QHash<QString, QVariant> values;
    std::optional<UserVars> userVars;
};

// A stored field of a setting with its getter and setter.
template <typename V>
struct Accessor {
    const char* name;
    V (cSetsTemplate::*get)() const;
    void (cSetsTemplate::*set)(V);
};

const Accessor<qint32> kLongFields[] = {
    {"lShotTime", &cSetsTemplate::lShotTime, &cSetsTemplate::setlShotTime},
    {"lDwellTime", &cSetsTemplate::lDwellTime, &cSetsTemplate::setlDwellTime},
    {"lCycleTimeOpen", &cSetsTemplate::lCycleTimeOpen, &cSetsTemplate::setlCycleTimeOpen},
    {"lLoadTime", &cSetsTemplate::lLoadTime, &cSetsTemplate::setlLoadTime},
    {"lCycleTimeClose", &cSetsTemplate::lCycleTimeClose, &cSetsTemplate::setlCycleTimeClose},
    {"lGameTime", &cSetsTemplate::lGameTime, &cSetsTemplate::setlGameTime},
    {"lFiringMode", &cSetsTemplate::lFiringMode, &cSetsTemplate::setlFiringMode},
    {"lAlertOne", &cSetsTemplate::lAlertOne, &cSetsTemplate::setlAlertOne},
    {"lAlertTwo", &cSetsTemplate::lAlertTwo, &cSetsTemplate::setlAlertTwo},
};

const Accessor<bool> kBoolFields[] = {
    {"bCTCLikeCTO", &cSetsTemplate::bCTCLikeCTO, &cSetsTemplate::setbCTCLikeCTO},
    {"bExpertMode", &cSetsTemplate::bExpertMode, &cSetsTemplate::setbExpertMode},
    {"bAlertOne", &cSetsTemplate::bAlertOne, &cSetsTemplate::setbAlertOne},
    {"bAlertTwo", &cSetsTemplate::bAlertTwo, &cSetsTemplate::setbAlertTwo},
};

// What a grip record can carry of each whole number: a time or a mode is one byte on the grip,
// the game time is the game timer's one byte, the alerts its two-byte pre-alert times. A value
// outside could be stored, but never put to a grip.
struct Range {
    const char* name;
    qint32 max;
    const char* carried;
};
const char* const kOneByte = QT_TRANSLATE_NOOP("mLibraryExchange", "one byte");
const char* const kTwoBytes = QT_TRANSLATE_NOOP("mLibraryExchange", "two bytes");
const Range kRanges[] = {
    {"lShotTime", 255, kOneByte},   {"lDwellTime", 255, kOneByte},      {"lCycleTimeOpen", 255, kOneByte},
    {"lLoadTime", 255, kOneByte},   {"lCycleTimeClose", 255, kOneByte}, {"lGameTime", 255, kOneByte},
    {"lFiringMode", 255, kOneByte}, {"lAlertOne", 65535, kTwoBytes},    {"lAlertTwo", 65535, kTwoBytes},
};

// The longest text taken for a name, a value or a key.
constexpr qsizetype kMaxText = 65535;

constexpr char kContext[] = "mLibraryExchange";
const char* const kUnknownField = QT_TRANSLATE_NOOP("mLibraryExchange", "%1: unknown field \"%2\".");
const char* const kMustBeText = QT_TRANSLATE_NOOP("mLibraryExchange", "%1: %2 must be a text.");

cText text(const char* source, QList<cText> arguments = {})
{
    return cText(kContext, source, std::move(arguments));
}

QString number(qint64 value) { return QString::number(value); }

[[noreturn]] void raiseContent(const cText& problem)
{
    RaiseError(mErrCodes::RT_TYPE_MISMATCH, kModule, text(QT_TRANSLATE_NOOP("mLibraryExchange", "Not a Marlo library export: %1"), {problem}));
}

// A value the document gives that the library must not take.
[[noreturn]] void raiseValue(const cText& where, const cText& problem)
{
    RaiseError(mErrCodes::RT_INVALID_PROPERTY, kModule,
               text(QT_TRANSLATE_NOOP("mLibraryExchange", "Cannot import %1: %2. Nothing was imported."), {where, problem}));
}

void checkLength(const cText& where, const QString& field, const QString& value)
{
    if (value.size() > kMaxText)
        raiseValue(where, text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1 is %2 characters long; at most %3 are taken"),
                               {field, number(value.size()), number(kMaxText)}));
}

void checkRange(const cText& where, const QString& field, qint32 value)
{
    for (const Range& range : kRanges) {
        if (field == QLatin1String(range.name) && (value < 0 || value > range.max))
            raiseValue(where, text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1 is %2, but the grip carries it in %3 (0 to %4)"),
                                   {field, number(value), text(range.carried), number(range.max)}));
    }
}

std::optional<Kind> kindOf(const QString& name)
{
    for (const Field& field : kFields) {
        if (name == QLatin1String(field.name))
            return field.kind;
    }
    return std::nullopt;
}

UserVars readUserVars(const QJsonValue& value, const cText& where)
{
    if (!value.isArray())
        raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1: UserVariables must be an array."), {where}));
    UserVars vars;
    const QJsonArray array = value.toArray();
    for (qsizetype i = 0; i < array.size(); ++i) {
        const cText at = text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1, user variable %2"), {where, number(i + 1)});
        if (!array[i].isObject())
            raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1 must be an object with sName and sValue."), {at}));
        const QJsonObject object = array[i].toObject();
        QString name;
        QString variableValue;
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (it.key() != QLatin1String("sName") && it.key() != QLatin1String("sValue"))
                raiseContent(text(kUnknownField, {at, it.key()}));
            if (!it.value().isString())
                raiseContent(text(kMustBeText, {at, it.key()}));
            checkLength(at, it.key(), it.value().toString());
            (it.key() == QLatin1String("sName") ? name : variableValue) = it.value().toString();
        }
        vars.append({name, variableValue});
    }
    return vars;
}

Incoming readTemplate(const QJsonValue& value, qsizetype position)
{
    cText where = text(QT_TRANSLATE_NOOP("mLibraryExchange", "template %1"), {number(position)});
    if (!value.isObject())
        raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1 is not an object."), {where}));
    Incoming incoming;
    const QJsonObject object = value.toObject();
    // Named by its position and, where it has one, its name.
    const QJsonValue named = object.value(QLatin1String("sName"));
    if (named.isString() && !named.toString().isEmpty()) {
        const QString name = named.toString();
        where = text(QT_TRANSLATE_NOOP("mLibraryExchange", "template %1 (\"%2\")"),
                     {number(position), name.size() > 40 ? name.left(40) + QStringLiteral("...") : name});
    }
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString name = it.key();
        const QJsonValue v = it.value();
        const std::optional<Kind> kind = kindOf(name);
        if (!kind)
            raiseContent(text(kUnknownField, {where, name}));
        switch (*kind) {
        case Kind::Key:
            // A key that is not a text counts as missing: it gets a new one.
            if (v.isString()) {
                checkLength(where, name, v.toString());
                incoming.values.insert(name, v.toString());
            }
            else if (!v.isNull())
                raiseContent(text(kMustBeText, {where, name}));
            break;
        case Kind::Text:
            if (!v.isString())
                raiseContent(text(kMustBeText, {where, name}));
            checkLength(where, name, v.toString());
            incoming.values.insert(name, v.toString());
            break;
        case Kind::Long: {
            const double number = v.toDouble(std::nan(""));
            if (!v.isDouble() || number != std::floor(number) || number < -2147483648.0 || number > 2147483647.0)
                raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1: %2 must be a whole number from -2147483648 to 2147483647."),
                                  {where, name}));
            checkRange(where, name, static_cast<qint32>(number));
            incoming.values.insert(name, static_cast<qint32>(number));
            break;
        }
        case Kind::Bool:
            if (v.isBool())
                incoming.values.insert(name, v.toBool());
            else if (v.isDouble() && (v.toDouble() == 0.0 || v.toDouble() == 1.0))
                incoming.values.insert(name, v.toDouble() != 0.0);
            else
                raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1: %2 must be true or false."), {where, name}));
            break;
        case Kind::Date: {
            const QDate date = v.isString() ? QDate::fromString(v.toString(), QStringLiteral("yyyy-MM-dd")) : QDate();
            if (!date.isValid())
                raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "%1: %2 must be a date written yyyy-mm-dd."), {where, name}));
            incoming.values.insert(name, date);
            break;
        }
        case Kind::Vars:
            incoming.userVars = readUserVars(v, where);
            break;
        }
    }
    return incoming;
}

QList<Incoming> readDocument(const QByteArray& document)
{
    QJsonParseError parseError;
    const QJsonDocument json = QJsonDocument::fromJson(document, &parseError);
    if (json.isNull())
        raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "the JSON cannot be read (%1 at offset %2)."),
                          {parseError.errorString(), number(parseError.offset)}));
    QJsonArray templates;
    if (json.isArray()) {
        templates = json.array();
    } else {
        const QJsonObject root = json.object();
        for (auto it = root.begin(); it != root.end(); ++it) {
            if (it.key() != QLatin1String("templates"))
                raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "unknown member \"%1\" (expected {\"templates\": [...]})."), {it.key()}));
        }
        if (!root.value(QLatin1String("templates")).isArray())
            raiseContent(text(QT_TRANSLATE_NOOP("mLibraryExchange", "expected {\"templates\": [...]}.")));
        templates = root.value(QLatin1String("templates")).toArray();
    }
    QList<Incoming> result;
    for (qsizetype i = 0; i < templates.size(); ++i)
        result.append(readTemplate(templates[i], i + 1));
    return result;
}

// Makes the record's live user variables exactly vars, pairing them by position so that an
// unchanged list changes nothing. Answers whether anything changed.
bool applyUserVars(cSetsTemplate& record, const UserVars& vars)
{
    bool changed = false;
    QList<std::shared_ptr<cUserVar>> live;
    for (const auto& variable : record.colUserVar()) {
        if (!variable->IsDeleted())
            live.append(variable);
    }
    for (qsizetype i = 0; i < qMax(live.size(), vars.size()); ++i) {
        if (i < vars.size() && i < live.size()) {
            if (live[i]->sName() != vars[i].first || live[i]->sValue() != vars[i].second)
                changed = true;
            live[i]->setsName(vars[i].first);
            live[i]->setsValue(vars[i].second);
        } else if (i < vars.size()) {
            auto variable = record.colUserVar().AddOrThrow();
            variable->setsName(vars[i].first);
            variable->setsValue(vars[i].second);
            changed = true;
        } else {
            live[i]->setIsDeleted(true);
            changed = true;
        }
    }
    return changed;
}

// Sets each of the fields that the document gives and that differs; answers whether any did.
template <typename V, std::size_t N>
bool applyValues(cSetsTemplate& record, const Incoming& incoming, const Accessor<V> (&fields)[N])
{
    bool changed = false;
    for (const Accessor<V>& field : fields) {
        const auto it = incoming.values.constFind(QLatin1String(field.name));
        if (it != incoming.values.cend() && (record.*field.get)() != it->template value<V>()) {
            (record.*field.set)(it->template value<V>());
            changed = true;
        }
    }
    return changed;
}

bool applyFields(cSetsTemplate& record, const Incoming& incoming)
{
    bool changed = applyValues(record, incoming, kLongFields);
    if (applyValues(record, incoming, kBoolFields))
        changed = true;
    const auto name = incoming.values.constFind(QStringLiteral("sName"));
    if (name != incoming.values.cend() && record.sName() != name->toString()) {
        record.setsName(name->toString());
        changed = true;
    }
    // Only the date is stored: a time of day in memory is no difference.
    const auto date = incoming.values.constFind(QStringLiteral("dtDate"));
    if (date != incoming.values.cend() && record.dtDate().date() != date->toDate()) {
        record.setdtDate(QDateTime(date->toDate(), QTime(0, 0)));
        changed = true;
    }
    if (incoming.userVars && applyUserVars(record, *incoming.userVars))
        changed = true;
    return changed;
}

} // namespace

QJsonObject TemplateToJson(cSetsTemplate& record)
{
    QJsonObject object;
    object.insert(QStringLiteral("ID"), record.ID());
    object.insert(QStringLiteral("ParentID"), record.ParentID());
    object.insert(QStringLiteral("Version"), record.Version());
    for (const auto& field : kLongFields)
        object.insert(QLatin1String(field.name), (record.*field.get)());
    object.insert(QStringLiteral("sName"), record.sName());
    object.insert(QStringLiteral("dtDate"), record.dtDate().date().toString(QStringLiteral("yyyy-MM-dd")));
    for (const auto& field : kBoolFields)
        object.insert(QLatin1String(field.name), (record.*field.get)());
    QJsonArray vars;
    for (const auto& variable : record.colUserVar()) {
        if (variable->IsDeleted())
            continue;
        vars.append(QJsonObject{{QStringLiteral("sName"), variable->sName()},
                                {QStringLiteral("sValue"), variable->sValue()}});
    }
    object.insert(QStringLiteral("UserVariables"), vars);
    return object;
}

QJsonArray TemplatesToJson(cColSetsTemplate& library)
{
    QJsonArray array;
    for (const auto& record : library) {
        if (!record->IsDeleted())
            array.append(TemplateToJson(*record));
    }
    return array;
}

QByteArray ExportDocument(cColSetsTemplate& library)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("templates"), TemplatesToJson(library)}})
        .toJson(QJsonDocument::Indented);
}

void ExportFile(cColSetsTemplate& library, const QString& path)
{
    PassErrors(kModule, kRevision, QStringLiteral("ExportFile"), [&] {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(ExportDocument(library)) < 0 || !file.commit())
            RaiseError(mErrCodes::RT_FILE_ACCESS, kModule,
                       text(QT_TRANSLATE_NOOP("mLibraryExchange", "The file \"%1\" cannot be written: %2"), {path, file.errorString()}));
    });
}

ImportSummary ImportDocument(cColSetsTemplate& library, const QByteArray& document)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ImportDocument"), [&] {
        const QList<Incoming> templates = readDocument(document);
        ImportSummary summary;
        for (const Incoming& incoming : templates) {
            const QString id = incoming.values.value(QStringLiteral("ID")).toString();
            const bool wellFormed = mGUIDTools::IsGUIDString(id);
            if (wellFormed && library.Contains(id)) {
                const auto record = library.Find(id);
                if (applyFields(*record, incoming))
                    ++summary.updated;
                else
                    ++summary.unchanged;
                continue;
            }
            auto record = std::make_shared<cSetsTemplate>();
            // An imported setting carries the variables the document gives; a template that gives
            // none keeps what every new setting starts with (the seven standard annotations), as
            // it keeps a new setting's value of every other field the document leaves out.
            if (incoming.userVars)
                record->colUserVar().Clear();
            if (wellFormed) {
                record->setID(id);
                // A new ID reaches the collection only; the standard variables it already holds
                // must belong to the new ID too, or they would be saved as nobody's.
                for (const auto& variable : record->colUserVar())
                    variable->setParentID(id);
            }
            const QString version = incoming.values.value(QStringLiteral("Version")).toString();
            if (mGUIDTools::IsGUIDString(version))
                record->setVersion(version);
            applyFields(*record, incoming);
            library.AddByObjectOrThrow(record);
            ++summary.added;
        }
        return summary;
    });
}

ImportSummary ImportFile(cColSetsTemplate& library, const QString& path)
{
    return PassErrors(kModule, kRevision, QStringLiteral("ImportFile"), [&] {
        QFile file(path);
        if (!QFileInfo::exists(path))
            RaiseError(mErrCodes::RT_FILE_NOT_FOUND, kModule, text(QT_TRANSLATE_NOOP("mLibraryExchange", "The file \"%1\" does not exist."), {path}));
        if (!file.open(QIODevice::ReadOnly))
            RaiseError(mErrCodes::RT_FILE_ACCESS, kModule,
                       text(QT_TRANSLATE_NOOP("mLibraryExchange", "The file \"%1\" cannot be read: %2"), {path, file.errorString()}));
        return ImportDocument(library, file.readAll());
    });
}

} // namespace mLibraryExchange
