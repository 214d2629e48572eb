#include "cli/StderrConsole.h"

#include <cstdio>

void StderrConsole::StartLogging()
{
}

void StderrConsole::logData(const QString& text)
{
    const QByteArray bytes = QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).toLocal8Bit();
    std::fprintf(stderr, "%s\n", bytes.constData());
    std::fflush(stderr);
}
