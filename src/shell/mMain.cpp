#include "shell/mMain.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "shell/cApplication.h"

#include <QCoreApplication>
#include <memory>

namespace mMain {
namespace {

std::unique_ptr<cApplication>& application()
{
    static std::unique_ptr<cApplication> app;
    return app;
}

} // namespace

cApplication& Application()
{
    auto& app = application();
    if (!app)
        app = std::make_unique<cApplication>();
    return *app;
}

void ReleaseApplication()
{
    application().reset();
    // The application object drops the preferences with it; they may have been made without it
    // (the link reaches them directly), and go all the same.
    ReleaseRegistrySettings();
}

tUnreadablePreferences UnreadablePreferences()
{
    return Application().RegistrySettings().Unreadable() + cOptions::UnreadableValues() + cHyper::UnreadableValues() +
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
