#pragma once
// Helpers shared by the virtual grip's tests.

#include "sim/SimClock.h"
#include "sim/SimOptions.h"

#include <QByteArray>
#include <QString>
#include <QThread>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace simtest {

inline QByteArray bytes(const QString& hex)
{
    return QByteArray::fromHex(hex.toLatin1());
}

inline gripsim::SimOptions options(const QString& text)
{
    QString error;
    const auto parsed = gripsim::SimOptions::parse(text, &error);
    if (!parsed)
        qFatal("bad options in test: %s", qPrintable(error));
    return *parsed;
}

// One exchange as a serial program makes it: open the device raw, send the
// code byte, pause, send the rest, read up to reportSize bytes, close.
inline QByteArray exchange(const QString& device, const QByteArray& frame, int pauseMs, int reportSize)
{
    const int fd = ::open(device.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    if (fd < 0)
        return {};
    termios settings{};
    tcgetattr(fd, &settings);
    cfmakeraw(&settings);
    tcsetattr(fd, TCSANOW, &settings);
    QByteArray got;
    bool sent = ::write(fd, frame.constData(), 1) == 1;
    QThread::msleep(static_cast<unsigned long>(pauseMs));
    sent = sent && ::write(fd, frame.constData() + 1, size_t(frame.size() - 1)) == frame.size() - 1;
    pollfd in{fd, POLLIN, 0};
    char buffer[64];
    while (sent && got.size() < reportSize && poll(&in, 1, 2000) > 0) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0)
            break;
        got.append(buffer, n);
    }
    ::close(fd);
    return got;
}

} // namespace simtest
