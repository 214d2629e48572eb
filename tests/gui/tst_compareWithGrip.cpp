// Function > "Compare with grip..." against the virtual grip behind the in-memory port: the table
// it shows, a port that vanishes part-way, what the window does while it reads (commands held,
// progress, step text), that nothing reaches the grip, the window's records or the library (the
// next put sends what the one before sent), and the window's own manners.
#include "GuiTestSupport.h"

#include "gui/grip/fCompareGrip.h"

#include <QHeaderView>
#include <QProgressBar>

using namespace guitest;
using griptest::GripRecord;

namespace {

// What the comparison showed: the summary, then "value: grip / put" for each row marked as
// differing; or "no window".
struct Shown {
    QString summary;
    QStringList differing;
    int rows = 0;
};

Shown compare(fTolvaneMan& w)
{
    Shown shown{QStringLiteral("no window"), {}, 0};
    answerNextModal([&](QDialog* dialog) {
        auto* list = control<QTreeWidget>(dialog, QStringLiteral("lvwCompare"));
        shown.summary = control<QLabel>(dialog, QStringLiteral("lblSummary"))->text();
        shown.rows = list->topLevelItemCount();
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* row = list->topLevelItem(i);
            if (!row->text(fCompareGrip::ColDiffers).isEmpty())
                shown.differing << row->text(fCompareGrip::ColValue) + QStringLiteral(": ") + row->text(fCompareGrip::ColGrip) +
                                       QStringLiteral(" / ") + row->text(fCompareGrip::ColPut);
        }
    });
    run(&w, QStringLiteral("mnuCompare"));
    return shown;
}

// The window's records and the library as they stand, to see that a comparison changed neither.
QString heldByTheProgram(fTolvaneMan& w)
{
    QStringList held;
    for (const GripRecord record : {GripRecord::Timing, GripRecord::GameTimer, GripRecord::Options, GripRecord::Ramping})
        held << griptest::fields(w.Session(), record);
    held << QString::number(w.App().colSetsTemplate().Count()) << QString::number(w.App().AnythingNeedSave());
    return held.join(QStringLiteral(" | "));
}

} // namespace

class tst_compareWithGrip : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }

    void comparison_data()
    {
        QTest::addColumn<bool>("gripChanged");
        QTest::addColumn<bool>("vanishes"); // the port, on the game timer, after the timing was read
        QTest::addColumn<QString>("summary");
        QTest::addColumn<QStringList>("differing");
        QTest::addColumn<QString>("said"); // the status bar's step panel afterwards, or the error's number

        QTest::newRow("same") << false << false << "The grip holds these settings" << QStringList() << "N/A";
        QTest::newRow("three values differ") << true << false << "3 values differ"
                                             << QStringList{"Load (ms): 40 / 0", "Use LED: On / Off", "Ramping mode: 3 / 1"} << "N/A";
        QTest::newRow("port vanishing part-way") << true << true << "no window" << QStringList()
                                                 << QString::number(mErrCodes::ERR_DL_COUNTDOWN);
    }
    void comparison()
    {
        QFETCH(bool, gripChanged);
        QFETCH(bool, vanishes);
        QFETCH(QString, summary);
        QFETCH(QStringList, differing);
        QFETCH(QString, said);
        WindowHarness h(QStringLiteral("firmware=4.0.5"));
        fTolvaneMan& w = h.open();
        // The grip holds what the window would put, then perhaps something else.
        h.takeCodes();
        run(&w, QStringLiteral("mnuULAll"));
        GUITEST_NO_ERRORS(h.ui.script);
        const QList<QByteArray> firstPut = h.grip.link.port.frames;
        if (gripChanged) // the LED switch on, another load time and ramping mode
            h.grip.grip.updateState([](gripsim::GripState& s) {
                s.timing.loadTime = 40;
                s.options.flags |= 0x08;
                s.ramping.hyperMode = 3;
            });
        h.takeCodes();
        const QString before = heldByTheProgram(w);
        const gripsim::GripState gripBefore = h.grip.grip.state();

        // While the grip is read: the commands held, the progress bar and the step on show.
        QStringList during;
        h.grip.link.port.setResponder([&](const QByteArray& frame) -> QByteArray {
            const quint8 code = static_cast<quint8>(frame.at(0));
            if (code == 0x14)
                during << QString::number(w.findChild<QAction*>(QStringLiteral("mnuCompare"))->isEnabled())
                       << QString::number(w.findChild<QAction*>(QStringLiteral("mnuULAll"))->isEnabled())
                       << QString::number(w.findChild<QProgressBar*>(QStringLiteral("pgbProgress"))->isVisible())
                       << w.PanelText(fTolvaneMan::kPanelStep);
            if (code == 0x16 && vanishes) {
                h.grip.link.port.setVanishesAs(QStringLiteral("/dev/ttyUSB0"));
                return QByteArray();
            }
            return h.grip.grip.handleFrame(frame).value_or(QByteArray());
        });
        const Shown shown = compare(w);
        h.grip.link.port.setVanishesAs(QString());

        QCOMPARE(during, (QStringList{"0", "0", "1", "Reading the grip to compare..."}));
        QCOMPARE(shown.summary, summary);
        QCOMPARE(shown.differing, differing);
        if (shown.summary != QLatin1String("no window"))
            QCOMPARE(shown.rows, 25);
        QCOMPARE(h.ui.script.errors.isEmpty() ? w.PanelText(fTolvaneMan::kPanelStep) : QString::number(h.ui.script.errors.first().Number()), said);
        // Read only: nothing was sent but gets, and nothing the program holds changed.
        for (const int code : h.takeCodes())
            QVERIFY2(code < 0x20, qPrintable(QString::number(code, 16)));
        QCOMPARE(h.grip.grip.state(), gripBefore);
        QCOMPARE(heldByTheProgram(w), before);
        // And the window is usable again; its next put sends the bytes the first one sent.
        QVERIFY(w.findChild<QAction*>(QStringLiteral("mnuCompare"))->isEnabled());
        QVERIFY(w.findChild<QAction*>(QStringLiteral("mnuULAll"))->isEnabled());
        QVERIFY(!w.findChild<QProgressBar*>(QStringLiteral("pgbProgress"))->isVisible());
        QCOMPARE(mMain::MousePointerDepth(), 0);
        run(&w, QStringLiteral("mnuULAll"));
        QCOMPARE(h.grip.link.port.frames, firstPut);
    }

    void theWindowKeepsItsSizeAndSortsByValue()
    {
        ScriptedLibrary library;
        mGripComparison::tComparison comparison;
        for (const int shots : {30, 4, 100})
            comparison.values.append({GripRecord::Ramping, QStringLiteral("Shots"), shots, 5});
        {
            fCompareGrip first(comparison, library.prefs());
            first.resize(700, 333);
            first.done(QDialog::Accepted);
        }
        fCompareGrip second(comparison, library.prefs());
        QCOMPARE(second.size(), QSize(700, 333));
        auto* list = control<QTreeWidget>(&second, QStringLiteral("lvwCompare"));
        QCOMPARE(columnTexts(list, fCompareGrip::ColGrip), (QStringList{"30", "4", "100"}));
        list->header()->setSortIndicator(fCompareGrip::ColGrip, Qt::AscendingOrder);
        QCOMPARE(columnTexts(list, fCompareGrip::ColGrip), (QStringList{"4", "30", "100"}));
        GUITEST_NO_ERRORS(library.ui.script);
    }
};

QTEST_MAIN(tst_compareWithGrip)
#include "tst_compareWithGrip.moc"
