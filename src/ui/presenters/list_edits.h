#pragma once

#include <QList>

#include <optional>
#include <vector>

// How one list becomes another in few steps; rows are numbers here.
namespace quiv {

// `count` neighbouring rows from `first` on.
struct RowRun {
    int first = 0;
    int count = 0;

    bool operator==(const RowRun&) const = default;
};

// Neighbouring rows that stay together: from `first` they go in front of row `before`, both counted
// as the list stands just before this move.
struct RowMove {
    int first = 0;
    int count = 0;
    int before = 0;

    bool operator==(const RowMove&) const = default;
};

// To be applied in this order.
struct ListEdits {
    std::vector<RowRun> removals;   // from the last to the first
    std::vector<RowMove> moves;     // as few rows as possible
    std::vector<RowRun> insertions; // from the first to the last, in the new list's numbers

    bool operator==(const ListEdits&) const = default;
};

// `newRowOfOld` tells for each old row which row of the new list it is, or -1; no new row is named
// twice. Returns nullopt if more than `maximumRuns` steps are needed.
std::optional<ListEdits> listEdits(const std::vector<int>& newRowOfOld, int newCount,
                                   int maximumRuns);

} // namespace quiv
