#pragma once
// One conversation with one grip: the link it talks over, and what the program holds of that grip
// (its six records, its gun information, the feature flags that follow it, the mode tables filled
// from them and its last refusal), and the history its settings are recorded in.
// The program makes one for its link and hands it to whatever talks to the grip; a test makes a
// fresh one. Made fresh, every record holds its defaults and the gun information says 4.0.0.
// The options and ramping records keep their values in the preferences, shared by every session,
// except in a scratch session, whose records keep their own: what a scratch session reads from a
// grip (to compare it, say) reaches no other session's records.
#include "grip/cBattery.h"
#include "grip/cCountdownTimer.h"
#include "grip/cCounters.h"
#include "grip/cGunInfo.h"
#include "grip/cHyper.h"
#include "grip/cModeTables.h"
#include "grip/cOptions.h"
#include "grip/cSettings.h"
#include "grip/cSupports.h"
#include "link/cError.h"

class cGripHistory;
class cLink;

class cGripSession {
public:
    enum class tKind { Program, Scratch };

    // The caller keeps the link, which must outlive the session.
    explicit cGripSession(cLink& link, tKind kind = tKind::Program)
        : m_link(link), m_keeping(kind == tKind::Scratch ? cStoredValues::tKeeping::Own : cStoredValues::tKeeping::Preferences)
    {
    }
    cGripSession(const cGripSession&) = delete;
    cGripSession& operator=(const cGripSession&) = delete;

    cLink& Link() const { return m_link; }

    cSettings& Timing() { return m_timing; }
    cCounters& Counters() { return m_counters; }
    cCountdownTimer& CountdownTimer() { return m_countdownTimer; }
    cBattery& Battery() { return m_battery; }
    cOptions& Options() { return m_options; }
    cHyper& Hyper() { return m_hyper; }

    cGunInfo& GunInfo() { return m_gunInfo; }
    const cGunInfo& GunInfo() const { return m_gunInfo; }
    // The flags read this session's gun information at every question.
    const cSupports& Supports() const { return m_supports; }
    // The firing-mode and ramping-mode tables, filled from these flags.
    cModeTables& Modes() { return m_modes; }
    // The grip's last negative answer.
    cError& GripError() { return m_gripError; }

    // A fresh ramping record in place of the one held ("Default settings" of the window).
    void ResetHyper() { m_hyper = cHyper(m_keeping); }

    // Where the gets and puts of settings are recorded (none: not recorded). The caller keeps it.
    cGripHistory* History() const { return m_history; }
    void SetHistory(cGripHistory* history) { m_history = history; }

private:
    cLink& m_link;
    cStoredValues::tKeeping m_keeping;
    cSettings m_timing;
    cCounters m_counters;
    cCountdownTimer m_countdownTimer;
    cBattery m_battery;
    cOptions m_options{m_keeping};
    cHyper m_hyper{m_keeping};
    cGunInfo m_gunInfo;
    cSupports m_supports{m_gunInfo};
    cModeTables m_modes{m_supports};
    cError m_gripError;
    cGripHistory* m_history = nullptr;
};
