#include "cli/CliUserInterface.h"

#include "base/MarloError.h"
#include "cli/CliContext.h"
#include "link/mLinkHelp.h"

#include <QCoreApplication>
#include <QTextStream>
#include <unistd.h>

CliUserInterface::CliUserInterface(QTextStream& out, QTextStream& err)
    : m_out(out), m_err(err), m_isTerminal(isatty(STDERR_FILENO) != 0)
{
}

QString CliUserInterface::plain(const QString& text)
{
    return CliLines(text);
}

QString CliUserInterface::ErrorLine(const MarloError& error)
{
    // "error NNNNN:" stays as it is in every language, for scripts; the description is the user's.
    QString line = QStringLiteral("error %1: %2").arg(error.Number()).arg(plain(error.ShownDescription()));
    if (!error.Source().isEmpty() && error.Number() < 10000)
        line += QStringLiteral(" (%1)").arg(CliText(error.Source()));
    return line;
}

QString CliUserInterface::ErrorReport(const MarloError& error, const cLink* link)
{
    // What went wrong and what to do lead; the program's own error line ends the report.
    QStringList lines;
    for (const QString& line : mLinkHelp::WhatToDo(error, link))
        lines << plain(line);
    lines << ErrorLine(error);
    return lines.join(QLatin1Char('\n'));
}

void CliUserInterface::startProgress(int maximum)
{
    m_maximum = maximum;
    m_value = 0;
    m_progressShown = true;
    m_lastDraw.invalidate();
    drawProgress(false);
}

void CliUserInterface::setProgress(int value)
{
    m_value = value;
    if (m_progressShown)
        drawProgress(false);
}

void CliUserInterface::endProgress()
{
    if (!m_progressShown)
        return;
    drawProgress(true);
    m_progressShown = false;
}

void CliUserInterface::drawProgress(bool final)
{
    // On a terminal the bar is redrawn in place, at most every 100 ms; into a file or pipe
    // only the start and the end are written.
    if (!final && m_lastDraw.isValid() && m_lastDraw.elapsed() < 100 && m_value != m_maximum)
        return;
    if (!m_isTerminal && !final && m_value != 0)
        return;
    m_lastDraw.start();
    const int width = 40;
    const int filled = m_maximum > 0 ? qBound(0, m_value * width / m_maximum, width) : 0;
    const QString bar = QStringLiteral("[%1%2] %3/%4")
                            .arg(QString(filled, QLatin1Char('#')), QString(width - filled, QLatin1Char(' ')))
                            .arg(m_value)
                            .arg(m_maximum);
    const QString status = m_step;
    m_err << (m_isTerminal ? QStringLiteral("\r\x1b[K") : QString()) << bar
          << (status.isEmpty() ? QString() : QStringLiteral("  ") + CliText(status));
    if (final || !m_isTerminal)
        m_err << '\n';
    m_err.flush();
}

void CliUserInterface::setStepText(const QString& text)
{
    m_step = text;
    if (!text.isEmpty() && !m_progressShown) {
        m_err << CliText(text) << '\n';
        m_err.flush();
    }
}

void CliUserInterface::showMessage(const QString& text, const QString& title, MsgIcon icon)
{
    const bool warning = icon == MsgIcon::Exclamation || icon == MsgIcon::Critical;
    if (warning)
        ++m_warningsShown;
    QTextStream& stream = warning ? m_err : m_out;
    Q_UNUSED(title);
    stream << plain(text) << '\n';
    stream.flush();
}

bool CliUserInterface::askYesNo(const QString& text, const QString& title, MsgIcon, bool)
{
    m_err << CliText(title) << ": " << plain(text) << '\n' << CliTexts::tr("(marlo-cli does not ask: the answer taken is No)") << '\n';
    m_err.flush();
    return false;
}

QString CliUserInterface::inputBox(const QString& prompt, const QString& title, const QString&)
{
    m_err << CliText(title) << ": " << plain(prompt) << '\n' << CliTexts::tr("(marlo-cli does not ask: the answer taken is Cancel)") << '\n';
    m_err.flush();
    return QString();
}

std::optional<QString> CliUserInterface::openFileName(const FileDialogRequest& request)
{
    m_err << CliTexts::tr("(marlo-cli does not ask for a file: %1 cancelled)").arg(CliText(request.title)) << '\n';
    m_err.flush();
    return std::nullopt;
}

std::optional<QString> CliUserInterface::saveFileName(const FileDialogRequest& request)
{
    return openFileName(request);
}

void CliUserInterface::processEvents()
{
    QCoreApplication::processEvents();
}

void CliUserInterface::showError(const MarloError& error, const QString&, const QString&)
{
    ++m_errorsShown;
    m_err << ErrorReport(error, m_link) << '\n';
    m_err.flush();
}
