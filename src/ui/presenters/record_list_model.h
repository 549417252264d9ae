#pragma once

#include "ui/presenters/list_edits.h"

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace quiv {

// One role of a list: its name in QML and how a record answers it. Asked only for rows in view, and
// for both versions of a row that changed.
template <class Record> struct ListRole {
    QByteArray name;
    std::function<QVariant(const Record&)> value;
};

// A list for views that keeps scroll position, current row and focus while its rows change.
//
// `keyOf` names what makes a record the same row as before. Keys that a TV sends twice are allowed.
// The rows are shared with the list they came from.
template <class Record, auto keyOf> class RecordListModel : public QAbstractListModel {
public:
    using Roles = QList<ListRole<Record>>;

    // When more steps would be needed, what changed is replaced as a whole. Each step pushes the
    // rows behind it, so that a long list affords fewer.
    static constexpr int maximumRuns = 512;
    static constexpr int maximumPushes = 10'000'000;
    static constexpr int maximumCompared = 1000; // rows that differ

    explicit RecordListModel(Roles roles, QObject* parent = nullptr)
        : QAbstractListModel(parent), m_roles(std::move(roles)) {}

    const QList<Record>& rows() const { return m_records; }

    // Makes the rows equal to these by the smallest steps: removals, moves, insertions, then
    // dataChanged for the roles that differ. Linear while a few rows change.
    void assign(QList<Record> records);

    // Tells views that this role answers anew for every row. Costs as many answers as rows in view.
    void refresh(const QByteArray& role);

    // Replaces everything, for content that has nothing to do with the present one.
    void reset(QList<Record> records);

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
    }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    using Key = std::remove_cvref_t<std::invoke_result_t<decltype(keyOf), const Record&>>;

    static const Key& key(const Record& record) { return std::invoke(keyOf, record); }

    std::vector<int> matchedRows(const QList<Record>& records, int first, int oldEnd,
                                 int newEnd) const;
    void edit(const ListEdits& edits, const QList<Record>& records, int offset);
    void removeRun(int first, int count);
    void insertRun(int first, int count, const QList<Record>& records);
    void moveRun(int first, int count, int before);
    void showRecords(const QList<Record>& records);
    QList<int> changedRoles(const Record& before, const Record& after) const;

    Roles m_roles;
    QList<Record> m_records;
    // The rows as views know them. Points into m_records, and while assign() runs also into the
    // list to come: moving pointers is cheap where moving records is not.
    std::vector<const Record*> m_shown;
};

template <class Record, auto keyOf>
QVariant RecordListModel<Record, keyOf>::data(const QModelIndex& index, int role) const {
    const int number = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || number < 0 ||
        number >= m_roles.size())
        return {};
    return m_roles[number].value(*m_shown[static_cast<size_t>(index.row())]);
}

