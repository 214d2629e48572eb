#include "gui/grip/fGripHistory.h"

#include "base/mCountedText.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "grip/mGripCommands.h"
#include "grip/mRecordFields.h"
#include "gui/common/PlacedWidget.h"
#include "gui/common/mGUISupport.h"
#include "gui/common/mLabels.h"
#include "base/cRegistrySettings.h"
#include "base/mServices.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

using mGripCommands::GripRecord;
using mGUISupport::MakeControl;
using mGUISupport::MakeLabel;
using mGUISupport::TwipsToPixels;

namespace {

constexpr int kEntryRole = Qt::UserRole;

const char* const kHeaders[fGripHistory::ColumnCount] = {
    QT_TRANSLATE_NOOP("fGripHistory", "Time"),
    QT_TRANSLATE_NOOP("fGripHistory", "Serial number"),
    QT_TRANSLATE_NOOP("fGripHistory", "Firmware"),
    QT_TRANSLATE_NOOP("fGripHistory", "Settings"),
};

// The records an entry may hold, in the order the values pane shows them, with their captions.
struct RecordCaption {
    GripRecord record;
    const char* caption;
};
const RecordCaption kRecords[] = {
    {GripRecord::Timing, QT_TRANSLATE_NOOP("fGripHistory", "Timing")},
    {GripRecord::GameTimer, QT_TRANSLATE_NOOP("fGripHistory", "Game timer")},
    {GripRecord::Options, QT_TRANSLATE_NOOP("fGripHistory", "Options")},
    {GripRecord::Ramping, QT_TRANSLATE_NOOP("fGripHistory", "Ramping")},
};


QJsonObject recordOf(const cGripHistory::tEntry& entry, GripRecord record)
{
    return entry.values.value(mGripCommands::RecordName(record)).toObject();
}

QString valueText(const QJsonValue& value)
{
    if (value.isUndefined())
        return QStringLiteral("?");
    if (value.isBool())
        return value.toBool() ? fGripHistory::tr("Yes") : fGripHistory::tr("No");
    return value.isDouble() ? QString::number(value.toDouble()) : value.toVariant().toString();
}

// A line that sums an entry up: its five times, the game time and the other records in it.
QString summary(const cGripHistory::tEntry& entry)
{
    QStringList parts;
    const QJsonObject timing = recordOf(entry, GripRecord::Timing);
    if (!timing.isEmpty()) {
        QStringList times;
        for (const char* name : {"ShotTime", "Dwelltime", "CycleTimeOpen", "LoadTime", "CycleTimeClose"})
            times << valueText(timing.value(QLatin1String(name)));
        parts << fGripHistory::tr("ST/DT/CTO/LT/CTC %1 ms").arg(times.join(QLatin1Char('/')));
    }
    const QJsonObject timer = recordOf(entry, GripRecord::GameTimer);
    if (!timer.isEmpty())
        parts << fGripHistory::tr("game %1 min").arg(valueText(timer.value(QLatin1String("CountDownTimer"))));
    if (entry.values.contains(mGripCommands::RecordName(GripRecord::Options)))
        parts << fGripHistory::tr("options");
    if (entry.values.contains(mGripCommands::RecordName(GripRecord::Ramping)))
        parts << fGripHistory::tr("ramping");
    return parts.join(QStringLiteral(", "));
}

} // namespace

// ---- building the window -----------------------------------------------------------------------

fGripHistory::fGripHistory(cGripSession& session, cRegistrySettings& preferences, QWidget* parent)
    : QDialog(parent), m_session(session), m_preferences(preferences)
{
    setObjectName(kForm);
    setWindowTitle(tr("Grip history"));
    setSizeGripEnabled(true);
    createControls();
    connectHandlers();
    Form_Load();
}

