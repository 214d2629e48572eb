// The traffic window and the build information in the main window: entries as the link logs
// them, batched into the view, Clear and Save as, View > Communication log with the preference
// behind it, and "Gun Build Info" from the gun information as it stands, following every reading
// of it while the window is open.
#include "GuiTestSupport.h"

#include "grip/cGunInfo.h"
#include "gui/grip/fBuildInfo.h"
#include "gui/link/fCommConsole.h"

#include <QPlainTextEdit>
#include <QTemporaryDir>

using namespace guitest;

namespace {

const char* const kBuildBoxes[] = {"txtSerialNo", "txtFirmwareBuild", "txtBootCodeBuild", "txtProtocolBuild", "txtHardwareBuild"};

QStringList buildBoxes(QWidget* dialog)
{
    QStringList shown;
    for (const char* name : kBuildBoxes)
        shown << text(dialog, QLatin1String(name));
    return shown;
}

QString logText(fTolvaneMan& w)
{
    auto* view = w.findChild<QPlainTextEdit*>(QStringLiteral("txtLog"));
    return view ? view->toPlainText() : QString();
}

} // namespace

class tst_trafficWindow : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void entriesAppearAsTheLinkLogsThem()
    {
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("mnuCommLog"));
        fCommConsole* log = w.CommLogWindow();
        QVERIFY(log->isVisible());
        run(&w, QStringLiteral("mnuDLGunInfo"));
        // Collected during the exchange, shown with the next batch.
        QCOMPARE(logText(w), QString());
        QTRY_VERIFY(!logText(w).isEmpty());
        const QStringList lines = logText(w).split(QLatin1Char('\n'));
        // Every write, as the link logs it (its format is the link's), and the same text as
        // komm.log: CR LF after every line.
        QCOMPARE(lines.filter(QStringLiteral(": Sending data")).size(), 2);
        QVERIFY(log->LogText().endsWith(QStringLiteral("]\r\n")));
        QCOMPARE(log->LogText().count(QStringLiteral("\r\n")), lines.size());
    }
    void theWindowFollowsThePreference_data()
    {
        QTest::addColumn<bool>("atStart"); // logging to the window is on at the start, else the menu item turns it on
        QTest::addColumn<QString>("how");  // how the window is closed
        QTest::newRow("menu item, closed by the menu item") << false << "menu";
        QTest::newRow("menu item, closed by its Close button") << false << "button";
        QTest::newRow("on at the start, closed by the window frame") << true << "frame";
    }
    void theWindowFollowsThePreference()
    {
        QFETCH(bool, atStart);
        QFETCH(QString, how);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        h.prefs().setCommLogToConsole(atStart);
        fTolvaneMan& w = h.open();
        auto* item = control<QAction>(&w, QStringLiteral("mnuCommLog"));
        if (!atStart) {
            QVERIFY(!item->isChecked());
            item->trigger();
            QVERIFY(h.prefs().CommLogToConsole());
        }
        QTRY_VERIFY(w.findChild<fCommConsole*>() && w.findChild<fCommConsole*>()->isVisible());
        QVERIFY(item->isChecked());
        if (how == QLatin1String("menu"))
            item->trigger();
        else if (how == QLatin1String("button"))
            run(w.CommLogWindow(), QStringLiteral("cmdClose"));
        else
            w.CommLogWindow()->close();
        QVERIFY(!w.CommLogWindow()->isVisible());
        QVERIFY(!item->isChecked());
        // Logging to the window ends with it: nothing more is collected.
        QVERIFY(!h.prefs().CommLogToConsole());
        run(&w, QStringLiteral("mnuDLGunInfo"));
        QTest::qWait(fCommConsole::kBatchMs + 50);
        QCOMPARE(logText(w), QString());
        QVERIFY(!w.CommLogWindow()->isVisible());
        // Turned on again elsewhere (the options): the next entry shows the window.
        h.prefs().setCommLogToConsole(true);
        run(&w, QStringLiteral("mnuDLGunInfo"));
        QTRY_VERIFY(logText(w).contains(QStringLiteral("Sending data")));
        QVERIFY(w.CommLogWindow()->isVisible() && item->isChecked());
    }
    void clearAndSaveAs()
    {
        QTemporaryDir dir;
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = h.open();
        w.ShowCommLog(true);
        fCommConsole* log = w.CommLogWindow();
        run(&w, QStringLiteral("mnuDLGunInfo"));
        log->flush();
        const QString text = log->LogText();
        QVERIFY(text.contains(QStringLiteral("Receiving data")));

        // Save as: what the view holds, as komm.log holds it; a cancelled dialog writes nothing.
        const QString file = dir.filePath(QStringLiteral("traffic.log"));
        h.ui.script.fileAnswers.enqueue(file);
        run(log, QStringLiteral("cmdSaveAs"));
        QFile saved(file);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromLocal8Bit(saved.readAll()), text);
        h.ui.script.fileAnswers.enqueue(std::nullopt);
        run(log, QStringLiteral("cmdSaveAs"));
        QCOMPARE(h.ui.script.fileRequests.size(), 2);
        // A folder that does not exist: the error is shown, the window stays.
        h.ui.script.fileAnswers.enqueue(dir.filePath(QStringLiteral("no/such/folder.log")));
        run(log, QStringLiteral("cmdSaveAs"));
        QCOMPARE(h.ui.script.errors.size(), 1);
        QVERIFY(h.ui.script.errors[0].Description().contains(QStringLiteral("no/such/folder.log")));

        run(log, QStringLiteral("cmdClear"));
        QCOMPARE(log->LogText(), QString());
        run(&w, QStringLiteral("mnuDLGunInfo"));
        log->flush();
        QCOMPARE(log->LogText().count(QStringLiteral("Sending data")), 2);
    }
    // Opened from View or the firmware-version panel: read only, the gun information as it stands
    // (no download of its own), then following every reading of it while it is open.
    void buildInfoFollowsTheGrip_data()
    {
        QTest::addColumn<QString>("open");    // the menu item, or the panel double-clicked
        QTest::addColumn<QString>("command"); // run while the build information is open
        QTest::addColumn<bool>("refused");    // the grip refuses the gun information
        QTest::addColumn<QStringList>("boxes");
        const QStringList read{"AB12345678", "1.2.1", "1.2.1", "1.1.300", "2.1.5"};
        const QStringList opened{"", "4.0.0", "1.1.1", "1.1.1", "1.1.1"};
        QTest::newRow("as it stands") << "FWVer" << QString() << false << opened;
        QTest::newRow("get") << "mnuBuildInfo" << "cmdTools(0)" << false << read;
        QTest::newRow("put timing") << "FWVer" << "mnuULTiming" << false << read;
        QTest::newRow("refused") << "mnuBuildInfo" << "mnuDLGunInfo" << true << opened;
    }
    void buildInfoFollowsTheGrip()
    {
        QFETCH(QString, open);
        QFETCH(QString, command);
        QFETCH(bool, refused);
        QFETCH(QStringList, boxes);
        WindowHarness h(QStringLiteral("firmware=1.2.1,boot=1.2.1,protocol=1.1.300,hardware=2.1.5,serial=AB12345678"));
        if (refused)
            h.grip.replies[0x13] = griptest::refusal(0x13);
        fTolvaneMan& w = h.open();
        if (open == QLatin1String("FWVer"))
            QTest::mouseDClick(control<QLabel>(&w, open), Qt::LeftButton);
        else
            run(&w, open);
        auto* dialog = w.findChild<fBuildInfo*>();
        QVERIFY(dialog && dialog->isVisible());
        QVERIFY(h.grip.codes().isEmpty());
        for (const char* name : kBuildBoxes)
            QVERIFY(control<QLineEdit>(dialog, QLatin1String(name))->isReadOnly());
        if (!command.isEmpty())
            run(&w, command);
        QCOMPARE(buildBoxes(dialog), boxes);
    }
};

QTEST_MAIN(tst_trafficWindow)
#include "tst_trafficWindow.moc"