template <class Record, auto keyOf>
QHash<int, QByteArray> RecordListModel<Record, keyOf>::roleNames() const {
    QHash<int, QByteArray> names;
    for (int number = 0; number < m_roles.size(); ++number)
        names.insert(Qt::UserRole + number, m_roles[number].name);
    return names;
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::refresh(const QByteArray& role) {
    if (!m_shown.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {roleNames().key(role)});
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::reset(QList<Record> records) {
    beginResetModel();
    m_records = std::move(records);
    m_shown.clear();
    for (const Record& record : std::as_const(m_records))
        m_shown.push_back(&record);
    endResetModel();
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::assign(QList<Record> records) {
    if (records.isSharedWith(m_records))
        return;
    const int oldCount = static_cast<int>(m_shown.size());
    const int newCount = static_cast<int>(records.size());
    const auto isSame = [&](int oldRow, int newRow) {
        return key(*m_shown[static_cast<size_t>(oldRow)]) == key(records.at(newRow));
    };
    int first = 0;
    while (first < std::min(oldCount, newCount) && isSame(first, first))
        ++first;
    int last = 0; // common rows at the end
    while (last < std::min(oldCount, newCount) - first &&
           isSame(oldCount - last - 1, newCount - last - 1))
        ++last;

    const int oldSpan = oldCount - last - first;
    const int newSpan = newCount - last - first;
    if (oldSpan > 0 || newSpan > 0) {
        const auto matched = matchedRows(records, first, oldCount - last, newCount - last);
        const ListEdits replacement{{{0, oldSpan}}, {}, {{0, newSpan}}};
        const int affordedRuns = maximumPushes / std::max(oldCount, newCount);
        const int mostRuns = std::clamp(affordedRuns, 1, maximumRuns);
        edit(listEdits(matched, newSpan, mostRuns).value_or(replacement), records, first);
    }
    showRecords(records);
    m_records = std::move(records);
}

// For each old row between the common ends its new row, counted from `first`, or -1.
template <class Record, auto keyOf>
std::vector<int> RecordListModel<Record, keyOf>::matchedRows(const QList<Record>& records,
                                                             int first, int oldEnd,
                                                             int newEnd) const {
    QHash<Key, int> nextOfKey; // the next new row of a key that is not taken
    std::vector<int> nextSame(static_cast<size_t>(newEnd - first), -1);
    for (int row = newEnd - 1; row >= first; --row) {
        const Key& rowKey = key(records.at(row));
        nextSame[static_cast<size_t>(row - first)] = nextOfKey.value(rowKey, -1);
        nextOfKey.insert(rowKey, row - first);
    }
    std::vector<int> matched;
    for (int row = first; row < oldEnd; ++row) {
        const auto next = nextOfKey.find(key(*m_shown[static_cast<size_t>(row)]));
        const int newRow = next == nextOfKey.end() ? -1 : *next;
        matched.push_back(newRow);
        if (newRow >= 0)
            *next = nextSame[static_cast<size_t>(newRow)];
    }
    return matched;
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::edit(const ListEdits& edits, const QList<Record>& records,
                                          int offset) {
    for (const RowRun& run : edits.removals)
        removeRun(offset + run.first, run.count);
    for (const RowMove& move : edits.moves)
        moveRun(offset + move.first, move.count, offset + move.before);
    for (const RowRun& run : edits.insertions)
        insertRun(offset + run.first, run.count, records);
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::removeRun(int first, int count) {
    if (count == 0)
        return;
    beginRemoveRows({}, first, first + count - 1);
    m_shown.erase(m_shown.begin() + first, m_shown.begin() + first + count);
    endRemoveRows();
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::insertRun(int first, int count, const QList<Record>& records) {
    if (count == 0)
        return;
    beginInsertRows({}, first, first + count - 1);
    const auto place = m_shown.insert(m_shown.begin() + first, static_cast<size_t>(count), nullptr);
    for (int row = 0; row < count; ++row)
        place[row] = &records.at(first + row);
    endInsertRows();
}

template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::moveRun(int first, int count, int before) {
    beginMoveRows({}, first, first + count - 1, {}, before);
    const auto begin = m_shown.begin();
    if (before > first)
        std::rotate(begin + first, begin + first + count, begin + before);
    else
        std::rotate(begin + before, begin + first, begin + first + count);
    endMoveRows();
}

// Puts the new records behind the rows, which are in the new order by now, and tells which roles of
// which rows differ; neighbours that differ alike are told together. When many differ, it is not
// worth to find out in what: all that follow are told.
template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::showRecords(const QList<Record>& records) {
    QList<int> runRoles;
    int runFirst = 0;
    const auto tell = [&](int end) {
        if (!runRoles.isEmpty())
            Q_EMIT dataChanged(index(runFirst), index(end - 1), runRoles);
    };
    const int count = static_cast<int>(records.size());
    int different = 0;
    for (int row = 0; row < count; ++row) {
        const Record* after = &records.at(row);
        const Record* before = std::exchange(m_shown[static_cast<size_t>(row)], after);
        if (different > maximumCompared)
            continue;
        QList<int> roles = before == after ? QList<int>() : changedRoles(*before, *after);
        different += roles.isEmpty() ? 0 : 1;
        if (different > maximumCompared)
            roles = roleNames().keys();
        if (roles == runRoles)
            continue;
        tell(row);
        runRoles = roles;
        runFirst = row;
    }
    tell(count);
}

template <class Record, auto keyOf>
QList<int> RecordListModel<Record, keyOf>::changedRoles(const Record& before,
                                                        const Record& after) const {
    QList<int> roles;
    if (before == after)
        return roles;
    for (int number = 0; number < m_roles.size(); ++number) {
        if (m_roles[number].value(before) != m_roles[number].value(after))
            roles.append(Qt::UserRole + number);
    }
    return roles;
}

} // namespace quiv
