#pragma once

#include <QString>

#include <compare>
#include <optional>

namespace gripsim {

// A build number of the grip as it travels in the gun information:
// major and minor one byte each, revision 16 bits. (The fields avoid the
// names major/minor, which some C libraries define as macros.)
struct BuildVersion
{
    int majorNo = 0;
    int minorNo = 0;
    int revisionNo = 0;

    // "a.b.c" with decimal fields; major and minor 0..255, revision 0..65535.
    static std::optional<BuildVersion> parse(const QString& text);

    QString toString() const;

    // Numeric comparison field by field (1.1.70 is newer than 1.1.4).
    auto operator<=>(const BuildVersion&) const = default;
};

} // namespace gripsim
