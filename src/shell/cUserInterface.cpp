#include "shell/cUserInterface.h"

#include "link/MarloError.h"

#include <QCoreApplication>
#include <cstdio>

void cHeadlessUserInterface::startProgress(int maximum)
{
    m_maximum = maximum;
    m_progress = 0;
}

QString cHeadlessUserInterface::statusText(int panel) const
{
    return m_panels.value(panel);
}

void cHeadlessUserInterface::setStatusText(int panel, const QString& text)
{
    while (m_panels.size() <= panel)
        m_panels.append(QString());
    m_panels[panel] = text;
}

void cHeadlessUserInterface::showMessage(const QString& text, const QString& title, MsgIcon)
{
    std::fprintf(stderr, "%s: %s\n", qPrintable(title), qPrintable(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"))));
}

bool cHeadlessUserInterface::askYesNo(const QString& text, const QString& title, MsgIcon icon, bool)
{
    showMessage(text + QLatin1String("\r\n(answered No)"), title, icon);
    return false;
}

QString cHeadlessUserInterface::inputBox(const QString&, const QString&, const QString&)
{
    return QString();
}

std::optional<QString> cHeadlessUserInterface::openFileName(const FileDialogRequest&)
{
    return std::nullopt;
}

std::optional<QString> cHeadlessUserInterface::saveFileName(const FileDialogRequest&)
{
    return std::nullopt;
}

void cHeadlessUserInterface::processEvents()
{
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();
}

void cHeadlessUserInterface::showError(const MarloError& error, const QString&, const QString&)
{
    std::fprintf(stderr, "error %d: %s\n", error.Number(),
                 qPrintable(error.Description().replace(QLatin1String("\r\n"), QLatin1String("\n"))));
}
