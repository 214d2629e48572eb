// The desktop program in German: the windows' captions come from the translation, no two controls
// of a menu or a window answer to the same mnemonic, no caption is cut off; and a language the
// program does not speak (right to left included) leaves it English, left to right.
#include "GuiTestSupport.h"

#include "base/mErrCodes.h"
#include "gui/grip/fCompareGrip.h"
#include "gui/grip/fGripHistory.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/fUserVariable.h"
#include "gui/link/fCommConsole.h"
#include "gui/shell/ErrorWindow.h"
#include "gui/shell/fLibSets.h"
#include "gui/shell/fOptions.h"
#include "gui/widgets/fAbout.h"
#include "shell/mLanguage.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStyleOptionButton>
#include <QTabWidget>

using namespace guitest;

namespace {

// The window of that kind ("fOptions/1": the dialog on its second page), over a library with one
// setting; the main window is the harness's, any other is owned by owned.
QWidget* makeWindow(const QString& kind, WindowHarness& h, std::unique_ptr<QWidget>& owned)
{
    fTolvaneMan& main = h.open(kind == QLatin1String("fTolvaneMan"));
    const auto setting = h.app().colSetsTemplate().Add();
    const QString form = kind.section(QLatin1Char('/'), 0, 0);
    if (form == QLatin1String("fTolvaneMan"))
        return &main;
    if (form == QLatin1String("fLibSets"))
        owned = std::make_unique<fLibSets>(h.app());
    else if (form == QLatin1String("fSetsTemplate")) {
        auto editor = std::make_unique<fSetsTemplate>();
        editor->Open(setting, QStringLiteral("1"));
        owned = std::move(editor);
    } else if (form == QLatin1String("fUserVariable"))
        owned = std::make_unique<fUserVariable>();
    else if (form == QLatin1String("fOptions"))
        owned = std::make_unique<fOptions>(h.grip.session.GunInfo(), h.prefs());
    else if (form == QLatin1String("fCommConsole"))
        owned = std::make_unique<fCommConsole>();
    else if (form == QLatin1String("fAbout"))
        owned = std::make_unique<fAbout>();
    else if (form == QLatin1String("fCompareGrip"))
        owned = std::make_unique<fCompareGrip>(differingComparison(), h.prefs());
    else if (form == QLatin1String("fGripHistory"))
        owned = std::make_unique<fGripHistory>(h.grip.session, h.prefs());
    else
        owned = std::make_unique<ErrorWindow>(MarloError(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MessageText(mErrCodes::MSG_DL_GUNINFO)),
                                              QStringList{QStringLiteral("Check")}, QStringLiteral("4.0.0"), QStringLiteral("Marlo"));
    if (auto* tabs = owned->findChild<QTabWidget*>(); tabs && kind.contains(QLatin1Char('/')))
        tabs->setCurrentIndex(kind.section(QLatin1Char('/'), 1).toInt());
    owned->show();
    QCoreApplication::processEvents();
    return owned.get();
}

QChar mnemonicOf(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("&([^&\\s])"));
    const QRegularExpressionMatch match = pattern.match(QString(text).remove(QLatin1String("&&")));
    return match.hasMatch() ? match.captured(1).at(0).toLower() : QChar();
}

// "letter: text, text" for every mnemonic that more than one of the texts has.
QStringList clashes(const QStringList& texts)
{
    QMap<QChar, QStringList> owners;
    for (const QString& text : texts) {
        if (const QChar letter = mnemonicOf(text); !letter.isNull())
            owners[letter] << text;
    }
    QStringList found;
    for (auto it = owners.cbegin(); it != owners.cend(); ++it) {
        if (it.value().size() > 1)
            found << QString(it.key()) + QStringLiteral(": ") + it.value().join(QStringLiteral(", "));
    }
    return found;
}

