// marlo-cli history: what the grips held after every get and put of their settings, newest first.
#include "cli/CliContext.h"

#include "base/mServices.h"
#include "grip/cGripHistory.h"
#include "grip/cGripSession.h"
#include "grip/mGripCommands.h"
#include "grip/mRecordFields.h"

#include <QJsonArray>

namespace {

// "--serial S" or "--serial=S"; nothing else.
QString serialArgument(const QStringList& words)
{
    if (words.isEmpty())
        return QString();
    const QString& first = words.first();
    if (first.startsWith(QLatin1String("--serial=")) && words.size() == 1)
        return first.mid(9);
    if (first == QLatin1String("--serial") && words.size() == 2)
        return words.at(1);
    if (first == QLatin1String("--serial") && words.size() == 1)
        throw CliUsageError(CliTexts::tr("--serial needs the grip's serial number"));
    throw CliUsageError(CliTexts::tr("history takes only --serial S, not '%1'").arg(CliText(words.join(QLatin1Char(' ')))));
}

// One record of an entry on one line, its fields in the order get shows them.
QString recordLine(mGripCommands::GripRecord record, const QJsonObject& values)
{
    QStringList fields;
    for (const mRecordFields::tField& field : mRecordFields::FieldsOf(record)) {
        const QJsonValue value = values.value(field.name);
        if (value.isBool())
            fields << QStringLiteral("%1=%2").arg(field.name).arg(value.toBool() ? 1 : 0);
        else if (value.isDouble())
            fields << QStringLiteral("%1=%2").arg(field.name).arg(value.toDouble());
    }
    return QStringLiteral("  %1: %2").arg(mGripCommands::RecordName(record), fields.join(QLatin1Char(' ')));
}

void printEntry(CliContext& ctx, const cGripHistory::tEntry& entry)
{
    //: The time of an entry, the grip's serial number and its firmware version.
    *ctx.out << CliTexts::tr("%1  serial %2  firmware %3")
                    .arg(entry.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), CliText(entry.serial), CliText(entry.firmware))
             << '\n';
    for (const mRecordFields::tTable& table : mRecordFields::Tables()) {
        const QString name = mGripCommands::RecordName(table.record);
        if (entry.values.contains(name))
            *ctx.out << recordLine(table.record, entry.values.value(name).toObject()) << '\n';
    }
}

} // namespace

int RunHistoryCommand(CliContext& ctx)
{
    const QString serial = serialArgument(ctx.words);
    cGripHistory* history = ctx.session->History();
    const QList<cGripHistory::tEntry> entries = history ? history->Entries(serial) : QList<cGripHistory::tEntry>();
    // A damaged file was set aside: said as a get or put says it, and the rest is listed.
    if (const QString problem = history ? history->TakeProblem() : QString(); !problem.isEmpty())
        mMain::UI().showMessage(problem, mGripCommands::HistoryTitle(), MsgIcon::Exclamation);
    if (ctx.json) {
        QJsonArray array;
        for (const cGripHistory::tEntry& entry : entries)
            array.append(entry.ToJson());
        PrintJson(ctx, array);
    } else {
        for (const cGripHistory::tEntry& entry : entries)
            printEntry(ctx, entry);
        if (entries.isEmpty())
            *ctx.err << (serial.isEmpty() ? CliTexts::tr("the grip history is empty")
                                          : CliTexts::tr("the grip history holds nothing of %1").arg(CliText(serial)))
                     << '\n';
    }
    ctx.out->flush();
    ctx.err->flush();
    return ExitOk;
}
