#pragma once
// Module mMain at start-up: the report of unreadable preferences.
// The services every layer uses (program folder and version, the user-interface services, the
// wait pointer, progress, the preferences object) and the two central error routines lie below,
// in base/mServices.h and base/mErrorReport.h; this header includes both.
#include "base/mErrorReport.h"
#include "base/mServices.h"

#include <QString>
#include <QStringList>

namespace mMain {

// Every value of the preferences file that cannot be read, for the report at start: those of
// section Initialize as the preferences store read them, the options and ramping values and
// the windows' placements. Each stands at its default.
tUnreadablePreferences UnreadablePreferences(const cRegistrySettings& preferences);
// That report in plain lines, in the user's language: what happened, naming the file, then one
// line per value; nothing when there are no such values.
QStringList UnreadablePreferencesReport(const tUnreadablePreferences& problems);

} // namespace mMain
