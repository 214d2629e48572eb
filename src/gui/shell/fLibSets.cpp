#include "gui/shell/fLibSets.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "gui/common/KeyPreview.h"
#include "gui/common/PlacedWidget.h"
#include "gui/common/mGUISupport.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/library/mListViewSupport.h"
#include "gui/shell/fTolvaneMan.h"
#include "library/cSetsTemplate.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

using mGUISupport::MakeControl;
using mGUISupport::TwipsToPixels;

namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kTagRole = Qt::UserRole + 1;

// The window's size, in twips.
constexpr int kWidthTwips = 8600;
constexpr int kHeightTwips = 5000;

// The columns: header, width in twips (0: hidden), alignment.
const fLibSets::ColumnSpec kColumns[fLibSets::ColumnCount] = {
    {"", 0, false},
    {QT_TRANSLATE_NOOP("fLibSets", "#"), 360, true},
    {QT_TRANSLATE_NOOP("fLibSets", "Name"), 1875, false},
    {QT_TRANSLATE_NOOP("fLibSets", "Date"), 1100, false},
    {QT_TRANSLATE_NOOP("fLibSets", "ROF bps"), 840, true},
    {QT_TRANSLATE_NOOP("fLibSets", "ST ms"), 645, true},
    {QT_TRANSLATE_NOOP("fLibSets", "DT ms"), 645, true},
    {QT_TRANSLATE_NOOP("fLibSets", "CTO ms"), 750, true},
    {QT_TRANSLATE_NOOP("fLibSets", "LT ms"), 645, true},
    {QT_TRANSLATE_NOOP("fLibSets", "CTC ms"), 750, true},
};

// What columns 2 to 9 show of a record.
using CellText = std::function<QString(cSetsTemplate&)>;

QString number(qint32 value)
{
    return QString::number(value);
}

const CellText kCells[fLibSets::ColumnCount] = {
    nullptr,
    nullptr,
    [](cSetsTemplate& r) { return r.sName(); },
    // The months in English, whatever the system's language: "01-Aug-2001".
    [](cSetsTemplate& r) { return QLocale::c().toString(r.dtDate().date(), QStringLiteral("dd-MMM-yyyy")); },
    [](cSetsTemplate& r) { return r.sROF(); },
    [](cSetsTemplate& r) { return number(r.lShotTime()); },
    [](cSetsTemplate& r) { return number(r.lDwellTime()); },
    [](cSetsTemplate& r) { return number(r.lCycleTimeOpen()); },
    [](cSetsTemplate& r) { return number(r.lLoadTime()); },
    [](cSetsTemplate& r) { return number(r.lCycleTimeClose()); },
};

} // namespace

std::shared_ptr<cSetsTemplate> fLibSets::MakeFactoryDefault()
{
    auto record = std::make_shared<cSetsTemplate>();
    record->setsName(QStringLiteral("Factory Default"));
    record->setdtDate(QDateTime(QDate(2001, 8, 1), QTime(0, 0)));
    return record;
}

bool fLibSets::IsFactoryDefault(const QTreeWidgetItem* row)
{
    return row && row->data(ColKey, kTagRole).toString() == kFactoryDefaultTag;
}

QString fLibSets::RowKey(const QTreeWidgetItem* row)
{
    return row ? row->data(ColKey, kKeyRole).toString() : QString();
}

// ---- building the window -----------------------------------------------------------------------

fLibSets::fLibSets(cApplication& application, fTolvaneMan* owner)
    : QDialog(owner), m_application(application), m_owner(owner)
{
    setObjectName(kForm);
    setWindowTitle(tr("Tolvane Library - Settings"));
    setSizeGripEnabled(true);
    m_nameOrder.setCaseSensitivity(Qt::CaseInsensitive);
    createControls();
    createPopup();
    connectHandlers();
    Form_Load();
}

