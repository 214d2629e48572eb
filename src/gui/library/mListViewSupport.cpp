#include "gui/library/mListViewSupport.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace mListViewSupport {

void SelectRow(QTreeWidget* list, QTreeWidgetItem* row)
{
    if (!list || !row)
        return;
    // The current cell is in the first column on screen, so that the keys move from there.
    const QHeaderView* header = list->header();
    int column = 0;
    for (int visual = 0; visual < header->count(); ++visual) {
        const int logical = header->logicalIndex(visual);
        if (!list->isColumnHidden(logical)) {
            column = logical;
            break;
        }
    }
    list->setCurrentItem(row, column);
    list->clearSelection();
    row->setSelected(true);
    list->scrollToItem(row);
}

void RemoveRowSelectNeighbour(QTreeWidget* list, QTreeWidgetItem* row)
{
    if (!list || !row)
        return;
    const int position = list->indexOfTopLevelItem(row);
    if (position < 0)
        return;
    delete list->takeTopLevelItem(position);
    const int remaining = list->topLevelItemCount();
    if (remaining > 0)
        SelectRow(list, list->topLevelItem(qMin(position, remaining - 1)));
    list->viewport()->update();
}

} // namespace mListViewSupport
