// Start-up of the desktop program and the user-interface services on screen: the splash screen,
// a changed library file, a missing library, the nested wait pointer, the progress bar over its
// status-bar panel, file-dialog filters and the error window.
#include "GuiTestSupport.h"

#include "gui/shell/ErrorWindow.h"
#include "gui/shell/Main.h"
#include "library/cApplication.h"
#include "library/mDatabase.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QtTest>
#include <QAction>
#include <QSettings>

using namespace guitest;

namespace {

// Records the object names of the windows that were shown.
class ShownWindows : public QObject {
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    QStringList names;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow())
            names.append(watched->objectName());
        return false;
    }
};

} // namespace

class tst_startUp : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void splashFollowsThePreference_data();
    void splashFollowsThePreference();
    void aChangedLibraryFileForgetsTheLastSetting();
    void withoutALibraryTheProgramEnds();
    void aLibraryFoundByTheUserIsKept();
    void garbageInThePreferencesIsReportedAndTheProgramStarts();
    void aForeignLibraryFileIsReportedAndTheWindowWorks();
    void nestedWaitPointer();
    void progressBarCoversItsPanel();
    void fileDialogFilters_data();
    void fileDialogFilters();
    void errorWindowSaysWhatAndWhatToDo();
};

void tst_startUp::splashFollowsThePreference_data()
{
    QTest::addColumn<bool>("splash");
    QTest::newRow("on") << true;
    QTest::newRow("off: none is made") << false;
}

void tst_startUp::splashFollowsThePreference()
{
    QFETCH(bool, splash);
    WindowHarness h;
    mMain::Application().RegistrySettings().setShowSplash(splash);
    ShownWindows shown;
    const auto window = mMain::StartUp();
    QVERIFY(window);
    QVERIFY(window->isVisible());
    QCOMPARE(shown.names.contains(QStringLiteral("fSplash")), splash);
    QVERIFY(h.ui.script.errors.isEmpty());
    QCOMPARE(mMain::ProgramVersion(), QStringLiteral("4.0.0"));
}

void tst_startUp::aChangedLibraryFileForgetsTheLastSetting()
{
    WindowHarness h;
    cRegistrySettings& prefs = mMain::Application().RegistrySettings();
    prefs.setLastKey(QStringLiteral("{00000000-0000-0000-0000-000000000001}"));
    prefs.setDBChanged(true);
    const auto window = mMain::StartUp();
    QVERIFY(window);
    QVERIFY(!prefs.DBChanged());
    QVERIFY(prefs.LastKey().isEmpty());
}

