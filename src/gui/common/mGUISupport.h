#pragma once
// Helpers every window uses: enabling, showing and colouring a control in one call, documented
// sizes in twips as pixels, and a slider that refuses a value outside its range.
#include <QString>

class QAction;
class QAbstractSlider;
class QCheckBox;
class QLabel;
class QWidget;

namespace mGUISupport {

inline const QString kModule = QStringLiteral("mGUISupport");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// Sets the control's enabled and visible state; text, combo and list boxes also get the system
// window colour as background when enabled and the button-face colour when disabled.
void SetControlState(QWidget* control, bool enabled, bool visible);
// The same for a menu item.
void SetControlState(QAction* control, bool enabled, bool visible);

// Twips (15 to a pixel at 96 dpi) as pixels at the widget's logical dpi, and back.
int TwipsToPixels(double twips, const QWidget* widget = nullptr);
double PixelsToTwips(int pixels, const QWidget* widget = nullptr);

// Sets a slider's value; a value outside its range is refused with "Invalid property value",
// as the slider control did, instead of being clamped silently.
void SetSliderValue(QAbstractSlider* slider, int value);

// A control of the given kind, made on its parent under its documented name.
template <typename W>
W* MakeControl(QWidget* parent, const QString& name)
{
    auto* control = new W(parent);
    control->setObjectName(name);
    return control;
}
// A caption label and a check box with their captions (and the box's tool tip).
QLabel* MakeLabel(QWidget* parent, const QString& name, const QString& caption);
QCheckBox* MakeCheckBox(QWidget* parent, const QString& name, const QString& caption, const QString& toolTip = QString());

} // namespace mGUISupport
