#pragma once
// A caption label and the control it names: the label becomes the control's buddy (its
// mnemonic moves the focus there) and the control is read by the caption, without the "&" and
// the closing colon ("&Name:" is read "Name").
class QLabel;
class QWidget;

namespace mLabels {

void LabelFor(QLabel* label, QWidget* control);

} // namespace mLabels
