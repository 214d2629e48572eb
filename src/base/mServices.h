#pragma once
// The part of module mMain that every layer uses: the program's version and folder, the
// user-interface services in force, the nested wait pointer, the progress display,
// and confirmations. The preferences store (cRegistrySettings) and the application object are
// built by each program and handed down.
#include "base/cRegistrySettings.h"
#include "base/cUserInterface.h"

#include "MarloVersion.h"

#include <QString>

namespace mMain {

// The module's name and revision in error frames, for every part of module mMain.
inline const QString kModule = QStringLiteral("mMain");
inline const QString kRevision = QStringLiteral("$Revision: 20 $");

// The program version text, set by the entry procedure before anything else.
inline const QString kProgramVersion = QStringLiteral(MARLO_VERSION);
inline const QString kProgramTitle = QStringLiteral("Marlo");

QString ProgramVersion();
void SetProgramVersion(const QString& version);

// The program's folder: $MARLO_HOME when set; else the folder of the executable when that is
// writable and not an installed program's; else (an installed program) the per-user data folder,
// made when missing. It holds the library Marlo.mdb and the traffic log komm.log.
QString ProgramFolder();
// The per-user data folder of both front ends (~/.local/share/Marlo).
QString UserDataFolder();
// Where the user's own files that no preference places (the grip history, firmware backups) live:
// the per-user data folder, or the program's folder when $MARLO_HOME gives one.
QString UserFilesFolder();
// Where an installed program keeps its read-only data (the library template), relative to the
// folder of its executable: the install rules put it there.
inline const QString kInstalledDataFolder = QStringLiteral("../share/marlo");
// The executable lies in an installed tree: its data folder holds the template and its own
// folder does not (a build tree and a portable copy keep the template beside the executable).
bool IsInstalledProgram();
// A file in the program's folder.
QString ProgramFile(const QString& name);

// The user-interface services in force (a headless one until a front end installs its own).
cUserInterface& UI();
// Installs the services; the caller keeps ownership. nullptr restores the headless ones.
void SetUserInterface(cUserInterface* ui);

// A confirmation of a command that worked; the text is in the user's language already.
void ShowConfirm(const QString& text);

void WaitMousePointer();
void RestoreMousePointer();
void ResetMousePointer();
qint32 MousePointerDepth();

void StartProgress(qint32 maximum);
void EndProgress();

} // namespace mMain

// Wait pointer for one scope: WaitMousePointer now, RestoreMousePointer on every way out.
class WaitPointerScope {
public:
    WaitPointerScope() { mMain::WaitMousePointer(); }
    ~WaitPointerScope() { mMain::RestoreMousePointer(); }
    WaitPointerScope(const WaitPointerScope&) = delete;
    WaitPointerScope& operator=(const WaitPointerScope&) = delete;
};
