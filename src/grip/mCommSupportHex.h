#pragma once
// The program-control requests: start and stop the grip's program, ask whether it sits in its
// boot code. Each refreshes the gun information first when asked to (or when none is held).
#include <QString>

namespace mCommSupportHex {

inline const QString kModule = QStringLiteral("mCommSupportHex");
inline const QString kRevision = QStringLiteral("$Revision: 9 $");

bool GRIPStartProgram(bool forceRefresh = true);
bool GRIPStopProgram(bool forceRefresh = true);
bool GRIPIsBootmode(bool forceRefresh = true);

} // namespace mCommSupportHex
