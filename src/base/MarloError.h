#pragma once
// The one error type of the program: a number, a source and a description, plus the trail of
// (module, revision, procedure) frames it passed through on its way to the user. The description
// is English where it is written or compared (Description) and the user's language where it is
// shown (ShownDescription).
#include "base/cText.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <exception>
#include <string>

struct ErrorFrame {
    QString module;
    QString revision;
    QString procedure;
};

class MarloError : public std::exception {
public:
    MarloError(qint32 number, QString source, cText description);

    qint32 Number() const { return m_number; }
    QString Source() const { return m_source; }
    QString Description() const { return m_description.English(); }
    QString ShownDescription() const { return m_description.Shown(); }
    const cText& DescriptionText() const { return m_description; }
    const QList<ErrorFrame>& Trail() const { return m_trail; }
    // Plain lines that say what went wrong or what to do, added where the cause is known (the
    // description stays the program's documented message). They travel with the error and are
    // only ever shown, so they are in the user's language.
    const QStringList& Hints() const { return m_hints; }
    void addHint(const QString& line) { m_hints.append(line); }

    void addFrame(const QString& module, const QString& revision, const QString& procedure);
    // "module.procedure" of the frame where the error was first trapped, or empty.
    QString origin() const;

    const char* what() const noexcept override { return m_what.c_str(); }

private:
    qint32 m_number;
    QString m_source;
    cText m_description;
    QList<ErrorFrame> m_trail;
    QStringList m_hints;
    std::string m_what;
};

// Raises an error with the given number, source and description.
[[noreturn]] void RaiseError(qint32 number, const QString& source, const cText& description);
// Raises one of the run-time errors of mErrCodes (overflow, type mismatch, ...) by number.
[[noreturn]] void RaiseRuntimeError(qint32 number);
