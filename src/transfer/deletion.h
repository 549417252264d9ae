#pragma once

#include "library/library_content.h"
#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

namespace quiv {

class Library;
class Pairing;
class PendingFiles;

// All files of a group: its video, its subtitles, its other files.
QList<RemoteFile> filesOf(const FileGroup& group);
// Those of all these groups, in order.
QList<RemoteFile> filesOf(const QList<FileGroup>& groups);

// Deletes files on the TV that is selected when the deletion begins.
class Deletion : public QObject {
    Q_OBJECT

public:
    Deletion(const TvAccess& tvs, Pairing& pairing, Library& library, PendingFiles& pending,
             QObject* parent = nullptr);

    // One file after the other, up to the first that the TV does not delete; then loads the
    // library anew.
    void deleteGroups(const QList<quiv::FileGroup>& groups);
    void deleteGroup(const quiv::FileGroup& group) { deleteGroups({group}); }

private:
    Task<> deleting(QList<FileGroup> groups);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    Library& m_library;
    PendingFiles& m_pending;
    TaskSet m_tasks;
};

} // namespace quiv