void tst_startUp::withoutALibraryTheProgramEnds()
{
    WindowHarness h;
    QFile::remove(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")));
    mMain::Application().RegistrySettings().setShowSplash(true);
    ShownWindows shown;
    h.ui.script.yesNoAnswers.enqueue(false);
    const auto window = mMain::StartUp();
    QVERIFY(!window);
    QCOMPARE(h.ui.script.questions.size(), 1);
    QCOMPARE(h.ui.script.questions.first().title, QStringLiteral("Missing database"));
    QCOMPARE(h.ui.script.messages.size(), 1);
    QCOMPARE(h.ui.script.messages.first().text, QStringLiteral("Due to a missing database, the program cannot continue execution."));
    QCOMPARE(h.ui.script.messages.first().title, QStringLiteral("Missing Database"));
    QCOMPARE(h.ui.script.messages.first().icon, MsgIcon::Critical);
    // Nothing is left on screen.
    QCoreApplication::processEvents();
    for (QWidget* top : QApplication::topLevelWidgets())
        QVERIFY2(!top->isVisible(), qPrintable(top->objectName()));
}

void tst_startUp::aLibraryFoundByTheUserIsKept()
{
    WindowHarness h;
    const QString elsewhere = QDir(mMain::ProgramFolder()).filePath(QStringLiteral("elsewhere.mdb"));
    QFile::remove(elsewhere);
    QVERIFY(QFile::copy(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")), elsewhere));
    QFile::remove(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")));
    h.ui.script.yesNoAnswers.enqueue(true);
    h.ui.script.inputAnswers.enqueue(elsewhere);
    const auto window = mMain::StartUp();
    QVERIFY(window);
    QCOMPARE(h.ui.script.questions.size(), 2);
    QCOMPARE(h.ui.script.questions[1].title, QStringLiteral("Specify database"));
    QCOMPARE(mMain::Application().RegistrySettings().DBName(), elsewhere);
    QCOMPARE(window->PanelText(fTolvaneMan::kPanelDatabase), elsewhere);
}

void tst_startUp::garbageInThePreferencesIsReportedAndTheProgramStarts()
{
    mMain::ReleaseApplication();
    {
        QSettings ini(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
        ini.setValue(QStringLiteral("Initialize/ShowSplash"), QStringLiteral("False"));
        ini.setValue(QStringLiteral("Initialize/CommPort"), QStringLiteral("COM one"));
    }
    WindowHarness h;
    const auto window = mMain::StartUp();
    QVERIFY(window);
    QCOMPARE(h.ui.script.errors.size(), 1);
    QCOMPARE(h.ui.script.errors.first().Number(), 13); // type mismatch
    QCOMPARE(h.ui.script.errors.first().Trail().first().module, QStringLiteral("cRegistrySettings"));
    // The preferences read before the bad one keep their values.
    QVERIFY(!mMain::Application().RegistrySettings().ShowSplash());
}

void tst_startUp::aForeignLibraryFileIsReportedAndTheWindowWorks()
{
    WindowHarness h;
    QFile foreign(mMain::ProgramFile(QStringLiteral("Marlo.mdb")));
    QVERIFY(foreign.open(QIODevice::WriteOnly));
    foreign.write("Standard Jet DB\0 this is not a library");
    foreign.close();
    const QByteArray before = [&] { QFile f(foreign.fileName()); f.open(QIODevice::ReadOnly); return f.readAll(); }();
    fTolvaneMan& w = h.open();
    QCOMPARE(h.ui.script.errors.size(), 1);
    QVERIFY(w.ActiveSetting());
    QVERIFY(w.IsTemplate());
    control<QAction>(&w, QStringLiteral("mnuDLTiming"))->trigger();
    QCOMPARE(h.ui.script.errors.size(), 1);
    QCOMPARE(w.ActiveSetting()->lLoadTime(), 35);
    // Saving cannot work: said, and the window stays open so that nothing is lost.
    h.ui.script.yesNoAnswers.enqueue(true);
    QVERIFY(!w.close());
    QCOMPARE(h.ui.script.errors.size(), 2);
    QVERIFY(w.isVisible());
    QFile after(foreign.fileName());
    QVERIFY(after.open(QIODevice::ReadOnly));
    QCOMPARE(after.readAll(), before);
    h.ui.script.yesNoAnswers.enqueue(false);
    QVERIFY(w.close());
}

void tst_startUp::nestedWaitPointer()
{
    WindowHarness h;
    h.open();
    const auto busy = [] { return QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor; };
    mMain::WaitMousePointer();
    mMain::WaitMousePointer();
    QVERIFY(busy());
    mMain::RestoreMousePointer();
    QVERIFY(busy()); // the outer stretch still runs
    mMain::RestoreMousePointer();
    QVERIFY(!busy());
    mMain::WaitMousePointer();
    mMain::WaitMousePointer();
    mMain::ResetMousePointer();
    QVERIFY(!busy());
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_startUp::progressBarCoversItsPanel()
{
    WindowHarness h;
    fTolvaneMan& w = h.open();
    auto* bar = control<QProgressBar>(&w, QStringLiteral("pgbProgress"));
    QWidget* panel = control<QWidget>(&w, QStringLiteral("stbStatus.Panels(4)"));
    QVERIFY(!bar->isVisible());
    QVERIFY(!panel->isVisible());
    mMain::StartProgress(300);
    QVERIFY(bar->isVisible());
    QVERIFY(panel->isVisible());
    QCOMPARE(bar->maximum(), 300);
    QCOMPARE(bar->value(), 0);
    QVERIFY(panel->rect().contains(bar->geometry()));
    mMain::UI().setProgress(120);
    QCOMPARE(mMain::UI().progress(), 120);
    mMain::EndProgress();
    QVERIFY(!bar->isVisible());
    QVERIFY(!panel->isVisible());
    // The step panel is the window's own.
    mMain::UI().setStatusText(fTolvaneMan::kPanelStep, QStringLiteral("Uploading firmware..."));
    QCOMPARE(w.PanelText(fTolvaneMan::kPanelStep), QStringLiteral("Uploading firmware..."));
}

void tst_startUp::fileDialogFilters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("filters");
    QTest::newRow("firmware") << "All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf" << QStringList{"All (*)", "Tolvane Firmware (*.tvf)"};
    QTest::newRow("library") << "All (*.*)|*.*|MS Access (*.mdb)|*.mdb" << QStringList{"All (*)", "MS Access (*.mdb)"};
    QTest::newRow("several patterns") << "Pictures|*.png;*.jpg" << QStringList{"Pictures (*.png *.jpg)"};
    QTest::newRow("empty") << "" << QStringList{};
}

void tst_startUp::fileDialogFilters()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, filters);
    QCOMPARE(QtUserInterface::NameFilters(filter), filters);
}

void tst_startUp::errorWindowSaysWhatAndWhatToDo()
{
    MarloError error(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MSG_DL_GUNINFO);
    error.addFrame(QStringLiteral("cGunInfo"), QStringLiteral("$Revision: 1 $"), QStringLiteral("Download"));
    error.addFrame(QStringLiteral("fTolvaneMan"), QStringLiteral("$Revision: 1 $"), QStringLiteral("cmdTools_Click(0)"));
    ErrorWindow window(error, mErrCodes::HELP_TIMEOUT, QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
    QCOMPARE(control<QLabel>(&window, QStringLiteral("lblMessage"))->text(), mErrCodes::MSG_DL_GUNINFO);
    QCOMPARE(control<QLabel>(&window, QStringLiteral("lblNumber"))->text(), QStringLiteral("Error 10201"));
    QVERIFY(control<QLabel>(&window, QStringLiteral("lblWhatToDo"))->text().startsWith(QStringLiteral("Communication timed out!")));
    const QString details = control<QPlainTextEdit>(&window, QStringLiteral("txtDetails"))->toPlainText();
    QVERIFY(details.contains(QStringLiteral("cGunInfo.Download ($Revision: 1 $)")));
    QVERIFY(details.contains(QStringLiteral("fTolvaneMan.cmdTools_Click(0)")));
    QVERIFY(details.contains(QStringLiteral("Marlo 4.0.0")));
    // Copy takes everything, for a support request.
    QVERIFY(window.fullText().contains(mErrCodes::MSG_DL_GUNINFO));
    QVERIFY(window.fullText().contains(QStringLiteral("the grip is turned on")));
    QVERIFY(window.fullText().contains(QStringLiteral("Marlo 4.0.0")));
}

QTEST_MAIN(tst_startUp)
#include "tst_startUp.moc"
