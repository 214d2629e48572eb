#include "library/mTemplateRecords.h"

#include "grip/cGripSession.h"
#include "grip/mRecordFields.h"
#include "library/cSetsTemplate.h"

#include <cstddef>

namespace mTemplateRecords {
namespace {

// One field a record shares with the setting: the copy each way.
template <typename Record>
struct tShared {
    tField field;
    void (*toTemplate)(const Record&, cSetsTemplate&);
    void (*toRecord)(const cSetsTemplate&, Record&);
};

using S = cSetsTemplate;

// Each record's fields in the order a whole record is copied. A new setting and "Default
// settings" have always taken a fresh timing record's values closing time first; the order is
// kept for every copy of the record.
const tShared<cSettings> kTiming[] = {
    {tField::lCycleTimeClose, [](const cSettings& r, S& s) { s.setlCycleTimeClose(r.CycleTimeClose()); },
     [](const S& s, cSettings& r) { r.setCycleTimeClose(s.lCycleTimeClose()); }},
    {tField::lCycleTimeOpen, [](const cSettings& r, S& s) { s.setlCycleTimeOpen(r.CycleTimeOpen()); },
     [](const S& s, cSettings& r) { r.setCycleTimeOpen(s.lCycleTimeOpen()); }},
    {tField::lDwellTime, [](const cSettings& r, S& s) { s.setlDwellTime(r.Dwelltime()); },
     [](const S& s, cSettings& r) { r.setDwelltime(s.lDwellTime()); }},
    {tField::lLoadTime, [](const cSettings& r, S& s) { s.setlLoadTime(r.LoadTime()); },
     [](const S& s, cSettings& r) { r.setLoadTime(s.lLoadTime()); }},
    {tField::lShotTime, [](const cSettings& r, S& s) { s.setlShotTime(r.ShotTime()); },
     [](const S& s, cSettings& r) { r.setShotTime(s.lShotTime()); }},
    {tField::lFiringMode, [](const cSettings& r, S& s) { s.setlFiringMode(r.FiringMode()); },
     [](const S& s, cSettings& r) { r.setFiringMode(s.lFiringMode()); }},
};

const tShared<cCountdownTimer> kGameTimer[] = {
    {tField::lGameTime, [](const cCountdownTimer& r, S& s) { s.setlGameTime(r.CountDownTimer()); },
     [](const S& s, cCountdownTimer& r) { r.setCountDownTimer(s.lGameTime()); }},
    {tField::bAlertOne, [](const cCountdownTimer& r, S& s) { s.setbAlertOne(r.PreAlert1On()); },
     [](const S& s, cCountdownTimer& r) { r.setPreAlert1On(s.bAlertOne()); }},
    {tField::lAlertOne, [](const cCountdownTimer& r, S& s) { s.setlAlertOne(r.PreAlert1Time()); },
     [](const S& s, cCountdownTimer& r) { r.setPreAlert1Time(s.lAlertOne()); }},
    {tField::bAlertTwo, [](const cCountdownTimer& r, S& s) { s.setbAlertTwo(r.PreAlert2On()); },
     [](const S& s, cCountdownTimer& r) { r.setPreAlert2On(s.bAlertTwo()); }},
    {tField::lAlertTwo, [](const cCountdownTimer& r, S& s) { s.setlAlertTwo(r.PreAlert2Time()); },
     [](const S& s, cCountdownTimer& r) { r.setPreAlert2Time(s.lAlertTwo()); }},
};

const tShared<cHyper> kRamping[] = {
    {tField::lShots, [](const cHyper& r, S& s) { s.setlShots(r.Shots()); },
     [](const S& s, cHyper& r) { r.setShots(s.lShots()); }},
    {tField::lHyperTime, [](const cHyper& r, S& s) { s.setlHyperTime(r.HyperTime()); },
     [](const S& s, cHyper& r) { r.setHyperTime(s.lHyperTime()); }},
    {tField::lHyperMode, [](const cHyper& r, S& s) { s.setlHyperMode(r.HyperMode()); },
     [](const S& s, cHyper& r) { r.setHyperMode(s.lHyperMode()); }},
};

template <typename Record, std::size_t N>
void toTemplate(const tShared<Record> (&fields)[N], const Record& record, S& setting)
{
    for (const tShared<Record>& f : fields)
        f.toTemplate(record, setting);
}

template <typename Record, std::size_t N>
void toRecord(const tShared<Record> (&fields)[N], const S& setting, Record& record)
{
    for (const tShared<Record>& f : fields)
        f.toRecord(setting, record);
}

// The field into the record, when this record carries it; a copy leaves the others alone.
template <typename Record, std::size_t N>
bool fieldToRecord(const tShared<Record> (&fields)[N], Record& record, const S& setting, tField field)
{
    for (const tShared<Record>& f : fields) {
        if (f.field == field) {
            f.toRecord(setting, record);
            return true;
        }
    }
    return false;
}

} // namespace

void TimingToTemplate(const cSettings& timing, cSetsTemplate& setting) { toTemplate(kTiming, timing, setting); }
void GameTimerToTemplate(const cCountdownTimer& timer, cSetsTemplate& setting) { toTemplate(kGameTimer, timer, setting); }
void RampingToTemplate(const cHyper& ramping, cSetsTemplate& setting) { toTemplate(kRamping, ramping, setting); }

void TemplateToTiming(const cSetsTemplate& setting, cSettings& timing) { toRecord(kTiming, setting, timing); }
void TemplateToGameTimer(const cSetsTemplate& setting, cCountdownTimer& timer) { toRecord(kGameTimer, setting, timer); }
void TemplateToRamping(const cSetsTemplate& setting, cHyper& ramping) { toRecord(kRamping, setting, ramping); }

void FieldToGripRecord(const cSetsTemplate& setting, tField field, cGripSession& session)
{
    if (!fieldToRecord(kTiming, session.Timing(), setting, field) &&
        !fieldToRecord(kGameTimer, session.CountdownTimer(), setting, field))
        fieldToRecord(kRamping, session.Hyper(), setting, field);
}

void HistoryToTemplate(const QJsonObject& values, cGripSession& session, cSetsTemplate& setting)
{
    using mGripCommands::GripRecord;
    const auto recorded = [&](GripRecord record) { return values.value(mGripCommands::RecordName(record)).toObject(); };
    if (const QJsonObject timing = recorded(GripRecord::Timing); !timing.isEmpty()) {
        mRecordFields::FromJson(session, GripRecord::Timing, timing);
        TimingToTemplate(session.Timing(), setting);
    }
    if (const QJsonObject timer = recorded(GripRecord::GameTimer); !timer.isEmpty()) {
        mRecordFields::FromJson(session, GripRecord::GameTimer, timer);
        GameTimerToTemplate(session.CountdownTimer(), setting);
    }
}

} // namespace mTemplateRecords
