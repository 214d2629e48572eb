#include "gui/widgets/ucIProgress.h"

#include "gui/widgets/ucIProgressAccessible.h"

#include <QAccessible>
#include <QPainter>

namespace {

const QColor kBandColours[] = {QColor(0xd0, 0x30, 0x30), QColor(0xe8, 0xb0, 0x20), QColor(0x30, 0xa0, 0x40)};

} // namespace

ucIProgress::ucIProgress(QWidget* parent) : QWidget(parent)
{
    static const bool kFactoryInstalled = [] {
        QAccessible::installFactory(&ucIProgressAccessible::Factory);
        return true;
    }();
    Q_UNUSED(kFactoryInstalled)
    setAccessibleName(tr("Battery"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    changed();
}

void ucIProgress::setMin(qint32 value) { m_min = value; changed(); }
void ucIProgress::setMax(qint32 value) { m_max = value; changed(); }
void ucIProgress::setMaxLow(qint32 value) { m_maxLow = value; changed(); }
void ucIProgress::setMaxMid(qint32 value) { m_maxMid = value; changed(); }
void ucIProgress::setValue(qint32 value)
{
    const bool news = !m_hasValue || value != m_value;
    m_value = value;
    m_hasValue = true;
    changed();
    if (news)
        announceValue();
}

void ucIProgress::clearValue()
{
    const bool news = m_hasValue;
    m_hasValue = false;
    changed();
    if (news)
        announceValue();
}
void ucIProgress::setIndicators(bool value) { m_indicators = value; updateGeometry(); changed(); }
void ucIProgress::setBorder(bool value) { m_border = value; changed(); }

QString ucIProgress::VoltText(qint32 value)
{
    return tr("%1 V").arg(value / 100.0, 0, 'f', 2);
}

int ucIProgress::band() const
{
    if (m_value <= m_maxLow)
        return 0;
    return m_value <= m_maxMid ? 1 : 2;
}

QString ucIProgress::ValueText() const
{
    return m_hasValue ? VoltText(m_value) : tr("No voltage read");
}

void ucIProgress::changed()
{
    static const char* const kBandNames[] = {QT_TR_NOOP("low charge"), QT_TR_NOOP("middle charge"), QT_TR_NOOP("high charge")};
    setAccessibleDescription(m_hasValue ? tr(kBandNames[band()]) : QString());
    setToolTip(ValueText());
    update();
}

void ucIProgress::announceValue()
{
    QAccessibleValueChangeEvent event(this, m_hasValue ? QVariant(m_value / 100.0) : QVariant());
    QAccessible::updateAccessibility(&event);
}

QSize ucIProgress::sizeHint() const
{
    const int line = fontMetrics().height();
    return {220, line + 10 + (m_indicators ? line + 4 : 0)};
}

QSize ucIProgress::minimumSizeHint() const
{
    return {120, sizeHint().height()};
}

int ucIProgress::xOf(qint32 value, const QRect& bar) const
{
    if (m_max <= m_min)
        return bar.left();
    const qint32 clamped = qBound(m_min, value, m_max);
    return bar.left() + int(qint64(clamped - m_min) * bar.width() / (m_max - m_min));
}

void ucIProgress::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const int line = fontMetrics().height();
    const int textGap = m_indicators ? line + 4 : 0;
    QRect bar = rect().adjusted(2, 2, -3, -3 - textGap);
    const bool enabled = isEnabled();

    // The three bands, faint, then the filled part in the colour of the value's band.
    const qint32 limits[] = {m_min, m_maxLow, m_maxMid, m_max};
    for (int b = 0; b < 3; ++b) {
        QColor faint = kBandColours[b];
        faint.setAlpha(enabled ? 50 : 25);
        painter.fillRect(QRect(QPoint(xOf(limits[b], bar), bar.top()), QPoint(xOf(limits[b + 1], bar), bar.bottom())), faint);
    }
    painter.setPen(palette().color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    if (m_hasValue) {
        const QColor fill = enabled ? kBandColours[band()] : palette().color(QPalette::Disabled, QPalette::WindowText);
        painter.fillRect(QRect(QPoint(bar.left(), bar.top() + 2), QPoint(xOf(m_value, bar), bar.bottom() - 2)), fill);
        painter.drawText(bar, Qt::AlignCenter, VoltText(m_value));
    }
    if (m_border)
        painter.drawRect(bar);
    if (!m_indicators)
        return;
    const QRect labels(bar.left(), bar.bottom() + 3, bar.width(), line);
    for (int i = 0; i < 4; ++i) {
        const int x = xOf(limits[i], bar);
        painter.drawLine(x, bar.bottom(), x, bar.bottom() + 2);
        const QString text = VoltText(limits[i]);
        const int w = fontMetrics().horizontalAdvance(text);
        const int left = qBound(labels.left(), x - w / 2, labels.right() - w);
        // The two middle labels stand only where they do not run into their neighbours.
        if ((i == 1 || i == 2) && (xOf(limits[i], bar) - xOf(limits[i - 1], bar) < w || xOf(limits[i + 1], bar) - x < w))
            continue;
        painter.drawText(QRect(left, labels.top(), w, line), Qt::AlignCenter, text);
    }
}
