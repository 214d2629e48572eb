#pragma once
// The up-down control: two arrow buttons that step a value within its range and write it into
// the text box they belong to (the buddy), and follow that text box when the user types a number
// within the range. The arrow keys step it too. A step from a box holding no number of the range
// gives the minimum, or the maximum from a number above the range.
#include <QAbstractSlider>

class QLineEdit;
class QToolButton;

class UpDown : public QAbstractSlider {
    Q_OBJECT
public:
    explicit UpDown(QWidget* parent = nullptr);

    void setBuddy(QLineEdit* buddy);
    QLineEdit* buddy() const { return m_buddy; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void sliderChange(SliderChange change) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void followBuddy(const QString& text);
    void updateArrows();

    QLineEdit* m_buddy = nullptr;
    QToolButton* m_up = nullptr;
    QToolButton* m_down = nullptr;
    QWidget* m_focusMark = nullptr;
};
