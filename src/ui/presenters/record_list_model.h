#pragma once

#include "ui/presenters/list_change.h"

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

    explicit RecordListModel(Roles roles, QObject* parent = nullptr)
        : QAbstractListModel(parent), m_roles(std::move(roles)) {}

    const QList<Record>& rows() const { return m_records; }

    // Makes the rows equal to these by the smallest steps: removals, moves, insertions, then
    // dataChanged for the roles that differ. Linear while a few rows change.
    void assign(QList<Record> records);

    // The same where listChange() from rows() to `records` is known already: what takes time was
    // done elsewhere. Returns the former rows, which take time to free.
    QList<Record> apply(QList<Record> records, const ListChange& change);

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
    void removeRun(int first, int count);
    void insertRun(int first, int count, const QList<Record>& records);
    void moveRun(int first, int count, int before);
    void tellChanged(const QList<Record>& records, const ListChange& change);
    QList<int> changedRoles(const Record& before, const Record& after) const;

    Roles m_roles;
    QList<Record> m_records;
    // The rows as views know them. Points into m_records, and while apply() runs also into the
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
    const ListChange change = listChange(m_records, records, keyOf);
    apply(std::move(records), change);
}

template <class Record, auto keyOf>
QList<Record> RecordListModel<Record, keyOf>::apply(QList<Record> records,
                                                    const ListChange& change) {
    for (const RowRun& run : change.edits.removals)
        removeRun(change.first + run.first, run.count);
    for (const RowMove& move : change.edits.moves)
        moveRun(change.first + move.first, move.count, change.first + move.before);
    for (const RowRun& run : change.edits.insertions)
        insertRun(change.first + run.first, run.count, records);
    for (qsizetype row = 0; row < records.size(); ++row)
        m_shown[static_cast<size_t>(row)] = &records.at(row);
    tellChanged(records, change);
    return std::exchange(m_records, std::move(records));
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

// Tells which roles of which rows differ; neighbours that differ alike are told together. When many
// differ, it is not worth to find out in what: all that follow are told.
template <class Record, auto keyOf>
void RecordListModel<Record, keyOf>::tellChanged(const QList<Record>& records,
                                                 const ListChange& change) {
    RowRun run;
    QList<int> runRoles;
    const auto tell = [&] {
        if (!runRoles.isEmpty())
            Q_EMIT dataChanged(index(run.first), index(run.first + run.count - 1), runRoles);
    };
    for (const ChangedRow& row : change.changed) {
        const QList<int> roles = changedRoles(m_records.at(row.before), records.at(row.after));
        if (roles == runRoles && row.after == run.first + run.count) {
            ++run.count;
            continue;
        }
        tell();
        run = {row.after, 1};
        runRoles = roles;
    }
    tell();
    if (change.changedFrom >= 0)
        Q_EMIT dataChanged(index(change.changedFrom), index(rowCount() - 1), roleNames().keys());
}

template <class Record, auto keyOf>
QList<int> RecordListModel<Record, keyOf>::changedRoles(const Record& before,
                                                        const Record& after) const {
    QList<int> roles;
    for (int number = 0; number < m_roles.size(); ++number) {
        if (m_roles[number].value(before) != m_roles[number].value(after))
            roles.append(Qt::UserRole + number);
    }
    return roles;
}

} // namespace quiv
