#pragma once
// A label that shows a value (a rate of fire, a path, a version, advice) rather than naming
// another control. A screen reader reads the value itself as the label's name, with the caption
// as its description, and hears every new value: the label has no name of its own, so a new text
// is announced as a change of its name. Given the focus (a click, or the keyboard where its text
// can be selected), it shows it with the style's focus frame.
#include <QLabel>

class ValueLabel : public QLabel {
    Q_OBJECT
public:
    // The caption is read as given, without "&" and a closing colon ("Max &ROF:" is "Max ROF").
    ValueLabel(const QString& caption, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
