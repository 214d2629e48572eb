#pragma once
// What the library's two lists share (the browser's settings, the editor's user variables):
// selecting a row, and removing one so that the selection moves to its neighbour.
class QTreeWidget;
class QTreeWidgetItem;

namespace mListViewSupport {

// Makes row the selected and current row, scrolled into view; nothing for no row.
void SelectRow(QTreeWidget* list, QTreeWidgetItem* row);

// Removes row (and deletes it); then selects the row now at its position or, when it was the
// last one, the new last row.
void RemoveRowSelectNeighbour(QTreeWidget* list, QTreeWidgetItem* row);

} // namespace mListViewSupport
