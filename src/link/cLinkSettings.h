#pragma once
// Where the link takes its settings from. The link asks at every opening of the port and at
// every traffic-log entry, never keeping an answer, so that a change made in the options applies
// to the next exchange. Whoever builds the link gives it one (cPreferencesLinkSettings: the
// preferences).
#include <QString>

class cLinkSettings {
public:
    virtual ~cLinkSettings() = default;

    // The device to open: a path, or "sim[:KEY=VALUE,...]"; empty: the port number decides.
    virtual QString CommDevice() const = 0;
    virtual qint32 CommPort() const = 0;
    // The line settings, "9600,N,8,1".
    virtual QString CommSettings() const = 0;
    virtual qint32 CommInputMode() const = 0;
    virtual bool CommLogToFile() const = 0;
    virtual bool CommLogToConsole() const = 0;
    // The traffic log file, komm.log.
    virtual QString CommLogFile() const = 0;
};