void fLibSets::createControls()
{
    lvwLib = MakeControl<QTreeWidget>(this, QStringLiteral("lvwLib"));
    lvwLib->setAccessibleName(tr("Settings library"));
    lvwLib->setAccessibleDescription(tr("Enter uses the selected setting, Delete deletes it, Ctrl+P shows its properties."));
    lvwLib->setRootIsDecorated(false);
    lvwLib->setIndentation(0);
    lvwLib->setItemsExpandable(false);
    lvwLib->setUniformRowHeights(true);
    lvwLib->setAllColumnsShowFocus(true);
    lvwLib->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwLib->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvwLib->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwLib->setSortingEnabled(false); // the list sorts only when a header is clicked

    cmdUse = MakeControl<QPushButton>(this, QStringLiteral("cmdUse"));
    cmdUse->setText(tr("&Use"));
    cmdUse->setToolTip(tr("Load the selected setting into the main window (Enter)"));
    cmdDelete = MakeControl<QPushButton>(this, QStringLiteral("cmdDelete"));
    cmdDelete->setText(tr("&Delete"));
    cmdDelete->setToolTip(tr("Delete the selected setting when the library is next saved (Delete)"));
    cmdProperties = MakeControl<QPushButton>(this, QStringLiteral("cmdProperties"));
    cmdProperties->setText(tr("&Properties"));
    cmdProperties->setToolTip(tr("Show the name, date and user variables of the selected setting (Ctrl+P)"));
    cmdClose = MakeControl<QPushButton>(this, QStringLiteral("cmdClose"));
    cmdClose->setText(tr("&Close"));
    // Enter belongs to Use wherever the focus is; no button is the dialog's default.
    for (QPushButton* button : {cmdUse, cmdDelete, cmdProperties, cmdClose}) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdUse);
    buttons->addWidget(cmdDelete);
    buttons->addWidget(cmdProperties);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lvwLib, 1);
    layout->addLayout(buttons);
    setTabOrder(lvwLib, cmdUse);
    setTabOrder(cmdUse, cmdDelete);
    setTabOrder(cmdDelete, cmdProperties);
    setTabOrder(cmdProperties, cmdClose);
}

void fLibSets::createPopup()
{
    mnuPopup = MakeControl<QMenu>(this, QStringLiteral("mnuPopup"));
    mnuPopup->setAccessibleName(tr("Setting"));
    struct Item {
        QAction* fLibSets::*action;
        const char* name;
        const char* caption;
        QKeySequence shortcut;
    };
    const Item items[] = {
        {&fLibSets::mnuUse, "mnuUse", QT_TR_NOOP("&Use"), QKeySequence(Qt::Key_Return)},
        {&fLibSets::mnuDelete, "mnuDelete", QT_TR_NOOP("&Delete"), QKeySequence(Qt::Key_Delete)},
        {&fLibSets::mnuProperties, "mnuProperties", QT_TR_NOOP("&Properties"), QKeySequence(Qt::CTRL | Qt::Key_P)},
    };
    for (const Item& item : items) {
        QAction* action = mnuPopup->addAction(tr(item.caption));
        action->setObjectName(QLatin1String(item.name));
        // The keys are the window's (see Form_KeyDown); the menu only names them.
        action->setShortcut(item.shortcut);
        action->setShortcutContext(Qt::WidgetShortcut);
        this->*item.action = action;
    }
}

void fLibSets::connectHandlers()
{
    connect(cmdUse, &QPushButton::clicked, this, &fLibSets::cmdUse_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &fLibSets::cmdDelete_Click);
    connect(cmdProperties, &QPushButton::clicked, this, &fLibSets::cmdProperties_Click);
    connect(cmdClose, &QPushButton::clicked, this, &fLibSets::cmdClose_Click);
    connect(mnuUse, &QAction::triggered, this, &fLibSets::mnuUse_Click);
    connect(mnuDelete, &QAction::triggered, this, &fLibSets::mnuDelete_Click);
    connect(mnuProperties, &QAction::triggered, this, &fLibSets::mnuProperties_Click);
    connect(lvwLib->header(), &QHeaderView::sectionClicked, this, &fLibSets::lvwLib_ColumnClick);
    lvwLib->viewport()->installEventFilter(this);
    lvwLib->installEventFilter(this);
    new KeyPreview(this, [this](QKeyEvent& key) { return Form_KeyDown(key.key(), key.modifiers()); });
}

// ---- loading and unloading ---------------------------------------------------------------------

