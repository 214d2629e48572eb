#pragma once
// Captions as a screen reader reads them, without the "&" and the closing colon ("&Name:" is read
// "Name").
#include <QString>

class QLabel;
class QWidget;

namespace mLabels {

// A caption label and the control it names: the label becomes the control's buddy (its mnemonic
// moves the focus there) and the control is read by the caption.
void LabelFor(QLabel* label, QWidget* control);

// A label that shows a value (a rate of fire, a path, a version, advice) rather than naming a
// control: read by the value itself, with the caption as its description. Having no name of its
// own, the label announces every new text as a change of its name.
QLabel* ValueLabel(QWidget* parent, const QString& name, const QString& caption, const QString& value = QString());
// The same for a label of a kind of its own; returns it.
QLabel* AsValueLabel(QLabel* label, const QString& name, const QString& caption, const QString& value = QString());

} // namespace mLabels
