#pragma once
// What the desktop program answers before it opens a window: its help and version, which need no
// display, and one line when there is no display to open a window on.
#include <optional>

namespace DesktopCommandLine {

// The exit status when the program is done before making its application (help, version, no
// display); nothing when the window is to open.
std::optional<int> AnswerWithoutWindow(int argc, char* argv[]);

} // namespace DesktopCommandLine
