#pragma once
// The traffic console of marlo-cli: every traffic-log entry goes to stderr.
#include "link/cCommConsole.h"

class StderrConsole : public cCommConsole {
public:
    void StartLogging() override;
    void logData(const QString& text) override;
};
