#pragma once
// A backup of the grip's program before new firmware is written: the whole readable program
// memory, read while the grip runs its boot code, saved as a firmware file named after the grip,
// its firmware and the time. Written back like any firmware file, it restores the grip.
#include <QString>

class cGripSession;

namespace mFirmwareBackup {

inline const QString kModule = QStringLiteral("mFirmwareBackup");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");
inline const QString kFolderName = QStringLiteral("Backups");

// The backups of this user: Backups in the per-user data folder ($MARLO_HOME when set).
QString DefaultFolder();

// Makes the folder when it is missing and tries a file in it, before the grip is stopped: a folder
// that cannot take the backup raises the file-access error (75) naming it and why.
void PrepareFolder(const QString& folder);

// Reads the grip's whole program (the grip must run its boot code) and saves it with the grip's
// builds as a new file in the folder, "SERIAL_FIRMWARE_yyyyMMdd-HHmmss.tvf" (what a file name
// cannot hold becomes "_"); answers the file's path. When that fails, the grip's program is
// started again (nothing is to be written) and the error goes on, saying so.
QString BackUp(cGripSession& session, const QString& folder);

// The hint an error of the write after a backup carries: where the grip's old program is.
QString BackedUpHint(const QString& path);

} // namespace mFirmwareBackup
