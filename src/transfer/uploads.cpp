#include "transfer/uploads.h"

#include "library/library.h"
#include "net/pairing.h"
#include "platform/uuid.h"
#include "transfer/upload_names.h"
#include "transfer/upload_queue_rules.h"

#include <QMetaObject>
#include <QSet>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto Action = u"upload"_s;

} // namespace

Uploads::Uploads(const TvAccess& tvs, Pairing& pairing, Library& library, StillExtractor& stills,
                 SystemLog& log, Clock& clock, QObject* parent)
    : QObject(parent),
      m_tvs(tvs),
      m_pairing(pairing),
      m_library(library),
      m_clock(clock),
      m_preflight(tvs, stills, log),
      m_transport(tvs, pairing, clock) {}

QList<UploadListItem> Uploads::uploadListItems() const {
    QList<UploadListItem> items;
    for (const Entry& entry : m_entries) {
        items.append({entry.job.id, entry.job.remoteName, entry.state, entry.progress.fraction,
                      entry.progress.speedBytesPerSecond});
    }
    return items;
}

bool Uploads::queueDroppedFiles(const QList<QUrl>& urls) {
    const QList<QUrl> files = droppableFiles(urls);
    if (files.isEmpty())
        m_tvs.say(u"Drop one or more video files to upload"_s);
    else
        queueUploadsFromPicker(files);
    return !files.isEmpty();
}

void Uploads::queueUploadsFromPicker(const QList<QUrl>& urls) {
    if (!m_tvs.current()) {
        m_tvs.say(u"Select a TV first"_s);
        return;
    }
    const PickedFiles picked = pickedFiles(urls);
    if (picked.jobs.isEmpty()) {
        m_tvs.say(u"No supported video/subtitle files selected"_s);
        return;
    }
    m_tasks.add(queuePicked(picked.jobs, picked.unsupported));
}

Task<> Uploads::queuePicked(QList<UploadJob> jobs, int unsupported) {
    const bool isAllowed = co_await m_pairing.ensureControlPairing(Action);
    if (!isAllowed)
        co_return;
    const qsizetype added = enqueueUploadJobs(jobs);
    m_tvs.say(queuedMessage(added, jobs.size() - added, unsupported));
}

void Uploads::queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) {
    if (!m_tvs.current())
        m_tvs.say(u"Select a TV first"_s);
    else if (!hasSupportedSubtitleExtension(remoteName))
        m_tvs.say(u"Selected file is not a supported subtitle type"_s);
    else
        m_tasks.add(queueSubtitle({randomUuid().toUpper(), sourceURL, remoteName}));
}

Task<> Uploads::queueSubtitle(UploadJob job) {
    const bool isAllowed = co_await m_pairing.ensureControlPairing(Action);
    if (!isAllowed)
        co_return;
    const bool isAdded = enqueueUploadJobs({job}) > 0;
    m_tvs.say(
        (isAdded ? u"Queued subtitle upload: "_s : u"Subtitle is already uploading or queued: "_s) +
        job.remoteName);
}

qsizetype Uploads::enqueueUploadJobs(const QList<UploadJob>& jobs) {
    QSet<QString> taken;
    for (const Entry& entry : m_entries)
        taken.insert(uploadNameKey(entry.job.remoteName));
    const QList<UploadJob> added = filteredDuplicateUploadJobs(jobs, taken);
    if (added.isEmpty())
        return 0;
    for (const UploadJob& job : added)
        m_entries.push_back({job, m_preflight.prepareUploadPreflight(job)});
    Q_EMIT itemsChanged();
    resumeUploadQueueIfNeeded();
    return added.size();
}

// From the event loop, after what queued the jobs has said its own.
void Uploads::resumeUploadQueueIfNeeded() {
    const auto resume = [this] {
        if (m_worker.isDone() && !m_entries.empty())
            m_worker = processUploadQueue();
    };
    QMetaObject::invokeMethod(this, resume, Qt::QueuedConnection);
}

Task<> Uploads::processUploadQueue() {
    int uploaded = 0;
    int failed = 0;
    while (!m_entries.empty()) {
        Entry& entry = m_entries.front();
        const QString name = entry.job.remoteName;
        entry.state = UploadListItemState::Uploading;
        Q_EMIT itemsChanged();
        m_tvs.say(u"Uploading "_s + name);
        QString message;
        try {
            co_await carryOut(&entry);
            ++uploaded;
        } catch (const Error& error) {
            if (entry.isCancelled || isCancellation(error)) {
                message = u"Canceled "_s + name;
            } else {
                ++failed;
                message = u"Upload failed for "_s + name + u": "_s + error.description();
            }
        }
        m_entries.pop_front();
        Q_EMIT itemsChanged();
        if (!message.isEmpty())
            m_tvs.say(message);
    }
    m_tvs.say(queueFinishedMessage(uploaded, failed));
    m_tasks.add(m_library.loadLibrary(Library::Load::Quiet));
}

// Announces the file, sends it, and sends its still after it if the TV did not get that before.
Task<> Uploads::carryOut(Entry* entry) {
    const UploadPreflightResult preflight = co_await std::move(entry->preflight);
    const auto tv = m_tvs.current();
    const bool isAnnounced = tv && preflight.sentTo == tv->base();
    const auto showProgress = [this, entry](std::int64_t sent, std::int64_t expected) {
        uploadProgressed(*entry, sent, expected);
    };
    const UploadTransport::Upload upload(entry->job,
                                         isAnnounced && preflight.thumbnailPayload.has_value());
    const QString stored = co_await m_transport.uploadSingle(upload, showProgress);
    if (!isAnnounced && preflight.thumbnailPayload && hasSupportedVideoExtension(stored))
        co_await m_preflight.uploadThumbnailSidecar(*preflight.thumbnailPayload, stored);
}

void Uploads::uploadProgressed(Entry& entry, std::int64_t sent, std::int64_t expected) {
    if (entry.isCancelled)
        return; // it was on its way when the user cancelled
    entry.progress = progressReported(entry.progress, sent, expected, m_clock.now());
    Q_EMIT progressChanged();
    m_tvs.say(uploadingMessage(entry.job.remoteName, qsizetype(m_entries.size()) - 1,
                               entry.progress.fraction));
}

void Uploads::cancelUploadJob(const QString& id) {
    const auto entry =
        std::ranges::find(m_entries, id, [](const Entry& each) { return each.job.id; });
    if (entry == m_entries.end())
        return;
    if (entry->state == UploadListItemState::Uploading)
        return cancelCurrent(*entry);
    const QString name = entry->job.remoteName;
    m_entries.erase(entry);
    Q_EMIT itemsChanged();
    m_tvs.say(u"Removed "_s + name + u" from upload queue"_s);
}

void Uploads::cancelCurrent(Entry& entry) {
    entry.isCancelled = true;
    m_transport.cancel();
    m_tvs.say(u"Canceling "_s + entry.job.remoteName + u"..."_s);
}

} // namespace quiv
