#include "link/cCommControl.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"

#include <QStringList>

bool cCommControl::ParseSettings(const QString& text, LineSettings& out)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return false;
    bool ok = false;
    LineSettings line;
    line.baudRate = parts[0].trimmed().toInt(&ok);
    if (!ok || line.baudRate <= 0)
        return false;
    const QString parity = parts[1].trimmed().toUpper();
    if (parity.size() != 1 || !QStringLiteral("NEOMS").contains(parity))
        return false;
    line.parity = parity.at(0);
    line.dataBits = parts[2].trimmed().toInt(&ok);
    if (!ok || line.dataBits < 5 || line.dataBits > 8)
        return false;
    line.stopBits = parts[3].trimmed();
    if (line.stopBits != QLatin1String("1") && line.stopBits != QLatin1String("1.5") &&
        line.stopBits != QLatin1String("2"))
        return false;
    out = line;
    return true;
}

void cCommControl::setSettings(const QString& settings)
{
    LineSettings line;
    if (!ParseSettings(settings, line))
        RaiseError(mErrCodes::RT_INVALID_PROPERTY, QStringLiteral("cCommControl"),
                   cText("cCommControl", QT_TRANSLATE_NOOP("cCommControl", "Invalid property value: the port settings \"%1\" are not of the "
                                                                           "form 9600,N,8,1"),
                         {settings}));
    m_settings = settings;
    m_line = line;
}
