// The main window at any size of text, in any locale and at any size of its own: what it shows is
// never cut off, it lays out left to right, and made smaller than its full size it scrolls instead
// of squeezing its panes or losing controls.
#include "GuiTestSupport.h"

#include "gui/shell/Main.h"
#include "gui/widgets/StatusPanel.h"
#include "gui/widgets/ucIProgress.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

using namespace guitest;

namespace {

// Room the widget needs to show its text whole, or an empty size when it shows none.
QSize neededSize(QWidget* widget)
{
    if (auto* panel = qobject_cast<StatusPanel*>(widget))
        return panel->minimumSizeHint(); // shortens its text, whole in its tool tip
    if (auto* label = qobject_cast<QLabel*>(widget))
        return label->text().isEmpty() || label->wordWrap() ? QSize() : label->sizeHint();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text().isEmpty() ? QSize() : button->sizeHint();
    if (qobject_cast<QComboBox*>(widget))
        return widget->sizeHint(); // as wide as the longest item
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        // The text, the box's inner margins (two pixels a side) and its frame.
        const int frame = edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, edit);
        return {edit->fontMetrics().horizontalAdvance(edit->text()) + 4 + 2 * frame, edit->fontMetrics().height()};
    }
    if (auto* battery = qobject_cast<ucIProgress*>(widget))
        return {battery->minimumSizeHint().width(), battery->sizeHint().height()};
    return {};
}

// The visible widgets of the window too small for what they show, as "name: needed, has".
QStringList cutTexts(QWidget* window)
{
    QStringList cut;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(window) || qobject_cast<QComboBox*>(widget->parentWidget()))
            continue;
        const QSize needed = neededSize(widget);
        if (needed.isValid() && (widget->width() < needed.width() || widget->height() < needed.height()))
            cut << QStringLiteral("%1: %2x%3, has %4x%5")
                       .arg(widget->objectName())
                       .arg(needed.width())
                       .arg(needed.height())
                       .arg(widget->width())
                       .arg(widget->height());
    }
    return cut;
}

} // namespace

class tst_windowSizes : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }
    void cleanup()
    {
        QApplication::setFont(m_font);
        QLocale::setDefault(QLocale::c());
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }
    void nothingIsCut_data()
    {
        QTest::addColumn<double>("fontScale");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<bool>("rightToLeft"); // as a right-to-left translation sets it
        QTest::newRow("as designed") << 1.0 << "C" << false;
        QTest::newRow("very large font") << 2.2 << "C" << false;
        QTest::newRow("right-to-left locale") << 1.0 << "ar_EG" << true;
    }
    void nothingIsCut()
    {
        QFETCH(double, fontScale);
        QFETCH(QString, locale);
        QFETCH(bool, rightToLeft);
        QFont font = m_font;
        font.setPointSizeF(font.pointSizeF() * fontScale);
        QApplication::setFont(font);
        QLocale::setDefault(QLocale(locale));
        QApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        WindowHarness h(QStringLiteral("firmware=4.0.5,serial=AB12345678"));
        const auto window = mMain::StartUp(h.grip.session, h.app());
        QVERIFY(window);
        run(window.get(), QStringLiteral("cmdTools(0)"));
        // On a screen that has room for all of it.
        window->resize(window->sizeHint());
        QCoreApplication::processEvents();
        QVERIFY(window->isLeftToRight());
        QCOMPARE(cutTexts(window.get()).join(QStringLiteral("; ")), QString());
        // At its full size nothing needs scrolling.
        auto* scroll = control<QScrollArea>(window.get(), QStringLiteral("picScroll"));
        QVERIFY(!scroll->horizontalScrollBar()->isVisible() && !scroll->verticalScrollBar()->isVisible());
        GUITEST_NO_ERRORS(h.ui.script);
    }
    void smallerThanFullSizeScrolls()
    {
        WindowHarness h;
        fTolvaneMan& w = h.open();
        const QSize full = w.size();
        auto* scroll = control<QScrollArea>(&w, QStringLiteral("picScroll"));
        const QSize content = scroll->widget()->size();
        w.resize(full / 2);
        QCoreApplication::processEvents();
        QVERIFY(w.width() < full.width() && w.height() < full.height());
        QVERIFY(scroll->horizontalScrollBar()->isVisible() && scroll->verticalScrollBar()->isVisible());
        // The panes keep the room they need and the last control can be scrolled to.
        QVERIFY(scroll->widget()->width() >= scroll->widget()->minimumSizeHint().width());
        QVERIFY(scroll->widget()->height() >= scroll->widget()->minimumSizeHint().height());
        QCOMPARE(cutTexts(&w).join(QStringLiteral("; ")), QString());
        auto* battery = control<QWidget>(&w, QStringLiteral("ucIProgress1"));
        scroll->ensureWidgetVisible(battery);
        QVERIFY(scroll->viewport()->rect().contains(QRect(battery->mapTo(scroll->viewport(), QPoint()), battery->size())));
        w.resize(full);
        QCoreApplication::processEvents();
        QCOMPARE(scroll->widget()->size(), content);
    }

private:
    const QFont m_font = QApplication::font();
};

QTEST_MAIN(tst_windowSizes)
#include "tst_windowSizes.moc"
