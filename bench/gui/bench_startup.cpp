// Start-up of the desktop program to its main window shown (offscreen), with a library of 1,000
// templates (seven user variables each) and the last setting named by the preferences, in English
// and in German (the program's translation and Qt's loaded as the program loads them). Each run is
// a fresh process, so the time includes making the application, loading the translation and the
// library and building the window; the process measures itself from the first line of main().
#include "gui/shell/Main.h"
#include "gui/shell/QtUserInterface.h"
#include "gui/shell/fTolvaneMan.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "library/mDatabase.h"
#include "library/mGUIDTools.h"
#include "shell/cApplication.h"
#include "shell/mLanguage.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <QVariant>
#include <algorithm>
#include <optional>

namespace {

constexpr int kTemplates = 1000;
constexpr int kRuns = 7;
constexpr double kGoalMs = 500.0;
// With the translation loaded.
constexpr double kTranslatedGoalMs = 150.0;

// A library of kTemplates templates; answers the ID of the one in the middle.
QString makeLibrary(const QString& file)
{
    QString middle;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
        db.setDatabaseName(file);
        db.open();
        db.transaction();
        QSqlQuery setting(db);
        setting.prepare(QStringLiteral("INSERT INTO ta_SetsTemplate (ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, "
                                       "lLoadTime, lCycleTimeClose, lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, "
                                       "bAlertOne, bAlertTwo, lAlertOne, lAlertTwo) VALUES (?, '', ?, ?, 10, 30, 35, 28, 10, 1, ?, "
                                       "'2026-11-23', 0, 0, 0, 0, 1, 1)"));
        QSqlQuery variable(db);
        variable.prepare(QStringLiteral("INSERT INTO ta_UserVar (ID, ParentID, Version, sName, sValue) VALUES (?, ?, ?, ?, ?)"));
        const QStringList names = {"Name", "Date", "Temperature", "Humidity", "Sun", "Barrel", "Paint"};
        for (int i = 0; i < kTemplates; ++i) {
            const QString id = GetNewGUIDStr();
            if (i == kTemplates / 2)
                middle = id;
            setting.addBindValue(id);
            setting.addBindValue(GetNewGUIDStr());
            setting.addBindValue(5 + i % 15);
            setting.addBindValue(QStringLiteral("Template %1").arg(i));
            setting.exec();
            for (const QString& name : names) {
                variable.addBindValue(GetNewGUIDStr());
                variable.addBindValue(id);
                variable.addBindValue(GetNewGUIDStr());
                variable.addBindValue(name);
                variable.addBindValue(QStringLiteral("value %1").arg(i));
                variable.exec();
            }
        }
        db.commit();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
    return middle;
}

// The child: starts the program and prints the milliseconds to the window shown.
int startOnce(int argc, char* argv[])
{
    QElapsedTimer timer;
    timer.start();
    QApplication app(argc, argv);
    const QString language = mLanguage::Install();
    QtUserInterface ui;
    mMain::SetUserInterface(&ui);
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    cGripSession session(link);
    cApplication application(prefs);
    auto window = mMain::StartUp(session, application);
    if (!window)
        return 1;
    QCoreApplication::processEvents(); // the first activation
    const double ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    const bool active = window->ActiveSetting() && window->ActiveSetting()->ID() == prefs.LastKey();
    QTextStream(stdout) << ms << ' ' << (active ? 1 : 0) << ' ' << application.colSetsTemplate().Count() << ' '
                        << (language.isEmpty() ? QStringLiteral("en") : language) << '\n';
    window.reset();
    mDatabase::DisconnectDB();
    mMain::SetUserInterface(nullptr);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsSet("MARLO_BENCH_CHILD"))
        return startOnce(argc, argv);

    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir home;
    const QString library = QDir(home.path()).filePath(QStringLiteral("Marlo.mdb"));
    QFile::copy(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("instdbxx.tmp")), library);
    QFile::setPermissions(library, QFile::ReadOwner | QFile::WriteOwner);
    const QString middle = makeLibrary(library);
    QDir().mkpath(home.path() + QStringLiteral("/config/Marlo"));
    {
        QSettings ini(home.path() + QStringLiteral("/config/Marlo/Marlo.ini"), QSettings::IniFormat);
        ini.setValue(QStringLiteral("Initialize/LastKey"), middle);
    }

    // The median of kRuns starts in the language the environment asks for (nothing when a run
    // failed); shown gets the number of templates loaded.
    const auto measure = [&](const QStringList& environment, const QString& expectedLanguage, QString& shown) -> std::optional<double> {
        QList<double> times;
        for (int run = 0; run < kRuns; ++run) {
            QProcess child;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("MARLO_BENCH_CHILD"), QStringLiteral("1"));
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + QStringLiteral("/config"));
            env.insert(QStringLiteral("MARLO_HOME"), home.path());
            env.remove(QStringLiteral("LC_ALL"));
            env.remove(QStringLiteral("LC_MESSAGES"));
            for (const QString& pair : environment)
                env.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
            child.setProcessEnvironment(env);
            child.start(QCoreApplication::applicationFilePath(), {});
            child.waitForFinished(60000);
            const QStringList words = QString::fromLocal8Bit(child.readAllStandardOutput()).trimmed().split(QLatin1Char(' '));
            if (child.exitCode() != 0 || words.size() < 4 || words[1] != QLatin1String("1") || words[3] != expectedLanguage)
                return std::nullopt;
            times.append(words[0].toDouble());
            shown = words[2];
        }
        std::sort(times.begin(), times.end());
        return times.at(times.size() / 2);
    };
    QString shown;
    const std::optional<double> english = measure({QStringLiteral("LANG=C.UTF-8"), QStringLiteral("LANGUAGE=")}, QStringLiteral("en"), shown);
    const std::optional<double> german =
        measure({QStringLiteral("LANG=de_DE.UTF-8"), QStringLiteral("LANGUAGE=de")}, QStringLiteral("de"), shown);
    if (!english || !german) {
        out << "bench_startup: the program did not start with the last setting active in English and in German\n";
        return 1;
    }
    out << QStringLiteral("bench_startup: main window shown %1 ms after the start of main in English, %2 ms in German with the "
                          "translation loaded (medians of %3), %4 templates loaded, last setting active; goal <= %5 ms, "
                          "<= %6 ms with the translation%7\n")
               .arg(*english, 0, 'f', 1).arg(*german, 0, 'f', 1).arg(kRuns).arg(shown).arg(kGoalMs, 0, 'f', 0)
               .arg(kTranslatedGoalMs, 0, 'f', 0)
               .arg(*english <= kGoalMs && *german <= kTranslatedGoalMs ? QString() : QStringLiteral(" OVER GOAL"));
    return 0;
}
