#include "link/mLinkHelp.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cLink.h"
#include "link/cPortDoctor.h"
#include "link/cSystemFacts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace mLinkHelp {
namespace {

// Where serial lock files are kept ("LCK..ttyUSB0"); Qt's serial port uses the first of these
// that it may write, other programs (minicom, uucp) one of the others.
const char* const kLockFolders[] = {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp",
                                    "/tmp", "/var/tmp", "/var/lock/lockdev", "/run/lock"};

constexpr char kContext[] = "mLinkHelp";

cText text(const char* source, QList<cText> arguments = {})
{
    return cText(kContext, source, std::move(arguments));
}

cText holderText(const PortFailure& failure)
{
    const QString pid = QString::number(failure.holderPid);
    return failure.holder.isEmpty() ? text(QT_TRANSLATE_NOOP("mLinkHelp", "process %1"), {pid})
                                    : text(QT_TRANSLATE_NOOP("mLinkHelp", "%1 (process %2)"), {failure.holder, pid});
}

} // namespace

QString PortFailureText(const PortFailure& failure)
{
    return PortFailureCause(failure).English();
}

cText PortFailureCause(const PortFailure& failure)
{
    switch (failure.kind) {
    case PortFailure::Kind::NotFound:
        return text(QT_TRANSLATE_NOOP("mLinkHelp", "The serial port %1 does not exist."), {failure.path});
    case PortFailure::Kind::PermissionDenied:
        return text(QT_TRANSLATE_NOOP("mLinkHelp", "Permission denied opening %1."), {failure.path});
    case PortFailure::Kind::InUse:
        if (failure.holderPid > 0)
            return text(QT_TRANSLATE_NOOP("mLinkHelp", "The serial port %1 is in use by %2."), {failure.path, holderText(failure)});
        if (!failure.lockFile.isEmpty())
            return text(QT_TRANSLATE_NOOP("mLinkHelp", "The serial port %1 is locked by the lock file %2, which no running program "
                                                       "owns: a program that ended without removing it left it behind."),
                        {failure.path, failure.lockFile});
        return text(QT_TRANSLATE_NOOP("mLinkHelp", "The serial port %1 is in use by another program (%2)."),
                    {failure.path, failure.systemText});
    case PortFailure::Kind::Other:
        break;
    }
    return text(QT_TRANSLATE_NOOP("mLinkHelp", "The serial port %1 cannot be opened: %2"), {failure.path, failure.systemText});
}

QStringList PortFailureHelp(const PortFailure& failure)
{
    cText help;
    switch (failure.kind) {
    case PortFailure::Kind::NotFound:
        help = text(QT_TRANSLATE_NOOP("mLinkHelp", "Check the port number or the device in the options, and that the grip's cable is plugged in."));
        break;
    case PortFailure::Kind::PermissionDenied:
        help = text(QT_TRANSLATE_NOOP("mLinkHelp", "Your user must be in the 'dialout' group to use serial ports: run "
                                                   "'sudo usermod -aG dialout $USER', then log out and in again."));
        break;
    case PortFailure::Kind::InUse:
        if (failure.holderPid > 0)
            help = text(QT_TRANSLATE_NOOP("mLinkHelp", "Close %1, or wait until it has finished, and try again."), {holderText(failure)});
        else if (!failure.lockFile.isEmpty())
            help = text(QT_TRANSLATE_NOOP("mLinkHelp", "Remove the stale lock file and try again: rm %1"), {failure.lockFile});
        else
            return cText::Translated(mErrCodes::kContext, mErrCodes::HELP_PORT_IN_USE);
        break;
    case PortFailure::Kind::Other:
        help = text(QT_TRANSLATE_NOOP("mLinkHelp", "Check the port number or the device in the options."));
        break;
    }
    return {help.Shown()};
}

