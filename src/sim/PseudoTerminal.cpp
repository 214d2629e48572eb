#include "sim/PseudoTerminal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace gripsim {

namespace {

QString systemError(const char* what)
{
    return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
}

speed_t speedFor(int baud)
{
    switch (baud) {
    case 1200: return B1200;
    case 2400: return B2400;
    case 4800: return B4800;
    case 19200: return B19200;
    case 38400: return B38400;
    case 57600: return B57600;
    case 115200: return B115200;
    default: return B9600;
    }
}

bool makeRaw(int fd, int baud, QString* error)
{
    termios settings{};
    if (tcgetattr(fd, &settings) != 0) {
        *error = systemError("tcgetattr");
        return false;
    }
    cfmakeraw(&settings);
    cfsetispeed(&settings, speedFor(baud));
    cfsetospeed(&settings, speedFor(baud));
    if (tcsetattr(fd, TCSANOW, &settings) != 0) {
        *error = systemError("tcsetattr");
        return false;
    }
    return true;
}

bool setFlags(int fd, QString* error)
{
    const int flags = fcntl(fd, F_GETFL);
    if (flags < 0 || fcntl(fd, F_SETFL, flags | O_NONBLOCK) != 0 || fcntl(fd, F_SETFD, FD_CLOEXEC) != 0) {
        *error = systemError("fcntl");
        return false;
    }
    return true;
}

} // namespace

PseudoTerminal::~PseudoTerminal()
{
    close();
}

bool PseudoTerminal::open(int baud, QString* error)
{
    QString why;
    if (openSteps(baud, &why))
        return true;
    if (error)
        *error = QStringLiteral("cannot open a pseudo-terminal (%1)").arg(why);
    close();
    return false;
}

bool PseudoTerminal::openSteps(int baud, QString* why)
{
    m_master = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0) {
        *why = systemError("posix_openpt");
        return false;
    }
    if (!setFlags(m_master, why))
        return false;
    if (grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        *why = systemError("grantpt/unlockpt");
        return false;
    }
    char name[128] = {};
    if (ptsname_r(m_master, name, sizeof name) != 0) {
        *why = systemError("ptsname_r");
        return false;
    }
    m_slavePath = QString::fromLocal8Bit(name);
    m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_slave < 0) {
        *why = systemError("open");
        return false;
    }
    return makeRaw(m_slave, baud, why);
}

void PseudoTerminal::close()
{
    if (m_slave >= 0)
        ::close(m_slave);
    if (m_master >= 0)
        ::close(m_master);
    m_slave = -1;
    m_master = -1;
    m_slavePath.clear();
}

} // namespace gripsim
