#include "GuiTestSupport.h"

#include "library/cApplication.h"
#include "library/mDatabase.h"
#include "link/mCommBasic.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFile>
#include <QSettings>

namespace guitest {

void FreshStart()
{
    mMain::ReleaseApplication();
    mDatabase::DisconnectDB();
    griptest::resetRecords();
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).clear();
    const QString folder = mMain::ProgramFolder();
    QDir().mkpath(folder);
    QFile::remove(QDir(folder).filePath(QStringLiteral("Marlo.mdb")));
    const QString templ = QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("instdbxx.tmp"));
    QFile::remove(QDir(folder).filePath(QStringLiteral("instdbxx.tmp")));
    QFile::copy(templ, QDir(folder).filePath(QStringLiteral("instdbxx.tmp")));
}

WindowHarness::WindowHarness(const QString& gripOptions) : grip(gripOptions)
{
    mMain::SetUserInterface(&ui);
}

WindowHarness::~WindowHarness()
{
    window.reset();
    mMain::SetUserInterface(&grip.link.ui);
}

fTolvaneMan& WindowHarness::open(bool show, const QStringList& commandLine)
{
    mMain::CheckForDB();
    window = std::make_unique<fTolvaneMan>();
    window->setCommandLine(commandLine);
    mCommBasic::objComm = &grip.link.port;
    if (show) {
        window->show();
        QCoreApplication::processEvents();
    }
    return *window;
}

QList<int> WindowHarness::takeCodes()
{
    const QList<int> codes = grip.codes();
    grip.link.port.frames.clear();
    return codes;
}

QStringList messageTexts(const ScriptedUi& script)
{
    QStringList texts;
    for (const ScriptedUi::Message& m : script.messages)
        texts.append(m.text);
    return texts;
}

} // namespace guitest
