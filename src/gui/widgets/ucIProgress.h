#pragma once
// The battery indicator: a bar over a scale from Min to Max with three bands (low up to MaxLow,
// middle up to MaxMid, high above), filled up to Value in the colour of its band, with the
// voltages of the band limits under it when Indicators is on. Values are hundredths of a volt.
// A screen reader reads it as a progress bar whose value is the voltage, and hears a new one.
#include <QWidget>

class ucIProgress : public QWidget {
    Q_OBJECT
public:
    explicit ucIProgress(QWidget* parent = nullptr);

    qint32 Min() const { return m_min; }
    void setMin(qint32 value);
    qint32 Max() const { return m_max; }
    void setMax(qint32 value);
    qint32 MaxLow() const { return m_maxLow; }
    void setMaxLow(qint32 value);
    qint32 MaxMid() const { return m_maxMid; }
    void setMaxMid(qint32 value);
    qint32 Value() const { return m_value; }
    void setValue(qint32 value);
    // Whether a value was given since the indicator was made or cleared; without one it shows
    // the scale alone, with no voltage.
    bool HasValue() const { return m_hasValue; }
    void clearValue();
    bool Indicators() const { return m_indicators; }
    void setIndicators(bool value);
    bool Border() const { return m_border; }
    void setBorder(bool value);
    bool Enabled() const { return isEnabled(); }
    void setEnabled(bool value) { QWidget::setEnabled(value); }

    // "5.60 V" for 560.
    static QString VoltText(qint32 value);
    // The voltage shown, or "No voltage read".
    QString ValueText() const;
    // The band the value lies in: 0 low, 1 middle, 2 high.
    int band() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void changed();
    void announceValue();
    int xOf(qint32 value, const QRect& bar) const;

    qint32 m_min = 0;
    qint32 m_max = 100;
    qint32 m_maxLow = 33;
    qint32 m_maxMid = 66;
    qint32 m_value = 0;
    bool m_hasValue = false;
    bool m_indicators = true;
    bool m_border = true;
};
