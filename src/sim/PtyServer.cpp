#include "sim/PtyServer.h"

#include "sim/ErrorText.h"
#include "sim/SimClock.h"
#include "sim/StateFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtDebug>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace gripsim {

namespace {

constexpr qint64 kNsPerSecond = 1'000'000'000;
constexpr int kBitsPerByte = 10; // start bit, eight data bits, stop bit
constexpr int kReadChunk = 512;
constexpr int kWriteWaitMs = 100;
constexpr int kWriteAttempts = 10;

void sleepUntil(qint64 deadlineNs)
{
    timespec when{};
    when.tv_sec = static_cast<time_t>(deadlineNs / kNsPerSecond);
    when.tv_nsec = static_cast<long>(deadlineNs % kNsPerSecond);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &when, nullptr) == EINTR) {
    }
}

int msUntil(qint64 deadlineNs, qint64 nowNs)
{
    const qint64 ns = std::max<qint64>(0, deadlineNs - nowNs);
    return static_cast<int>(std::min<qint64>((ns + kNsPerMs - 1) / kNsPerMs, 60'000));
}

} // namespace

PtyServer::PtyServer(const SimOptions& options)
    : m_options(options)
    , m_grip(options)
{
}

PtyServer::~PtyServer()
{
    stop();
}

bool PtyServer::start(QString* error)
{
    if (isRunning())
        return true;
    QString why;
    if (loadState(&why) && m_pty.open(m_options.baud, &why) && makeLink(&why) && openStopSignal(&why)) {
        m_running = true;
        m_thread = std::thread([this] { serve(); });
        return true;
    }
    setError(error, why);
    removeLink();
    m_pty.close();
    return false;
}

bool PtyServer::openStopSignal(QString* error)
{
    m_stopFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_stopFd >= 0)
        return true;
    *error = QStringLiteral("cannot create the stop signal of the virtual grip");
    return false;
}

void PtyServer::stop()
{
    if (!m_thread.joinable())
        return;
    const quint64 one = 1;
    if (write(m_stopFd, &one, sizeof one) < 0)
        qWarning("virtual grip: cannot signal the server thread to stop");
    m_thread.join();
    m_running = false;
    saveIfChanged();
    ::close(m_stopFd);
    m_stopFd = -1;
    removeLink();
    m_pty.close();
}

bool PtyServer::isRunning() const
{
    return m_running;
}

QString PtyServer::devicePath() const
{
    return m_pty.slavePath();
}

QString PtyServer::linkPath() const
{
    return m_linkMade ? m_options.linkPath : QString();
}

QString PtyServer::lastError() const
{
    std::lock_guard lock(m_errorMutex);
    return m_lastError;
}

void PtyServer::setLastError(const QString& error)
{
    std::lock_guard lock(m_errorMutex);
    m_lastError = error;
}

bool PtyServer::loadState(QString* error)
{
    if (m_options.stateFile.isEmpty())
        return true;
    const StateFile file(m_options.stateFile);
    GripState state = m_grip.state();
    if (file.exists()) {
        if (!file.load(state, error))
            return false;
        m_options.applyGivenTo(state);
        m_grip.setState(state);
    }
    if (!file.save(state, error))
        return false;
    m_savedRevision = m_grip.stateRevision();
    return true;
}

bool PtyServer::makeLink(QString* error)
{
    if (m_options.linkPath.isEmpty())
        return true;
    const QFileInfo existing(m_options.linkPath);
    if (existing.isSymLink())
        QFile::remove(m_options.linkPath);
    else if (existing.exists()) {
        *error = QStringLiteral("%1 exists and is not a symbolic link").arg(m_options.linkPath);
        return false;
    }
    if (!QFile::link(devicePath(), m_options.linkPath)) {
        *error = QStringLiteral("cannot make the link %1").arg(m_options.linkPath);
        return false;
    }
    m_linkMade = true;
    return true;
}

void PtyServer::removeLink()
{
    if (m_linkMade && QFileInfo(m_options.linkPath).symLinkTarget() == QFileInfo(devicePath()).absoluteFilePath())
        QFile::remove(m_options.linkPath);
    m_linkMade = false;
}

