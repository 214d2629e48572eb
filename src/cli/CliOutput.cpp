#include "cli/CliContext.h"

#include "grip/cGripSession.h"
#include "grip/mRecordFields.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

bool needsEscape(char16_t u)
{
    // C0 and C1 controls, DEL, the bidirectional marks and overrides, and lone surrogates.
    return u < 0x20 || (u >= 0x7F && u <= 0x9F) || u == 0x061C || u == 0x200E || u == 0x200F ||
           (u >= 0x202A && u <= 0x202E) || (u >= 0x2066 && u <= 0x2069);
}

} // namespace

QString CliText(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text.at(i).unicode();
        if (QChar::isHighSurrogate(u) && i + 1 < text.size() && QChar::isLowSurrogate(text.at(i + 1).unicode())) {
            out += text.at(i);
            out += text.at(++i);
            continue;
        }
        if (QChar::isSurrogate(u) || needsEscape(u)) {
            switch (u) {
            case '\n': out += QLatin1String("\\n"); break;
            case '\r': out += QLatin1String("\\r"); break;
            case '\t': out += QLatin1String("\\t"); break;
            default:
                out += u < 0x100 ? QStringLiteral("\\x%1").arg(uint(u), 2, 16, QLatin1Char('0'))
                                 : QStringLiteral("\\u%1").arg(uint(u), 4, 16, QLatin1Char('0'));
            }
            continue;
        }
        out += text.at(i);
    }
    return out;
}

QString CliLines(const QString& text)
{
    QStringList lines = text.split(QStringLiteral("\r\n"));
    for (QString& line : lines)
        line = CliText(line);
    return lines.join(QLatin1Char('\n'));
}

QJsonObject FieldsToJson(const CliFields& fields)
{
    return mRecordFields::ToJson(fields);
}

void PrintJson(CliContext& ctx, const QJsonValue& value)
{
    if (value.isObject())
        *ctx.out << QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact) << '\n';
    else if (value.isArray())
        *ctx.out << QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact) << '\n';
    else if (value.isNull() || value.isUndefined())
        *ctx.out << "null\n";
    else
        *ctx.out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).mid(1).chopped(1) << '\n';
    ctx.out->flush();
}

void PrintFields(CliContext& ctx, const CliFields& fields)
{
    if (ctx.json) {
        PrintJson(ctx, FieldsToJson(fields));
        return;
    }
    qsizetype width = 0;
    for (const CliField& field : fields)
        width = qMax(width, field.first.size());
    for (const CliField& field : fields) {
        QString value = CliText(field.second.toString());
        if (field.second.metaType().id() == QMetaType::Bool)
            value = field.second.toBool() ? QStringLiteral("1") : QStringLiteral("0");
        *ctx.out << (CliText(field.first) + QLatin1Char(':')).leftJustified(static_cast<int>(width) + 2) << value << '\n';
    }
    ctx.out->flush();
}

QList<QPair<QString, qint32>> ParseIntegerOptions(const QStringList& words, const QStringList& allowed)
{
    QList<QPair<QString, qint32>> options;
    QStringList seen;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (!word.startsWith(QLatin1String("--")))
            throw CliUsageError(CliTexts::tr("unexpected word '%1'").arg(CliText(word)));
        QString name = word.mid(2);
        QString value;
        const qsizetype eq = name.indexOf(QLatin1Char('='));
        if (eq >= 0) {
            value = name.mid(eq + 1);
            name = name.left(eq);
        } else {
            if (i + 1 >= words.size())
                throw CliUsageError(CliTexts::tr("--%1 needs a value").arg(CliText(name)));
            value = words[++i];
        }
        if (!allowed.contains(name))
            throw CliUsageError(CliTexts::tr("unknown option --%1 (allowed: --%2)").arg(CliText(name), allowed.join(QStringLiteral(", --"))));
        if (seen.contains(name))
            throw CliUsageError(CliTexts::tr("--%1 is given twice").arg(CliText(name)));
        seen.append(name);
        bool ok = false;
        const qint32 number = value.toInt(&ok);
        if (!ok)
            throw CliUsageError(CliTexts::tr("--%1 needs a whole number, not '%2'").arg(name, CliText(value)));
        options.append({name, number});
    }
    return options;
}

int RefusalStatus(CliContext& ctx)
{
    const cError& refusal = ctx.session->GripError();
    if (refusal.ErrorCode() == cError::NoError)
        return ExitOk;
    *ctx.err << CliTexts::tr("the grip refused the command (negative answer): %1").arg(CliText(refusal.Text().Shown())) << '\n';
    ctx.err->flush();
    return ExitRefused;
}
