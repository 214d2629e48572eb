#pragma once
// The entries of the firing-mode and ramping-mode tables (their session keeps them, cModeTables),
// each marked visible when the connected grip's firmware supports the mode.
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

void CreateFiringModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports);
void CreateHyperModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports);

bool FiringModeVisible(qint32 code, const cSupports& supports);
bool HyperModeVisible(qint32 code, const cSupports& supports);

} // namespace mModes
