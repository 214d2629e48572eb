#include "gui/shell/DesktopCommandLine.h"

#include "base/mServices.h"

#include <QCoreApplication>
#include <QString>
#include <cstdio>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(DesktopCommandLine)
};

void print(std::FILE* stream, const QString& text) { std::fputs(qPrintable(text), stream); }

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
            print(stdout, Texts::tr("Usage: marlo [-F FILE]\n"
                             "Configures a Tolvane grip over a serial port: its timing, options, ramping, game\n"
                             "timers, counters and firmware, with a library of named settings.\n\n"
                             "Options:\n"
                             "  -F FILE        Writes the firmware in FILE to the grip when the window opens.\n"
                             "  -h, --help     Displays this help.\n"
                             "  -v, --version  Displays version information.\n\n"
                             "The same without a window: marlo-cli --help\n"));
            return 0;
        }
        if (word == QLatin1String("--version") || word == QLatin1String("-v")) {
            print(stdout, QStringLiteral("marlo %1\n").arg(mMain::kProgramVersion));
            return 0;
        }
    }
    if (!hasDisplay()) {
        print(stderr, Texts::tr("marlo needs a graphical display; without one, use marlo-cli (marlo-cli --help).\n"));
        return 1;
    }
    return std::nullopt;
}

} // namespace DesktopCommandLine
