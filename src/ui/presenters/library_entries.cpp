#include "ui/presenters/library_entries.h"

#include "ui/presenters/file_group_row_state.h"
#include "ui/presenters/uploads_presenter.h"

namespace quiv {

LibraryEntries::LibraryEntries(QAbstractItemModel& queue, QAbstractItemModel& library,
                               QObject* parent)
    : QAbstractListModel(parent), m_queue(queue), m_library(library) {
    const QHash<int, QByteArray> names = LibraryEntries::roleNames();
    for (const auto& [role, name] : names.asKeyValueRange()) {
        m_queueRoles.insert(role, queue.roleNames().key(name, -1));
        m_libraryRoles.insert(role, library.roleNames().key(name, -1));
    }
    follow(queue, &LibraryEntries::queueStart);
    follow(library, &LibraryEntries::libraryStart);
}

int LibraryEntries::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_queue.rowCount() + m_library.rowCount();
}

// A view asks every row for every role, so that both kinds of rows answer all of them.
QVariant LibraryEntries::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const bool isUpload = index.row() < libraryStart();
    if (role == IsUpload)
        return isUpload;
    if (isUpload && role == Content)
        return QVariant::fromValue(FileGroupRowState());
    if (!isUpload && role == Upload)
        return QVariant::fromValue(QueueRow());
    const QAbstractItemModel& source = isUpload ? m_queue : m_library;
    const int row = isUpload ? index.row() : index.row() - libraryStart();
    return source.data(source.index(row, 0),
                       (isUpload ? m_queueRoles : m_libraryRoles).value(role));
}

QHash<int, QByteArray> LibraryEntries::roleNames() const {
    return {{IsUpload, "isUpload"}, {Key, "key"}, {Upload, "upload"}, {Content, "content"}};
}

void LibraryEntries::follow(const QAbstractItemModel& source,
                            int (LibraryEntries::*offset)() const) {
    using Model = QAbstractItemModel;
    connect(&source, &Model::rowsAboutToBeInserted, this,
            [this, offset](const QModelIndex&, int first, int last) {
                beginInsertRows({}, (this->*offset)() + first, (this->*offset)() + last);
            });
    connect(&source, &Model::rowsInserted, this, [this] { endInsertRows(); });
    connect(&source, &Model::rowsAboutToBeRemoved, this,
            [this, offset](const QModelIndex&, int first, int last) {
                beginRemoveRows({}, (this->*offset)() + first, (this->*offset)() + last);
            });
    connect(&source, &Model::rowsRemoved, this, [this] { endRemoveRows(); });
    connect(
        &source, &Model::rowsAboutToBeMoved, this,
        [this, offset](const QModelIndex&, int first, int last, const QModelIndex&, int before) {
            const int start = (this->*offset)();
            beginMoveRows({}, start + first, start + last, {}, start + before);
        });
    connect(&source, &Model::rowsMoved, this, [this] { endMoveRows(); });
    connect(&source, &Model::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&source, &Model::modelReset, this, [this] { endResetModel(); });
    const bool isQueue = &source == &m_queue;
    connect(&source, &Model::dataChanged, this,
            [this, offset, isQueue](const QModelIndex& first, const QModelIndex& last,
                                    const QList<int>& sourceRoles) {
                QList<int> roles;
                for (const int role : sourceRoles)
                    roles.append((isQueue ? m_queueRoles : m_libraryRoles).key(role));
                const int start = (this->*offset)();
                Q_EMIT dataChanged(index(start + first.row()), index(start + last.row()), roles);
            });
}

} // namespace quiv
