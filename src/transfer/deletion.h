#pragma once

#include "library/library_content.h"
#include "net/selected_device.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

namespace quiv {

class Library;
class Pairing;
class RequestLayer;
class StatusLine;

// All files of a group: its video, its subtitles, its other files.
QList<RemoteFile> filesOf(const FileGroup& group);

// Deletes files on the selected TV.
class Deletion : public QObject {
    Q_OBJECT

public:
    Deletion(RequestLayer& requests, Pairing& pairing, Library& library,
             const SelectedDevice& selected, StatusLine& status, QObject* parent = nullptr);

public Q_SLOTS:
    // One file after the other, up to the first that the TV does not delete; then loads the
    // library anew.
    void deleteGroup(const quiv::FileGroup& group);

private:
    Task<> deleting(FileGroup group);
    Task<> deleteFiles(FileGroup group, SelectedDevice::Guard guard);
    Task<> deleteRemoteFile(QString name, QUrl base, SelectedDevice::Guard guard);

    RequestLayer& m_requests;
    Pairing& m_pairing;
    Library& m_library;
    const SelectedDevice& m_selected;
    StatusLine& m_status;
    TaskSet m_tasks;
};

} // namespace quiv
