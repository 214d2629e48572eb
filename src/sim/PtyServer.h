#pragma once

#include "sim/PseudoTerminal.h"
#include "sim/ReplyScheduler.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

namespace gripsim {

// Serves a VirtualGrip on a pseudo-terminal from a thread of its own, so that
// the program talks to it through the real serial stack:
//
//     auto server = std::make_unique<gripsim::PtyServer>(options);
//     if (!server->start(&error)) ...
//     QString device = server->devicePath();   // e.g. /dev/pts/7
//
// Answers are paced at the baud rate when the options ask for it; the state
// is loaded from and saved to the state file when one is given.
class PtyServer
{
public:
    explicit PtyServer(const SimOptions& options = SimOptions());
    ~PtyServer();
    PtyServer(const PtyServer&) = delete;
    PtyServer& operator=(const PtyServer&) = delete;

    // Loads the state file, opens the pseudo-terminal and starts serving.
    bool start(QString* error = nullptr);
    // Stops serving and waits for the thread; the device disappears.
    void stop();
    bool isRunning() const;

    // The device to open (the slave side), empty when not running.
    QString devicePath() const;
    // The symbolic link made for the device (option link=PATH), if any.
    QString linkPath() const;

    VirtualGrip& grip() { return m_grip; }
    const VirtualGrip& grip() const { return m_grip; }
    const SimOptions& options() const { return m_options; }

    // The last problem met while serving (such as a state file that could
    // not be written); empty when there was none.
    QString lastError() const;

private:
    bool loadState(QString* error);
    bool makeLink(QString* error);
    bool openStopSignal(QString* error);
    void removeLink();
    void serve();
    void serveUntilStopped();
    int pollTimeoutMs(const ReplyScheduler& scheduler) const;
    void readInput(ReplyScheduler& scheduler);
    void sendDue(ReplyScheduler& scheduler);
    bool writePaced(const QByteArray& bytes, qint64* firstNs, qint64* lastNs);
    bool writeAll(const char* data, qsizetype size);
    void saveIfChanged();
    void setLastError(const QString& error);

    SimOptions m_options;
    VirtualGrip m_grip;
    PseudoTerminal m_pty;
    int m_stopFd = -1;
    std::thread m_thread;
    std::atomic<bool> m_running{false};
    quint64 m_savedRevision = 0;
    bool m_linkMade = false;
    mutable std::mutex m_errorMutex;
    QString m_lastError;
};

} // namespace gripsim
