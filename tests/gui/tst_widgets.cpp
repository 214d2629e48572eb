// The small widgets of the desktop program: the battery indicator's bands, texts and value as a
// progress bar, the up-down with its text box, the status panel that shortens a long text, and the
// about box's copy for a support request.
#include "gui/widgets/StatusPanel.h"
#include "gui/widgets/UpDown.h"
#include "gui/widgets/fAbout.h"
#include "gui/widgets/ucIProgress.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QHelpEvent>
#include <QPushButton>
#include <QToolTip>
#include <QtTest>

class tst_widgets : public QObject {
    Q_OBJECT
private slots:
    void batteryBands_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("band");
        QTest::addColumn<QString>("shown");       // the value a screen reader reads
        QTest::addColumn<QString>("description"); // and the band it reads with it
        QTest::newRow("nothing read") << -1 << 0 << "No voltage read" << "";
        // The main window's scale: 4.00 to 5.80 V, low up to 4.25 V, middle up to 4.50 V.
        QTest::newRow("low edge") << 425 << 0 << "4.25 V" << "low charge";
        QTest::newRow("middle") << 426 << 1 << "4.26 V" << "middle charge";
        QTest::newRow("middle edge") << 450 << 1 << "4.50 V" << "middle charge";
        QTest::newRow("high") << 561 << 2 << "5.61 V" << "high charge";
        QTest::newRow("above the scale") << 652 << 2 << "6.52 V" << "high charge";
    }
    void batteryBands()
    {
        QFETCH(int, value);
        QFETCH(int, band);
        QFETCH(QString, shown);
        QFETCH(QString, description);
        ucIProgress bar;
        bar.setMax(580);
        bar.setMin(400);
        bar.setMaxLow(425);
        bar.setMaxMid(450);
        bar.setValue(value);
        if (value < 0)
            bar.clearValue();
        QCOMPARE(bar.band(), band);
        // A screen reader reads a progress bar from 4 to 5.8 V, without a value until one is read.
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&bar);
        QCOMPARE(face->role(), QAccessible::ProgressBar);
        const QAccessibleValueInterface* range = face->valueInterface();
        const QVariant volts = range->currentValue();
        QCOMPARE(volts.isValid() ? volts.toDouble() : -0.01, value / 100.0);
        QCOMPARE(QPointF(range->minimumValue().toDouble(), range->maximumValue().toDouble()), QPointF(4.0, 5.8));
        QCOMPARE(face->text(QAccessible::Value), shown);
        QCOMPARE(face->text(QAccessible::Description), description);
        QCOMPARE(bar.toolTip(), shown);
        bar.resize(bar.sizeHint());
        QImage image(bar.size(), QImage::Format_ARGB32);
        bar.render(&image); // paints without trouble, whatever the value
    }
    void upDownStepsItsTextBox_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("after");
        QTest::newRow("up") << "10" << int(Qt::Key_Up) << "11";
        QTest::newRow("down") << "10" << int(Qt::Key_Down) << "9";
        QTest::newRow("not past the top") << "20" << int(Qt::Key_Up) << "20";
        QTest::newRow("not below the bottom") << "1" << int(Qt::Key_Down) << "1";
        // The up-down last held 20: a box holding no number of the range steps from the box.
        QTest::newRow("down from above the range") << "50" << int(Qt::Key_Down) << "20";
        QTest::newRow("up from above the range") << "50" << int(Qt::Key_Up) << "20";
        QTest::newRow("up from below the range") << "-7" << int(Qt::Key_Up) << "1";
        QTest::newRow("down from text") << "abc" << int(Qt::Key_Down) << "1";
    }
    void upDownStepsItsTextBox()
    {
        QFETCH(QString, text);
        QFETCH(int, key);
        QFETCH(QString, after);
        QLineEdit box;
        UpDown upDown;
        upDown.setRange(1, 20);
        upDown.setValue(20);
        upDown.setBuddy(&box);
        box.setText(text);
        QTest::keyClick(&upDown, Qt::Key(key));
        QCOMPARE(box.text(), after);
    }
    void statusPanelShortensALongText_data()
    {
        QTest::addColumn<int>("elide");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("keeps"); // what stays in sight when the room is short
        const QString path = QStringLiteral("/home/player/a/very/long/folder/for/the/field/laptop/Marlo.mdb");
        QTest::newRow("path keeps its file name") << int(Qt::ElideMiddle) << path << "Marlo.mdb";
        QTest::newRow("step keeps its beginning") << int(Qt::ElideRight) << QStringLiteral("Firmware backed up to ") + path
                                                  << "Firmware";
    }
    void statusPanelShortensALongText()
    {
        QFETCH(int, elide);
        QFETCH(QString, text);
        QFETCH(QString, keeps);
        StatusPanel panel(Qt::TextElideMode(elide), nullptr);
        panel.setText(text);
        panel.resize(panel.sizeHint());
        QCOMPARE(panel.shownText(), text);
        panel.resize(panel.sizeHint().width() / 2, panel.height());
        QVERIFY(panel.minimumSizeHint().width() <= panel.width());
        const QString shown = panel.shownText();
        QVERIFY2(shown.contains(QChar(0x2026)) && shown.contains(keeps), qPrintable(shown));
        QVERIFY(panel.fontMetrics().horizontalAdvance(shown) <= panel.contentsRect().width());
        // Whole for the window and a screen reader; its tool tip shows it whole.
        QCOMPARE(panel.text(), text);
        QCOMPARE(QAccessible::queryAccessibleInterface(&panel)->text(QAccessible::Name), text);
        QHelpEvent help(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
        QVERIFY(QApplication::sendEvent(&panel, &help));
        QTRY_COMPARE(QToolTip::text(), text);
    }
    void aboutBoxCopiesTheVersions()
    {
        fAbout about;
        about.findChild<QPushButton*>(QStringLiteral("cmdSysInfo"))->click();
        const QString copied = QApplication::clipboard()->text();
        QVERIFY2(copied.startsWith(QStringLiteral("Marlo 4.0.0\n")), qPrintable(copied));
        QVERIFY(copied.contains(QStringLiteral("Qt ") + QString::fromLatin1(qVersion())));
        QVERIFY(copied.contains(QSysInfo::kernelType()));
    }
};

QTEST_MAIN(tst_widgets)
#include "tst_widgets.moc"
