#include "gui/grip/fCompareGrip.h"

#include "base/mErrorReport.h"
#include "gui/common/PlacedWidget.h"
#include "gui/common/mGUISupport.h"
#include "base/cRegistrySettings.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using mGripCommands::GripRecord;
using mGUISupport::TwipsToPixels;

namespace {

struct RecordCaption {
    GripRecord record;
    const char* caption;
};

// The records as the main window's panes call them.
const RecordCaption kRecords[] = {
    {GripRecord::Timing, QT_TRANSLATE_NOOP("fCompareGrip", "Timing")},
    {GripRecord::GameTimer, QT_TRANSLATE_NOOP("fCompareGrip", "Game timer")},
    {GripRecord::Options, QT_TRANSLATE_NOOP("fCompareGrip", "Options")},
    {GripRecord::Ramping, QT_TRANSLATE_NOOP("fCompareGrip", "Ramping")},
};

struct ValueCaption {
    const char* name; // as get and put name the value
    const char* caption;
};

const ValueCaption kValues[] = {
    {"ShotTime", QT_TRANSLATE_NOOP("fCompareGrip", "Shot (ms)")},
    {"Dwelltime", QT_TRANSLATE_NOOP("fCompareGrip", "Dwell (ms)")},
    {"CycleTimeOpen", QT_TRANSLATE_NOOP("fCompareGrip", "Open (ms)")},
    {"LoadTime", QT_TRANSLATE_NOOP("fCompareGrip", "Load (ms)")},
    {"CycleTimeClose", QT_TRANSLATE_NOOP("fCompareGrip", "Close (ms)")},
    {"FiringMode", QT_TRANSLATE_NOOP("fCompareGrip", "Firing mode")},
    {"CountDownTimer", QT_TRANSLATE_NOOP("fCompareGrip", "Game time (minutes)")},
    {"PreAlert1On", QT_TRANSLATE_NOOP("fCompareGrip", "First alert")},
    {"PreAlert1Time", QT_TRANSLATE_NOOP("fCompareGrip", "First alert time (s)")},
    {"PreAlert2On", QT_TRANSLATE_NOOP("fCompareGrip", "Second alert")},
    {"PreAlert2Time", QT_TRANSLATE_NOOP("fCompareGrip", "Second alert time (s)")},
    {"EyeMounted", QT_TRANSLATE_NOOP("fCompareGrip", "A.C.E. mounted")},
    {"TriggerFilterOn", QT_TRANSLATE_NOOP("fCompareGrip", "Trigger filter")},
    {"EyeCheckMaxTimeOn", QT_TRANSLATE_NOOP("fCompareGrip", "Eye check max")},
    {"UseEye", QT_TRANSLATE_NOOP("fCompareGrip", "Use A.C.E.")},
    {"EyeCheckMaxTime", QT_TRANSLATE_NOOP("fCompareGrip", "Eye check max time (ms)")},
    {"DefaultLoadTime", QT_TRANSLATE_NOOP("fCompareGrip", "Max ROF in ms")},
    {"LoaderOn", QT_TRANSLATE_NOOP("fCompareGrip", "Use feeder")},
    {"LedOn", QT_TRANSLATE_NOOP("fCompareGrip", "Use LED")},
    {"EyeCheckOKTimeOn", QT_TRANSLATE_NOOP("fCompareGrip", "Eye OK max")},
    {"EyeCheckOKTime", QT_TRANSLATE_NOOP("fCompareGrip", "Eye OK max time (ms)")},
    {"CTOAdjust", QT_TRANSLATE_NOOP("fCompareGrip", "Training mode")},
    {"Shots", QT_TRANSLATE_NOOP("fCompareGrip", "Shots before ramping")},
    {"HyperTime", QT_TRANSLATE_NOOP("fCompareGrip", "ROF in ms before ramping")},
    {"HyperMode", QT_TRANSLATE_NOOP("fCompareGrip", "Ramping mode")},
};

QString recordCaption(GripRecord record)
{
    for (const RecordCaption& row : kRecords)
        if (row.record == record)
            return fCompareGrip::tr(row.caption);
    return mGripCommands::RecordName(record);
}

QString valueCaption(const QString& name)
{
    for (const ValueCaption& row : kValues)
        if (name == QLatin1String(row.name))
            return fCompareGrip::tr(row.caption);
    return name;
}

// A switch reads "On" or "Off"; a number stays a number, so that its column sorts by value.
QVariant shown(const QVariant& value)
{
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? fCompareGrip::tr("On") : fCompareGrip::tr("Off");
    return value;
}

} // namespace

