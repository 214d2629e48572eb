// marlo-cli: info, get, put and reset-counter, the grip's records from the command line.
#include "cli/CliContext.h"

#include "grip/cGripSession.h"
#include "grip/mGripCommands.h"
#include "grip/mRecordFields.h"
#include "shell/mMain.h"

#include <QJsonObject>

using mGripCommands::Direction;
using mGripCommands::GripRecord;
using mGripCommands::Outcome;

namespace {

using RecordField = mRecordFields::tField;

// The fields a put takes: every one that is not read-only.
QList<RecordField> putFields(GripRecord record)
{
    QList<RecordField> fields;
    for (const RecordField& field : mRecordFields::FieldsOf(record))
        if (field.kind != RecordField::ReadOnly)
            fields.append(field);
    return fields;
}

// "timing|options|...": the records, or only those that can be put.
QString recordNames(bool puttable)
{
    QStringList names;
    for (const mRecordFields::tTable& table : mRecordFields::Tables())
        if (!puttable || mGripCommands::CanPut(table.record))
            names.append(mGripCommands::RecordName(table.record));
    return names.join(QLatin1Char('|'));
}

CliFields recordFields(cGripSession& session, GripRecord record)
{
    return mRecordFields::Values(session, record);
}

void noteUnsupported(CliContext& ctx, GripRecord record)
{
    const QString needed = record == GripRecord::Ramping ? QStringLiteral("4.0.0") : QStringLiteral("1.1.70");
    *ctx.err << mGripCommands::RecordName(record) << ": "
             << CliTexts::tr("not supported by the grip's firmware %1 (needs %2 or newer); not exchanged")
                    .arg(ctx.session->GunInfo().FirmwareBuild(), needed)
             << '\n';
    ctx.err->flush();
}

// Prints a single record, or what stands for it when it was not exchanged.
void printRecord(CliContext& ctx, GripRecord record, Outcome outcome)
{
    if (outcome == Outcome::Unsupported)
        noteUnsupported(ctx, record);
    if (outcome == Outcome::Done)
        PrintFields(ctx, recordFields(*ctx.session, record));
    else if (ctx.json)
        PrintJson(ctx, QJsonValue::Null);
}

GripRecord recordArgument(const QStringList& words, const QString& command)
{
    GripRecord record = GripRecord::Timing;
    if (words.isEmpty() || !mGripCommands::RecordFromName(words.first(), record))
        throw CliUsageError(CliTexts::tr("%1 needs one of %2%3")
                                .arg(command, recordNames(false), command == QLatin1String("get") ? QStringLiteral("|all") : QString()));
    return record;
}

int runInfo(CliContext& ctx)
{
    if (!ctx.words.isEmpty())
        throw CliUsageError(CliTexts::tr("info takes no arguments"));
    cGripSession& session = *ctx.session;
    session.GripError().Clear();
    {
        WaitPointerScope wait;
        RefreshGunInfo(session, true);
    }
    if (const int refused = RefusalStatus(ctx))
        return refused;
    const cGunInfo& info = session.GunInfo();
    const cSupports& s = session.Supports();
    const CliFields flags = {
        {QStringLiteral("EyeMounting"), s.EyeMounting()},
        {QStringLiteral("LoaderMounting"), s.LoaderMounting()},
        {QStringLiteral("TriggerFilter"), s.TriggerFilter()},
        {QStringLiteral("fmodeClassic"), s.fmodeClassic()},
        {QStringLiteral("fmodeSemiAuto"), s.fmodeSemiAuto()},
        {QStringLiteral("fmodeFullAuto"), s.fmodeFullAuto()},
        {QStringLiteral("fmodeBurst"), s.fmodeBurst()},
        {QStringLiteral("fmodeTurbo"), s.fmodeTurbo()},
        {QStringLiteral("fmodeSniper"), s.fmodeSniper()},
        {QStringLiteral("fmodeBurst3"), s.fmodeBurst3()},
        {QStringLiteral("fmodeHyper"), s.fmodeHyper()},
        {QStringLiteral("fmodeOpenBolt"), s.fmodeOpenBolt()},
        {QStringLiteral("PreAlert60sec"), s.PreAlert60sec()},
        {QStringLiteral("PreAlert1"), s.PreAlert1()},
        {QStringLiteral("PreAlert2"), s.PreAlert2()},
        {QStringLiteral("Options"), s.Options()},
        {QStringLiteral("Hyper"), s.Hyper()},
        {QStringLiteral("NineVolt"), s.NineVolt()},
        {QStringLiteral("hmodeUnlimited"), s.hmodeUnlimited()},
        {QStringLiteral("hmodeHundredPercent"), s.hmodeHundredPercent()},
        {QStringLiteral("hmodeSeventyfivePercent"), s.hmodeSeventyfivePercent()},
        {QStringLiteral("hmodeFiftyPercent"), s.hmodeFiftyPercent()},
        {QStringLiteral("hmodeThirtythreePercent"), s.hmodeThirtythreePercent()},
    };
    CliFields builds = {
        {QStringLiteral("FirmwareBuild"), info.FirmwareBuild()},
        {QStringLiteral("BootBuild"), info.BootBuild()},
        {QStringLiteral("ProtocolBuild"), info.ProtocolBuild()},
        {QStringLiteral("HardwareBuild"), info.HardwareBuild()},
        {QStringLiteral("Serial"), info.Serial()},
    };
    if (ctx.json) {
        QJsonObject object = FieldsToJson(builds);
        object.insert(QStringLiteral("Supports"), FieldsToJson(flags));
        PrintJson(ctx, object);
        return ExitOk;
    }
    // Serial bytes may be anything; control characters are shown as "." on the terminal.
    QString serial = info.Serial();
    for (QChar& c : serial)
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            c = QLatin1Char('.');
    builds[4].second = serial;
    PrintFields(ctx, builds + flags);
    return ExitOk;
}

int runGet(CliContext& ctx)
{
    if (ctx.words.size() != 1)
        throw CliUsageError(CliTexts::tr("get needs exactly one of %1|all").arg(recordNames(false)));
    if (ctx.words.first() == QLatin1String("all")) {
        const mGripCommands::CommandResult result = mGripCommands::GetAll(*ctx.session);
        QJsonObject object;
        bool first = true;
        for (const mGripCommands::Transfer& t : result.transfers) {
            const QString name = mGripCommands::RecordName(t.record);
            if (t.outcome == Outcome::Unsupported)
                noteUnsupported(ctx, t.record);
            if (ctx.json) {
                object.insert(name, t.outcome == Outcome::Done ? QJsonValue(FieldsToJson(recordFields(*ctx.session, t.record)))
                                                               : QJsonValue(QJsonValue::Null));
            } else if (t.outcome == Outcome::Done) {
                *ctx.out << (first ? "" : "\n") << '[' << name << "]\n";
                PrintFields(ctx, recordFields(*ctx.session, t.record));
                first = false;
            }
        }
        if (ctx.json)
            PrintJson(ctx, object);
        return RefusalStatus(ctx);
    }
    const GripRecord record = recordArgument(ctx.words, QStringLiteral("get"));
    const mGripCommands::CommandResult result = mGripCommands::GetRecord(*ctx.session, record);
    printRecord(ctx, record, result.outcomeOf(record));
    return RefusalStatus(ctx);
}

// Checks the given values against what the grip can carry, before anything is exchanged.
void validate(const RecordField& field, qint32 value)
{
    switch (field.kind) {
    case RecordField::Switch:
        if (value != 0 && value != 1)
            throw CliUsageError(CliTexts::tr("--%1 takes 0 or 1, not %2").arg(field.name).arg(value));
        break;
    case RecordField::Byte:
        if (value < 0 || value > 255)
            throw CliUsageError(CliTexts::tr("--%1 %2 does not fit the grip's byte (0..255)").arg(field.name).arg(value));
        break;
    case RecordField::Word:
        if (value < 0 || value > 65535)
            throw CliUsageError(CliTexts::tr("--%1 %2 does not fit the grip's 16 bits (0..65535)").arg(field.name).arg(value));
        break;
    case RecordField::ReadOnly:
        break;
    }
}

int runPut(CliContext& ctx)
{
    if (ctx.words.isEmpty())
        throw CliUsageError(CliTexts::tr("put needs one of %1").arg(recordNames(true)));
    const GripRecord record = recordArgument(ctx.words, QStringLiteral("put"));
    if (!mGripCommands::CanPut(record))
        throw CliUsageError(CliTexts::tr("%1 cannot be put to the grip (put %2)").arg(ctx.words.first(), recordNames(true)));
    const QList<RecordField> fields = putFields(record);
    QStringList allowed;
    for (const RecordField& field : fields)
        allowed.append(field.name);
    const QList<QPair<QString, qint32>> given = ParseIntegerOptions(ctx.words.mid(1), allowed);
    if (given.isEmpty())
        throw CliUsageError(CliTexts::tr("put %1 needs at least one of --%2").arg(ctx.words.first(), allowed.join(QStringLiteral(", --"))));
    // ParseIntegerOptions allows only these names.
    auto fieldNamed = [&](const QString& name) -> const RecordField& { return fields[allowed.indexOf(name)]; };
    for (const auto& [name, value] : given)
        validate(fieldNamed(name), value);

    cGripSession& session = *ctx.session;
    session.GripError().Clear();
    WaitPointerScope wait;
    mGripCommands::StartProgramIfInBootMode(session);
    // Only the given fields change: the rest is what the grip holds now.
    const Outcome got = mGripCommands::TransferRecord(session, record, Direction::Get);
    if (got != Outcome::Done) {
        printRecord(ctx, record, got);
        return RefusalStatus(ctx);
    }
    for (const auto& [name, value] : given) {
        const RecordField& field = fieldNamed(name);
        // The editor's limits of the timing values; the grip is sent what is given, with a note.
        if (field.usual && (value < field.usual->first || value > field.usual->second))
            *ctx.err << CliTexts::tr("note: %1 %2 is outside the usual range %3..%4; it is sent as given")
                            .arg(name)
                            .arg(value)
                            .arg(field.usual->first)
                            .arg(field.usual->second)
                     << '\n';
        const qint32 kept = field.set(session, value);
        if (kept != value)
            *ctx.err << CliTexts::tr("note: %1 %2 is out of range; the record keeps %3").arg(name).arg(value).arg(kept) << '\n';
    }
    if (mGripCommands::TransferRecord(session, record, Direction::Put) == Outcome::Refused)
        return RefusalStatus(ctx);
    // Read back, so that what is printed (and kept in the history) is what the grip now holds.
    const Outcome back = mGripCommands::TransferRecord(session, record, Direction::Get);
    if (back == Outcome::Done)
        mGripCommands::RecordHistory(session, {record});
    printRecord(ctx, record, back);
    return RefusalStatus(ctx);
}

int runResetCounter(CliContext& ctx)
{
    if (ctx.words.size() != 1 || !QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}.contains(ctx.words.first()))
        throw CliUsageError(CliTexts::tr("reset-counter needs 1, 2 or 3 (both)"));
    const quint8 selector = static_cast<quint8>(ctx.words.first().toInt());
    cGripSession& session = *ctx.session;
    session.GripError().Clear();
    WaitPointerScope wait;
    mGripCommands::StartProgramIfInBootMode(session);
    // The counters first: newer firmware is sent both counters' values, the other one kept.
    if (mGripCommands::TransferRecord(session, GripRecord::Counters, Direction::Get) == Outcome::Refused)
        return RefusalStatus(ctx);
    if (mGripCommands::ResetCounterTransfer(session, selector) == Outcome::Refused)
        return RefusalStatus(ctx);
    printRecord(ctx, GripRecord::Counters, mGripCommands::TransferRecord(session, GripRecord::Counters, Direction::Get));
    return RefusalStatus(ctx);
}

} // namespace

