#include "base/mErrorReport.h"

#include "base/mErrCodes.h"

#include <new>

namespace mMain {
namespace {

qint32& errorMode()
{
    static qint32 mode = 1;
    return mode;
}

} // namespace

void CheckErrorComponent()
{
    // The error reporter is part of the program here, so the extended mode is always there.
    errorMode() = 1;
}

qint32 ErrorMode() { return errorMode(); }

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
    if (errorMode() == 1)
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
        return MarloError(7, QString(), mErrCodes::MessageText(QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Out of memory"))));
    } catch (const std::exception& e) {
        return MarloError(mErrCodes::RT_INVALID_CALL, QString(), QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return MarloError(mErrCodes::RT_INVALID_CALL, QString(), mErrCodes::RuntimeError(mErrCodes::RT_INVALID_CALL));
    }
}

} // namespace mMain
