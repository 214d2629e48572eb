#pragma once
// The program-control requests: start and stop the grip's program, ask whether it sits in its
// boot code, over the session's link. Each refreshes the session's gun information first when
// asked to (or when none is held).
#include <QString>

class cGripSession;

namespace mCommSupportHex {

inline const QString kModule = QStringLiteral("mCommSupportHex");
inline const QString kRevision = QStringLiteral("$Revision: 9 $");

bool GRIPStartProgram(cGripSession& session, bool forceRefresh = true);
bool GRIPStopProgram(cGripSession& session, bool forceRefresh = true);
bool GRIPIsBootmode(cGripSession& session, bool forceRefresh = true);

} // namespace mCommSupportHex
