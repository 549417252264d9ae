#pragma once

#include "library/library_content.h"

#include <QList>
#include <QSet>
#include <QString>

// Which library rows are selected: pure functions on values.
namespace quiv {

// The selected rows by their keys; a range begins at the anchor.
struct RowSelection {
    QSet<QString> keys;
    QString anchor;

    bool operator==(const RowSelection&) const = default;
};

// The selection after a row was picked: alone; in addition or no longer with Ctrl; with Shift all
// from the anchor on, in place of the others unless Ctrl is held as well.
RowSelection selectionAfterPick(const RowSelection& before, const QList<LibraryRow>& rows,
                                const QString& key, Qt::KeyboardModifiers modifiers);

RowSelection selectionOfAll(const QList<LibraryRow>& rows);

// Without rows that are not there: what the user does not see is not acted on.
RowSelection selectionAmong(const RowSelection& before, const QList<LibraryRow>& rows);

// What an action on this row is about: all selected rows in their order if it is one of them, else
// the row alone. Empty if there is no such row.
QList<LibraryRow> rowsActedOn(const RowSelection& selection, const QList<LibraryRow>& rows,
                              const QString& key);

// The first row at or after the current one whose title begins with this, or else from the start
// on; after the current one for a single character, so that typing it again goes on. Returns -1
// if no title does.
qsizetype rowBeginningWith(const QList<LibraryRow>& rows, const QString& typed, qsizetype current);

} // namespace quiv