// The captions of a window a mnemonic reaches at once: its buttons, its labels with a buddy, its
// tabs and its menu bar's menus (not the menus' items, which count within their menu).
QStringList windowCaptions(QWidget* window)
{
    QStringList texts;
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisibleTo(window))
            texts << button->text();
    }
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (label->buddy() && label->isVisibleTo(window))
            texts << label->text();
    }
    for (QTabBar* tabs : window->findChildren<QTabBar*>()) {
        for (int i = 0; i < tabs->count(); ++i)
            texts << tabs->tabText(i);
    }
    if (auto* main = qobject_cast<QMainWindow*>(window)) {
        for (QAction* menu : main->menuBar()->actions())
            texts << menu->text();
    }
    return texts;
}

// How much of a control's caption does not fit (0: none): a push button's text against the room
// the style leaves it inside its frame (the style's wider minimum is a matter of looks), anything
// else against its minimum size.
int missingWidth(QWidget* control, const QString& text)
{
    if (auto* button = qobject_cast<QPushButton*>(control)) {
        QStyleOptionButton option;
        option.initFrom(button);
        const int room = button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).width();
        return button->fontMetrics().horizontalAdvance(QString(text).remove(QLatin1Char('&'))) - room;
    }
    return control->minimumSizeHint().width() - control->width();
}

// The captions that are narrower on screen than their text: cut off.
QStringList cutCaptions(QWidget* window)
{
    QStringList cut;
    const auto check = [&](QWidget* control, const QString& text) {
        const int missing = missingWidth(control, text);
        if (control->isVisible() && !text.isEmpty() && missing > 0)
            cut << QStringLiteral("%1 \"%2\": %3 pixels short").arg(control->objectName(), text).arg(missing);
    };
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
        check(button, button->text());
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->wordWrap())
            check(label, label->text());
    }
    return cut;
}

} // namespace

