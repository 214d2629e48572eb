#pragma once
// The console logging object of the desktop program: the link hands it every traffic-log entry
// while logging to the console is on, and it passes them to the traffic window.
#include "link/cCommConsole.h"

#include <functional>

class fCommConsole;

class cCommConsoleWindow : public cCommConsole {
public:
    // Finds (or makes) the traffic window; nullptr when there is none any more (the main window
    // has closed), and the entries are then dropped.
    using WindowProvider = std::function<fCommConsole*()>;
    explicit cCommConsoleWindow(WindowProvider window) : m_window(std::move(window)) {}

    // Shows the window: logging to the console has just begun.
    void StartLogging() override;
    // Queues the entry in the window, which shows it with its next batch.
    void logData(const QString& text) override;

private:
    WindowProvider m_window;
};
