#include "gui/common/mGUISupport.h"
#include "gui/library/ucUserVariables.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "gui/library/fUserVariable.h"
#include "gui/library/mListViewSupport.h"
#include "library/cSetsTemplate.h"
#include "shell/mMain.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using mGUISupport::MakeControl;

namespace {

constexpr int kKeyRole = Qt::UserRole;

} // namespace

ucUserVariables::ucUserVariables(QWidget* parent) : QWidget(parent)
{
    setObjectName(kForm);
    lvwUserVariables = MakeControl<QTreeWidget>(this, QStringLiteral("lvwUserVariables"));
    lvwUserVariables->setAccessibleName(tr("User variables"));
    lvwUserVariables->setColumnCount(2);
    lvwUserVariables->setHeaderLabels({tr("Name"), tr("Value")});
    lvwUserVariables->setRootIsDecorated(false);
    lvwUserVariables->setItemsExpandable(false);
    lvwUserVariables->setAllColumnsShowFocus(true);
    lvwUserVariables->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwUserVariables->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwUserVariables->setColumnWidth(0, 130);
    lvwUserVariables->viewport()->installEventFilter(this);
    lvwUserVariables->installEventFilter(this);

    cmdAdd = MakeControl<QPushButton>(this, QStringLiteral("cmdAdd"));
    cmdAdd->setText(tr("&Add"));
    cmdEdit = MakeControl<QPushButton>(this, QStringLiteral("cmdEdit"));
    cmdEdit->setText(tr("&Edit"));
    cmdRemove = MakeControl<QPushButton>(this, QStringLiteral("cmdRemove"));
    cmdRemove->setText(tr("&Remove"));
    for (QPushButton* button : {cmdAdd, cmdEdit, cmdRemove})
        button->setAutoDefault(false);

    mnuPopup = MakeControl<QMenu>(this, QStringLiteral("mnuPopup"));
    mnuAdd = mnuPopup->addAction(tr("&Add"));
    mnuAdd->setObjectName(QStringLiteral("mnuAdd"));
    mnuEdit = mnuPopup->addAction(tr("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuRemove = mnuPopup->addAction(tr("&Remove"));
    mnuRemove->setObjectName(QStringLiteral("mnuRemove"));

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdEdit);
    buttons->addWidget(cmdRemove);
    buttons->addStretch(1);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lvwUserVariables, 0, 0);
    layout->addLayout(buttons, 0, 1);
    layout->setColumnStretch(0, 1);

    connect(cmdAdd, &QPushButton::clicked, this, &ucUserVariables::cmdAdd_Click);
    connect(cmdEdit, &QPushButton::clicked, this, &ucUserVariables::cmdEdit_Click);
    connect(cmdRemove, &QPushButton::clicked, this, &ucUserVariables::cmdRemove_Click);
    connect(mnuAdd, &QAction::triggered, this, &ucUserVariables::mnuAdd_Click);
    connect(mnuEdit, &QAction::triggered, this, &ucUserVariables::mnuEdit_Click);
    connect(mnuRemove, &QAction::triggered, this, &ucUserVariables::mnuRemove_Click);
}

void ucUserVariables::setSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    PassErrors(kForm, kRevision, QStringLiteral("Setting"), [&] {
        m_record = record;
        Fill();
    });
}

void ucUserVariables::Fill()
{
    PassErrors(kForm, kRevision, QStringLiteral("Fill"), [&] {
        lvwUserVariables->clear();
        if (!m_record)
            return;
        QList<QTreeWidgetItem*> rows;
        for (const auto& variable : m_record->colUserVar()) {
            // A variable removed in this run is gone from the list, though its row stays in the
            // file until the library is saved.
            if (variable->IsDeleted())
                continue;
            auto* row = new QTreeWidgetItem;
            row->setData(0, kKeyRole, variable->ID());
            showRow(row, *variable);
            rows << row;
        }
        lvwUserVariables->addTopLevelItems(rows);
        if (!rows.isEmpty())
            mListViewSupport::SelectRow(lvwUserVariables, rows.first());
    });
}