void fLibSets::Form_Load()
{
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Load"), [&] {
        // Over the owner, unless the preferences know better.
        resize(TwipsToPixels(kWidthTwips, this), TwipsToPixels(kHeightTwips, this));
        if (m_owner)
            move(m_owner->geometry().center() - rect().center());
        PlacedWidget placement(*this);
        m_application.RegistrySettings().WindowState(placement, true, true);

        QStringList headers;
        for (const ColumnSpec& column : kColumns)
            headers << tr(column.header);
        lvwLib->setColumnCount(ColumnCount);
        lvwLib->setHeaderLabels(headers);
        QTreeWidgetItem* header = lvwLib->headerItem();
        // The unnamed first column is read out by what it is.
        header->setData(ColKey, Qt::AccessibleTextRole, tr("Key"));
        // Narrow documented columns (360 twips) stay narrow; a larger minimum would also leave a
        // gap where the hidden first column is.
        lvwLib->header()->setMinimumSectionSize(1);
        // A width of 0 is a hidden column.
        lvwLib->setColumnHidden(ColKey, true);
        for (int c = 0; c < ColumnCount; ++c) {
            header->setTextAlignment(c, (kColumns[c].rightAligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
            if (kColumns[c].twips > 0)
                lvwLib->setColumnWidth(c, TwipsToPixels(kColumns[c].twips, this));
        }
        lvwLib->header()->setSectionsClickable(true);
        lvwLib->header()->setSortIndicatorShown(false);
        lvwLib->header()->setStretchLastSection(false);

        QList<QTreeWidgetItem*> rows;
        const auto factory = MakeFactoryDefault();
        QTreeWidgetItem* first = newRow(factory->ID(), QStringLiteral("0"));
        first->setData(ColKey, kTagRole, kFactoryDefaultTag);
        InitListitem(first, *factory);
        rows << first;
        int running = 0;
        for (const auto& record : m_application.colSetsTemplate()) {
            if (record->IsDeleted())
                continue;
            QTreeWidgetItem* row = newRow(record->ID(), QString::number(++running));
            InitListitem(row, *record);
            rows << row;
        }
        lvwLib->addTopLevelItems(rows);
        fitFixedColumns();
        mListViewSupport::SelectRow(lvwLib, first);
        mnuPopup->hide();
    });
}

// The columns keep their documented widths, except that the columns of fixed-format values
// (number, date, rate, times) grow where this screen's font would cut their texts, and by what a
// translated header is longer than the English one; a long name is cut, and read in full in its
// tool tip.
void fLibSets::fitFixedColumns()
{
    const int margin = 2 * lvwLib->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, lvwLib) + 6;
    const QFontMetrics metrics(lvwLib->font());
    const QFontMetrics headerMetrics(lvwLib->header()->font());
    QList<int> needed(ColumnCount, 0);
    int headersLonger = 0;
    for (int c = ColNumber; c < ColumnCount; ++c) {
        const int longer = std::max(0, headerMetrics.horizontalAdvance(lvwLib->headerItem()->text(c)) -
                                           headerMetrics.horizontalAdvance(QString::fromUtf8(kColumns[c].header)));
        needed[c] = TwipsToPixels(kColumns[c].twips, this) + longer;
        headersLonger += longer;
    }
    for (int i = 0; i < lvwLib->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = lvwLib->topLevelItem(i);
        for (int c = ColNumber; c < ColumnCount; ++c) {
            if (c != ColName)
                needed[c] = qMax(needed[c], metrics.horizontalAdvance(row->text(c)) + margin);
        }
    }
    for (int c = ColNumber; c < ColumnCount; ++c) {
        if (c == ColName)
            continue;
        const int width = std::max(TwipsToPixels(kColumns[c].twips, this), needed[c]);
        lvwLib->setColumnWidth(c, width);
    }
    // The window grows by what longer headers add, so that every column still fits in it.
    if (headersLonger > 0)
        resize(std::max(width(), TwipsToPixels(kWidthTwips, this) + headersLonger), height());
}

namespace {

// A row of the list. Mended on purpose: the Name column sorts alphabetically in the user's
// language, whatever the case (it sorted capitals first); every other column keeps its text order.
class LibraryRow : public QTreeWidgetItem {
public:
    explicit LibraryRow(const QCollator& names) : m_names(names) {}

    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : fLibSets::ColKey;
        if (column != fLibSets::ColName)
            return QTreeWidgetItem::operator<(other);
        const int order = m_names.compare(text(column), other.text(column));
        return order != 0 ? order < 0 : QTreeWidgetItem::operator<(other);
    }

private:
    const QCollator& m_names;
};

} // namespace

