#include "base/mConvert.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"

#include <cmath>

namespace mConvert {
namespace {

qint32 roundToLong(double number)
{
    const double rounded = std::nearbyint(number);
    if (!std::isfinite(rounded) || rounded < -2147483648.0 || rounded > 2147483647.0)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<qint32>(rounded);
}

} // namespace

qint32 CLng(const QString& text)
{
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    if (!ok || std::isnan(number))
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    return roundToLong(number);
}

double Val(const QString& text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && (text[i] == QLatin1Char(' ') || text[i] == QLatin1Char('\t') || text[i] == QLatin1Char('\n')))
        ++i;
    QString number;
    if (i < n && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-')))
        number += text[i++];
    bool digits = false;
    while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
        number += text[i++];
        digits = true;
    }
    if (i < n && text[i] == QLatin1Char('.')) {
        number += text[i++];
        while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
            number += text[i++];
            digits = true;
        }
    }
    if (!digits)
        return 0.0;
    if (i < n && (text[i] == QLatin1Char('e') || text[i] == QLatin1Char('E'))) {
        QString exponent = QStringLiteral("e");
        qsizetype j = i + 1;
        if (j < n && (text[j] == QLatin1Char('+') || text[j] == QLatin1Char('-')))
            exponent += text[j++];
        bool expDigits = false;
        while (j < n && text[j].isDigit() && text[j].unicode() < 128) {
            exponent += text[j++];
            expDigits = true;
        }
        if (expDigits)
            number += exponent;
    }
    // A number too large for a double comes back infinite and overflows when rounded.
    return number.toDouble();
}

qint32 ValLong(const QString& text)
{
    return roundToLong(Val(text));
}

} // namespace mConvert
