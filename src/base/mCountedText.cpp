#include "base/mCountedText.h"

#include <QCoreApplication>

namespace mCountedText {

QString Counted(const char* context, const char* plural, const char* singular, int n)
{
    const QString count = QString::number(n);
    const QString translated = QCoreApplication::translate(context, plural, nullptr, n);
    // Without a translation the plural source comes back, filled in.
    if (translated != QString::fromUtf8(plural).replace(QLatin1String("%n"), count))
        return translated;
    return QString::fromUtf8(n == 1 ? singular : plural).replace(QLatin1String("%n"), count);
}

} // namespace mCountedText
