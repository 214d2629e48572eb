#include "base/cText.h"

cText::cText(const char* context, const QString& source, QList<cText> arguments)
    : m_context(context), m_source(source), m_arguments(std::move(arguments))
{
}

QString cText::Translated(const char* context, const QString& source)
{
    return context ? QCoreApplication::translate(context, source.toUtf8().constData()) : source;
}

QStringList cText::Translated(const char* context, const QStringList& sources)
{
    QStringList lines;
    lines.reserve(sources.size());
    for (const QString& source : sources)
        lines << Translated(context, source);
    return lines;
}

QString cText::render(bool translated) const
{
    const QString pattern = translated ? Translated(m_context, m_source) : m_source;
    if (!m_context || m_arguments.isEmpty())
        return pattern;
    // One pass, so that an argument holding "%1" is never filled in again.
    QString text;
    text.reserve(pattern.size());
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        const qsizetype digit = i + 1 < pattern.size() ? pattern.at(i + 1).digitValue() : -1;
        if (c == QLatin1Char('%') && digit >= 1 && digit <= m_arguments.size()) {
            text += m_arguments.at(digit - 1).render(translated);
            ++i;
        } else {
            text += c;
        }
    }
    return text;
}
