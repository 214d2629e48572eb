#pragma once
// The two central error routines of module mMain and their one-line wrappers, which every layer
// uses: PassErrors adds a procedure's frame and throws the error on, ShowErrors shows it through
// the user-interface services (base/mServices.h, included here).
#include "base/MarloError.h"
#include "base/mServices.h"

#include <QString>
#include <exception>
#include <type_traits>
#include <utility>

namespace mMain {

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
