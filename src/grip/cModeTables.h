#pragma once
// The firing-mode and ramping-mode tables of one session, from which the mode lists are filled:
// each entry is marked visible when the session's grip supports the mode at the last filling.
#include "grip/mModes.h"

#include <QList>

class cSupports;

class cModeTables {
public:
    // The flags are read at every filling; the caller keeps them alive.
    explicit cModeTables(const cSupports& supports) : m_supports(supports) {}

    // Empty until filled.
    const QList<mModes::tModeEntry>& FiringModes() const { return m_firingModes; }
    const QList<mModes::tModeEntry>& HyperModes() const { return m_hyperModes; }

    // Fill a table again; the visible flags follow the feature flags at this moment.
    void FiringModesGlobalArraySet();
    void HyperModesGlobalArraySet();

private:
    const cSupports& m_supports;
    QList<mModes::tModeEntry> m_firingModes;
    QList<mModes::tModeEntry> m_hyperModes;
};
