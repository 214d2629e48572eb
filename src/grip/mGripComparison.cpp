#include "grip/mGripComparison.h"

#include "base/mCountedText.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"

#include <QCoreApplication>
#include <algorithm>
#include <functional>

namespace mGripComparison {

using mGripCommands::GripRecord;
using mGripCommands::Outcome;

namespace {

// One value a put sends, and how to read it from a session's record.
struct tField {
    GripRecord record;
    const char* name;
    QVariant (*read)(cGripSession&);
};

template <auto record, auto getter>
QVariant readValue(cGripSession& session)
{
    return QVariant::fromValue((std::invoke(record, session).*getter)());
}

using S = cGripSession;
// Each record's values in the order get shows them, under the names marlo-cli's get and put give
// them in their own field table (its diff test checks that the two agree).
const tField kFields[] = {
    {GripRecord::Timing, "ShotTime", readValue<&S::Timing, &cSettings::ShotTime>},
    {GripRecord::Timing, "Dwelltime", readValue<&S::Timing, &cSettings::Dwelltime>},
    {GripRecord::Timing, "CycleTimeOpen", readValue<&S::Timing, &cSettings::CycleTimeOpen>},
    {GripRecord::Timing, "LoadTime", readValue<&S::Timing, &cSettings::LoadTime>},
    {GripRecord::Timing, "CycleTimeClose", readValue<&S::Timing, &cSettings::CycleTimeClose>},
    {GripRecord::Timing, "FiringMode", readValue<&S::Timing, &cSettings::FiringMode>},
    {GripRecord::GameTimer, "CountDownTimer", readValue<&S::CountdownTimer, &cCountdownTimer::CountDownTimer>},
    {GripRecord::GameTimer, "PreAlert1On", readValue<&S::CountdownTimer, &cCountdownTimer::PreAlert1On>},
    {GripRecord::GameTimer, "PreAlert1Time", readValue<&S::CountdownTimer, &cCountdownTimer::PreAlert1Time>},
    {GripRecord::GameTimer, "PreAlert2On", readValue<&S::CountdownTimer, &cCountdownTimer::PreAlert2On>},
    {GripRecord::GameTimer, "PreAlert2Time", readValue<&S::CountdownTimer, &cCountdownTimer::PreAlert2Time>},
    {GripRecord::Options, "EyeMounted", readValue<&S::Options, &cOptions::EyeMounted>},
    {GripRecord::Options, "TriggerFilterOn", readValue<&S::Options, &cOptions::TriggerFilterOn>},
    {GripRecord::Options, "EyeCheckMaxTimeOn", readValue<&S::Options, &cOptions::EyeCheckMaxTimeOn>},
    {GripRecord::Options, "UseEye", readValue<&S::Options, &cOptions::UseEye>},
    {GripRecord::Options, "EyeCheckMaxTime", readValue<&S::Options, &cOptions::EyeCheckMaxTime>},
    {GripRecord::Options, "DefaultLoadTime", readValue<&S::Options, &cOptions::DefaultLoadTime>},
    {GripRecord::Options, "LoaderOn", readValue<&S::Options, &cOptions::LoaderOn>},
    {GripRecord::Options, "LedOn", readValue<&S::Options, &cOptions::LedOn>},
    {GripRecord::Options, "EyeCheckOKTimeOn", readValue<&S::Options, &cOptions::EyeCheckOKTimeOn>},
    {GripRecord::Options, "EyeCheckOKTime", readValue<&S::Options, &cOptions::EyeCheckOKTime>},
    {GripRecord::Options, "CTOAdjust", readValue<&S::Options, &cOptions::CTOAdjust>},
    {GripRecord::Ramping, "Shots", readValue<&S::Hyper, &cHyper::Shots>},
    {GripRecord::Ramping, "HyperTime", readValue<&S::Hyper, &cHyper::HyperTime>},
    {GripRecord::Ramping, "HyperMode", readValue<&S::Hyper, &cHyper::HyperMode>},
};

void appendValues(tComparison& comparison, GripRecord record, cGripSession& grip, cGripSession& put)
{
    for (const tField& field : kFields)
        if (field.record == record)
            comparison.values.append({record, QLatin1String(field.name), field.read(grip), field.read(put)});
}

} // namespace

qsizetype tComparison::Differences() const
{
    return std::count_if(values.begin(), values.end(), [](const tValue& value) { return value.Differs(); });
}

QList<GripRecord> PutRecords()
{
    return {GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping};
}

QList<GripRecord> TemplateRecords()
{
    return {GripRecord::Timing, GripRecord::GameTimer};
}

tComparison Compare(cGripSession& session, cGripSession& put, const QList<GripRecord>& records,
                    mGripCommands::cTransferObserver* observer)
{
    return PassErrors(kModule, kRevision, QStringLiteral("Compare"), [&] {
        session.GripError().Clear();
        cGripSession grip(session.Link(), cGripSession::tKind::Scratch);
        const mGripCommands::CommandResult read = mGripCommands::GetRecords(grip, records, observer);
        tComparison comparison;
        comparison.refused = read.refused();
        if (comparison.refused)
            session.GripError() = grip.GripError();
        for (const GripRecord record : records) {
            const Outcome outcome = read.outcomeOf(record);
            if (outcome == Outcome::Unsupported)
                comparison.unsupported.append(record);
            else if (outcome == Outcome::Done)
                appendValues(comparison, record, grip, put);
        }
        return comparison;
    });
}

QString Summary(const tComparison& comparison)
{
    const int differences = static_cast<int>(comparison.Differences());
    if (differences == 0)
        return QCoreApplication::translate("mGripComparison", "The grip holds these settings");
    return mCountedText::Counted("mGripComparison", QT_TRANSLATE_N_NOOP("mGripComparison", "%n values differ"), "%n value differs",
                                 differences);
}

} // namespace mGripComparison
