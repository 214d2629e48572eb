#include "gui/shell/DesktopCommandLine.h"

#include "base/mServices.h"
#include "shell/mLanguage.h"

#include <QCoreApplication>
#include <QString>
#include <cstdio>

namespace {

const char* const kHelp = QT_TRANSLATE_NOOP("DesktopCommandLine",
    "Usage: marlo [-F FILE]\n"
    "Configures a Tolvane grip over a serial port: its timing, options, ramping, game\n"
    "timers, counters and firmware, with a library of named settings.\n\n"
    "Options:\n"
    "  -F FILE        Writes the firmware in FILE to the grip when the window opens.\n"
    "  -h, --help     Displays this help.\n"
    "  -v, --version  Displays version information.\n\n"
    "The same without a window: marlo-cli --help\n");
const char* const kNoDisplay =
    QT_TRANSLATE_NOOP("DesktopCommandLine", "marlo needs a graphical display; without one, use marlo-cli (marlo-cli --help).\n");

void print(std::FILE* stream, const QString& text) { std::fputs(qPrintable(text), stream); }

// Prints a text of the program in the user's language. The translations need an application
// object, and the window's is not made yet (or never is): one stands in while the text is printed.
void printTranslated(int argc, char* argv[], std::FILE* stream, const char* text)
{
    std::optional<QCoreApplication> app;
    if (!QCoreApplication::instance())
        app.emplace(argc, argv);
    mLanguage::Install();
    print(stream, QCoreApplication::translate("DesktopCommandLine", text));
    mLanguage::Remove();
}

// A window system can be reached: a named platform (offscreen too), an X display or Wayland.
bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

namespace DesktopCommandLine {

std::optional<int> AnswerWithoutWindow(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i) {
        const QString word = QString::fromLocal8Bit(argv[i]);
        if (word == QLatin1String("--help") || word == QLatin1String("-h")) {
            printTranslated(argc, argv, stdout, kHelp);
            return 0;
        }
        if (word == QLatin1String("--version") || word == QLatin1String("-v")) {
            print(stdout, QStringLiteral("marlo %1\n").arg(mMain::kProgramVersion));
            return 0;
        }
    }
    if (!hasDisplay()) {
        printTranslated(argc, argv, stderr, kNoDisplay);
        return 1;
    }
    return std::nullopt;
}

} // namespace DesktopCommandLine
