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
const Range kRanges[] = {
    {"lShotTime", 255, "one byte"},      {"lDwellTime", 255, "one byte"},   {"lCycleTimeOpen", 255, "one byte"},
    {"lLoadTime", 255, "one byte"},      {"lCycleTimeClose", 255, "one byte"}, {"lGameTime", 255, "one byte"},
    {"lFiringMode", 255, "one byte"},    {"lAlertOne", 65535, "two bytes"}, {"lAlertTwo", 65535, "two bytes"},
};

// The longest text taken for a name, a value or a key.
constexpr qsizetype kMaxText = 65535;

[[noreturn]] void raiseContent(const QString& problem)
{
    RaiseError(mErrCodes::RT_TYPE_MISMATCH, kModule, QStringLiteral("Not a Marlo library export: %1").arg(problem));
}

// A value the document gives that the library must not take.
[[noreturn]] void raiseValue(const QString& where, const QString& problem)
{
    RaiseError(mErrCodes::RT_INVALID_PROPERTY, kModule,
               QStringLiteral("Cannot import %1: %2. Nothing was imported.").arg(where, problem));
}

void checkLength(const QString& where, const QString& field, const QString& text)
{
    if (text.size() > kMaxText)
        raiseValue(where, QStringLiteral("%1 is %2 characters long; at most %3 are taken").arg(field).arg(text.size()).arg(kMaxText));
}

void checkRange(const QString& where, const QString& field, qint32 value)
{
    for (const Range& range : kRanges) {
        if (field == QLatin1String(range.name) && (value < 0 || value > range.max))
            raiseValue(where, QStringLiteral("%1 is %2, but the grip carries it in %3 (0 to %4)")
                                  .arg(field)
                                  .arg(value)
                                  .arg(QLatin1String(range.carried))
                                  .arg(range.max));
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

UserVars readUserVars(const QJsonValue& value, const QString& where)
{
    if (!value.isArray())
        raiseContent(QStringLiteral("%1: UserVariables must be an array.").arg(where));
    UserVars vars;
    const QJsonArray array = value.toArray();
    for (qsizetype i = 0; i < array.size(); ++i) {
        const QString at = QStringLiteral("%1, user variable %2").arg(where).arg(i + 1);
        if (!array[i].isObject())
            raiseContent(QStringLiteral("%1 must be an object with sName and sValue.").arg(at));
        const QJsonObject object = array[i].toObject();
        QString name;
        QString text;
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (it.key() != QLatin1String("sName") && it.key() != QLatin1String("sValue"))
                raiseContent(QStringLiteral("%1: unknown field \"%2\".").arg(at, it.key()));
            if (!it.value().isString())
                raiseContent(QStringLiteral("%1: %2 must be a text.").arg(at, it.key()));
            checkLength(at, it.key(), it.value().toString());
            (it.key() == QLatin1String("sName") ? name : text) = it.value().toString();
        }
        vars.append({name, text});
    }
    return vars;
}

Incoming readTemplate(const QJsonValue& value, qsizetype position)
{
    QString where = QStringLiteral("template %1").arg(position);
    if (!value.isObject())
        raiseContent(QStringLiteral("%1 is not an object.").arg(where));
    Incoming incoming;
    const QJsonObject object = value.toObject();
    // Named by its position and, where it has one, its name.
    const QJsonValue named = object.value(QLatin1String("sName"));
    if (named.isString() && !named.toString().isEmpty()) {
        const QString name = named.toString();
        where += QStringLiteral(" (\"%1\")").arg(name.size() > 40 ? name.left(40) + QStringLiteral("...") : name);
    }
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString name = it.key();
        const QJsonValue v = it.value();
        const std::optional<Kind> kind = kindOf(name);
        if (!kind)
            raiseContent(QStringLiteral("%1: unknown field \"%2\".").arg(where, name));
        switch (*kind) {
        case Kind::Key:
            // A key that is not a text counts as missing: it gets a new one.
            if (v.isString()) {
                checkLength(where, name, v.toString());
                incoming.values.insert(name, v.toString());
            }
            else if (!v.isNull())
                raiseContent(QStringLiteral("%1: %2 must be a text.").arg(where, name));
            break;
        case Kind::Text:
            if (!v.isString())
                raiseContent(QStringLiteral("%1: %2 must be a text.").arg(where, name));
            checkLength(where, name, v.toString());
            incoming.values.insert(name, v.toString());
            break;
        case Kind::Long: {
            const double number = v.toDouble(std::nan(""));
            if (!v.isDouble() || number != std::floor(number) || number < -2147483648.0 || number > 2147483647.0)
                raiseContent(QStringLiteral("%1: %2 must be a whole number from -2147483648 to 2147483647.")
                                 .arg(where, name));
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
                raiseContent(QStringLiteral("%1: %2 must be true or false.").arg(where, name));
            break;
        case Kind::Date: {
            const QDate date = v.isString() ? QDate::fromString(v.toString(), QStringLiteral("yyyy-MM-dd")) : QDate();
            if (!date.isValid())
                raiseContent(QStringLiteral("%1: %2 must be a date written yyyy-mm-dd.").arg(where, name));
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
        raiseContent(QStringLiteral("the JSON cannot be read (%1 at offset %2).")
                         .arg(parseError.errorString())
                         .arg(parseError.offset));
    QJsonArray templates;
    if (json.isArray()) {
        templates = json.array();
    } else {
        const QJsonObject root = json.object();
        for (auto it = root.begin(); it != root.end(); ++it) {
            if (it.key() != QLatin1String("templates"))
                raiseContent(QStringLiteral("unknown member \"%1\" (expected {\"templates\": [...]}).").arg(it.key()));
        }
        if (!root.value(QLatin1String("templates")).isArray())
            raiseContent(QStringLiteral("expected {\"templates\": [...]}."));
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
                       QStringLiteral("The file \"%1\" cannot be written: %2").arg(path, file.errorString()));
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
            RaiseError(mErrCodes::RT_FILE_NOT_FOUND, kModule, QStringLiteral("The file \"%1\" does not exist.").arg(path));
        if (!file.open(QIODevice::ReadOnly))
            RaiseError(mErrCodes::RT_FILE_ACCESS, kModule,
                       QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, file.errorString()));
        return ImportDocument(library, file.readAll());
    });
}

} // namespace mLibraryExchange
