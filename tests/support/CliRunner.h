#pragma once
// Runs the built marlo-cli as a user would, with a test's own program folder and preferences.
#include <QDir>
#include <QProcess>
#include <QStringList>

struct CliRun {
    int status = -1; // -1: it did not end normally within a minute
    QString out;
    QString err;
};

// Starts marlo-cli with the program folder home and the preferences under folder/config; an
// argument "<name>" stands for the file name in folder.
inline void StartCli(QProcess& process, const QDir& folder, const QString& home, QStringList arguments)
{
    for (QString& argument : arguments) {
        if (argument.startsWith(QLatin1Char('<')) && argument.endsWith(QLatin1Char('>')))
            argument = folder.filePath(argument.mid(1, argument.size() - 2));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MARLO_HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder.filePath(QStringLiteral("config")));
    process.setProcessEnvironment(environment);
    process.start(QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("marlo-cli")), arguments);
}

// marlo-cli run to its end, as StartCli starts it.
inline CliRun RunCli(const QDir& folder, const QString& home, const QStringList& arguments)
{
    QProcess process;
    StartCli(process, folder, home, arguments);
    CliRun run;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        run = {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
    return run;
}
