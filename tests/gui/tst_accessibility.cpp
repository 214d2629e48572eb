// What a screen reader reads in the windows of the desktop program: every control a user can
// reach has a name, the names are those of the controls' captions, and the library's columns
// are read by their headers.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "gui/grip/fBuildInfo.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/fUserVariable.h"
#include "gui/link/fCommConsole.h"
#include "gui/shell/ErrorWindow.h"
#include "gui/shell/fLibSets.h"
#include "gui/shell/fOptions.h"
#include "gui/widgets/fAbout.h"

#include <QAccessible>
#include <QTabBar>

using namespace guitest;

namespace {

// Makes the window of that kind (a page of the property editor after the slash) over a library
// with one setting; the main window is the harness's, any other is owned by owned.
QWidget* makeWindow(const QString& kind, WindowHarness& h, std::unique_ptr<QWidget>& owned)
{
    fTolvaneMan& main = h.open(kind == QLatin1String("fTolvaneMan"));
    const auto setting = h.app().colSetsTemplate().Add();
    if (kind == QLatin1String("fTolvaneMan"))
        return &main;
    if (kind == QLatin1String("fLibSets"))
        owned = std::make_unique<fLibSets>(h.app());
    else if (kind.startsWith(QLatin1String("fSetsTemplate"))) {
        auto editor = std::make_unique<fSetsTemplate>();
        editor->Open(setting, QStringLiteral("1"));
        control<QTabBar>(editor.get(), QStringLiteral("tbsSettings"))->setCurrentIndex(kind.endsWith(QLatin1String("User")) ? 1 : 0);
        owned = std::move(editor);
    } else if (kind == QLatin1String("fUserVariable"))
        owned = std::make_unique<fUserVariable>();
    else if (kind == QLatin1String("fOptions"))
        owned = std::make_unique<fOptions>(h.grip.session.GunInfo(), h.prefs());
    else if (kind == QLatin1String("fCommConsole"))
        owned = std::make_unique<fCommConsole>();
    else if (kind == QLatin1String("fBuildInfo"))
        owned = std::make_unique<fBuildInfo>(h.grip.session.GunInfo());
    else if (kind == QLatin1String("fAbout"))
        owned = std::make_unique<fAbout>();
    else
        owned = std::make_unique<ErrorWindow>(MarloError(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MSG_DL_GUNINFO),
                                              mErrCodes::HELP_TIMEOUT, QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
    return owned.get();
}

} // namespace

class tst_accessibility : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void everyReachableControlHasAName_data()
    {
        QTest::addColumn<QString>("window");
        for (const char* window : {"fTolvaneMan", "fLibSets", "fSetsTemplate/Basic", "fSetsTemplate/User", "fUserVariable",
                                   "fOptions", "fCommConsole", "fBuildInfo", "fAbout", "ErrorWindow"})
            QTest::newRow(window) << QString::fromLatin1(window);
    }
    void everyReachableControlHasAName()
    {
        QFETCH(QString, window);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QCOMPARE(unnamedControls(makeWindow(window, h, owned)), QStringList());
        GUITEST_NO_ERRORS(h.ui.script);
    }
    void namesAreTheCaptions_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QStringList>("names"); // "control|name read"
        // A text box, up-down or slider is read by its caption label, a button or check box by its
        // caption without the accelerator.
        QTest::newRow("main window") << "fTolvaneMan" << QStringList{
            "txtTimingST|Shot", "updST|Shot", "sldST|Shot", "txtTimingDT|Dwell", "sldDT|Dwell", "txtTimingCTO|Open",
            "updCTO|Open", "txtTimingLT|Load", "sldLT|Load", "txtTimingCTC|Close", "updCTC|Close",
            "cboFiringModes|Firing mode:", "cboHyperModes|Ramping Mode :", "chkExpert|Expert Mode", "chkCopyCTO|Close = Open",
            "chkAlertOne|Sound alert 60 sec. before game end", "cmdTools(0)|Get", "cmdTools(4)|Properties",
            "cmdTools(6)|Default settings", "txtEyeCheckMax|Eye Check Max", "updEyeOKMax|Eye OK Max",
            "txtDefaultLoadTime|Max ROF in ms", "txtShots|Shots before ramping", "txtCounters(0)|Counter 1 is at",
            "txtCounters(2)|Total is at", "cmdReset(1)|Reset", "txtCntDown|Counting down from", "ucIProgress1|Battery",
            "pgbProgress|Progress"};
        QTest::newRow("library browser") << "fLibSets" << QStringList{"cmdUse|Use", "cmdProperties|Properties"};
        QTest::newRow("property editor") << "fSetsTemplate/Basic" << QStringList{"txtName|Name", "lblROF|Rate of fire"};
        QTest::newRow("user variable") << "fUserVariable" << QStringList{"txtVarName|Name", "txtValue|Value"};
        QTest::newRow("options") << "fOptions" << QStringList{"txtDBPath|Database path", "txtAutocheckInterval|Interval (secs)"};
    }
    void namesAreTheCaptions()
    {
        QFETCH(QString, window);
        QFETCH(QStringList, names);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QWidget* shown = makeWindow(window, h, owned);
        for (const QString& row : names) {
            const QStringList parts = row.split(QLatin1Char('|'));
            QCOMPARE(accessibleName(control<QWidget>(shown, parts[0])).trimmed(), parts[1]);
        }
    }
    void libraryColumnsAreReadByTheirHeaders()
    {
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(
            control<QTreeWidget>(makeWindow(QStringLiteral("fLibSets"), h, owned), QStringLiteral("lvwLib")));
        QVERIFY(list && list->tableInterface());
        QStringList headers;
        for (int c = 1; c < list->tableInterface()->columnCount(); ++c)
            headers << list->tableInterface()->columnDescription(c);
        QCOMPARE(headers, (QStringList{"#", "Name", "Date", "ROF bps", "ST ms", "DT ms", "CTO ms", "LT ms", "CTC ms"}));
    }
};

QTEST_MAIN(tst_accessibility)
#include "tst_accessibility.moc"
