#pragma once
// What to do about an error of the link, for every front end: the one place that decides the
// lines of help that go with a port that could not be opened (it does not exist, permission
// denied, in use by which program or locked by which stale lock file), a grip that did not
// answer, a device that vanished during the exchange (unplugged) or a spoiled report. The link's last exchange tells which applies, since a silent grip
// reaches the user as the record's own "unknown error" number.
#include "base/cText.h"

#include <QString>
#include <QStringList>

class MarloError;
class cLink;
class cSystemFacts;

namespace mLinkHelp {

// What is known about a port that could not be opened (gathered by the serial port).
struct PortFailure {
    enum class Kind { NotFound, PermissionDenied, InUse, Other };
    Kind kind = Kind::Other;
    QString path;         // the device
    QString systemText;   // the system's own words
    QString lockFile;     // the lock file that keeps the port, if one does
    qint64 holderPid = 0; // the process that holds the port or its lock file, if it runs
    QString holder;       // that process's program name
};

// The cause in one sentence ("The serial port /dev/ttyUSB0 does not exist."): the error's
// description (English in the traffic log), and that sentence in English.
cText PortFailureCause(const PortFailure& failure);
QString PortFailureText(const PortFailure& failure);
// What to do about it, one line each (the dialout group, which program to close, which stale
// lock file to remove), in the user's language.
QStringList PortFailureHelp(const PortFailure& failure);

// What the port doctor finds beyond the failure itself, one sentence group a line: for a device
// that does not exist, a USB serial adapter without a device (brltty took it, or no driver did);
// for permission denied, a group joined after this session began; for any failure, ModemManager
// probing the device. The facts of the system are read through facts.
QStringList DoctorHints(const PortFailure& failure, const cSystemFacts& facts);

// A device that vanished during an exchange (unplugged): the cause, then what to do.
QStringList DeviceLostHelp(const QString& path);

// The serial lock file that keeps a device ("/var/lock/LCK..ttyUSB0"), if one exists, and the
// running process that owns the lock file or has the device open (0 and empty when none).
QString FindLockFile(const QString& devicePath);
qint64 LockOwner(const QString& lockFile);
qint64 DeviceUser(const QString& devicePath);
QString ProgramName(qint64 pid);

// The lines that say what went wrong and what to do about the error just caught, cause first,
// in the user's language (empty when nothing applies): the error's own hints; for a port that could not be opened its
// cause and help; for a time-out and a bad checksum their help texts. The last exchange of the
// link the error happened on tells which applies; without a link (nullptr), only the error's own
// hints.
QStringList WhatToDo(const MarloError& error, const cLink& link);
QStringList WhatToDo(const MarloError& error, const cLink* link);

} // namespace mLinkHelp
