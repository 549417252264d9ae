#pragma once

#include "library/library_content.h"
#include "ui/presenters/list_change.h"
#include "ui/presenters/row_selection.h"

#include <QList>
#include <QString>

namespace quiv {

// The key of a library row.
const QString& libraryRowKey(const LibraryRow& row);

// What decides which rows of the library the list shows next.
struct RowsRequest {
    QList<LibraryRow> shown; // now
    QList<LibraryRow> library;
    QString searchText;
    RowSelection selection;
};

// The rows to show, how the list gets there, and what stays selected.
struct ShownRows {
    QList<LibraryRow> rows;
    ListChange change;
    RowSelection selection;
};

// Compares all rows: for a long list to be called off the main thread.
ShownRows shownRows(const RowsRequest& request);

} // namespace quiv
