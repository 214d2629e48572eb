// The main window against a virtual grip: get and put, the panes afterwards, the state table.
#include "GuiTestSupport.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace guitest;

class tst_mainWindow : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void getAllFillsThePanes();
};

void tst_mainWindow::getAllFillsThePanes()
{
    WindowHarness h(QStringLiteral("firmware=4.0.5"));
    fTolvaneMan& w = h.open();
    h.ui.script.yesNoAnswers.enqueue(false);
    control<QPushButton>(&w, QStringLiteral("cmdTools(0)"))->click();
    QVERIFY2(h.ui.script.errors.isEmpty(), h.ui.script.errors.isEmpty() ? "" : qPrintable(h.ui.script.errors.first().Description()));
    QCOMPARE(h.ui.script.messages.size(), 1);
    QCOMPARE(h.ui.script.messages[0].text, QStringLiteral("Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched."));
    QCOMPARE(control<QLineEdit>(&w, QStringLiteral("txtTimingST"))->text(), QStringLiteral("10"));
    QCOMPARE(w.PanelText(2), QStringLiteral("4.0.5"));
}

QTEST_MAIN(tst_mainWindow)
#include "tst_mainWindow.moc"
