#pragma once
// The traffic console: an optional logging object that receives every traffic-log entry.
// marlo-cli prints the entries to stderr; the desktop program shows them in a window.
#include <QString>

class cCommConsole {
public:
    virtual ~cCommConsole() = default;
    virtual void StartLogging() = 0;
    virtual void logData(const QString& text) = 0;
};
