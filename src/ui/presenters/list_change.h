#pragma once

#include "ui/presenters/list_edits.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace quiv {

// A row that stays while what it says changes, by its places in the old and in the new list.
struct ChangedRow {
    int before = 0;
    int after = 0;

    bool operator==(const ChangedRow&) const = default;
};

// How one list of records becomes another: found by comparing all of them, on any thread, and
// carried out in time that depends on what changed alone.
struct ListChange {
    // When more steps would be needed, what changed is replaced as a whole. Each step pushes the
    // rows behind it, so that a long list affords fewer.
    static constexpr int maximumRuns = 512;
    static constexpr int maximumPushes = 10'000'000;
    static constexpr std::size_t maximumCompared = 1000; // rows that differ

    int first = 0; // the edits count from this row on
    ListEdits edits;
    std::vector<ChangedRow> changed; // in the new list's order; at most maximumCompared
    int changedFrom = -1;            // all rows from here on may differ; -1: none of them

    bool operator==(const ListChange&) const = default;
};

// For each row of `before` the row of `after` that has its key, or -1, both between the common
// ends and counted from `first`. Of rows with the same key the first ones go together.
template <class Record, class KeyOf>
std::vector<int> matchedRows(const QList<Record>& before, const QList<Record>& after, int first,
                             int last, KeyOf keyOf) {
    using Key = std::remove_cvref_t<std::invoke_result_t<KeyOf, const Record&>>;
    const int newCount = static_cast<int>(after.size()) - last - first;
    QHash<Key, int> nextOfKey; // the next new row of a key that is not taken
    nextOfKey.reserve(newCount);
    std::vector<int> nextSame(static_cast<std::size_t>(newCount), -1);
    for (int row = newCount - 1; row >= 0; --row) {
        const Key& key = std::invoke(keyOf, after.at(first + row));
        nextSame[static_cast<std::size_t>(row)] = nextOfKey.value(key, -1);
        nextOfKey.insert(key, row);
    }
    std::vector<int> matched;
    for (int row = first; row < before.size() - last; ++row) {
        const auto next = nextOfKey.find(std::invoke(keyOf, before.at(row)));
        const int newRow = next == nextOfKey.end() ? -1 : *next;
        matched.push_back(newRow);
        if (newRow >= 0)
            *next = nextSame[static_cast<std::size_t>(newRow)];
    }
    return matched;
}

// `keyOf` names what makes a record the same row as before. Keys may occur twice. Linear while a
// few rows change.
template <class Record, class KeyOf>
ListChange listChange(const QList<Record>& before, const QList<Record>& after, KeyOf keyOf) {
    const int oldCount = static_cast<int>(before.size());
    const int newCount = static_cast<int>(after.size());
    const int common = std::min(oldCount, newCount);
    const auto isSameRow = [&](int oldRow, int newRow) {
        return std::invoke(keyOf, before.at(oldRow)) == std::invoke(keyOf, after.at(newRow));
    };
    ListChange change;
    int& first = change.first;
    while (first < common && isSameRow(first, first))
        ++first;
    int last = 0; // common rows at the end
    while (last < common - first && isSameRow(oldCount - last - 1, newCount - last - 1))
        ++last;

    const int oldSpan = oldCount - last - first;
    const int newSpan = newCount - last - first;
    std::vector<int> oldOfNew(static_cast<std::size_t>(newSpan), -1); // those that stay
    if (oldSpan > 0 || newSpan > 0) {
        const std::vector<int> matched = matchedRows(before, after, first, last, keyOf);
        const int affordedRuns = ListChange::maximumPushes / std::max(oldCount, newCount);
        const int mostRuns = std::clamp(affordedRuns, 1, ListChange::maximumRuns);
        const auto edits = listEdits(matched, newSpan, mostRuns);
        change.edits = edits.value_or(ListEdits{{{0, oldSpan}}, {}, {{0, newSpan}}});
        for (int row = 0; edits && row < oldSpan; ++row) {
            if (const int newRow = matched[static_cast<std::size_t>(row)]; newRow >= 0)
                oldOfNew[static_cast<std::size_t>(newRow)] = row + first;
        }
    }
    for (int row = 0; row < newCount; ++row) {
        const bool isBehind = row >= newCount - last;
        const int oldRow = row < first ? row
                           : isBehind  ? row - newCount + oldCount
                                       : oldOfNew[static_cast<std::size_t>(row - first)];
        if (oldRow < 0 || before.at(oldRow) == after.at(row))
            continue;
        if (change.changed.size() == ListChange::maximumCompared) {
            change.changedFrom = row;
            break;
        }
        change.changed.push_back({oldRow, row});
    }
    return change;
}

} // namespace quiv