void fGripHistory::createControls()
{
    lblShow = MakeLabel(this, QStringLiteral("lblShow"), tr("&Show:"));
    cboShow = MakeControl<QComboBox>(this, QStringLiteral("cboShow"));
    lblShow->setBuddy(cboShow);
    cboShow->setAccessibleName(tr("Show"));
    cboShow->setToolTip(tr("The entries of the grip last read, or of every grip"));

    lvwHistory = MakeControl<QTreeWidget>(this, QStringLiteral("lvwHistory"));
    lvwHistory->setAccessibleName(tr("Grip history entries"));
    lvwHistory->setAccessibleDescription(tr("Newest first. Enter makes a new template of the selected entry."));
    lvwHistory->setRootIsDecorated(false);
    lvwHistory->setUniformRowHeights(true);
    lvwHistory->setAllColumnsShowFocus(true);
    lvwHistory->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwHistory->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvwHistory->setEditTriggers(QAbstractItemView::NoEditTriggers);
    QStringList headers;
    for (const char* header : kHeaders)
        headers << tr(header);
    lvwHistory->setHeaderLabels(headers);

    lvwValues = MakeControl<QTreeWidget>(this, QStringLiteral("lvwValues"));
    lvwValues->setAccessibleName(tr("Values of the selected entry"));
    lvwValues->setHeaderLabels({tr("Setting"), tr("Value")});
    lvwValues->setUniformRowHeights(true);
    lvwValues->setEditTriggers(QAbstractItemView::NoEditTriggers);

    lblStatus = mLabels::ValueLabel(this, QStringLiteral("lblStatus"), tr("Status"));
    lblStatus->setWordWrap(true);
    lblStatus->setTextInteractionFlags(Qt::TextSelectableByMouse);

    cmdUse = MakeControl<QPushButton>(this, QStringLiteral("cmdUse"));
    cmdUse->setText(tr("&Use"));
    cmdUse->setToolTip(tr("Make a new template in the active setting from the selected entry's timing and game timer (Enter)"));
    cmdClose = MakeControl<QPushButton>(this, QStringLiteral("cmdClose"));
    cmdClose->setText(tr("&Close"));
    cmdClose->setToolTip(tr("Close the grip history"));
    // Enter in the list uses the entry; no button is the dialog's default.
    for (QPushButton* button : {cmdUse, cmdClose}) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }

    auto* choice = new QHBoxLayout;
    choice->addWidget(lblShow);
    choice->addWidget(cboShow);
    choice->addStretch(1);
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(lvwHistory);
    splitter->addWidget(lvwValues);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({2000, 1000});
    splitter->setChildrenCollapsible(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdUse);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(choice);
    layout->addWidget(splitter, 1);
    layout->addWidget(lblStatus);
    layout->addLayout(buttons);
    setTabOrder(cboShow, lvwHistory);
    setTabOrder(lvwHistory, lvwValues);
    setTabOrder(lvwValues, cmdUse);
    setTabOrder(cmdUse, cmdClose);
}

void fGripHistory::connectHandlers()
{
    connect(cboShow, &QComboBox::activated, this, &fGripHistory::cboShow_Click);
    connect(lvwHistory, &QTreeWidget::itemSelectionChanged, this, &fGripHistory::lvwHistory_SelectionChanged);
    connect(lvwHistory, &QTreeWidget::itemActivated, this, &fGripHistory::cmdUse_Click);
    connect(cmdUse, &QPushButton::clicked, this, &fGripHistory::cmdUse_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
}

// ---- loading and unloading ---------------------------------------------------------------------

void fGripHistory::Form_Load()
{
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Load"), [&] {
        // Over the owner, unless the preferences know better.
        resize(TwipsToPixels(13500, this), TwipsToPixels(5400, this));
        if (parentWidget()) {
            // Wider than the main window: centred over it, but never off the screen.
            const QRect room = parentWidget()->screen()->availableGeometry();
            const QPoint centred = parentWidget()->geometry().center() - rect().center();
            move(qBound(room.left(), centred.x(), qMax(room.left(), room.right() - width())),
                 qBound(room.top(), centred.y(), qMax(room.top(), room.bottom() - height())));
        }
        PlacedWidget placement(*this);
        m_preferences.WindowState(placement, true, true);

        const QString serial = m_session.GunInfo().Serial();
        cboShow->addItem(serial.isEmpty() ? tr("This grip (none read yet)") : tr("This grip (%1)").arg(serial));
        cboShow->addItem(tr("All grips"));
        cboShow->setCurrentIndex(serial.isEmpty() ? ShowAllGrips : ShowThisGrip);
        ListEntries();
        lvwHistory->setFocus();
    });
}

void fGripHistory::done(int result)
{
    Form_Unload();
    QDialog::done(result);
}

void fGripHistory::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Unload"), [&] {
        PlacedWidget placement(*this);
        m_preferences.SaveWindowState(placement, true, true);
    });
}

// ---- the list ----------------------------------------------------------------------------------

