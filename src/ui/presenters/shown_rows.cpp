#include "ui/presenters/shown_rows.h"

namespace quiv {

const QString& libraryRowKey(const LibraryRow& row) {
    return row.group.id;
}

ShownRows shownRows(const RowsRequest& request) {
    ShownRows next;
    next.rows = filteredRows(request.library, request.searchText);
    next.change = listChange(request.shown, next.rows, libraryRowKey);
    next.selection = selectionAmong(request.selection, next.rows);
    return next;
}

} // namespace quiv