QTreeWidgetItem* fLibSets::newRow(const QString& key, const QString& number)
{
    auto* row = new LibraryRow(m_nameOrder);
    row->setData(ColKey, kKeyRole, key);
    row->setText(ColNumber, number);
    for (int c = 0; c < ColumnCount; ++c) {
        if (kColumns[c].rightAligned)
            row->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
    }
    return row;
}

void fLibSets::done(int result)
{
    Form_Unload();
    QDialog::done(result);
}

void fLibSets::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Unload"), [&] {
        PlacedWidget placement(*this);
        m_application.RegistrySettings().SaveWindowState(placement, true, true);
    });
}

// ---- rows ------------------------------------------------------------------------------------

void fLibSets::ActivateItem(const QString& key)
{
    ShowErrors(kForm, kRevision, QStringLiteral("ActivateItem"), [&] {
        if (key.isEmpty())
            return;
        for (int i = 0; i < lvwLib->topLevelItemCount(); ++i) {
            QTreeWidgetItem* row = lvwLib->topLevelItem(i);
            if (RowKey(row) == key) {
                mListViewSupport::SelectRow(lvwLib, row);
                return;
            }
        }
    });
}

void fLibSets::InitListitem(QTreeWidgetItem* row, cSetsTemplate& record)
{
    PassErrors(kForm, kRevision, QStringLiteral("InitListitem"), [&] {
        if (!row)
            return;
        for (int c = ColName; c < ColumnCount; ++c)
            row->setText(c, kCells[c](record));
        // A long name is read in full where the column cuts it.
        row->setToolTip(ColName, record.sName());
    });
}

QTreeWidgetItem* fLibSets::SelectedRow() const
{
    const QList<QTreeWidgetItem*> selected = lvwLib->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

std::shared_ptr<cSetsTemplate> fLibSets::recordOf(const QTreeWidgetItem* row) const
{
    const auto record = m_application.colSetsTemplate().Find(RowKey(row));
    if (!record)
        RaiseRuntimeError(mErrCodes::RT_INVALID_CALL); // a key that is not in the library
    return record;
}

void fLibSets::OpenSetting(QTreeWidgetItem* row)
{
    PassErrors(kForm, kRevision, QStringLiteral("OpenSetting"), [&] {
        if (!row)
            return;
        // Using the factory default makes a new template with its values, each time.
        const auto record = IsFactoryDefault(row) ? m_application.colSetsTemplate().AddOrThrow() : recordOf(row);
        if (m_owner)
            m_owner->ChangeTemplate(record, true);
        accept();
    });
}

void fLibSets::ShowSettings(QTreeWidgetItem* row)
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowSettings"), [&] {
        if (!row)
            return;
        // The factory default's properties are shown on a copy that nothing keeps.
        const auto record = IsFactoryDefault(row) ? MakeFactoryDefault() : recordOf(row);
        fSetsTemplate editor(this);
        editor.Open(record, row->text(ColNumber));
        editor.exec();
        InitListitem(row, *record);
        lvwLib->viewport()->update();
    });
}

void fLibSets::DelSetting(QTreeWidgetItem* row)
{
    PassErrors(kForm, kRevision, QStringLiteral("DelSetting"), [&] {
        if (!row)
            return;
        if (IsFactoryDefault(row))
            RaiseError(mErrCodes::ERR_DELETE_FACTORY_DEFAULT, kForm, mErrCodes::MessageText(mErrCodes::MSG_DELETE_FACTORY_DEFAULT));
        // No question: the row leaves the file at the next library save, and not saving undoes it.
        recordOf(row)->setIsDeleted(true);
        if (m_downRow == row)
            m_downRow = nullptr;
        mListViewSupport::RemoveRowSelectNeighbour(lvwLib, row);
    });
}

// ---- commands ----------------------------------------------------------------------------------

void fLibSets::cmdUse_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdUse_Click"), [&] { OpenSetting(SelectedRow()); });
}

void fLibSets::cmdDelete_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdDelete_Click"), [&] { DelSetting(SelectedRow()); });
}

