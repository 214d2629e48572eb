#include "link/mLinkHelp.h"

#include "link/MarloError.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"

namespace mLinkHelp {

QStringList WhatToDo(const MarloError& error)
{
    if (error.Number() == mErrCodes::RT_PORT_OPEN_FAILED)
        return mErrCodes::HELP_PORT_IN_USE;
    switch (mCommBasic::LastOutcome()) {
    case mCommBasic::Outcome::PortFailed: {
        QStringList lines{QStringLiteral("The port could not be opened: %1").arg(mCommBasic::LastOpenError())};
        if (mCommBasic::LastOpenError().contains(QLatin1String("in use")))
            lines += mErrCodes::HELP_PORT_IN_USE;
        return lines;
    }
    case mCommBasic::Outcome::Timeout:
        return mErrCodes::HELP_TIMEOUT;
    case mCommBasic::Outcome::BadChecksum:
        return mErrCodes::HELP_CHECKSUM;
    default:
        return {};
    }
}

} // namespace mLinkHelp
