#include "base/mServices.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace mMain {
namespace {

// What the services hold for the whole run, made before main starts (never on first use): the
// headless services answer until a front end installs its own.
struct State {
    cHeadlessUserInterface headless;
    cUserInterface* ui = nullptr;
    qint32 mousePointerDepth = 0;
    QString programVersion = kProgramVersion;
};

State g_state;

State& state() { return g_state; }

} // namespace

QString ProgramVersion() { return state().programVersion; }
void SetProgramVersion(const QString& version) { state().programVersion = version; }

QString UserDataFolder()
{
    // Not AppDataLocation: that depends on each front end's application name, and the desktop
    // program and marlo-cli share one folder.
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)).filePath(kProgramTitle);
}

QString UserFilesFolder()
{
    return qEnvironmentVariableIsEmpty("MARLO_HOME") ? UserDataFolder() : ProgramFolder();
}

bool IsInstalledProgram()
{
    if (!QCoreApplication::instance())
        return false;
    const QDir executable(QCoreApplication::applicationDirPath());
    const QString templateName = QStringLiteral("instdbxx.tmp");
    return !executable.exists(templateName) &&
           QFileInfo::exists(QDir::cleanPath(executable.filePath(kInstalledDataFolder) + QLatin1Char('/') + templateName));
}

QString ProgramFolder()
{
    const QString home = qEnvironmentVariable("MARLO_HOME");
    if (!home.isEmpty())
        return QDir::cleanPath(home);
    if (!QCoreApplication::instance())
        return QDir::currentPath();
    const QString executable = QCoreApplication::applicationDirPath();
    if (!IsInstalledProgram() && QFileInfo(executable).isWritable())
        return executable;
    const QString folder = UserDataFolder();
    QDir().mkpath(folder); // first start: the library is then made in it from the template
    return folder;
}

QString ProgramFile(const QString& name)
{
    return QDir(ProgramFolder()).filePath(name);
}

cUserInterface& UI()
{
    cUserInterface* ui = state().ui;
    return ui ? *ui : state().headless;
}

void SetUserInterface(cUserInterface* ui) { state().ui = ui; }

void ShowConfirm(const QString& text)
{
    UI().showMessage(text, QCoreApplication::translate("mMain", "Confirmation"), MsgIcon::Information);
}

void WaitMousePointer()
{
    ++state().mousePointerDepth;
    if (UI().mainWindowVisible())
        UI().setBusyPointer(true);
}

void RestoreMousePointer()
{
    --state().mousePointerDepth;
    if (UI().mainWindowVisible() && state().mousePointerDepth == 0)
        UI().setBusyPointer(false);
}

void ResetMousePointer()
{
    state().mousePointerDepth = 0;
    UI().setBusyPointer(false);
}

qint32 MousePointerDepth() { return state().mousePointerDepth; }

void StartProgress(qint32 maximum)
{
    if (UI().mainWindowVisible())
        UI().startProgress(maximum);
}

void EndProgress() { UI().endProgress(); }

} // namespace mMain
