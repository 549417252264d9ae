#pragma once

#include <QAbstractListModel>
#include <QHash>

namespace quiv {

// What the library's list shows: the rows of the queue, then those of the library, each changing
// as its own model does. Both must outlive this.
class LibraryEntries : public QAbstractListModel {
    Q_OBJECT

public:
    // `queue` has the roles "key" and "upload", `library` "key" and "content".
    LibraryEntries(QAbstractItemModel& queue, QAbstractItemModel& library,
                   QObject* parent = nullptr);

    // The place of the library's first row.
    int libraryStart() const { return m_queue.rowCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    enum Role { IsUpload = Qt::UserRole, Key, Upload, Content };

    // Passes on the changes of one of the two, whose rows begin at `offset`.
    void follow(const QAbstractItemModel& source, int (LibraryEntries::*offset)() const);
    int queueStart() const { return 0; }

    QAbstractItemModel& m_queue;
    QAbstractItemModel& m_library;
    QHash<int, int> m_queueRoles; // by those of this model
    QHash<int, int> m_libraryRoles;
};

} // namespace quiv
