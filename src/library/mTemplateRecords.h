#pragma once
// What a setting of the library shares with the grip's records, and the one place that copies
// between them: the timing record carries the setting's five times and its firing mode, the
// game-timer record its game time and both alerts (on or off, and their times), the ramping
// record its shots, ramping time and ramping mode. Whoever copies between a setting and these
// records copies through here, a whole record at a time or one field as it is edited.
#include <QJsonObject>

class cCountdownTimer;
class cGripSession;
class cHyper;
class cSettings;
class cSetsTemplate;

namespace mTemplateRecords {

// The fields of a setting that a grip record carries, by record, each named after the setting's
// property.
enum class tField {
    // the timing record (cSettings)
    lCycleTimeClose,
    lCycleTimeOpen,
    lDwellTime,
    lLoadTime,
    lShotTime,
    lFiringMode,
    // the game-timer record (cCountdownTimer)
    lGameTime,
    bAlertOne,
    lAlertOne,
    bAlertTwo,
    lAlertTwo,
    // the ramping record (cHyper)
    lShots,
    lHyperTime,
    lHyperMode,
};

// A record into the setting: every field the record carries, in the order of tField, through the
// setting's setters (so a field that changes marks the setting changed). The other fields of
// the setting stay as they are.
void TimingToTemplate(const cSettings& timing, cSetsTemplate& setting);
void GameTimerToTemplate(const cCountdownTimer& timer, cSetsTemplate& setting);
void RampingToTemplate(const cHyper& ramping, cSetsTemplate& setting);

// The setting into a record: the same fields, through the record's setters (so the ramping
// record's range rules apply).
void TemplateToTiming(const cSetsTemplate& setting, cSettings& timing);
void TemplateToGameTimer(const cSetsTemplate& setting, cCountdownTimer& timer);
void TemplateToRamping(const cSetsTemplate& setting, cHyper& ramping);

// One field of the setting into the session's record that carries it (its timing, game-timer
// or ramping record); no other record is touched.
void FieldToGripRecord(const cSetsTemplate& setting, tField field, cGripSession& session);

// The timing and game-timer values of a grip-history entry (under the history's record and field
// names) into the setting, through the session's timing and game-timer records, which then hold
// them as they would once the setting is shown. A record the entry lacks leaves the setting's
// fields as they are.
void HistoryToTemplate(const QJsonObject& values, cGripSession& session, cSetsTemplate& setting);

} // namespace mTemplateRecords
