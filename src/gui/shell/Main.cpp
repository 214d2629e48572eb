#include "gui/shell/Main.h"

#include "grip/mModes.h"
#include "gui/shell/fTolvaneMan.h"
#include "gui/widgets/fSplash.h"
#include "library/cApplication.h"
#include "library/mDatabase.h"
#include "shell/mMain.h"

#include <QApplication>

namespace mMain {

std::unique_ptr<fTolvaneMan> StartUp()
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
            mModes::FiringModesGlobalArraySet();
            mModes::HyperModesGlobalArraySet();
            window = std::make_unique<fTolvaneMan>();
            window->show();
            if (splash)
                splash->finish(window.get());
        } else {
            UI().showMessage(mDatabase::kCannotContinueText, mDatabase::kCannotContinueTitle, MsgIcon::Critical);
        }
    });
    return window;
}

int Main()
{
    const std::unique_ptr<fTolvaneMan> window = StartUp();
    if (!window)
        return 1;
    return QApplication::exec();
}

} // namespace mMain
