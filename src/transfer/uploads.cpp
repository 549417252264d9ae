#include "transfer/uploads.h"

#include "library/library.h"
#include "net/pairing.h"
#include "net/status_line.h"
#include "platform/publish.h"
#include "platform/uuid.h"
#include "transfer/upload_names.h"
#include "transfer/upload_queue_rules.h"

#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto Action = u"upload"_s;

} // namespace

Uploads::Uploads(const Parts& parts, StillExtractor& stills, SystemLog& log, Clock& clock,
                 QObject* parent)
    : QObject(parent),
      m_selected(parts.selected),
      m_pairing(parts.pairing),
      m_library(parts.library),
      m_status(parts.status),
      m_clock(clock),
      m_preflight(parts.requests, parts.selected, stills, log),
      m_transport(parts.requests, parts.pairing, parts.selected, clock) {}

QSet<QString> Uploads::uploadMatchKeys() const {
    QSet<QString> keys;
    for (const UploadListItem& item : m_items) // the current and every pending job
        keys.insert(uploadMatchKey(item.fileName));
    keys.remove(QString());
    return keys;
}

bool Uploads::queueDroppedFiles(const QList<QUrl>& urls) {
    const QList<QUrl> files = droppableFiles(urls);
    if (files.isEmpty())
        m_status.post(u"Drop one or more video files to upload"_s);
    else
        queueUploadsFromPicker(files);
    return !files.isEmpty();
}

void Uploads::queueUploadsFromPicker(const QList<QUrl>& urls) {
    if (!m_selected.baseURL()) {
        m_status.post(u"Select a TV first"_s);
        return;
    }
    const PickedFiles picked = pickedFiles(urls);
    if (picked.jobs.isEmpty()) {
        m_status.post(u"No supported video/subtitle files selected"_s);
        return;
    }
    m_tasks.add(queuePicked(picked.jobs, picked.unsupported));
}

Task<> Uploads::queuePicked(QList<UploadJob> jobs, int unsupported) {
    auto asking = m_pairing.ensureControlPairing(Action);
    const bool isAllowed = co_await std::move(asking);
    if (!isAllowed)
        co_return;
    const qsizetype added = enqueueUploadJobs(jobs);
    m_status.post(queuedMessage(added, jobs.size() - added, unsupported));
}

void Uploads::queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) {
    if (!m_selected.baseURL())
        m_status.post(u"Select a TV first"_s);
    else if (!hasSupportedSubtitleExtension(remoteName))
        m_status.post(u"Selected file is not a supported subtitle type"_s);
    else
        m_tasks.add(queueSubtitle({randomUuid().toUpper(), sourceURL, remoteName}));
}

Task<> Uploads::queueSubtitle(UploadJob job) {
    auto asking = m_pairing.ensureControlPairing(Action);
    const bool isAllowed = co_await std::move(asking);
    if (!isAllowed)
        co_return;
    const bool isAdded = enqueueUploadJobs({job}) > 0;
    m_status.post(
        (isAdded ? u"Queued subtitle upload: "_s : u"Subtitle is already uploading or queued: "_s) +
        job.remoteName);
}

qsizetype Uploads::enqueueUploadJobs(const QList<UploadJob>& jobs) {
    QSet<QString> taken;
    for (const UploadListItem& item : std::as_const(m_items))
        taken.insert(uploadNameKey(item.fileName));
    const QList<UploadJob> added = filteredDuplicateUploadJobs(jobs, taken);
    if (added.isEmpty())
        return 0;
    m_pendingUploadJobs.append(added);
    startUploadPreflights(added);
    for (const UploadJob& job : added)
        m_items.append({.id = job.id, .fileName = job.remoteName});
    Q_EMIT itemsChanged();
    publishQueueCount();
    resumeUploadQueueIfNeeded();
    return added.size();
}

void Uploads::startUploadPreflights(const QList<UploadJob>& jobs) {
    for (const UploadJob& job : jobs) {
        if (hasSupportedVideoExtension(job.remoteName))
            m_uploadPreflightTasks.emplace(job.id, m_preflight.prepareUploadPreflight(job));
    }
}

// From the event loop, after what queued the jobs has said its own.
void Uploads::resumeUploadQueueIfNeeded() {
    const auto resume = [this] {
        if (!m_processingUploadQueue && !m_pendingUploadJobs.isEmpty())
            m_worker = processUploadQueue();
    };
    QMetaObject::invokeMethod(this, resume, Qt::QueuedConnection);
}

