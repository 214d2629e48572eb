#include "shell/mMain.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "library/cApplication.h"
#include "link/mErrCodes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <memory>
#include <new>

namespace mMain {
namespace {

cHeadlessUserInterface& headlessUi()
{
    static cHeadlessUserInterface ui;
    return ui;
}

struct State {
    cUserInterface* ui = nullptr;
    std::unique_ptr<cApplication> application;
    qint32 mousePointerDepth = 0;
    qint32 errorMode = 1;
    QString programVersion = kProgramVersion;
};

State& state()
{
    static State s;
    return s;
}

} // namespace

QString ProgramVersion() { return state().programVersion; }
void SetProgramVersion(const QString& version) { state().programVersion = version; }

QString UserDataFolder()
{
    // Not AppDataLocation: that depends on each front end's application name, and the desktop
    // program and marlo-cli share one folder.
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)).filePath(kProgramTitle);
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
    return ui ? *ui : headlessUi();
}

void SetUserInterface(cUserInterface* ui) { state().ui = ui; }

cApplication& Application()
{
    auto& app = state().application;
    if (!app)
        app = std::make_unique<cApplication>();
    return *app;
}

void ReleaseApplication() { state().application.reset(); }

void ShowConfirm(const QString& text)
{
    UI().showMessage(text, QStringLiteral("Confirmation"), MsgIcon::Information);
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
    QStringList lines{QStringLiteral("The preferences file %1 has values that cannot be read; their defaults are used:")
                          .arg(cRegistrySettings::FileName())};
    for (const tUnreadablePreference& problem : problems)
        lines << cRegistrySettings::ProblemText(problem);
    return lines;
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

void CheckErrorComponent()
{
    // The error reporter is part of the program here, so the extended mode is always there.
    state().errorMode = 1;
}

qint32 ErrorMode() { return state().errorMode; }

void PassError(MarloError& error, const QString& module, const QString& revision,
               const QString& procedure)
{
    error.addFrame(module, revision, procedure);
    throw error;
}

void ShowError(MarloError& error, const QString& module, const QString& revision,
               const QString& procedure)
{
    error.addFrame(module, revision, procedure);
    ResetMousePointer();
    if (state().errorMode == 1)
        UI().showError(error, ProgramVersion(), kProgramTitle);
    else
        UI().showError(error, QString(), QString());
}

MarloError CurrentErrorAsMarloError()
{
    try {
        throw;
    } catch (const MarloError& e) {
        return e;
    } catch (const std::bad_alloc&) {
        return MarloError(7, QString(), QStringLiteral("Out of memory"));
    } catch (const std::exception& e) {
        return MarloError(mErrCodes::RT_INVALID_CALL, QString(), QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return MarloError(mErrCodes::RT_INVALID_CALL, QString(),
                          mErrCodes::RuntimeErrorText(mErrCodes::RT_INVALID_CALL));
    }
}

} // namespace mMain
