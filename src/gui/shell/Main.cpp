#include "gui/shell/Main.h"

#include "grip/mModes.h"
#include "gui/shell/fTolvaneMan.h"
#include "gui/widgets/fSplash.h"
#include "library/mDatabase.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QCoreApplication>

namespace mMain {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Main)
};

// Values of the preferences that cannot be read stand at their defaults: said once, naming the
// file and each value.
void ReportUnreadablePreferences()
{
    const QStringList lines = UnreadablePreferencesReport(UnreadablePreferences());
    if (lines.isEmpty())
        return;
    UI().showMessage(lines.join(QStringLiteral("\r\n")), Texts::tr("Preferences"), MsgIcon::Exclamation);
}

} // namespace

std::unique_ptr<fTolvaneMan> StartUp(cGripSession& session)
{
    std::unique_ptr<fTolvaneMan> window;
    ShowErrors(kModule, kRevision, QStringLiteral("Main"), [&] {
        ResetMousePointer();
        SetProgramVersion(kProgramVersion);
        CheckErrorComponent();
        cRegistrySettings& prefs = Application().RegistrySettings();

        std::unique_ptr<fSplash> splash;
        if (prefs.ShowSplash()) {
            splash = std::make_unique<fSplash>(ProgramVersion());
            splash->show();
            QApplication::processEvents();
        }
        // A library file changed in the options: the last setting belonged to the old one.
        if (prefs.DBChanged()) {
            prefs.setDBChanged(false);
            prefs.setLastKey(QString());
        }
        if (CheckForDB()) {
            mModes::FiringModesGlobalArraySet(session.Supports());
            mModes::HyperModesGlobalArraySet(session.Supports());
            window = std::make_unique<fTolvaneMan>(session);
            window->show();
            if (splash)
                splash->finish(window.get());
            ReportUnreadablePreferences();
        } else {
            ReportUnreadablePreferences();
            UI().showMessage(cText::Translated(mDatabase::kContext, mDatabase::kCannotContinueText),
                             cText::Translated(mDatabase::kContext, mDatabase::kCannotContinueTitle), MsgIcon::Critical);
        }
    });
    return window;
}

int Main()
{
    // The program's way to the grip: the serial control, the link over it and the session with
    // the grip, for as long as the window lives.
    cSerialPort port;
    const cPreferencesLinkSettings linkSettings;
    cLink link(&port, linkSettings);
    cGripSession session(link);
    const std::unique_ptr<fTolvaneMan> window = StartUp(session);
    if (!window)
        return 1;
    return QApplication::exec();
}

} // namespace mMain
