#include "cli/SimDevice.h"

#include "link/MarloError.h"
#include "link/cSerialPort.h"
#include "link/mErrCodes.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <memory>

namespace SimDevice {
namespace {

struct Running {
    QString device;
    std::unique_ptr<gripsim::PtyServer> server;
};

Running& running()
{
    static Running r;
    return r;
}

QString resolve(const QString& device)
{
    Running& r = running();
    if (r.server && r.device == device && r.server->isRunning())
        return r.server->devicePath();
    QString error;
    const auto options = gripsim::SimOptions::fromDeviceSpec(device, &error);
    if (!options)
        RaiseError(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("SimDevice"),
                   QStringLiteral("The virtual grip cannot start: %1").arg(error));
    auto server = std::make_unique<gripsim::PtyServer>(*options);
    if (!server->start(&error))
        RaiseError(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("SimDevice"),
                   QStringLiteral("The virtual grip cannot start: %1").arg(error));
    r.device = device;
    r.server = std::move(server);
    return r.server->devicePath();
}

} // namespace

QString Validate(const QString& device)
{
    if (!gripsim::SimOptions::isDeviceSpec(device))
        return QString();
    QString error;
    if (!gripsim::SimOptions::fromDeviceSpec(device, &error))
        return error.isEmpty() ? QStringLiteral("bad virtual grip options") : error;
    return QString();
}

void InstallResolver()
{
    cSerialPort::SetDeviceResolver(resolve);
}

void Stop()
{
    running().server.reset();
}

} // namespace SimDevice
