#pragma once
// The firing-mode and ramping-mode tables from which the mode lists are filled, each entry
// marked visible when the connected grip's firmware supports the mode.
#include <QList>
#include <QString>

namespace mModes {

inline const QString kModule = QStringLiteral("mModes");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// One entry of either table.
struct tModeEntry {
    QString caption; // the text shown in the list
    qint32 code = 0; // the value sent to the grip
    bool visible = false;
};

// The global tables (empty until filled).
QList<tModeEntry>& FiringModes();
QList<tModeEntry>& HyperModes();

// Fill the tables again; the visible flags follow the firmware connected at this moment.
void FiringModesGlobalArraySet();
void HyperModesGlobalArraySet();

void CreateFiringModeConst(tModeEntry& entry, const QString& caption, qint32 code);
void CreateHyperModeConst(tModeEntry& entry, const QString& caption, qint32 code);

bool FiringModeVisible(qint32 code);
bool HyperModeVisible(qint32 code);

} // namespace mModes
