// The grip history window after gets in the main window: the entries of this grip or of all,
// newest first and sortable, the selected entry's values, the keys, "Use" making a new template
// of an entry without touching the library file, and its remembered size.
#include "GuiTestSupport.h"

#include "grip/cGripHistory.h"
#include "gui/grip/fGripHistory.h"

#include <QComboBox>
#include <QHeaderView>
#include <QSqlQuery>
#include <QTemporaryDir>

using namespace guitest;

namespace {

const QString kSerial = QStringLiteral("WIN0000001");

QTreeWidget* entriesOf(QDialog* window)
{
    return control<QTreeWidget>(window, QStringLiteral("lvwHistory"));
}

// The records shown in the values pane.
QStringList valueGroups(QDialog* window)
{
    QTreeWidget* values = control<QTreeWidget>(window, QStringLiteral("lvwValues"));
    return columnTexts(values, 0);
}

int rowsInLibrary()
{
    QSqlQuery query(mMain::ConnectDB());
    query.exec(QStringLiteral("SELECT COUNT(*) FROM ta_SetsTemplate"));
    return query.next() ? query.value(0).toInt() : -1;
}

// A main window on a grip with its own values, whose history holds an older entry of another
// grip and then what Get and Function > Get > Timing settings recorded.
struct GotTwice {
    QTemporaryDir dir;
    cGripHistory history{dir.path()};
    WindowHarness h{QStringLiteral("serial=") + kSerial};
    fTolvaneMan* w = nullptr;

    GotTwice()
    {
        cGripHistory::tEntry other;
        other.time = QDateTime::currentDateTime().addDays(-1);
        other.serial = QStringLiteral("OTHER00001");
        other.firmware = QStringLiteral("1.1.70");
        other.values = {{QStringLiteral("timing"), QJsonObject{{QStringLiteral("ShotTime"), 9}}}};
        history.Record(other);
        h.grip.grip.updateState([](gripsim::GripState& state) {
            state.timing.shotTime = 14;
            state.gameTimer.countDownTimer = 17;
        });
        h.grip.session.SetHistory(&history);
        w = &h.open();
        run(w, QStringLiteral("cmdTools(0)"));
        QTest::qWait(2);
        run(w, QStringLiteral("mnuDLTiming"));
    }

    // Opens Function > Grip history... and hands the window to look before it is closed.
    void open(const std::function<void(QDialog*)>& look)
    {
        answerNextModal([&](QDialog* window) {
            look(window);
            if (window->isVisible())
                run(window, QStringLiteral("cmdClose"));
        });
        run(w, QStringLiteral("mnuGripHistory"));
    }
};

} // namespace

class tst_gripHistoryWindow : public QObject {
    Q_OBJECT

private slots:
    void init() { FreshStart(); }

    void entries_data()
    {
        QTest::addColumn<int>("show");
        QTest::addColumn<QStringList>("serials"); // newest first
        QTest::addColumn<QStringList>("summaries");
        QTest::addColumn<QString>("status");
        QTest::newRow("this grip") << int(fGripHistory::ShowThisGrip) << QStringList{kSerial, kSerial}
                                   << QStringList{"ST/DT/CTO/LT/CTC 14/10/30/35/28 ms",
                                                  "ST/DT/CTO/LT/CTC 14/10/30/35/28 ms, game 17 min, options, ramping"}
                                   << "2 entries of grip WIN0000001, newest first.";
        QTest::newRow("all grips") << int(fGripHistory::ShowAllGrips) << QStringList{kSerial, kSerial, "OTHER00001"}
                                   << QStringList{"ST/DT/CTO/LT/CTC 14/10/30/35/28 ms",
                                                  "ST/DT/CTO/LT/CTC 14/10/30/35/28 ms, game 17 min, options, ramping",
                                                  "ST/DT/CTO/LT/CTC 9/?/?/?/? ms"}
                                   << "3 entries of all grips, newest first.";
    }
    void entries()
    {
        QFETCH(int, show);
        QFETCH(QStringList, serials);
        QFETCH(QStringList, summaries);
        QFETCH(QString, status);
        GotTwice got;
        got.open([&](QDialog* window) {
            auto* choice = control<QComboBox>(window, QStringLiteral("cboShow"));
            QCOMPARE(choice->currentIndex(), int(fGripHistory::ShowThisGrip)); // the grip was read
            choice->setCurrentIndex(show);
            emit choice->activated(show);
            QCOMPARE(columnTexts(entriesOf(window), fGripHistory::ColSerial), serials);
            QCOMPARE(columnTexts(entriesOf(window), fGripHistory::ColSummary), summaries);
            QCOMPARE(control<QLabel>(window, QStringLiteral("lblStatus"))->text(), status);
            // The newest is selected and its values shown; Down moves to the older entry.
            QTreeWidget* list = entriesOf(window);
            QCOMPARE(valueGroups(window), QStringList{"Timing"});
            list->setFocus();
            QTest::keyClick(list, Qt::Key_Down);
            QCOMPARE(valueGroups(window), (QStringList{"Timing", "Game timer", "Options", "Ramping"}));
            // A click on a header sorts by it.
            QTest::mouseClick(list->header()->viewport(), Qt::LeftButton, {},
                              QPoint(list->header()->sectionViewportPosition(fGripHistory::ColSerial) + 5, 5));
            QStringList sorted = serials;
            sorted.sort();
            QCOMPARE(columnTexts(list, fGripHistory::ColSerial), sorted);
            window->resize(700, 420);
        });
        QCOMPARE(got.w->ActiveSetting()->lShotTime(), 14); // closing used nothing
        GUITEST_NO_ERRORS(got.h.ui.script);
        // The size is kept for the next opening.
        QSize size;
        got.open([&](QDialog* window) { size = window->size(); });
        QCOMPARE(size, QSize(700, 420));
    }

    // Use makes a new template of the entry's timing and game timer, the active setting and
    // editable; the library file is written only when the library is saved.
    void useMakesATemplate()
    {
        GotTwice got;
        const int before = got.h.app().colSetsTemplate().Count();
        const int stored = rowsInLibrary();
        got.h.grip.grip.updateState([](gripsim::GripState& state) { state.timing.shotTime = 20; });
        got.open([&](QDialog* window) {
            selectRow(entriesOf(window), 1); // the get all
            run(window, QStringLiteral("cmdUse"));
            QVERIFY(!window->isVisible());
        });
        const auto setting = got.w->ActiveSetting();
        QVERIFY(got.w->IsTemplate());
        QCOMPARE(got.h.app().colSetsTemplate().Count(), before + 1);
        QVERIFY(setting->sName().startsWith(QStringLiteral("Grip WIN0000001 on ")));
        QCOMPARE(setting->lShotTime(), 14);
        QCOMPARE(setting->lGameTime(), 17);
        QCOMPARE(text(got.w, QStringLiteral("txtCntDown")), QStringLiteral("17"));
        QCOMPARE(rowsInLibrary(), stored);
        GUITEST_NO_ERRORS(got.h.ui.script);
    }
};

QTEST_MAIN(tst_gripHistoryWindow)
#include "tst_gripHistoryWindow.moc"