QStringList DoctorHints(const PortFailure& failure, const cSystemFacts& facts)
{
    using Kind = cPortDoctor::Problem::Kind;
    QStringList hints;
    for (const cPortDoctor::Problem& problem : cPortDoctor(facts).Diagnose(failure.path)) {
        const bool adds = problem.kind == Kind::ModemManager ||
                          (failure.kind == PortFailure::Kind::NotFound &&
                           (problem.kind == Kind::ClaimedByBrltty || problem.kind == Kind::NoDeviceForAdapter)) ||
                          (failure.kind == PortFailure::Kind::PermissionDenied && problem.kind == Kind::NeedsNewLogin);
        if (adds)
            hints << problem.text.Shown();
    }
    return hints;
}

QStringList DeviceLostHelp(const QString& path)
{
    static const char* const kLost = QT_TRANSLATE_NOOP(
        "mLinkHelp", "The serial port %1 vanished during the exchange: the grip's cable or USB adapter was unplugged, "
                     "or the adapter lost its connection.");
    static const char* const kWhatToDo = QT_TRANSLATE_NOOP(
        "mLinkHelp", "Plug it in again and retry. Check the device in the options: a USB adapter may come back "
                     "under another name (such as /dev/ttyUSB1).");
    return {QCoreApplication::translate("mLinkHelp", kLost).arg(path), QCoreApplication::translate("mLinkHelp", kWhatToDo)};
}

QString FindLockFile(const QString& devicePath)
{
    QString name = devicePath;
    if (name.startsWith(QLatin1String("/dev/")))
        name = name.mid(5);
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    if (name.isEmpty())
        return {};
    for (const char* folder : kLockFolders) {
        const QString file = QString::fromLatin1(folder) + QStringLiteral("/LCK..") + name;
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

qint64 LockOwner(const QString& lockFile)
{
    QFile file(lockFile);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    // Qt writes "pid\nprogram\nhost", the classic lock files "      1234\n".
    bool ok = false;
    const qint64 pid = file.read(64).split('\n').value(0).trimmed().toLongLong(&ok);
    if (!ok || pid <= 0 || pid == QCoreApplication::applicationPid())
        return 0;
    return QFileInfo::exists(QStringLiteral("/proc/%1").arg(pid)) ? pid : 0;
}

qint64 DeviceUser(const QString& devicePath)
{
    const QString device = QFileInfo(devicePath).canonicalFilePath();
    if (device.isEmpty())
        return 0;
    const qint64 self = QCoreApplication::applicationPid();
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& process : processes) {
        bool isPid = false;
        const qint64 pid = process.toLongLong(&isPid);
        if (!isPid || pid == self)
            continue;
        const QDir fds(QStringLiteral("/proc/%1/fd").arg(pid));
        for (const QFileInfo& fd : fds.entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot)) {
            if (fd.symLinkTarget() == device)
                return pid;
        }
    }
    return 0;
}

QString ProgramName(qint64 pid)
{
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    return comm.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(comm.readAll()).trimmed() : QString();
}

QStringList WhatToDo(const MarloError& error, const cLink& link)
{
    QStringList lines = error.Hints();
    // A port error itself says its cause in its description; its hints are the help.
    if (error.Number() == mErrCodes::RT_PORT_OPEN_FAILED)
        return lines;
    switch (link.LastOutcome()) {
    case cLink::Outcome::PortFailed:
        lines << link.LastOpenError() << link.LastOpenHelp();
        break;
    case cLink::Outcome::Timeout:
        lines << cText::Translated(mErrCodes::kContext, mErrCodes::HELP_TIMEOUT);
        break;
    case cLink::Outcome::DeviceLost:
        lines << DeviceLostHelp(link.LastLostDevice());
        break;
    case cLink::Outcome::BadChecksum:
    case cLink::Outcome::UnknownReport:
        lines << cText::Translated(mErrCodes::kContext, mErrCodes::HELP_CHECKSUM);
        break;
    default:
        break;
    }
    return lines;
}

QStringList WhatToDo(const MarloError& error, const cLink* link)
{
    return link ? WhatToDo(error, *link) : error.Hints();
}

} // namespace mLinkHelp
