#include "ui/presenters/row_selection.h"

#include <algorithm>

namespace quiv {

namespace {

qsizetype indexOf(const QList<LibraryRow>& rows, const QString& key) {
    const auto found =
        std::ranges::find(rows, key, [](const LibraryRow& row) { return row.group.id; });
    return found == rows.end() ? -1 : found - rows.begin();
}

QSet<QString> keysBetween(const QList<LibraryRow>& rows, const QString& from, const QString& to) {
    const qsizetype end = indexOf(rows, to);
    qsizetype begin = indexOf(rows, from);
    if (begin < 0)
        begin = end;
    QSet<QString> keys;
    for (qsizetype row = std::min(begin, end); row <= std::max(begin, end) && row >= 0; ++row)
        keys.insert(rows[row].group.id);
    return keys;
}

} // namespace

RowSelection selectionAfterPick(const RowSelection& before, const QList<LibraryRow>& rows,
                                const QString& key, Qt::KeyboardModifiers modifiers) {
    const bool adds = modifiers.testFlag(Qt::ControlModifier);
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        const QString anchor = before.anchor.isEmpty() ? key : before.anchor;
        const QSet<QString> range = keysBetween(rows, anchor, key);
        return {adds ? before.keys + range : range, anchor};
    }
    RowSelection after{adds ? before.keys : QSet<QString>(), key};
    if (!adds || !after.keys.remove(key))
        after.keys.insert(key);
    return after;
}

RowSelection selectionOfAll(const QList<LibraryRow>& rows) {
    RowSelection all;
    for (const LibraryRow& row : rows)
        all.keys.insert(row.group.id);
    if (!rows.isEmpty())
        all.anchor = rows.constFirst().group.id;
    return all;
}

RowSelection selectionAmong(const RowSelection& before, const QList<LibraryRow>& rows) {
    if (before.keys.isEmpty())
        return {};
    RowSelection after{{}, before.anchor};
    for (const LibraryRow& row : rows) {
        if (before.keys.contains(row.group.id))
            after.keys.insert(row.group.id);
    }
    return after;
}

QList<LibraryRow> rowsActedOn(const RowSelection& selection, const QList<LibraryRow>& rows,
                              const QString& key) {
    const qsizetype index = indexOf(rows, key);
    if (index < 0)
        return {};
    if (selection.keys.size() < 2 || !selection.keys.contains(key))
        return {rows[index]};
    QList<LibraryRow> selected;
    std::ranges::copy_if(rows, std::back_inserter(selected), [&](const LibraryRow& row) {
        return selection.keys.contains(row.group.id);
    });
    return selected;
}

qsizetype rowBeginningWith(const QList<LibraryRow>& rows, const QString& typed, qsizetype current) {
    const qsizetype count = rows.size();
    const qsizetype start = std::max<qsizetype>(0, typed.size() == 1 ? current + 1 : current);
    for (qsizetype step = 0; step < count; ++step) {
        const qsizetype row = (start + step) % count;
        if (rows[row].group.title.startsWith(typed, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

} // namespace quiv
