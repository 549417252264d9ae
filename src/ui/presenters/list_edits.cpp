#include "ui/presenters/list_edits.h"

#include <algorithm>
#include <iterator>

namespace quiv {

namespace {

std::vector<RowRun> removalRuns(const std::vector<int>& newRowOfOld) {
    std::vector<RowRun> runs;
    for (int row = static_cast<int>(newRowOfOld.size()) - 1; row >= 0; --row) {
        if (newRowOfOld[static_cast<size_t>(row)] >= 0)
            continue;
        if (!runs.empty() && runs.back().first == row + 1)
            runs.back() = {row, runs.back().count + 1};
        else
            runs.push_back({row, 1});
    }
    return runs;
}

std::vector<RowRun> insertionRuns(const std::vector<int>& kept, int newCount) {
    std::vector<bool> isKept(static_cast<size_t>(newCount), false);
    for (const int row : kept)
        isKept[static_cast<size_t>(row)] = true;
    std::vector<RowRun> runs;
    for (int row = 0; row < newCount; ++row) {
        if (isKept[static_cast<size_t>(row)])
            continue;
        if (!runs.empty() && runs.back().first + runs.back().count == row)
            ++runs.back().count;
        else
            runs.push_back({row, 1});
    }
    return runs;
}

// Positions of a longest increasing subsequence: the rows that need not move.
std::vector<bool> stayingPositions(const std::vector<int>& values) {
    std::vector<size_t> ends; // of the best subsequence of each length
    std::vector<size_t> previous(values.size());
    for (size_t i = 0; i < values.size(); ++i) {
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), values[i],
                             [&](size_t end, int value) { return values[end] < value; });
        previous[i] = place == ends.begin() ? i : *std::prev(place);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> stays(values.size(), false);
    if (ends.empty())
        return stays;
    size_t i = ends.back();
    while (!stays[i]) {
        stays[i] = true;
        i = previous[i]; // the first of the sequence names itself
    }
    return stays;
}

// Puts the kept rows into the new order, walking the new list from its start: the rows placed so
// far end at `m_end`, with rows still to be moved between them or behind.
class MovePlan {
public:
    explicit MovePlan(const std::vector<int>& kept) : m_rows(kept) {
        const std::vector<bool> stays = stayingPositions(kept);
        m_sorted = kept;
        std::sort(m_sorted.begin(), m_sorted.end());
        for (size_t i = 0; i < kept.size(); ++i) {
            if (!stays[i])
                m_movers.push_back(kept[i]);
        }
        std::sort(m_movers.begin(), m_movers.end());
    }

    // Returns false if more moves are needed.
    bool run(size_t maximumMoves) {
        auto mover = m_movers.begin();
        for (auto row = m_sorted.begin(); row != m_sorted.end();) {
            if (mover == m_movers.end() || *mover != *row) {
                m_end = std::find(m_rows.begin() + m_end, m_rows.end(), *row) - m_rows.begin() + 1;
                ++row;
                continue;
            }
            if (m_moves.size() == maximumMoves)
                return false;
            const auto count = moveFrom(row, mover);
            row += count;
            mover += count;
        }
        return true;
    }

    std::vector<RowMove> takeMoves() { return std::move(m_moves); }

private:
    using Iterator = std::vector<int>::iterator;

    // Moves the row and those that follow it both here and in the new list.
    std::ptrdiff_t moveFrom(Iterator row, Iterator mover) {
        const auto from = std::find(m_rows.begin(), m_rows.end(), *row);
        std::ptrdiff_t count = 1;
        while (from + count != m_rows.end() && row + count != m_sorted.end() &&
               mover + count != m_movers.end() && *(row + count) == *(mover + count) &&
               *(from + count) == *(row + count))
            ++count;
        const auto first = from - m_rows.begin();
        m_moves.push_back(
            {static_cast<int>(first), static_cast<int>(count), static_cast<int>(m_end)});
        if (first < m_end) {
            std::rotate(from, from + count, m_rows.begin() + m_end);
        } else {
            std::rotate(m_rows.begin() + m_end, from, from + count);
            m_end += count;
        }
        return count;
    }

    std::vector<int> m_rows;   // as they stand now, in the new list's numbers
    std::vector<int> m_sorted; // as they shall stand
    std::vector<int> m_movers; // those of them that move
    std::vector<RowMove> m_moves;
    std::ptrdiff_t m_end = 0;
};

} // namespace

std::optional<ListEdits> listEdits(const std::vector<int>& newRowOfOld, int newCount,
                                   int maximumRuns) {
    std::vector<int> kept;
    std::copy_if(newRowOfOld.begin(), newRowOfOld.end(), std::back_inserter(kept),
                 [](int row) { return row >= 0; });
    ListEdits edits{removalRuns(newRowOfOld), {}, insertionRuns(kept, newCount)};
    const size_t runs = edits.removals.size() + edits.insertions.size();
    if (runs > static_cast<size_t>(maximumRuns))
        return std::nullopt;
    MovePlan plan(kept);
    if (!plan.run(static_cast<size_t>(maximumRuns) - runs))
        return std::nullopt;
    edits.moves = plan.takeMoves();
    return edits;
}

} // namespace quiv
