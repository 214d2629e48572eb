#include "base/cUserInterface.h"

#include "base/MarloError.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <cstdio>

void cUserInterface::waitWithEvents(int milliseconds)
{
    if (milliseconds <= 0)
        return;
    QDeadlineTimer deadline(milliseconds, Qt::PreciseTimer);
    QCoreApplication* app = QCoreApplication::instance();
    // Events run until shortly before the end; the last stretch is a plain sleep, so that an
    // event handled just then cannot stretch the pause much beyond what was asked.
    constexpr int kQuietEndMs = 2;
    if (app && QThread::currentThread() == app->thread() && milliseconds > 2 * kQuietEndMs) {
        QEventLoop loop;
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
        timer.start(milliseconds - kQuietEndMs);
        // User input waits for the end of the pause: a message box or dialog opened by a click
        // here would hold back the rest of the frame, and the grip drops a frame whose bytes
        // stop coming.
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    // Never shorter than asked: what the event loop left (or the whole pause without one).
    const qint64 left = deadline.remainingTimeNSecs();
    if (left > 0)
        QThread::usleep(static_cast<unsigned long>((left + 999) / 1000));
}

void cHeadlessUserInterface::startProgress(int maximum)
{
    m_maximum = maximum;
    m_progress = 0;
}

void cHeadlessUserInterface::showMessage(const QString& text, const QString& title, MsgIcon)
{
    std::fprintf(stderr, "%s: %s\n", qPrintable(title), qPrintable(QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"))));
}

bool cHeadlessUserInterface::askYesNo(const QString& text, const QString& title, MsgIcon icon, bool)
{
    showMessage(text + QLatin1String("\r\n") + QCoreApplication::translate("cHeadlessUserInterface", "(answered No)"), title, icon);
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