void PtyServer::serve()
{
    serveUntilStopped();
    m_running = false;
}

void PtyServer::serveUntilStopped()
{
    ReplyScheduler scheduler;
    for (;;) {
        pollfd fds[2] = {{m_pty.masterFd(), POLLIN, 0}, {m_stopFd, POLLIN, 0}};
        const int ready = poll(fds, 2, pollTimeoutMs(scheduler));
        if (ready < 0 && errno != EINTR) {
            setLastError(QStringLiteral("the virtual grip stopped: poll failed"));
            return;
        }
        if (fds[1].revents != 0)
            return;
        if (fds[0].revents & POLLIN)
            readInput(scheduler);
        else if (fds[0].revents & (POLLHUP | POLLERR))
            sleepUntil(monotonicNs() + 10 * kNsPerMs); // the slave we hold prevents this; never spin
        m_grip.dropStaleInput(monotonicNs());
        sendDue(scheduler);
        saveIfChanged();
    }
}

int PtyServer::pollTimeoutMs(const ReplyScheduler& scheduler) const
{
    auto deadline = m_grip.staleInputDeadlineNs();
    if (const auto due = scheduler.nextDueNs())
        deadline = deadline ? std::min(*deadline, *due) : *due;
    return deadline ? msUntil(*deadline, monotonicNs()) : -1;
}

void PtyServer::readInput(ReplyScheduler& scheduler)
{
    char buffer[kReadChunk];
    for (;;) {
        const ssize_t got = read(m_pty.masterFd(), buffer, sizeof buffer);
        if (got <= 0)
            return;
        const qint64 now = monotonicNs();
        for (const Reply& reply : m_grip.feed(QByteArray(buffer, got), now))
            scheduler.add(reply, now);
    }
}

void PtyServer::sendDue(ReplyScheduler& scheduler)
{
    while (const auto chunk = scheduler.dueChunk(monotonicNs())) {
        qint64 firstNs = 0;
        qint64 lastNs = 0;
        if (!writePaced(*chunk, &firstNs, &lastNs))
            setLastError(QStringLiteral("the virtual grip could not write its answer"));
        if (const auto sent = scheduler.chunkWritten(firstNs, lastNs))
            m_grip.recordSent(sent->bytes, sent->firstNs, sent->lastNs);
    }
}

// Without pacing the bytes go out at once. With pacing each byte is written
// when it would have arrived over a line at the baud rate.
bool PtyServer::writePaced(const QByteArray& bytes, qint64* firstNs, qint64* lastNs)
{
    if (!m_options.pace) {
        *firstNs = monotonicNs();
        const bool ok = writeAll(bytes.constData(), bytes.size());
        *lastNs = monotonicNs();
        return ok;
    }
    const qint64 byteNs = kBitsPerByte * kNsPerSecond / m_options.baud;
    const qint64 start = monotonicNs();
    bool ok = true;
    for (qsizetype i = 0; i < bytes.size() && ok; ++i) {
        sleepUntil(start + (i + 1) * byteNs);
        ok = writeAll(bytes.constData() + i, 1);
        if (i == 0)
            *firstNs = monotonicNs();
    }
    *lastNs = monotonicNs();
    return ok;
}

bool PtyServer::writeAll(const char* data, qsizetype size)
{
    int attempts = 0;
    while (size > 0) {
        const ssize_t done = write(m_pty.masterFd(), data, static_cast<size_t>(size));
        if (done > 0) {
            data += done;
            size -= done;
            continue;
        }
        if (done < 0 && errno != EAGAIN && errno != EINTR)
            return false;
        if (++attempts > kWriteAttempts)
            return false;
        pollfd out{m_pty.masterFd(), POLLOUT, 0};
        poll(&out, 1, kWriteWaitMs);
    }
    return true;
}

void PtyServer::saveIfChanged()
{
    if (m_options.stateFile.isEmpty())
        return;
    const quint64 revision = m_grip.stateRevision();
    if (revision == m_savedRevision)
        return;
    QString error;
    if (StateFile(m_options.stateFile).save(m_grip.state(), &error))
        m_savedRevision = revision;
    else
        setLastError(error);
}

} // namespace gripsim