class tst_germanWindows : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        FreshStart();
        QCOMPARE(mLanguage::Install({QStringLiteral("de_DE")}), QStringLiteral("de"));
    }
    void cleanup() { mLanguage::Remove(); }

    void mainWindowCaptions_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("caption");
        QTest::newRow("tool button Get") << "cmdTools(0)" << "Aus&lesen";
        QTest::newRow("tool button Put") << "cmdTools(1)" << QString::fromUtf8("&Übertragen");
        QTest::newRow("tool button Library") << "cmdTools(2)" << "Bibliothek (Vorlagen)";
        QTest::newRow("menu File") << "mnuFile" << "&Datei";
        QTest::newRow("menu Function") << "mnuFunction" << "F&unktion";
        QTest::newRow("menu Get Timing") << "mnuDLTiming" << "&Zeitwerte";
        QTest::newRow("menu Put All") << "mnuULAll" << "&Alles";
        QTest::newRow("menu About") << "mnuAbout" << QString::fromUtf8("Ü&ber Tolvane Manager");
        QTest::newRow("timing pane") << "fraTiming" << "Zeitwerte";
        QTest::newRow("firing mode") << "lblFiringModes" << "Feuermodus:";
        QTest::newRow("expert mode") << "chkExpert" << "Expertenmodus";
        QTest::newRow("trigger filter") << "chkTriggerFilter" << "Abzugsfilter verwenden";
        QTest::newRow("ramping shots") << "lblShots" << QString::fromUtf8("Schüsse vor dem Ramping");
        QTest::newRow("counters pane") << "fraCounters" << QString::fromUtf8("Zähler");
        QTest::newRow("battery pane") << "fraBettery" << "Akku";
        QTest::newRow("firing modes") << "cboFiringModes" << "Semi-Auto|Classic|Sniper|NXL Full Auto|Burst 3|Ramping";
        QTest::newRow("ramping modes") << "cboHyperModes" << "Ramping unbegrenzt|Ramping 100 %|Ramping 75 %|Ramping 50 %|Ramping 33 %";
    }
    void mainWindowCaptions()
    {
        QFETCH(QString, control);
        QFETCH(QString, caption);
        WindowHarness h(QStringLiteral("firmware=4.0.0"));
        fTolvaneMan& w = h.open();
        run(&w, QStringLiteral("cmdTools(0)")); // the grip's firmware decides the modes offered
        QObject* found = w.findChild<QObject*>(control);
        QVERIFY2(found, qPrintable(control));
        QString shown;
        if (auto* action = qobject_cast<QAction*>(found))
            shown = action->text();
        else if (auto* menu = qobject_cast<QMenu*>(found))
            shown = menu->menuAction()->text();
        else if (auto* button = qobject_cast<QAbstractButton*>(found))
            shown = button->text();
        else if (auto* label = qobject_cast<QLabel*>(found))
            shown = label->text();
        else if (auto* box = qobject_cast<QGroupBox*>(found))
            shown = box->title();
        else if (auto* list = qobject_cast<QComboBox*>(found)) {
            QStringList items;
            for (int i = 0; i < list->count(); ++i)
                items << list->itemText(i);
            shown = items.join(QLatin1Char('|'));
        }
        QCOMPARE(shown, caption);
    }

    void mnemonicsDoNotClash_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("menu"); // a menu of the main window; empty: the window itself
        for (const char* menu : {"mnuFile", "mnuEdit", "mnuFunction", "mnuDownload", "mnuUpload", "mnuView", "mnuHelp"})
            QTest::newRow(menu) << "fTolvaneMan" << QString::fromLatin1(menu);
        for (const char* window : {"fTolvaneMan", "fLibSets", "fSetsTemplate/0", "fSetsTemplate/1", "fUserVariable", "fOptions/0",
                                   "fOptions/1", "fCommConsole", "fAbout", "ErrorWindow", "fCompareGrip", "fGripHistory"})
            QTest::newRow(window) << QString::fromLatin1(window) << QString();
    }
    void mnemonicsDoNotClash()
    {
        QFETCH(QString, window);
        QFETCH(QString, menu);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        QWidget* shown = makeWindow(window, h, owned);
        QStringList texts;
        if (menu.isEmpty()) {
            texts = windowCaptions(shown);
        } else {
            auto* items = control<QMenu>(shown, menu);
            QVERIFY(items);
            for (QAction* action : items->actions())
                texts << action->text();
        }
        QVERIFY(!texts.isEmpty());
        const QStringList found = clashes(texts);
        QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("; "))));
    }

    void nothingIsCutOff_data()
    {
        QTest::addColumn<QString>("window");
        for (const char* window : {"fTolvaneMan", "fLibSets", "fSetsTemplate/0", "fSetsTemplate/1", "fUserVariable", "fOptions/0",
                                   "fOptions/1", "fCommConsole", "fAbout", "ErrorWindow", "fCompareGrip", "fGripHistory"})
            QTest::newRow(window) << QString::fromLatin1(window);
    }
    void nothingIsCutOff()
    {
        QFETCH(QString, window);
        WindowHarness h;
        std::unique_ptr<QWidget> owned;
        const QStringList cut = cutCaptions(makeWindow(window, h, owned));
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(QStringLiteral("; "))));
    }

    // A language without a translation (here a right-to-left one) leaves the program as it is.
    void rightToLeftLanguageStaysEnglishLeftToRight()
    {
        mLanguage::Remove();
        QCOMPARE(mLanguage::Install({QStringLiteral("ar_EG"), QStringLiteral("he_IL")}), QString());
        WindowHarness h;
        fTolvaneMan& w = h.open();
        QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
        QCOMPARE(w.layoutDirection(), Qt::LeftToRight);
        QCOMPARE(control<QAbstractButton>(&w, QStringLiteral("cmdTools(0)"))->text(), QStringLiteral("&Get"));
        const QStringList cut = cutCaptions(&w);
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(QStringLiteral("; "))));
    }
};

QTEST_MAIN(tst_germanWindows)
#include "tst_germanWindows.moc"
