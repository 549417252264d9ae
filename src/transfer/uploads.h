#pragma once

#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "platform/clock.h"
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
#include <memory>
#include <optional>

namespace quiv {

class Library;
class Pairing;

// The queue of files on their way to TVs: one after the other, in order of arrival, whatever
// becomes of the one before. A job goes to the TV that was selected when it was queued.
//
// A job whose TV does not answer or wants this client paired waits, and those behind it with it; it
// goes on by itself. One that has failed stays until the user removes it or has it tried again.
class Uploads : public QObject {
    Q_OBJECT

public:
    Uploads(const TvAccess& tvs, Pairing& pairing, Library& library, StillExtractor& stills,
            SystemLog& log, Clock& clock, QObject* parent = nullptr);

    // The failed jobs, the current one, the pending ones: in order of arrival.
    QList<UploadListItem> uploadListItems() const;

    // Queues the files of a drop for the TV that is selected now; returns false, and says why, when
    // there can be none. Folders are left out.
    bool queueDroppedFiles(const QList<QUrl>& urls);
    void queueUploadsFromPicker(const QList<QUrl>& urls);
    void queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName);
    // Ends the current job, or takes another one out of the queue.
    void cancelUploadJob(const QString& id);
    // Queues a failed job anew, behind the others.
    void retryUploadJob(const QString& id);

Q_SIGNALS:
    void itemsChanged();    // other rows, another order or another state of one
    void progressChanged(); // the progress of the current row
    // Nothing is left to do, and what came of it; not if the user took everything out.
    void queueFinished(const quiv::StatusMessage& message);

private:
    // A file from when it is queued until it is uploaded or removed.
    struct Entry {
        UploadJob job;
        Tv tv;
        QString tvKey;
        QString tvName;
        std::optional<Task<UploadPreflightResult>> preflight{}; // when it was begun ahead
        UploadListItemState state = UploadListItemState::Queued;
        QString reason{}; // why it waits or has failed
        UploadProgress progress{};
        int waits = 0; // how often it could not start although its TV seemed ready
        bool isCancelled = false;
        bool isStored = false;                 // the TV has the file
        std::unique_ptr<Clock::Timer> stall{}; // runs until no byte has moved for a while
    };
    // Where files that the user has chosen go.
    struct Target {
        Tv tv;
        QString key;
        QString name;
    };
    struct Outcome {
        int uploaded = 0;
        int failed = 0;
    };

    std::optional<Target> target() const; // nullopt, and said, without a TV
    Task<> queueWithoutFolders(Target target, QList<QUrl> urls);
    void queueFiles(const Target& target, const QList<QUrl>& urls);
    qsizetype enqueueUploadJobs(const Target& target, const QList<UploadJob>& jobs);
    void resumeUploadQueueIfNeeded();
    Task<> processUploadQueue();
    Task<> process(Entry* entry);
    Task<> awaitTv(Entry* entry);
    Task<QString> hindrance(Tv tv, bool isNew);
    Task<> carryOut(Entry* entry);
    void uploadProgressed(Entry& entry, std::int64_t sent, std::int64_t expected);
    void cancelCurrent(Entry& entry);
    void show(Entry& entry, UploadListItemState state, const QString& reason = {});
    void remove(const Entry& entry);
    Entry* nextEntry();
    qsizetype waitingCount() const;

    const TvAccess m_tvs;
    Pairing& m_pairing;
    Library& m_library;
    Clock& m_clock;
    UploadPreflight m_preflight;
    UploadTransport m_transport;

    std::list<Entry> m_entries; // in order of arrival
    Entry* m_current = nullptr; // the one that the worker is at
    Outcome m_outcome;          // of this run of the queue
    bool m_hasLostTv = false;   // the job before ended with its connection
    TaskSet m_tasks;
    Task<> m_worker;
};

} // namespace quiv
