#include "sim/BuildVersion.h"

#include <QStringList>

namespace gripsim {

namespace {

std::optional<int> parseField(const QString& text, int max)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!ok || text.isEmpty() || text.startsWith(QLatin1Char('+')) || value < 0 || value > max)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<BuildVersion> BuildVersion::parse(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 3)
        return std::nullopt;
    const auto majorNo = parseField(parts[0], 255);
    const auto minorNo = parseField(parts[1], 255);
    const auto revisionNo = parseField(parts[2], 65535);
    if (!majorNo || !minorNo || !revisionNo)
        return std::nullopt;
    return BuildVersion{*majorNo, *minorNo, *revisionNo};
}

QString BuildVersion::toString() const
{
    return QStringLiteral("%1.%2.%3").arg(majorNo).arg(minorNo).arg(revisionNo);
}

} // namespace gripsim
