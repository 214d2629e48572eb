#include "shell/mMain.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include <QCoreApplication>

namespace mMain {

tUnreadablePreferences UnreadablePreferences(const cRegistrySettings& preferences)
{
    return preferences.Unreadable() + cOptions::UnreadableValues() + cHyper::UnreadableValues() +
           cRegistrySettings::UnreadablePlacements();
}

QStringList UnreadablePreferencesReport(const tUnreadablePreferences& problems)
{
    if (problems.isEmpty())
        return {};
    QStringList lines{QCoreApplication::translate("mMain", "The preferences file %1 has values that cannot be read; their defaults are used:")
                          .arg(cRegistrySettings::FileName())};
    for (const tUnreadablePreference& problem : problems)
        lines << cRegistrySettings::ProblemText(problem);
    return lines;
}

} // namespace mMain
