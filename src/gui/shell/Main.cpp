#include "gui/shell/Main.h"

#include "grip/cGripHistory.h"
#include "gui/common/FocusStyle.h"
#include "gui/shell/fTolvaneMan.h"
#include "gui/widgets/fSplash.h"
#include "library/mDatabase.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QIcon>

namespace mMain {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Main)
};

// Values of the preferences that cannot be read stand at their defaults: said once, naming the
// file and each value.
void ReportUnreadablePreferences(const cRegistrySettings& prefs)
{
    const QStringList lines = UnreadablePreferencesReport(UnreadablePreferences(prefs));
    if (lines.isEmpty())
        return;
    UI().showMessage(lines.join(QStringLiteral("\r\n")), Texts::tr("Preferences"), MsgIcon::Exclamation);
}

} // namespace

void SetUpWindows()
{
    QIcon icon;
    for (const QFileInfo& file : QDir(QStringLiteral(":/marlo")).entryInfoList({QStringLiteral("marlo-*.png")}))
        icon.addFile(file.filePath());
    QApplication::setWindowIcon(icon);
    FocusStyle::Install();
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

std::unique_ptr<fTolvaneMan> StartUp(cGripSession& session, cApplication& application)
{
    std::unique_ptr<fTolvaneMan> window;
    ShowErrors(kModule, kRevision, QStringLiteral("Main"), [&] {
        ResetMousePointer();
        SetProgramVersion(kProgramVersion);
        CheckErrorComponent();
        cRegistrySettings& prefs = application.RegistrySettings();
        SetUpWindows();

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
        if (CheckForDB(prefs)) {
            session.Modes().FiringModesGlobalArraySet();
            session.Modes().HyperModesGlobalArraySet();
            window = std::make_unique<fTolvaneMan>(session, application);
            window->show();
            if (splash)
                splash->finish(window.get());
            ReportUnreadablePreferences(prefs);
        } else {
            ReportUnreadablePreferences(prefs);
            UI().showMessage(cText::Translated(mDatabase::kContext, mDatabase::kCannotContinueText),
                             cText::Translated(mDatabase::kContext, mDatabase::kCannotContinueTitle), MsgIcon::Critical);
        }
    });
    return window;
}

int Main()
{
    // The program's preferences, its way to the grip (the serial control, the link over it and the
    // session with the grip, with the history of its settings) and the application object, for as long as the window lives.
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    cGripSession session(link);
    cApplication application(prefs);
    cGripHistory history(cGripHistory::DefaultFolder());
    session.SetHistory(&history);
    const std::unique_ptr<fTolvaneMan> window = StartUp(session, application);
    if (!window)
        return 1;
    return QApplication::exec();
}

} // namespace mMain
