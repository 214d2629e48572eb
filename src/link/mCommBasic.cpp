#include "link/mCommBasic.h"

#include "link/mAppFunc.h"

#include <QLocale>
#include <QStringList>

namespace mCommBasic {

namespace {

QString logTimestamp(const QDateTime& when)
{
    // The system's short date and long time (without the zone name).
    const QLocale locale = QLocale::system();
    QString time = locale.timeFormat(QLocale::LongFormat);
    time.remove(QLatin1Char('t')).replace(QLatin1String("  "), QLatin1String(" "));
    return locale.toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
           locale.toString(when.time(), time.trimmed());
}

} // namespace

quint8 CalcCRC(const QByteArray& frame)
{
    quint32 sum = 0;
    for (const char byte : frame)
        sum += static_cast<quint8>(byte);
    return static_cast<quint8>((256 - sum % 256) % 256);
}

bool CheckCRC(const QByteArray& frame)
{
    if (frame.isEmpty())
        return false;
    return CalcCRC(frame.chopped(1)) == static_cast<quint8>(frame.back());
}

QString FormatLogEntry(const QDateTime& when, const QByteArray& bytes, const QString& label)
{
    QStringList decimals;
    decimals.reserve(bytes.size());
    for (const char byte : bytes)
        decimals.append(QString::number(static_cast<quint8>(byte)));
    return logTimestamp(when) + QStringLiteral(": ") + label + QStringLiteral("\r\n") +
           QStringLiteral("  dec: [") + decimals.join(QLatin1Char(',')) + QStringLiteral("]\r\n") +
           QStringLiteral("  hex:   [") + mAppFunc::BytesToHex(bytes) + QStringLiteral("]");
}

} // namespace mCommBasic
