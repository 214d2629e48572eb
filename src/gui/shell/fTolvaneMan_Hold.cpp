// The main window's commands held while a grip command runs.
#include "gui/shell/GripCommandScope.h"
#include "gui/shell/fTolvaneMan.h"

#include <QAction>
#include <QWidget>

namespace {

void enableCommand(QObject* command, bool enabled)
{
    if (auto* action = qobject_cast<QAction*>(command))
        action->setEnabled(enabled);
    else if (auto* widget = qobject_cast<QWidget*>(command))
        widget->setEnabled(enabled);
}

bool commandEnabled(QObject* command)
{
    if (auto* action = qobject_cast<QAction*>(command))
        return action->isEnabled();
    auto* widget = qobject_cast<QWidget*>(command);
    return widget && widget->isEnabled();
}

} // namespace

void fTolvaneMan::HoldCommands()
{
    m_held.clear();
    for (QObject* command : m_heldCommands) {
        m_held.append(HeldCommand{command, commandEnabled(command)});
        enableCommand(command, false);
    }
}

void fTolvaneMan::ReleaseCommands()
{
    for (const HeldCommand& held : m_held)
        if (held.command)
            enableCommand(held.command, held.enabled);
    m_held.clear();
}

GripCommandScope::GripCommandScope(fTolvaneMan& window) : m_window(window)
{
    if (m_window.m_commandDepth++ == 0)
        m_window.HoldCommands();
}

GripCommandScope::~GripCommandScope()
{
    if (--m_window.m_commandDepth == 0)
        m_window.ReleaseCommands();
}

HoldSuspended::HoldSuspended(fTolvaneMan& window) : m_window(window), m_held(window.m_commandDepth > 0)
{
    if (m_held)
        m_window.ReleaseCommands();
}

HoldSuspended::~HoldSuspended()
{
    if (m_held)
        m_window.HoldCommands();
}
