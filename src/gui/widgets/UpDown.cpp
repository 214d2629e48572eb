#include "gui/widgets/UpDown.h"

#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QToolButton* arrowButton(Qt::ArrowType arrow, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    return button;
}

// Where the keyboard is: a frame over the arrows, drawn while the up-down has focus (the arrows
// themselves never take it, and cover the whole control).
class FocusMark : public QWidget {
public:
    explicit FocusMark(QWidget* parent) : QWidget(parent)
    {
        setObjectName(QStringLiteral("focusMark"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setVisible(false);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
};

} // namespace

UpDown::UpDown(QWidget* parent) : QAbstractSlider(parent)
{
    setOrientation(Qt::Vertical);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setSingleStep(1);
    setPageStep(10);
    m_up = arrowButton(Qt::UpArrow, this);
    m_down = arrowButton(Qt::DownArrow, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_up);
    layout->addWidget(m_down);
    m_focusMark = new FocusMark(this);
    connect(m_up, &QToolButton::clicked, this, [this] { triggerAction(SliderSingleStepAdd); });
    connect(m_down, &QToolButton::clicked, this, [this] { triggerAction(SliderSingleStepSub); });
    // A step by the user (arrows, keys, wheel) writes the new value into the text box; a change
    // of the range or of the text box moves the value without writing back.
    connect(this, &QAbstractSlider::actionTriggered, this, [this] {
        if (!m_buddy)
            return;
        // Mended on purpose: a step from a box that holds no number of the range starts from the
        // box, not from the last number it held (an empty box, text or a number below the range
        // give the minimum, a number above it the maximum).
        bool ok = false;
        const int number = m_buddy->text().trimmed().toInt(&ok);
        if (!ok || number < minimum())
            setSliderPosition(minimum());
        else if (number > maximum())
            setSliderPosition(maximum());
        m_buddy->setText(QString::number(sliderPosition()));
    });
}

void UpDown::setBuddy(QLineEdit* buddy)
{
    m_buddy = buddy;
    if (m_buddy) {
        connect(m_buddy, &QLineEdit::textChanged, this, &UpDown::followBuddy);
        followBuddy(m_buddy->text());
    }
    const QString name = accessibleName();
    m_up->setAccessibleName(name.isEmpty() ? tr("Up") : tr("%1 up").arg(name));
    m_down->setAccessibleName(name.isEmpty() ? tr("Down") : tr("%1 down").arg(name));
}

QSize UpDown::sizeHint() const
{
    const int height = m_buddy ? m_buddy->sizeHint().height() : 24;
    return {qMax(16, height * 2 / 3), height};
}

void UpDown::sliderChange(SliderChange change)
{
    QAbstractSlider::sliderChange(change);
    updateArrows();
}

void UpDown::resizeEvent(QResizeEvent* event)
{
    QAbstractSlider::resizeEvent(event);
    m_focusMark->setGeometry(rect());
}

void UpDown::focusInEvent(QFocusEvent* event)
{
    QAbstractSlider::focusInEvent(event);
    m_focusMark->setVisible(true);
    m_focusMark->raise();
}

void UpDown::focusOutEvent(QFocusEvent* event)
{
    QAbstractSlider::focusOutEvent(event);
    m_focusMark->setVisible(false);
}

void UpDown::changeEvent(QEvent* event)
{
    QAbstractSlider::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        updateArrows();
}

void UpDown::followBuddy(const QString& text)
{
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    if (!ok || number < minimum() || number > maximum())
        return;
    setValue(number);
}

void UpDown::updateArrows()
{
    m_up->setEnabled(isEnabled() && value() < maximum());
    m_down->setEnabled(isEnabled() && value() > minimum());
}
