// Start-up of the desktop program and the user-interface services on screen: the splash screen,
// a changed, missing, found or foreign library file, bad preferences, the nested wait pointer,
// file-dialog filters and the error window.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "gui/shell/ErrorWindow.h"
#include "gui/shell/Main.h"

#include <QPlainTextEdit>
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
    void startUp_data()
    {
        QTest::addColumn<bool>("splash");
        QTest::addColumn<QString>("library"); // "template" in place; "found": the user names one; "none": No
        QTest::newRow("splash on") << true << "template";
        QTest::newRow("splash off: none is made") << false << "template";
        QTest::newRow("a library found by the user is kept") << false << "found";
        QTest::newRow("without a library the program ends") << true << "none";
    }
    void startUp()
    {
        QFETCH(bool, splash);
        QFETCH(QString, library);
        WindowHarness h;
        cRegistrySettings& prefs = h.app().RegistrySettings();
        prefs.setShowSplash(splash);
        prefs.setLastKey(QStringLiteral("{00000000-0000-0000-0000-000000000001}"));
        prefs.setDBChanged(true);
        const QString elsewhere = QDir(mMain::ProgramFolder()).filePath(QStringLiteral("elsewhere.mdb"));
        QFile::remove(elsewhere);
        if (library == QLatin1String("found"))
            QVERIFY(QFile::copy(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")), elsewhere));
        if (library != QLatin1String("template")) {
            QFile::remove(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")));
            h.ui.script.yesNoAnswers.enqueue(library == QLatin1String("found"));
            h.ui.script.inputAnswers.enqueue(elsewhere);
        }
        ShownWindows shown;
        const auto window = mMain::StartUp(h.grip.session, h.app());
        QCOMPARE(shown.names.contains(QStringLiteral("fSplash")), splash);
        // A changed library file makes the program forget the last setting.
        QVERIFY(prefs.LastKey().isEmpty());
        QCOMPARE(h.ui.script.questions.size(), library == QLatin1String("found") ? 2 : library == QLatin1String("none") ? 1 : 0);
        if (library == QLatin1String("none")) {
            QVERIFY(!window);
            QCOMPARE(messageTexts(h.ui.script), QStringList{"Due to a missing database, the program cannot continue execution."});
            QCOMPARE(h.ui.script.messages.first().icon, MsgIcon::Critical);
            // Nothing is left on screen.
            QCoreApplication::processEvents();
            for (QWidget* top : QApplication::topLevelWidgets())
                QVERIFY2(!top->isVisible(), qPrintable(top->objectName()));
            return;
        }
        QVERIFY(window && window->isVisible());
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(prefs.DBChanged(), library == QLatin1String("found")); // the new file counts as changed
        if (library == QLatin1String("found")) {
            QCOMPARE(prefs.DBName(), elsewhere);
            QCOMPARE(window->PanelText(fTolvaneMan::kPanelDatabase), elsewhere);
        }
    }
    // The report on screen, once, for a bad switch that then stands at its default (on); the lines
    // for every kind of unreadable value are the preferences' own tests.
    void unreadablePreferenceIsReportedOnceAndTheRestIsRead()
    {
        // A library elsewhere than the default one, so that reading its path shows.
        const QString library = QDir(mMain::ProgramFolder()).filePath(QStringLiteral("elsewhere.mdb"));
        QFile::remove(library);
        QVERIFY(QFile::copy(mMain::ProgramFile(QStringLiteral("instdbxx.tmp")), library));
        QString file;
        {
            QSettings ini(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
            file = ini.fileName();
            ini.setValue(QStringLiteral("Initialize/ShowSplash"), QStringLiteral("False"));
            ini.setValue(QStringLiteral("Initialize/DBName"), library);
            ini.setValue(QStringLiteral("Initialize/CommSettings"), QStringLiteral("19200,E,7,2"));
            ini.setValue(QStringLiteral("Initialize/ShowConfirmComm"), QStringLiteral("maybe"));
        }
        WindowHarness h;
        const auto window = mMain::StartUp(h.grip.session, h.app());
        QVERIFY(window);
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.ui.script.messages.size(), 1);
        const ScriptedUi::Message& message = h.ui.script.messages.first();
        QCOMPARE(message.icon, MsgIcon::Exclamation);
        QCOMPARE(message.text, "The preferences file " + file + " has values that cannot be read; their defaults are used:\r\n"
                                   "[Initialize] ShowConfirmComm = \"maybe\" (not True or False)");
        // The other keys are read: the library in use and the serial settings.
        QCOMPARE(window->PanelText(fTolvaneMan::kPanelDatabase), library);
        run(window.get(), QStringLiteral("mnuDLTiming"));
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.grip.link.port.Settings(), QStringLiteral("19200,E,7,2"));
        // No second report; the confirmation the switch's default asks for.
        QCOMPARE(h.ui.script.messages.size(), 2);
        QCOMPARE(h.ui.script.messages.last().title, QStringLiteral("Confirmation"));
    }
    void aForeignLibraryFileIsReportedAndTheWindowWorks()
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
        run(&w, QStringLiteral("mnuDLTiming"));
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
    // The nesting is the core's; the window shows it as the wait cursor.
    void nestedWaitPointer()
    {
        WindowHarness h;
        h.open();
        const auto busy = [] { return QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor; };
        mMain::WaitMousePointer();
        mMain::WaitMousePointer();
        mMain::RestoreMousePointer();
        QVERIFY(busy()); // the outer stretch still runs
        mMain::RestoreMousePointer();
        QVERIFY(!busy());
    }
    void fileDialogFilters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("filters");
        QTest::newRow("firmware") << "All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf" << QStringList{"All (*)", "Tolvane Firmware (*.tvf)"};
        QTest::newRow("several patterns") << "Pictures|*.png;*.jpg" << QStringList{"Pictures (*.png *.jpg)"};
        QTest::newRow("empty") << "" << QStringList{};
    }
    void fileDialogFilters()
    {
        QFETCH(QString, filter);
        QFETCH(QStringList, filters);
        QCOMPARE(QtUserInterface::NameFilters(filter), filters);
    }
    void errorWindowSaysWhatAndWhatToDo()
    {
        MarloError error(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MSG_DL_GUNINFO);
        error.addFrame(QStringLiteral("cGunInfo"), QStringLiteral("$Revision: 1 $"), QStringLiteral("Download"));
        error.addFrame(QStringLiteral("fTolvaneMan"), QStringLiteral("$Revision: 1 $"), QStringLiteral("cmdTools_Click(0)"));
        ErrorWindow window(error, mErrCodes::HELP_TIMEOUT, QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
        QCOMPARE(control<QLabel>(&window, QStringLiteral("lblMessage"))->text(), mErrCodes::MSG_DL_GUNINFO);
        QCOMPARE(control<QLabel>(&window, QStringLiteral("lblNumber"))->text(), QStringLiteral("Error 10201"));
        QVERIFY(control<QLabel>(&window, QStringLiteral("lblWhatToDo"))->text().startsWith(QStringLiteral("Communication timed out!")));
        // Details shows where it happened.
        auto* details = control<QPlainTextEdit>(&window, QStringLiteral("txtDetails"));
        window.show();
        control<QPushButton>(&window, QStringLiteral("cmdDetails"))->click();
        QVERIFY(details->isVisible());
        for (const char* part : {"cGunInfo.Download ($Revision: 1 $)", "fTolvaneMan.cmdTools_Click(0)", "Marlo 4.0.0"})
            QVERIFY2(details->toPlainText().contains(QLatin1String(part)), part);
        // Copy takes everything, for a support request.
        for (const QString& part : {mErrCodes::MSG_DL_GUNINFO, QStringLiteral("the grip is turned on"), QStringLiteral("Marlo 4.0.0")})
            QVERIFY2(window.fullText().contains(part), qPrintable(part));
    }
};

QTEST_MAIN(tst_startUp)
#include "tst_startUp.moc"
