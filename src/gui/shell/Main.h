#pragma once
// The desktop program's entry procedure.
#include <memory>

class cApplication;
class cGripSession;
class fTolvaneMan;

namespace mMain {

// What every window of the program shares, whatever the desktop: the icon, in every size it comes
// in (drawn down for the scale of the screen, never up); the focus of a push button in sight; and
// left to right whatever a locale or translation would choose, for the windows are laid out for
// texts that read left to right. Done by StartUp.
void SetUpWindows();

// Starts the program: the version, the error reporter, the splash screen, the library file
// (asking for one when it is missing), the mode tables and the main window over the session and
// the application object (which the caller keeps while the window lives), which is answered
// shown. Without a library it says that the program cannot continue and answers nothing. Errors
// are shown.
std::unique_ptr<fTolvaneMan> StartUp(cGripSession& session, cApplication& application);

// Builds the preferences, the serial control, the link, the session with the grip and the
// application object, then StartUp and the window's event loop until it closes. The exit status: 0, or 1 when the
// program could not start.
int Main();

} // namespace mMain