Task<> Uploads::processUploadQueue() {
    m_processingUploadQueue = true;
    int uploaded = 0;
    int failed = 0;
    while (!m_pendingUploadJobs.isEmpty()) {
        const UploadJob job = m_pendingUploadJobs.takeFirst();
        setCurrentJob(&job);
        QString message;
        try {
            auto uploading = uploadJob(job);
            co_await std::move(uploading);
            ++uploaded;
        } catch (const Error& error) {
            if (m_singleCanceledUploadJobIDs.contains(job.id) || isCancellation(error)) {
                message = u"Canceled "_s + job.remoteName;
            } else {
                ++failed;
                message = u"Upload failed for "_s + job.remoteName + u": "_s + error.description();
            }
        }
        m_singleCanceledUploadJobIDs.remove(job.id);
        removeItem(job.id);
        setCurrentJob(nullptr);
        if (!message.isEmpty())
            m_status.post(message);
    }
    m_processingUploadQueue = false;
    changeState({});
    m_status.post(queueFinishedMessage(uploaded, failed));
    m_tasks.add(m_library.loadLibrary(Library::Load::Quiet));
}

Task<QString> Uploads::uploadJob(UploadJob job) {
    auto preflighting = takePreflight(job);
    const UploadPreflightResult preflight = co_await std::move(preflighting);
    const auto base = m_selected.baseURL();
    const bool isAnnounced = preflight.sentTo && preflight.sentTo == base;
    auto uploading = m_transport.uploadSingle(
        {.file = job.sourceURL.toLocalFile(),
         .remoteName = job.remoteName,
         .expectsClientThumbnail = isAnnounced && preflight.thumbnailPayload,
         .uploadId = job.id},
        [this](std::int64_t sent, std::int64_t expected) { uploadProgressed(sent, expected); });
    const QString stored = co_await std::move(uploading);
    if (!isAnnounced && preflight.thumbnailPayload && hasSupportedVideoExtension(stored)) {
        auto sending = m_preflight.uploadThumbnailSidecar(*preflight.thumbnailPayload, stored);
        co_await std::move(sending);
    }
    co_return stored;
}

Task<UploadPreflightResult> Uploads::takePreflight(UploadJob job) {
    auto running = m_uploadPreflightTasks.extract(job.id);
    auto preflight = running
                         ? std::move(running.mapped())
                         : m_preflight.prepareUploadPreflight(job); // does nothing but for videos
    co_return co_await std::move(preflight);
}

void Uploads::uploadProgressed(std::int64_t sent, std::int64_t expected) {
    m_progress = progressReported(m_progress, sent, expected, m_clock.now());
    const auto item = std::ranges::find(m_items, m_currentUploadJobID, &UploadListItem::id);
    if (item != m_items.end()) {
        item->progress = m_progress.fraction;
        item->speedBytesPerSecond = m_progress.speedBytesPerSecond;
        Q_EMIT progressChanged();
    }
    m_status.post(uploadingMessage(m_state.currentUploadFileName, m_pendingUploadJobs.size(),
                                   m_progress.fraction));
}

void Uploads::setCurrentJob(const UploadJob* job) {
    m_progress = {};
    m_currentUploadJobID = job ? job->id : QString();
    UploadState state = m_state;
    state.isUploading = true; // until the queue is done
    state.currentUploadFileName = job ? job->remoteName : QString();
    state.uploadQueueCount = static_cast<int>(m_pendingUploadJobs.size());
    changeState(state);
    if (!job)
        return;
    setUploadListItemState(job->id, UploadListItemState::Uploading);
    m_status.post(u"Uploading "_s + job->remoteName);
}

void Uploads::cancelUploadJob(const QString& id) {
    if (id == m_currentUploadJobID) {
        m_singleCanceledUploadJobIDs.insert(id);
        m_transport.cancel();
        m_status.post(u"Canceling "_s + m_state.currentUploadFileName + u"..."_s);
        return;
    }
    const auto job = std::ranges::find(m_pendingUploadJobs, id, &UploadJob::id);
    if (job == m_pendingUploadJobs.end())
        return;
    const QString name = job->remoteName;
    m_pendingUploadJobs.erase(job);
    m_uploadPreflightTasks.erase(id);
    publishQueueCount();
    removeItem(id);
    m_status.post(u"Removed "_s + name + u" from upload queue"_s);
}

void Uploads::setUploadListItemState(const QString& id, UploadListItemState state) {
    const auto item = std::ranges::find(m_items, id, &UploadListItem::id);
    if (item == m_items.end())
        return;
    item->state = state;
    m_items = orderedItems(m_items);
    Q_EMIT itemsChanged();
}

void Uploads::removeItem(const QString& id) {
    if (m_items.removeIf([&](const UploadListItem& item) { return item.id == id; }) > 0)
        Q_EMIT itemsChanged();
}

void Uploads::publishQueueCount() {
    UploadState state = m_state;
    state.uploadQueueCount = static_cast<int>(m_pendingUploadJobs.size());
    changeState(state);
}

void Uploads::changeState(UploadState state) {
    publish(this, m_state, std::move(state), &Uploads::stateChanged);
}

} // namespace quiv