void fLibSets::cmdProperties_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdProperties_Click"), [&] { ShowSettings(SelectedRow()); });
}

void fLibSets::cmdClose_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdClose_Click"), [&] { reject(); });
}

void fLibSets::mnuUse_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuUse_Click"), [&] { OpenSetting(SelectedRow()); });
}

void fLibSets::mnuDelete_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuDelete_Click"), [&] { DelSetting(SelectedRow()); });
}

void fLibSets::mnuProperties_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuProperties_Click"), [&] { ShowSettings(SelectedRow()); });
}

bool fLibSets::Form_KeyDown(int key, Qt::KeyboardModifiers modifiers)
{
    bool handled = false;
    ShowErrors(kForm, kRevision, QStringLiteral("Form_KeyDown"), [&] {
        modifiers &= ~Qt::KeypadModifier;
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && modifiers == Qt::NoModifier) {
            handled = true;
            OpenSetting(SelectedRow());
        } else if (key == Qt::Key_Delete && modifiers == Qt::NoModifier) {
            handled = true;
            DelSetting(SelectedRow());
        } else if (key == Qt::Key_P && modifiers == Qt::ControlModifier) {
            handled = true;
            ShowSettings(SelectedRow());
        }
    });
    return handled;
}

// Sorting compares the texts on screen (names alphabetically, see LibraryRow), so numbers and
// dates sort as text: "10" before "5",
// dates by their day first. Long accepted as the list's behaviour; kept on purpose.
void fLibSets::lvwLib_ColumnClick(int column)
{
    ShowErrors(kForm, kRevision, QStringLiteral("lvwLib_ColumnClick"), [&] {
        if (m_sorted && m_sortColumn == column)
            m_sortOrder = m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
        else
            m_sortOrder = Qt::AscendingOrder;
        m_sorted = true;
        m_sortColumn = column;
        lvwLib->header()->setSortIndicatorShown(true);
        lvwLib->sortItems(column, m_sortOrder);
        if (QTreeWidgetItem* row = SelectedRow())
            lvwLib->scrollToItem(row);
    });
}

// ---- the mouse ---------------------------------------------------------------------------------

bool fLibSets::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvwLib->viewport()) {
        switch (event->type()) {
        case QEvent::MouseButtonPress: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            lvwLib_MouseDown(mouse->position().toPoint());
            break;
        }
        case QEvent::MouseButtonDblClick: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            lvwLib_MouseDown(mouse->position().toPoint());
            if (mouse->button() == Qt::LeftButton) {
                lvwLib_DblClick();
                return true;
            }
            break;
        }
        case QEvent::MouseButtonRelease: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            lvwLib_MouseUp(mouse->button(), mouse->globalPosition().toPoint());
            break;
        }
        default: break;
        }
    }
    if ((watched == lvwLib->viewport() || watched == lvwLib) && event->type() == QEvent::ContextMenu) {
        // The mouse's menu comes when the right button is released; the menu key opens it at the
        // selected row.
        const auto* menu = static_cast<QContextMenuEvent*>(event);
        if (menu->reason() == QContextMenuEvent::Keyboard) {
            QTreeWidgetItem* row = SelectedRow();
            const QRect cell = row ? lvwLib->visualItemRect(row) : QRect();
            showPopup(lvwLib->viewport()->mapToGlobal(row ? cell.bottomLeft() : QPoint(0, 0)));
        }
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void fLibSets::lvwLib_MouseDown(const QPoint& position)
{
    ShowErrors(kForm, kRevision, QStringLiteral("lvwLib_MouseDown"), [&] { m_downRow = lvwLib->itemAt(position); });
}

void fLibSets::lvwLib_DblClick()
{
    ShowErrors(kForm, kRevision, QStringLiteral("lvwLib_DblClick"), [&] { OpenSetting(m_downRow); });
}

void fLibSets::lvwLib_MouseUp(Qt::MouseButton button, const QPoint& globalPosition)
{
    ShowErrors(kForm, kRevision, QStringLiteral("lvwLib_MouseUp"), [&] {
        if (button == Qt::RightButton)
            showPopup(globalPosition);
    });
}

void fLibSets::showPopup(const QPoint& globalPosition)
{
    mnuPopup->popup(globalPosition);
}
