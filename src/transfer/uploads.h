#pragma once

#include "net/selected_device.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "transfer/upload_job.h"
#include "transfer/upload_preflight.h"
#include "transfer/upload_progress.h"
#include "transfer/upload_transport.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <map>

namespace quiv {

class Library;
class StatusLine;

// The queue of files on their way to the TV: one after the other, in order of arrival, whatever
// becomes of the one before. A job goes to the TV that is selected when its transfer starts.
class Uploads : public QObject {
    Q_OBJECT

public:
    struct Parts {
        RequestLayer& requests;
        Pairing& pairing;
        Library& library;
        const SelectedDevice& selected;
        StatusLine& status;
    };

    Uploads(const Parts& parts, StillExtractor& stills, SystemLog& log, Clock& clock,
            QObject* parent = nullptr);

    const UploadState& state() const { return m_state; }
    // The current job, then the pending ones.
    const QList<UploadListItem>& uploadListItems() const { return m_items; }

    // Queues the files of a drop; false, and says why, when there are none.
    bool queueDroppedFiles(const QList<QUrl>& urls);

    // The match keys of every name that is being uploaded or waits for it.
    QSet<QString> uploadMatchKeys() const;

public Q_SLOTS:
    void queueUploadsFromPicker(const QList<QUrl>& urls);
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName);
    // Ends the running transfer, or takes a waiting job out of the queue.
    void cancelUploadJob(const QString& id);

Q_SIGNALS:
    void stateChanged();
    void itemsChanged();    // other rows, another order or another state of one
    void progressChanged(); // the progress of the current row

private:
    Task<> queuePicked(QList<UploadJob> jobs, int unsupported);
    Task<> queueSubtitle(UploadJob job);
    qsizetype enqueueUploadJobs(const QList<UploadJob>& jobs);
    void startUploadPreflights(const QList<UploadJob>& jobs);
    void resumeUploadQueueIfNeeded();
    Task<> processUploadQueue();
    Task<QString> uploadJob(UploadJob job);
    Task<UploadPreflightResult> takePreflight(UploadJob job);
    void uploadProgressed(std::int64_t sent, std::int64_t expected);
    void setCurrentJob(const UploadJob* job);
    void setUploadListItemState(const QString& id, UploadListItemState state);
    void removeItem(const QString& id);
    void publishQueueCount();
    void changeState(UploadState state);

    const SelectedDevice& m_selected;
    Pairing& m_pairing;
    Library& m_library;
    StatusLine& m_status;
    Clock& m_clock;
    UploadPreflight m_preflight;
    UploadTransport m_transport;

    QList<UploadJob> m_pendingUploadJobs;
    QList<UploadListItem> m_items;
    UploadState m_state;
    UploadProgress m_progress;
    QString m_currentUploadJobID;
    QSet<QString> m_singleCanceledUploadJobIDs;
    bool m_processingUploadQueue = false;

    std::map<QString, Task<UploadPreflightResult>> m_uploadPreflightTasks; // by job id
    TaskSet m_tasks;
    Task<> m_worker;
};

} // namespace quiv
