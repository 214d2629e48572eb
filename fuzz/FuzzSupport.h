#pragma once
// What the fuzz targets share: the Qt application, a user who treats any error shown as a
// finding, a library file of the fuzzer's own made from the built template, and the rule by
// which a text is stored (a lone surrogate half becomes U+FFFD).
#include "base/MarloError.h"
#include "base/cUserInterface.h"
#include "library/mDatabase.h"
#include "shell/mMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

// Stops the run with the message: libFuzzer keeps the input that got here.
[[noreturn]] inline void fail(const QString& what)
{
    std::fprintf(stderr, "FUZZ FINDING: %s\n", what.toLocal8Bit().constData());
    std::abort();
}

inline void check(bool condition, const QString& what)
{
    if (!condition)
        fail(what);
}

// Errors reported through the services are not expected where the targets use them.
class StrictUi : public cHeadlessUserInterface {
public:
    void showError(const MarloError& error, const QString&, const QString&) override
    {
        fail(QStringLiteral("error shown: %1 %2").arg(error.Number()).arg(error.Description().left(300)));
    }
    void showMessage(const QString&, const QString&, MsgIcon) override {}
};

inline void startQt(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    static StrictUi ui;
    mMain::SetUserInterface(&ui);
}

// A fresh library of this process's own (a copy of the template), used as the program's library.
inline QString makeLibrary()
{
    static QString folder = QDir::tempPath() + QStringLiteral("/marlo-fuzz-%1").arg(QCoreApplication::applicationPid());
    QDir().mkpath(folder);
    const QString path = folder + QStringLiteral("/Marlo.mdb");
    for (const char* beside : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(beside));
    if (!QFile::copy(QStringLiteral(MARLO_TEMPLATE_FILE), path))
        fail(QStringLiteral("the template %1 is missing").arg(QStringLiteral(MARLO_TEMPLATE_FILE)));
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
    mDatabase::SetPathOverride(path);
    return path;
}

// Qt, the strict user, a fresh library and its connection: the set-up of the library targets.
inline QSqlDatabase openLibrary(int* argc, char*** argv)
{
    startQt(argc, argv);
    makeLibrary();
    QSqlDatabase connection = mMain::ConnectDB();
    check(connection.isOpen(), QStringLiteral("the library does not open"));
    return connection;
}

// A text as the library stores it: every lone surrogate half and the noncharacters U+FFFE and
// U+FFFF are U+FFFD, the rest exactly.
inline QString stored(const QString& text)
{
    QString out = text;
    for (qsizetype i = 0; i < out.size(); ++i) {
        if (out.at(i).isHighSurrogate() && i + 1 < out.size() && out.at(i + 1).isLowSurrogate())
            ++i;
        else if (out.at(i).isSurrogate() || out.at(i).unicode() >= 0xFFFE)
            out[i] = QChar::ReplacementCharacter;
    }
    return out;
}

} // namespace fuzz