fCompareGrip::fCompareGrip(const mGripComparison::tComparison& comparison, cRegistrySettings& preferences, QWidget* parent)
    : QDialog(parent), m_preferences(preferences)
{
    setObjectName(kForm);
    setWindowTitle(tr("Compare with grip"));

    lblSummary = mGUISupport::MakeLabel(this, QStringLiteral("lblSummary"), QString());
    QFont bold = lblSummary->font();
    bold.setBold(true);
    lblSummary->setFont(bold);

    lvwCompare = mGUISupport::MakeControl<QTreeWidget>(this, QStringLiteral("lvwCompare"));
    lvwCompare->setAccessibleName(tr("Values on the grip and as Put sends them"));
    lvwCompare->setRootIsDecorated(false);
    lvwCompare->setUniformRowHeights(true);
    lvwCompare->setAlternatingRowColors(true);
    lvwCompare->setAllColumnsShowFocus(true);
    lvwCompare->setHeaderLabels({tr("Record"), tr("Value"), tr("On the grip"), tr("Put sends"), tr("Differs")});

    lblNotCompared = mGUISupport::MakeLabel(this, QStringLiteral("lblNotCompared"), QString());
    lblNotCompared->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* cmdClose = buttons->button(QDialogButtonBox::Close);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblSummary);
    layout->addWidget(lvwCompare, 1);
    layout->addWidget(lblNotCompared);
    layout->addWidget(buttons);
    Form_Load(comparison);
}

void fCompareGrip::Form_Load(const mGripComparison::tComparison& comparison)
{
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Load"), [&] {
        lblSummary->setText(mGripComparison::Summary(comparison));
        for (const mGripComparison::tValue& value : comparison.values)
            addRow(value);
        // In the order of the records until a header is clicked; a second click reverses.
        lvwCompare->header()->setSortIndicator(-1, Qt::AscendingOrder);
        lvwCompare->setSortingEnabled(true);
        for (int column = 0; column < ColumnCount; ++column)
            lvwCompare->resizeColumnToContents(column);

        // Wide enough for every column at first (longer captions in some languages), until the
        // user sizes the window otherwise.
        const int columns = lvwCompare->header()->length() + lvwCompare->verticalScrollBar()->sizeHint().width() +
                            2 * lvwCompare->frameWidth() + layout()->contentsMargins().left() + layout()->contentsMargins().right();
        resize(qMax(TwipsToPixels(8600, this), columns), TwipsToPixels(7200, this));
        if (parentWidget())
            move(parentWidget()->geometry().center() - rect().center());
        PlacedWidget placement(*this);
        m_preferences.WindowState(placement, false, true);
        if (lvwCompare->topLevelItemCount() > 0)
            lvwCompare->setCurrentItem(lvwCompare->topLevelItem(0));

        QStringList left;
        for (const GripRecord record : comparison.unsupported)
            left.append(recordCaption(record));
        lblNotCompared->setText(left.isEmpty() ? QString() : tr("Not compared (the grip's firmware does not have them): %1.").arg(left.join(QStringLiteral(", "))));
        lblNotCompared->setVisible(!left.isEmpty());
    });
}

void fCompareGrip::addRow(const mGripComparison::tValue& value)
{
    auto* item = new QTreeWidgetItem(lvwCompare);
    item->setText(ColRecord, recordCaption(value.record));
    item->setText(ColValue, valueCaption(value.name));
    item->setData(ColGrip, Qt::DisplayRole, shown(value.grip));
    item->setData(ColPut, Qt::DisplayRole, shown(value.put));
    if (!value.Differs())
        return;
    // Marked in words and in bold, not by colour alone.
    item->setText(ColDiffers, tr("differs"));
    for (int column = 0; column < ColumnCount; ++column) {
        QFont font = item->font(column);
        font.setBold(true);
        item->setFont(column, font);
    }
}

void fCompareGrip::done(int result)
{
    Form_Unload();
    QDialog::done(result);
}

void fCompareGrip::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Unload"), [&] {
        PlacedWidget placement(*this);
        m_preferences.SaveWindowState(placement, false, true);
    });
}
