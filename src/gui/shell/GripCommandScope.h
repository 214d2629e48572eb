#pragma once
// Holds the main window's commands for as long as a grip command runs, from its first exchange to
// its last: window events run while the link waits, and a command started then would be refused
// by the link, or open a modal window that stalls the exchange. Scopes nest; the outermost one
// holds and releases.
class fTolvaneMan;

class GripCommandScope {
public:
    explicit GripCommandScope(fTolvaneMan& window);
    ~GripCommandScope();
    GripCommandScope(const GripCommandScope&) = delete;
    GripCommandScope& operator=(const GripCommandScope&) = delete;

private:
    fTolvaneMan& m_window;
};

// Lets the window set its commands' states while a command holds them (UpdateState does): the
// held commands get their own states back for the scope, and what the scope leaves is held
// again, to be given back when the command ends.
class HoldSuspended {
public:
    explicit HoldSuspended(fTolvaneMan& window);
    ~HoldSuspended();
    HoldSuspended(const HoldSuspended&) = delete;
    HoldSuspended& operator=(const HoldSuspended&) = delete;

private:
    fTolvaneMan& m_window;
    bool m_held;
};
