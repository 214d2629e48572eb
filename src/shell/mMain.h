#pragma once
// Shared services of the program: the application object, the user-interface services, the
// nested wait pointer, the progress display, confirmations and the two central error routines.
#include "link/MarloError.h"
#include "shell/cRegistrySettings.h"
#include "shell/cUserInterface.h"

#include "MarloVersion.h"

#include <QString>
#include <QStringList>
#include <exception>
#include <type_traits>
#include <utility>

class cApplication;

namespace mMain {

inline const QString kModule = QStringLiteral("mMain");
inline const QString kRevision = QStringLiteral("$Revision: 20 $");

// The program version text, set by the entry procedure before anything else.
inline const QString kProgramVersion = QStringLiteral(MARLO_VERSION);
inline const QString kProgramTitle = QStringLiteral("Marlo");

QString ProgramVersion();
void SetProgramVersion(const QString& version);

// The program's folder: $MARLO_HOME when set; else the folder of the executable when that is
// writable and not an installed program's; else (an installed program) the per-user data folder,
// made when missing. It holds the library Marlo.mdb and the traffic log komm.log.
QString ProgramFolder();
// The per-user data folder of both front ends (~/.local/share/Marlo).
QString UserDataFolder();
// Where an installed program keeps its read-only data (the library template), relative to the
// folder of its executable: the install rules put it there.
inline const QString kInstalledDataFolder = QStringLiteral("../share/marlo");
// The executable lies in an installed tree: its data folder holds the template and its own
// folder does not (a build tree and a portable copy keep the template beside the executable).
bool IsInstalledProgram();
// A file in the program's folder.
QString ProgramFile(const QString& name);

// The user-interface services in force (a headless one until a front end installs its own).
cUserInterface& UI();
// Installs the services; the caller keeps ownership. nullptr restores the headless ones.
void SetUserInterface(cUserInterface* ui);

// The application object, made on first use.
cApplication& Application();
// Drops the application object (tests and the end of the program).
void ReleaseApplication();

void ShowConfirm(const QString& text);

// Every value of the preferences file that cannot be read, for the report at start: those of
// section Initialize as the preferences object read them, the options and ramping values and
// the windows' placements. Each stands at its default.
tUnreadablePreferences UnreadablePreferences();
// That report in plain lines: what happened, naming the file, then one line per value; nothing
// when there are no such values.
QStringList UnreadablePreferencesReport(const tUnreadablePreferences& problems);

void WaitMousePointer();
void RestoreMousePointer();
void ResetMousePointer();
qint32 MousePointerDepth();

void StartProgress(qint32 maximum);
void EndProgress();

// Error mode: 1 when the extended error reporter is there (always, on this platform), else 0.
void CheckErrorComponent();
qint32 ErrorMode();

// The two central error routines. PassError adds the frame and throws the error on to the
// caller; ShowError resets the wait pointer and shows the error through the error reporter.
[[noreturn]] void PassError(MarloError& error, const QString& module, const QString& revision,
                            const QString& procedure);
void ShowError(MarloError& error, const QString& module, const QString& revision,
               const QString& procedure);

// Turns any exception in flight into a MarloError (inside a catch block only).
MarloError CurrentErrorAsMarloError();

} // namespace mMain

// The name a procedure reports its errors under; a procedure may rename itself step by step.
class Procedure {
public:
    explicit Procedure(QString name) : m_name(std::move(name)) {}
    const QString& name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }

private:
    QString m_name;
};

namespace ErrorTrapDetail {
template <typename F>
decltype(auto) invokeBody(F& body, Procedure& procedure)
{
    if constexpr (std::is_invocable_v<F&, Procedure&>)
        return body(procedure);
    else
        return body();
}
} // namespace ErrorTrapDetail

// "Trap and pass on" in one line: runs body; an error leaving it gets this procedure's frame and
// goes on to the caller. body may take a Procedure& to rename the procedure step by step.
template <typename F>
decltype(auto) PassErrors(const QString& module, const QString& revision, const QString& procedure,
                          F&& body)
{
    Procedure proc(procedure);
    try {
        return ErrorTrapDetail::invokeBody(body, proc);
    } catch (...) {
        MarloError error = mMain::CurrentErrorAsMarloError();
        mMain::PassError(error, module, revision, proc.name());
    }
}

// "Trap and show" for event handlers and other places with no caller left: nothing escapes.
// Returns true when body ended without an error.
template <typename F>
bool ShowErrors(const QString& module, const QString& revision, const QString& procedure, F&& body)
{
    Procedure proc(procedure);
    try {
        ErrorTrapDetail::invokeBody(body, proc);
        return true;
    } catch (...) {
        MarloError error = mMain::CurrentErrorAsMarloError();
        mMain::ShowError(error, module, revision, proc.name());
        return false;
    }
}

// Wait pointer for one scope: WaitMousePointer now, RestoreMousePointer on every way out.
class WaitPointerScope {
public:
    WaitPointerScope() { mMain::WaitMousePointer(); }
    ~WaitPointerScope() { mMain::RestoreMousePointer(); }
    WaitPointerScope(const WaitPointerScope&) = delete;
    WaitPointerScope& operator=(const WaitPointerScope&) = delete;
};
