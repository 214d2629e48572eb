// marlo-cli diff ID: the values of a library template that the grip holds otherwise.
#include "cli/CliContext.h"

#include "grip/cGripSession.h"
#include "grip/mGripComparison.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"

#include <QJsonArray>

namespace {

// A value as get prints it: a switch as 0 or 1 in text, true or false in JSON.
QString valueText(const QVariant& value)
{
    return value.metaType().id() == QMetaType::Bool ? QString::number(value.toBool() ? 1 : 0) : value.toString();
}

void printJson(CliContext& ctx, const mGripComparison::tComparison& comparison)
{
    QJsonArray differences;
    for (const mGripComparison::tValue& value : comparison.values)
        if (value.Differs())
            differences.append(QJsonObject{{QStringLiteral("field"), value.name},
                                           {QStringLiteral("grip"), QJsonValue::fromVariant(value.grip)},
                                           {QStringLiteral("template"), QJsonValue::fromVariant(value.put)}});
    PrintJson(ctx, QJsonObject{{QStringLiteral("same"), comparison.Same()}, {QStringLiteral("differences"), differences}});
}

// The differing values as a table (field, grip, template), then the summary.
void printText(CliContext& ctx, const mGripComparison::tComparison& comparison)
{
    QList<QStringList> rows{{CliTexts::tr("Field"), CliTexts::tr("Grip"), CliTexts::tr("Template")}};
    for (const mGripComparison::tValue& value : comparison.values)
        if (value.Differs())
            rows.append({value.name, valueText(value.grip), valueText(value.put)});
    if (rows.size() > 1) {
        qsizetype widths[2] = {0, 0};
        for (const QStringList& row : rows)
            for (int c = 0; c < 2; ++c)
                widths[c] = qMax(widths[c], row[c].size());
        for (const QStringList& row : rows)
            *ctx.out << row[0].leftJustified(widths[0] + 2) << row[1].leftJustified(widths[1] + 2) << row[2] << '\n';
    }
    *ctx.out << mGripComparison::Summary(comparison) << '\n';
    ctx.out->flush();
}

} // namespace

int RunDiffCommand(CliContext& ctx)
{
    if (ctx.words.size() != 1)
        throw CliUsageError(CliTexts::tr("diff needs the ID (or number in library list) of one template"));
    // The library first: a template that does not exist stops the command before the grip is asked.
    const std::shared_ptr<cSetsTemplate> setting = FindLibraryTemplate(ctx, ctx.words.first());
    if (!setting)
        return ExitError;

    // The template's values in records of their own, as a put of it would send them.
    cGripSession& session = *ctx.session;
    cGripSession fromTemplate(session.Link(), cGripSession::tKind::Scratch);
    mTemplateRecords::TemplateToTiming(*setting, fromTemplate.Timing());
    mTemplateRecords::TemplateToGameTimer(*setting, fromTemplate.CountdownTimer());
    const mGripComparison::tComparison comparison =
        mGripComparison::Compare(session, fromTemplate, mGripComparison::TemplateRecords());
    if (comparison.refused)
        return RefusalStatus(ctx);
    if (ctx.json)
        printJson(ctx, comparison);
    else
        printText(ctx, comparison);
    return comparison.Same() ? ExitOk : ExitDiffers;
}