int RunRecordCommand(CliContext& ctx, const QString& command)
{
    if (command == QLatin1String("info"))
        return runInfo(ctx);
    if (command == QLatin1String("get"))
        return runGet(ctx);
    if (command == QLatin1String("put"))
        return runPut(ctx);
    if (command == QLatin1String("reset-counter"))
        return runResetCounter(ctx);
    throw CliUsageError(CliTexts::tr("unknown command '%1'").arg(command));
}

QString RecordCommandsUsage()
{
    // The put lines wrap before an option that would take them past this many columns.
    constexpr qsizetype kWidth = 135;
    QString usage = QStringLiteral("  get %1|all\n").arg(recordNames(false));
    for (const mRecordFields::tTable& table : mRecordFields::Tables()) {
        if (!mGripCommands::CanPut(table.record))
            continue;
        QString line = QStringLiteral("  ") + (QStringLiteral("put ") + mGripCommands::RecordName(table.record)).leftJustified(14);
        bool first = true;
        for (const RecordField& field : putFields(table.record)) {
            const QString option = QStringLiteral("[--%1 %2]").arg(field.name, field.kind == RecordField::Switch ? QStringLiteral("0|1") : QStringLiteral("N"));
            if (!first && line.size() + 1 + option.size() > kWidth) {
                usage += line + QLatin1Char('\n');
                line = QString(16, QLatin1Char(' '));
                first = true;
            }
            line += (first ? QString() : QStringLiteral(" ")) + option;
            first = false;
        }
        usage += line + QLatin1Char('\n');
    }
    return usage;
}
