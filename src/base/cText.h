#pragma once
// A text the user reads in their language while files keep it in English: the English source
// with the context it is translated in (marked where it is defined with QT_TRANSLATE_NOOP), and
// the texts that fill its %1, %2, ... , themselves such texts or verbatim ones (a path, a number,
// what the system said). Keeping the pieces apart lets a message be shown translated and written
// in English, and lets each language order the pieces its own way.
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

class cText {
public:
    cText() = default;
    // A verbatim text: the same in every language.
    cText(const QString& verbatim) : m_source(verbatim) {} // NOLINT: a text is a cText
    // A text of the program, translated in context (a string literal).
    cText(const char* context, const QString& source, QList<cText> arguments = {});
    cText(const char* context, const char* source, QList<cText> arguments = {})
        : cText(context, QString::fromUtf8(source), std::move(arguments))
    {
    }

    // The text in English, as files and logs keep it.
    QString English() const { return render(false); }
    // The text in the user's language (English when no translation is loaded).
    QString Shown() const { return render(true); }
    bool isEmpty() const { return m_source.isEmpty(); }

    // A text of the program translated at once (a text that is only ever shown).
    static QString Translated(const char* context, const QString& source);
    static QStringList Translated(const char* context, const QStringList& sources);

private:
    QString render(bool translated) const;

    const char* m_context = nullptr;
    QString m_source;
    QList<cText> m_arguments;
};