void ucUserVariables::showRow(QTreeWidgetItem* row, const cUserVar& variable)
{
    row->setText(0, variable.sName());
    row->setText(1, variable.sValue());
    row->setToolTip(1, variable.sValue());
}

QTreeWidgetItem* ucUserVariables::SelectedRow() const
{
    const QList<QTreeWidgetItem*> selected = lvwUserVariables->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

std::shared_ptr<cUserVar> ucUserVariables::variableOf(const QTreeWidgetItem* row) const
{
    const auto variable = m_record ? m_record->colUserVar().Find(row->data(0, kKeyRole).toString()) : nullptr;
    if (!variable)
        RaiseRuntimeError(mErrCodes::RT_INVALID_CALL); // a key that is not among the variables
    return variable;
}

void ucUserVariables::AddVariable()
{
    PassErrors(kForm, kRevision, QStringLiteral("AddVariable"), [&] {
        if (!m_record)
            return;
        fUserVariable dialog(this);
        dialog.exec();
        if (!dialog.OK())
            return;
        const auto variable = m_record->colUserVar().AddOrThrow();
        variable->setsName(dialog.VarName());
        variable->setsValue(dialog.Value());
        auto* row = new QTreeWidgetItem;
        row->setData(0, kKeyRole, variable->ID());
        showRow(row, *variable);
        lvwUserVariables->addTopLevelItem(row);
        mListViewSupport::SelectRow(lvwUserVariables, row);
    });
}

void ucUserVariables::EditVariable(QTreeWidgetItem* row)
{
    PassErrors(kForm, kRevision, QStringLiteral("EditVariable"), [&] {
        if (!row)
            return;
        const auto variable = variableOf(row);
        fUserVariable dialog(this);
        dialog.setVarName(variable->sName());
        dialog.setValue(variable->sValue());
        dialog.exec();
        if (!dialog.OK())
            return;
        variable->setsName(dialog.VarName());
        variable->setsValue(dialog.Value());
        showRow(row, *variable);
    });
}

void ucUserVariables::RemoveVariable(QTreeWidgetItem* row)
{
    PassErrors(kForm, kRevision, QStringLiteral("RemoveVariable"), [&] {
        if (!row)
            return;
        // No question: the variable leaves the file at the next library save.
        variableOf(row)->setIsDeleted(true);
        mListViewSupport::RemoveRowSelectNeighbour(lvwUserVariables, row);
    });
}

void ucUserVariables::cmdAdd_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdAdd_Click"), [&] { AddVariable(); });
}

void ucUserVariables::cmdEdit_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdEdit_Click"), [&] { EditVariable(SelectedRow()); });
}

void ucUserVariables::cmdRemove_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdRemove_Click"), [&] { RemoveVariable(SelectedRow()); });
}

void ucUserVariables::mnuAdd_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuAdd_Click"), [&] { AddVariable(); });
}

void ucUserVariables::mnuEdit_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuEdit_Click"), [&] { EditVariable(SelectedRow()); });
}

void ucUserVariables::mnuRemove_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("mnuRemove_Click"), [&] { RemoveVariable(SelectedRow()); });
}

bool ucUserVariables::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvwUserVariables->viewport()) {
        if (event->type() == QEvent::MouseButtonDblClick) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            QTreeWidgetItem* row = lvwUserVariables->itemAt(mouse->position().toPoint());
            if (mouse->button() == Qt::LeftButton && row) {
                ShowErrors(kForm, kRevision, QStringLiteral("lvwUserVariables_DblClick"), [&] { EditVariable(row); });
                return true;
            }
        } else if (event->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::RightButton)
                mnuPopup->popup(mouse->globalPosition().toPoint());
        }
    }
    if ((watched == lvwUserVariables->viewport() || watched == lvwUserVariables) && event->type() == QEvent::ContextMenu) {
        const auto* menu = static_cast<QContextMenuEvent*>(event);
        if (menu->reason() == QContextMenuEvent::Keyboard) {
            QTreeWidgetItem* row = SelectedRow();
            const QRect cell = row ? lvwUserVariables->visualItemRect(row) : QRect();
            mnuPopup->popup(lvwUserVariables->viewport()->mapToGlobal(row ? cell.bottomLeft() : QPoint(0, 0)));
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
