// marlo-cli: info, get, put and reset-counter, the grip's records from the command line.
#include "cli/CliContext.h"

#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cGunInfo.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "grip/mGripCommands.h"
#include "link/cError.h"
#include "link/cSupports.h"
#include "shell/mMain.h"

#include <QHash>
#include <QJsonObject>
#include <functional>

using mGripCommands::Direction;
using mGripCommands::GripRecord;
using mGripCommands::Outcome;

namespace {

const QString kRecordNames = QStringLiteral("timing|options|ramping|gametimer|counters|battery");

// Floats as the shortest decimal that reads back the same, so JSON shows 9.71, not 9.7100000381.
double displayNumber(float value)
{
    return QString::number(static_cast<double>(value), 'g', 6).toDouble();
}

CliFields recordFields(GripRecord record)
{
    switch (record) {
    case GripRecord::Timing: {
        const cSettings& t = TimingRecord();
        return {{QStringLiteral("ShotTime"), t.ShotTime()},
                {QStringLiteral("Dwelltime"), t.Dwelltime()},
                {QStringLiteral("CycleTimeOpen"), t.CycleTimeOpen()},
                {QStringLiteral("LoadTime"), t.LoadTime()},
                {QStringLiteral("CycleTimeClose"), t.CycleTimeClose()},
                {QStringLiteral("FiringMode"), t.FiringMode()},
                {QStringLiteral("ROF"), displayNumber(t.ROF())}};
    }
    case GripRecord::Options: {
        const cOptions& o = OptionsRecord();
        return {{QStringLiteral("EyeMounted"), o.EyeMounted()},
                {QStringLiteral("TriggerFilterOn"), o.TriggerFilterOn()},
                {QStringLiteral("EyeCheckMaxTimeOn"), o.EyeCheckMaxTimeOn()},
                {QStringLiteral("UseEye"), o.UseEye()},
                {QStringLiteral("EyeCheckMaxTime"), o.EyeCheckMaxTime()},
                {QStringLiteral("DefaultLoadTime"), o.DefaultLoadTime()},
                {QStringLiteral("LoaderOn"), o.LoaderOn()},
                {QStringLiteral("LedOn"), o.LedOn()},
                {QStringLiteral("EyeCheckOKTimeOn"), o.EyeCheckOKTimeOn()},
                {QStringLiteral("EyeCheckOKTime"), o.EyeCheckOKTime()},
                {QStringLiteral("CTOAdjust"), o.CTOAdjust()}};
    }
    case GripRecord::Ramping: {
        const cHyper& h = HyperRecord();
        return {{QStringLiteral("Shots"), h.Shots()},
                {QStringLiteral("HyperTime"), h.HyperTime()},
                {QStringLiteral("HyperMode"), h.HyperMode()}};
    }
    case GripRecord::GameTimer: {
        const cCountdownTimer& g = CountdownTimerRecord();
        return {{QStringLiteral("CountDownTimer"), g.CountDownTimer()},
                {QStringLiteral("PreAlert1On"), g.PreAlert1On()},
                {QStringLiteral("PreAlert1Time"), g.PreAlert1Time()},
                {QStringLiteral("PreAlert2On"), g.PreAlert2On()},
                {QStringLiteral("PreAlert2Time"), g.PreAlert2Time()}};
    }
    case GripRecord::Counters: {
        const cCounters& c = CountersRecord();
        return {{QStringLiteral("Counter1"), c.Counter1()},
                {QStringLiteral("Counter2"), c.Counter2()},
                {QStringLiteral("Total"), c.Total()}};
    }
    case GripRecord::Battery:
        return {{QStringLiteral("VoltageLevel"), displayNumber(BatteryRecord().VoltageLevel())}};
    }
    return {};
}

void noteUnsupported(CliContext& ctx, GripRecord record)
{
    const QString needed = record == GripRecord::Ramping ? QStringLiteral("4.0.0") : QStringLiteral("1.1.70");
    *ctx.err << mGripCommands::RecordName(record) << ": not supported by the grip's firmware "
             << GunInfo().FirmwareBuild() << " (needs " << needed << " or newer); not exchanged\n";
    ctx.err->flush();
}

// Prints a single record, or what stands for it when it was not exchanged.
void printRecord(CliContext& ctx, GripRecord record, Outcome outcome)
{
    if (outcome == Outcome::Unsupported)
        noteUnsupported(ctx, record);
    if (outcome == Outcome::Done)
        PrintFields(ctx, recordFields(record));
    else if (ctx.json)
        PrintJson(ctx, QJsonValue::Null);
}

GripRecord recordArgument(const QStringList& words, const QString& command)
{
    GripRecord record = GripRecord::Timing;
    if (words.isEmpty() || !mGripCommands::RecordFromName(words.first(), record))
        throw CliUsageError(QStringLiteral("%1 needs one of %2%3")
                                .arg(command, kRecordNames, command == QLatin1String("get") ? QStringLiteral("|all") : QString()));
    return record;
}

int runInfo(CliContext& ctx)
{
    if (!ctx.words.isEmpty())
        throw CliUsageError(QStringLiteral("info takes no arguments"));
    GripError().Clear();
    {
        WaitPointerScope wait;
        RefreshGunInfo(true);
    }
    if (const int refused = RefusalStatus(ctx))
        return refused;
    const cGunInfo& info = GunInfo();
    const cSupports& s = Supports();
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
        throw CliUsageError(QStringLiteral("get needs exactly one of %1|all").arg(kRecordNames));
    if (ctx.words.first() == QLatin1String("all")) {
        const mGripCommands::CommandResult result = mGripCommands::GetAll();
        QJsonObject object;
        bool first = true;
        for (const mGripCommands::Transfer& t : result.transfers) {
            const QString name = mGripCommands::RecordName(t.record);
            if (t.outcome == Outcome::Unsupported)
                noteUnsupported(ctx, t.record);
            if (ctx.json) {
                object.insert(name, t.outcome == Outcome::Done ? QJsonValue(FieldsToJson(recordFields(t.record)))
                                                               : QJsonValue(QJsonValue::Null));
            } else if (t.outcome == Outcome::Done) {
                *ctx.out << (first ? "" : "\n") << '[' << name << "]\n";
                PrintFields(ctx, recordFields(t.record));
                first = false;
            }
        }
        if (ctx.json)
            PrintJson(ctx, object);
        return RefusalStatus(ctx);
    }
    const GripRecord record = recordArgument(ctx.words, QStringLiteral("get"));
    const mGripCommands::CommandResult result = mGripCommands::GetRecord(record);
    printRecord(ctx, record, result.outcomeOf(record));
    return RefusalStatus(ctx);
}

// One option of a put: its name, the values it takes, and how it goes into the record.
struct PutOption {
    enum Kind { Switch, Byte, Word };
    QString name;
    Kind kind;
    std::function<qint32(qint32)> apply; // answers the value the record kept
};

QList<PutOption> putOptions(GripRecord record)
{
    using K = PutOption::Kind;
    auto plain = [](std::function<void(qint32)> set) {
        return [set](qint32 v) { set(v); return v; };
    };
    switch (record) {
    case GripRecord::Timing:
        return {{QStringLiteral("ShotTime"), K::Byte, plain([](qint32 v) { TimingRecord().setShotTime(v); })},
                {QStringLiteral("Dwelltime"), K::Byte, plain([](qint32 v) { TimingRecord().setDwelltime(v); })},
                {QStringLiteral("CycleTimeOpen"), K::Byte, plain([](qint32 v) { TimingRecord().setCycleTimeOpen(v); })},
                {QStringLiteral("LoadTime"), K::Byte, plain([](qint32 v) { TimingRecord().setLoadTime(v); })},
                {QStringLiteral("CycleTimeClose"), K::Byte, plain([](qint32 v) { TimingRecord().setCycleTimeClose(v); })},
                {QStringLiteral("FiringMode"), K::Byte, plain([](qint32 v) { TimingRecord().setFiringMode(v); })}};
    case GripRecord::Options:
        return {{QStringLiteral("EyeMounted"), K::Switch, plain([](qint32 v) { OptionsRecord().setEyeMounted(v != 0); })},
                {QStringLiteral("TriggerFilterOn"), K::Switch, plain([](qint32 v) { OptionsRecord().setTriggerFilterOn(v != 0); })},
                {QStringLiteral("EyeCheckMaxTimeOn"), K::Switch, plain([](qint32 v) { OptionsRecord().setEyeCheckMaxTimeOn(v != 0); })},
                {QStringLiteral("UseEye"), K::Switch, plain([](qint32 v) { OptionsRecord().setUseEye(v != 0); })},
                {QStringLiteral("EyeCheckMaxTime"), K::Byte, [](qint32 v) { return OptionsRecord().setEyeCheckMaxTime(v); }},
                {QStringLiteral("DefaultLoadTime"), K::Byte, [](qint32 v) { return OptionsRecord().setDefaultLoadTime(v); }},
                {QStringLiteral("LoaderOn"), K::Switch, plain([](qint32 v) { OptionsRecord().setLoaderOn(v != 0); })},
                {QStringLiteral("LedOn"), K::Switch, plain([](qint32 v) { OptionsRecord().setLedOn(v != 0); })},
                {QStringLiteral("EyeCheckOKTimeOn"), K::Switch, plain([](qint32 v) { OptionsRecord().setEyeCheckOKTimeOn(v != 0); })},
                {QStringLiteral("EyeCheckOKTime"), K::Byte, [](qint32 v) { return OptionsRecord().setEyeCheckOKTime(v); }},
                {QStringLiteral("CTOAdjust"), K::Switch, plain([](qint32 v) { OptionsRecord().setCTOAdjust(v != 0); })}};
    case GripRecord::Ramping:
        return {{QStringLiteral("Shots"), K::Byte, [](qint32 v) { return HyperRecord().setShots(v); }},
                {QStringLiteral("HyperTime"), K::Byte, [](qint32 v) { return HyperRecord().setHyperTime(v); }},
                {QStringLiteral("HyperMode"), K::Byte, [](qint32 v) { return HyperRecord().setHyperMode(v); }}};
    case GripRecord::GameTimer:
        return {{QStringLiteral("CountDownTimer"), K::Byte, plain([](qint32 v) { CountdownTimerRecord().setCountDownTimer(v); })},
                {QStringLiteral("PreAlert1On"), K::Switch, plain([](qint32 v) { CountdownTimerRecord().setPreAlert1On(v != 0); })},
                {QStringLiteral("PreAlert1Time"), K::Word, plain([](qint32 v) { CountdownTimerRecord().setPreAlert1Time(v); })},
                {QStringLiteral("PreAlert2On"), K::Switch, plain([](qint32 v) { CountdownTimerRecord().setPreAlert2On(v != 0); })},
                {QStringLiteral("PreAlert2Time"), K::Word, plain([](qint32 v) { CountdownTimerRecord().setPreAlert2Time(v); })}};
    case GripRecord::Counters:
    case GripRecord::Battery:
        break;
    }
    return {};
}

// Checks the given values against what the grip can carry, before anything is exchanged.
void validate(const PutOption& option, qint32 value)
{
    switch (option.kind) {
    case PutOption::Switch:
        if (value != 0 && value != 1)
            throw CliUsageError(QStringLiteral("--%1 takes 0 or 1, not %2").arg(option.name).arg(value));
        break;
    case PutOption::Byte:
        if (value < 0 || value > 255)
            throw CliUsageError(QStringLiteral("--%1 %2 does not fit the grip's byte (0..255)").arg(option.name).arg(value));
        break;
    case PutOption::Word:
        if (value < 0 || value > 65535)
            throw CliUsageError(QStringLiteral("--%1 %2 does not fit the grip's 16 bits (0..65535)").arg(option.name).arg(value));
        break;
    }
}

// The editor's limits of the timing values; the grip is sent what is given, with a note.
void noteTimingLimits(CliContext& ctx, const QString& name, qint32 value)
{
    static const QHash<QString, QPair<qint32, qint32>> limits = {
        {QStringLiteral("ShotTime"), {cSettings::ShotTimeMin(), cSettings::ShotTimeMax()}},
        {QStringLiteral("Dwelltime"), {cSettings::DwelltimeMin(), cSettings::DwelltimeMax()}},
        {QStringLiteral("CycleTimeOpen"), {cSettings::CycleTimeOpenMin(), cSettings::CycleTimeOpenMax()}},
        {QStringLiteral("LoadTime"), {cSettings::LoadTimeMin(), cSettings::LoadTimeMax()}},
        {QStringLiteral("CycleTimeClose"), {cSettings::CycleTimeCloseMin(), cSettings::CycleTimeCloseMax()}},
    };
    const auto it = limits.constFind(name);
    if (it != limits.constEnd() && (value < it->first || value > it->second))
        *ctx.err << "note: " << name << ' ' << value << " is outside the usual range " << it->first << ".."
                 << it->second << "; it is sent as given\n";
}

int runPut(CliContext& ctx)
{
    if (ctx.words.isEmpty())
        throw CliUsageError(QStringLiteral("put needs one of timing|options|ramping|gametimer"));
    const GripRecord record = recordArgument(ctx.words, QStringLiteral("put"));
    if (!mGripCommands::CanPut(record))
        throw CliUsageError(QStringLiteral("%1 cannot be put to the grip (put timing|options|ramping|gametimer)")
                                .arg(ctx.words.first()));
    const QList<PutOption> options = putOptions(record);
    QStringList allowed;
    for (const PutOption& o : options)
        allowed.append(o.name);
    const QList<QPair<QString, qint32>> given = ParseIntegerOptions(ctx.words.mid(1), allowed);
    if (given.isEmpty())
        throw CliUsageError(QStringLiteral("put %1 needs at least one of --%2").arg(ctx.words.first(), allowed.join(QStringLiteral(", --"))));
    auto optionNamed = [&](const QString& name) -> const PutOption& {
        for (const PutOption& o : options)
            if (o.name == name)
                return o;
        return options.first(); // unreachable: ParseIntegerOptions allows only these names
    };
    for (const auto& [name, value] : given)
        validate(optionNamed(name), value);

    GripError().Clear();
    WaitPointerScope wait;
    mGripCommands::StartProgramIfInBootMode();
    // Only the given fields change: the rest is what the grip holds now.
    const Outcome got = mGripCommands::TransferRecord(record, Direction::Get);
    if (got != Outcome::Done) {
        printRecord(ctx, record, got);
        return RefusalStatus(ctx);
    }
    for (const auto& [name, value] : given) {
        if (record == GripRecord::Timing)
            noteTimingLimits(ctx, name, value);
        const qint32 kept = optionNamed(name).apply(value);
        if (kept != value)
            *ctx.err << "note: " << name << ' ' << value << " is out of range; the record keeps " << kept << '\n';
    }
    if (mGripCommands::TransferRecord(record, Direction::Put) == Outcome::Refused)
        return RefusalStatus(ctx);
    // Read back, so that what is printed is what the grip now holds.
    printRecord(ctx, record, mGripCommands::TransferRecord(record, Direction::Get));
    return RefusalStatus(ctx);
}

int runResetCounter(CliContext& ctx)
{
    if (ctx.words.size() != 1 || !QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}.contains(ctx.words.first()))
        throw CliUsageError(QStringLiteral("reset-counter needs 1, 2 or 3 (both)"));
    const quint8 selector = static_cast<quint8>(ctx.words.first().toInt());
    GripError().Clear();
    WaitPointerScope wait;
    mGripCommands::StartProgramIfInBootMode();
    // The counters first: newer firmware is sent both counters' values, the other one kept.
    if (mGripCommands::TransferRecord(GripRecord::Counters, Direction::Get) == Outcome::Refused)
        return RefusalStatus(ctx);
    if (mGripCommands::ResetCounterTransfer(selector) == Outcome::Refused)
        return RefusalStatus(ctx);
    printRecord(ctx, GripRecord::Counters, mGripCommands::TransferRecord(GripRecord::Counters, Direction::Get));
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
    throw CliUsageError(QStringLiteral("unknown command '%1'").arg(command));
}
