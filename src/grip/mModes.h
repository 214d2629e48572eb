#pragma once
// The firing-mode and ramping-mode tables from which the mode lists are filled, each entry
// marked visible when the connected grip's firmware supports the mode.
#include <QList>
#include <QString>

class cSupports;

namespace mModes {

inline const QString kModule = QStringLiteral("mModes");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");
// The context the mode names are translated in where they are shown.
inline constexpr char kContext[] = "mModes";

// One entry of either table.
struct tModeEntry {
    QString caption; // the text shown in the list, in English (translated in kContext)
    qint32 code = 0; // the value sent to the grip
    bool visible = false;
};

// The global tables (empty until filled).
QList<tModeEntry>& FiringModes();
QList<tModeEntry>& HyperModes();

// Fill the tables again; the visible flags follow the grip's feature flags at this moment.
void FiringModesGlobalArraySet(const cSupports& supports);
void HyperModesGlobalArraySet(const cSupports& supports);

void CreateFiringModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports);
void CreateHyperModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports);

bool FiringModeVisible(qint32 code, const cSupports& supports);
bool HyperModeVisible(qint32 code, const cSupports& supports);

} // namespace mModes
