#include "gui/widgets/StatusPanel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace {
// The fewest characters a shortened text keeps, besides the "…".
constexpr int kShortest = 8;
} // namespace

StatusPanel::StatusPanel(Qt::TextElideMode elide, QWidget* parent)
    : QLabel(parent)
    , m_elide(elide)
{
}

int StatusPanel::room() const
{
    return contentsRect().width() - 2 * margin() - qMax(indent(), 0);
}

QString StatusPanel::shownText() const
{
    return fontMetrics().elidedText(text(), m_elide, room());
}

QSize StatusPanel::minimumSizeHint() const
{
    const int shortest = fontMetrics().horizontalAdvance(text().left(kShortest) + QChar(0x2026));
    const int around = width() - room();
    return QSize(qMin(shortest + around, sizeHint().width()), sizeHint().height());
}

bool StatusPanel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && shownText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
        return true;
    }
    return QLabel::event(event);
}

void StatusPanel::paintEvent(QPaintEvent* event)
{
    const QString shown = shownText();
    if (shown == text()) { // whole, it is drawn as any label, selectable by the mouse
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    const QRect inside = contentsRect().adjusted(margin() + qMax(indent(), 0), margin(), -margin(), -margin());
    style()->drawItemText(&painter, inside, QStyle::visualAlignment(layoutDirection(), alignment()), palette(), isEnabled(),
                          shown, foregroundRole());
}
