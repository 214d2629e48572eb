#include "gui/link/cCommConsoleWindow.h"

#include "gui/link/fCommConsole.h"

void cCommConsoleWindow::StartLogging()
{
    if (fCommConsole* window = m_window ? m_window() : nullptr) {
        window->show();
        window->raise();
    }
}

void cCommConsoleWindow::logData(const QString& text)
{
    if (fCommConsole* window = m_window ? m_window() : nullptr)
        window->appendEntry(text);
}