void fGripHistory::ListEntries()
{
    SetStatus(tr("Reading the grip history..."));
    lvwHistory->setSortingEnabled(false);
    lvwHistory->clear();
    cGripHistory* history = m_session.History();
    if (!history) {
        m_entries.clear();
        lvwHistory->setEnabled(false);
        ShowValues(nullptr);
        SetStatus(tr("No grip history is kept here."));
        return;
    }
    const bool thisGrip = cboShow->currentIndex() == ShowThisGrip;
    const QString serial = m_session.GunInfo().Serial();
    m_entries = thisGrip && serial.isEmpty() ? QList<cGripHistory::tEntry>() : history->Entries(thisGrip ? serial : QString());
    QList<QTreeWidgetItem*> rows;
    rows.reserve(m_entries.size());
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const cGripHistory::tEntry& entry = m_entries[i];
        auto* row = new QTreeWidgetItem;
        row->setText(ColTime, entry.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
        row->setText(ColSerial, entry.serial);
        row->setText(ColFirmware, entry.firmware);
        row->setText(ColSummary, summary(entry));
        row->setToolTip(ColSummary, row->text(ColSummary)); // read in full where the column cuts it
        row->setData(ColTime, kEntryRole, qlonglong(i));
        rows << row;
    }
    lvwHistory->addTopLevelItems(rows);
    // An empty list takes no focus: nothing in it could show where the focus is.
    lvwHistory->setEnabled(!rows.isEmpty());
    lvwHistory->setSortingEnabled(true);
    lvwHistory->sortByColumn(ColTime, Qt::DescendingOrder);
    for (int c = ColTime; c < ColSummary; ++c)
        lvwHistory->resizeColumnToContents(c);
    if (!rows.isEmpty()) {
        lvwHistory->setCurrentItem(lvwHistory->topLevelItem(0));
        lvwHistory->topLevelItem(0)->setSelected(true);
    }
    lvwHistory_SelectionChanged();

    const QString problem = history->TakeProblem();
    if (!problem.isEmpty()) {
        // A damaged file was set aside: said once, and the rest is listed.
        SetStatus(problem);
        mMain::UI().showMessage(problem, mGripCommands::HistoryTitle(), MsgIcon::Exclamation);
    } else if (m_entries.isEmpty()) {
        SetStatus(tr("No entries yet: every get and put of the timing, game timer, options or ramping adds one."));
    } else {
        const int count = static_cast<int>(m_entries.size());
        SetStatus(thisGrip ? mCountedText::Counted("fGripHistory", QT_TRANSLATE_N_NOOP("fGripHistory", "%n entries of grip %1, newest first."),
                                            "%n entry of grip %1, newest first.", count)
                                 .arg(serial)
                           : mCountedText::Counted("fGripHistory", QT_TRANSLATE_N_NOOP("fGripHistory", "%n entries of all grips, newest first."),
                                            "%n entry of all grips, newest first.", count));
    }
}

const cGripHistory::tEntry* fGripHistory::SelectedEntry() const
{
    const QList<QTreeWidgetItem*> selected = lvwHistory->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    const qsizetype index = selected.first()->data(ColTime, kEntryRole).toLongLong();
    return index >= 0 && index < m_entries.size() ? &m_entries[index] : nullptr;
}

void fGripHistory::ShowValues(const cGripHistory::tEntry* entry)
{
    lvwValues->clear();
    lvwValues->setEnabled(entry != nullptr);
    cmdUse->setEnabled(entry && (!recordOf(*entry, GripRecord::Timing).isEmpty() || !recordOf(*entry, GripRecord::GameTimer).isEmpty()));
    if (!entry)
        return;
    for (const RecordCaption& record : kRecords) {
        const QJsonObject values = recordOf(*entry, record.record);
        if (values.isEmpty())
            continue;
        auto* group = new QTreeWidgetItem(lvwValues, {tr(record.caption)});
        for (const mRecordFields::tField& field : mRecordFields::FieldsOf(record.record)) {
            if (values.contains(field.name))
                new QTreeWidgetItem(group, {field.name, valueText(values.value(field.name))});
        }
    }
    lvwValues->expandAll();
    lvwValues->resizeColumnToContents(0);
}

void fGripHistory::SetStatus(const QString& text)
{
    lblStatus->setText(text);
}

// ---- handlers ----------------------------------------------------------------------------------

void fGripHistory::cboShow_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cboShow_Click"), [&] { ListEntries(); });
}

void fGripHistory::lvwHistory_SelectionChanged()
{
    ShowErrors(kForm, kRevision, QStringLiteral("lvwHistory_SelectionChanged"), [&] { ShowValues(SelectedEntry()); });
}

void fGripHistory::cmdUse_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdUse_Click"), [&] {
        if (!cmdUse->isEnabled() || !SelectedEntry())
            return;
        m_chosen = *SelectedEntry();
        accept();
    });
}
