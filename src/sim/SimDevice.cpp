#include "sim/SimDevice.h"

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

} // namespace

bool IsSimDevice(const QString& device)
{
    return gripsim::SimOptions::isDeviceSpec(device);
}

QString Validate(const QString& device)
{
    if (!IsSimDevice(device))
        return QString();
    QString error;
    if (!gripsim::SimOptions::fromDeviceSpec(device, &error))
        return error.isEmpty() ? QStringLiteral("bad virtual grip options") : error;
    return QString();
}

QString Resolve(const QString& device, QString* error)
{
    Running& r = running();
    if (r.server && r.device == device && r.server->isRunning())
        return r.server->devicePath();
    QString problem;
    const auto options = gripsim::SimOptions::fromDeviceSpec(device, &problem);
    if (options) {
        auto server = std::make_unique<gripsim::PtyServer>(*options);
        if (server->start(&problem)) {
            r.server.reset(); // the grip of an earlier device text stops first
            r.device = device;
            r.server = std::move(server);
            return r.server->devicePath();
        }
    }
    if (error)
        *error = problem;
    return QString();
}

void Stop()
{
    running().server.reset();
}

} // namespace SimDevice
