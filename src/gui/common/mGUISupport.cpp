#include "gui/common/mGUISupport.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "shell/mMain.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QWidget>

namespace mGUISupport {
namespace {

QString procedureName(bool given, bool enabled, bool visible)
{
    const auto word = [](bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); };
    return QStringLiteral("SetControlState(%1,%2,%3)").arg(word(given), word(enabled), word(visible));
}

// Text, combo, list and picture boxes are the kinds whose background follows their state.
bool colouredKind(const QWidget* control)
{
    return qobject_cast<const QLineEdit*>(control) || qobject_cast<const QComboBox*>(control) ||
           qobject_cast<const QPlainTextEdit*>(control) || qobject_cast<const QAbstractItemView*>(control);
}

qreal logicalDpi(const QWidget* widget)
{
    if (widget)
        return widget->logicalDpiX();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        return screen->logicalDotsPerInchX();
    return 96.0;
}

} // namespace

void SetControlState(QWidget* control, bool enabled, bool visible)
{
    PassErrors(kModule, kRevision, procedureName(control != nullptr, enabled, visible), [&] {
        if (!control)
            RaiseRuntimeError(mErrCodes::RT_OBJECT_NOT_SET);
        control->setEnabled(enabled);
        control->setVisible(visible);
        if (colouredKind(control)) {
            QPalette palette = control->palette();
            const QPalette system = QApplication::palette();
            palette.setColor(QPalette::Base, system.color(enabled ? QPalette::Base : QPalette::Button));
            control->setPalette(palette);
        }
    });
}

void SetControlState(QAction* control, bool enabled, bool visible)
{
    PassErrors(kModule, kRevision, procedureName(control != nullptr, enabled, visible), [&] {
        if (!control)
            RaiseRuntimeError(mErrCodes::RT_OBJECT_NOT_SET);
        control->setEnabled(enabled);
        control->setVisible(visible);
    });
}

int TwipsToPixels(double twips, const QWidget* widget)
{
    return qRound(twips * logicalDpi(widget) / 1440.0);
}

double PixelsToTwips(int pixels, const QWidget* widget)
{
    return pixels * 1440.0 / logicalDpi(widget);
}

QLabel* MakeLabel(QWidget* parent, const QString& name, const QString& caption)
{
    auto* label = MakeControl<QLabel>(parent, name);
    label->setText(caption);
    return label;
}

QCheckBox* MakeCheckBox(QWidget* parent, const QString& name, const QString& caption, const QString& toolTip)
{
    auto* box = MakeControl<QCheckBox>(parent, name);
    box->setText(caption);
    if (!toolTip.isEmpty())
        box->setToolTip(toolTip);
    return box;
}

void SetSliderValue(QAbstractSlider* slider, int value)
{
    if (!slider)
        RaiseRuntimeError(mErrCodes::RT_OBJECT_NOT_SET);
    if (value < slider->minimum() || value > slider->maximum())
        RaiseRuntimeError(mErrCodes::RT_INVALID_PROPERTY);
    slider->setValue(value);
}

} // namespace mGUISupport
