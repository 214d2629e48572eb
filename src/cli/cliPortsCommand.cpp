// marlo-cli ports [DEVICE...]: the serial ports of this machine, the USB serial adapters that have
// no device and the virtual grip, each with what stands in the way of using it; or the devices
// named. The system is read below $MARLO_SYSTEM_ROOT when it is set (the tests lay out a machine
// of their own there), else below "/".
#include "cli/CliContext.h"

#include "link/cPortDoctor.h"
#include "link/cSystemFacts.h"
#include "link/mSerialDevices.h"

#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>

namespace {

QJsonValue idJson(const std::optional<quint16>& id)
{
    return id ? QJsonValue(QStringLiteral("%1").arg(*id, 4, 16, QLatin1Char('0'))) : QJsonValue(QJsonValue::Null);
}

QString readyText()
{
    return CliTexts::tr("ready: nothing stands in the way");
}

} // namespace

int RunPortsCommand(CliContext& ctx)
{
    for (const QString& word : ctx.words) {
        if (word.startsWith(QLatin1String("-")))
            throw CliUsageError(CliTexts::tr("unknown option '%1' (ports takes device names only)").arg(CliText(word)));
        if (word.trimmed().isEmpty())
            throw CliUsageError(CliTexts::tr("a device name is empty"));
    }
    const QString root = qEnvironmentVariable("MARLO_SYSTEM_ROOT");
    const cSystemFacts facts(root.isEmpty() ? QStringLiteral("/") : root);
    const cPortDoctor doctor(facts);

    QList<cPortDoctor::Port> ports;
    if (ctx.words.isEmpty()) {
        ports = doctor.Ports();
    } else {
        // The devices named, described as the listing describes them where it knows them.
        const QList<cPortDoctor::Port> known = doctor.Ports();
        for (const QString& device : ctx.words) {
            const QString name = device.trimmed();
            const auto found = std::find_if(known.begin(), known.end(), [&](const cPortDoctor::Port& port) {
                return port.path == name || (mSerialDevices::IsVirtualGrip(name) && port.path == mSerialDevices::kVirtualGrip);
            });
            cPortDoctor::Port port = found != known.end() ? *found : cPortDoctor::Port{};
            port.path = name;
            port.problems = doctor.Diagnose(name);
            ports << port;
        }
    }

    bool anyProblem = false;
    if (ctx.json) {
        QJsonArray array;
        for (const cPortDoctor::Port& port : ports) {
            QJsonArray problems;
            for (const cPortDoctor::Problem& problem : port.problems)
                problems << problem.text.English();
            array << QJsonObject{{QStringLiteral("path"), port.path},
                                 {QStringLiteral("description"), port.description},
                                 {QStringLiteral("vendor"), idJson(port.vendor)},
                                 {QStringLiteral("product"), idJson(port.product)},
                                 {QStringLiteral("problems"), problems}};
            anyProblem = anyProblem || !port.problems.isEmpty();
        }
        PrintJson(ctx, array);
    } else {
        for (const cPortDoctor::Port& port : ports) {
            *ctx.out << CliText(mSerialDevices::DisplayText({port.path, cText::Translated(cPortDoctor::kContext, port.description), port.manufacturer, port.vendor, port.product}))
                     << '\n';
            if (port.problems.isEmpty())
                *ctx.out << "  " << readyText() << '\n';
            for (const cPortDoctor::Problem& problem : port.problems)
                *ctx.out << "  - " << CliText(problem.text.Shown()) << '\n';
            anyProblem = anyProblem || !port.problems.isEmpty();
        }
        ctx.out->flush();
    }
    // The listing itself is done; a device asked for by name that cannot be used is an error,
    // so that a script can check a device before it talks to the grip.
    if (ctx.words.isEmpty() || !anyProblem)
        return ExitOk;
    *ctx.err << "marlo-cli ports: " << CliTexts::tr("a device named cannot be used as it stands (what to do is printed above)") << '\n';
    ctx.err->flush();
    return ExitError;
}
