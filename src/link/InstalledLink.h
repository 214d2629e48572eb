#pragma once
// The link the program built, for the grip records and the firmware transfer, which do not yet
// get it handed down: the front end (the main window, marlo-cli, a test, a benchmark) builds its
// cLink and installs it here for as long as it lives. This is the only place that keeps it.
class cLink;

namespace mCommBasic {

// The installed link; without one, a link without a port, whose every exchange ends with an
// empty report (as a program that has no serial control).
cLink& Link();
// Installs the link (the caller keeps it); nullptr uninstalls it.
void SetLink(cLink* link);

} // namespace mCommBasic
