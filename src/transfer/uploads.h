#pragma once

#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "transfer/upload_job.h"
#include "transfer/upload_preflight.h"
#include "transfer/upload_progress.h"
#include "transfer/upload_transport.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <list>

namespace quiv {

class Library;
class Pairing;

// The queue of files on their way to the TV: one after the other, in order of arrival, whatever
// becomes of the one before. A job goes to the TV that is selected when its transfer starts.
class Uploads : public QObject {
    Q_OBJECT

public:
    Uploads(const TvAccess& tvs, Pairing& pairing, Library& library, StillExtractor& stills,
            SystemLog& log, Clock& clock, QObject* parent = nullptr);

    // The current job, then the pending ones.
    QList<UploadListItem> uploadListItems() const;

    // Queues the files of a drop; returns false, and says why, when there are none.
    bool queueDroppedFiles(const QList<QUrl>& urls);

    void queueUploadsFromPicker(const QList<QUrl>& urls);
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName);
    // Ends the running transfer, or takes a waiting job out of the queue.
    void cancelUploadJob(const QString& id);

Q_SIGNALS:
    void itemsChanged();    // other rows, another order or another state of one
    void progressChanged(); // the progress of the current row

private:
    // A file from when it is queued until it is uploaded, has failed or is removed.
    struct Entry {
        UploadJob job;
        Task<UploadPreflightResult> preflight;
        UploadListItemState state = UploadListItemState::Queued;
        UploadProgress progress{};
        bool isCancelled = false;
    };

    Task<> queuePicked(QList<UploadJob> jobs, int unsupported);
    Task<> queueSubtitle(UploadJob job);
    qsizetype enqueueUploadJobs(const QList<UploadJob>& jobs);
    void resumeUploadQueueIfNeeded();
    Task<> processUploadQueue();
    Task<> carryOut(Entry* entry);
    void uploadProgressed(Entry& entry, std::int64_t sent, std::int64_t expected);
    void cancelCurrent(Entry& entry);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    Library& m_library;
    Clock& m_clock;
    UploadPreflight m_preflight;
    UploadTransport m_transport;

    std::list<Entry> m_entries; // in order of arrival; the worker is at the first
    TaskSet m_tasks;
    Task<> m_worker;
};

} // namespace quiv
