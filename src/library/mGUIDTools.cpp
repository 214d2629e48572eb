#include "library/mGUIDTools.h"

#include <QUuid>

namespace mGUIDTools {

bool IsGUIDString(const QString& text)
{
    static constexpr int kGroups[] = {8, 4, 4, 4, 12};
    if (text.size() != 38 || text.front() != QLatin1Char('{') || text.back() != QLatin1Char('}'))
        return false;
    qsizetype at = 1;
    for (int g = 0; g < 5; ++g) {
        if (g > 0) {
            if (text[at] != QLatin1Char('-'))
                return false;
            ++at;
        }
        for (int i = 0; i < kGroups[g]; ++i, ++at) {
            const QChar c = text[at];
            const bool hex = (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
                             || (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
            if (!hex)
                return false;
        }
    }
    return true;
}

} // namespace mGUIDTools

QString GetNewGUIDStr()
{
    // A random (version 4) GUID; the registry form is braced and upper case.
    return QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
}
