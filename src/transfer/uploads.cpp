#include "transfer/uploads.h"

#include "library/library.h"
#include "net/pairing.h"
#include "platform/async/background.h"
#include "platform/uuid.h"
#include "transfer/upload_names.h"
#include "transfer/upload_queue_rules.h"

#include <QMetaObject>
#include <QSet>

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto Action = u"upload"_s;
const auto NothingToUpload = u"Drop one or more video files to upload"_s;
constexpr auto PauseBetweenTries = 2s;
// How often a job may be refused by a TV that says it is ready for it.
constexpr int MostWaits = 10;
constexpr auto ReadinessTimeout = 5s;
constexpr auto StallTime = 2s; // without a byte, until the speed shows as nothing

// Whether a job that failed like this could not start, and will be able to by itself.
bool isToWait(const Error& error) {
    if (const auto* failure = dynamic_cast<const UploadFailure*>(&error))
        return failure->isAboutRights();
    const auto* failure = dynamic_cast<const HttpError*>(&error);
    return failure && (failure->code() == HttpErrorCode::CannotConnect ||
                       failure->code() == HttpErrorCode::CannotFindHost);
}

// Whether the TV may have gone, so that the next job is not to be tried blindly.
bool hasLostTv(const Error& error) {
    const auto* failure = dynamic_cast<const HttpError*>(&error);
    return failure && (failure->code() == HttpErrorCode::ConnectionLost ||
                       failure->code() == HttpErrorCode::TimedOut);
}

} // namespace

Uploads::Uploads(const TvAccess& tvs, Pairing& pairing, Library& library, StillExtractor& stills,
                 SystemLog& log, Clock& clock, QObject* parent)
    : QObject(parent),
      m_tvs(tvs),
      m_pairing(pairing),
      m_library(library),
      m_clock(clock),
      m_preflight(stills, log),
      m_transport(clock) {}

QList<UploadListItem> Uploads::uploadListItems() const {
    QList<UploadListItem> items;
    for (const Entry& entry : m_entries) {
        items.append({entry.job.id, entry.job.remoteName, entry.tvKey, entry.tvName, entry.state,
                      entry.progress.fraction, entry.progress.speedBytesPerSecond, entry.reason});
    }
    return items;
}

std::optional<Uploads::Target> Uploads::target() const {
    const auto tv = m_tvs.current();
    if (!tv) {
        m_tvs.say(u"Select a TV first"_s);
        return std::nullopt;
    }
    return Target{tv->whicheverIsSelected(), m_tvs.selected().key(), m_tvs.selected().name()};
}

bool Uploads::queueDroppedFiles(const QList<QUrl>& urls) {
    const QList<QUrl> files = localFiles(urls);
    if (files.isEmpty()) {
        m_tvs.say(NothingToUpload);
        return false;
    }
    if (const auto receiver = target())
        m_tasks.add(queueWithoutFolders(*receiver, files));
    return true;
}

Task<> Uploads::queueWithoutFolders(Target target, QList<QUrl> urls) {
    const auto looking = [urls] {
        return withoutFolders(urls);
    };
    const QList<QUrl> files = co_await onDisk(looking);
    if (files.isEmpty())
        m_tvs.say(NothingToUpload);
    else
        queueFiles(target, files);
}

void Uploads::queueUploadsFromPicker(const QList<QUrl>& urls) {
    if (const auto receiver = target())
        queueFiles(*receiver, urls);
}

void Uploads::queueFiles(const Target& target, const QList<QUrl>& urls) {
    const PickedFiles picked = pickedFiles(urls);
    if (picked.jobs.isEmpty()) {
        m_tvs.say(failureMessage(u"No supported video/subtitle files selected"_s));
        return;
    }
    const qsizetype added = enqueueUploadJobs(target, picked.jobs);
    m_tvs.say(queuedMessage(added, picked.jobs.size() - added, picked.unsupported));
}

void Uploads::queueSubtitleUpload(const QUrl& sourceURL, const QString& remoteName) {
    const auto receiver = target();
    if (!receiver)
        return;
    if (!hasSupportedSubtitleExtension(remoteName)) {
        m_tvs.say(failureMessage(u"Selected file is not a supported subtitle type"_s));
        return;
    }
    const QList<UploadJob> jobs{{randomUuid().toUpper(), sourceURL, remoteName}};
    const bool isAdded = enqueueUploadJobs(*receiver, jobs) > 0;
    m_tvs.say(
        (isAdded ? u"Queued subtitle upload: "_s : u"Subtitle is already uploading or queued: "_s) +
        remoteName);
}

qsizetype Uploads::enqueueUploadJobs(const Target& target, const QList<UploadJob>& jobs) {
    const bool isPaired = target.tv.isSelected() && m_pairing.state().isControlPaired;
    QSet<QString> taken;
    for (const Entry& entry : m_entries) {
        if (entry.tvKey == target.key && entry.state != UploadListItemState::Failed)
            taken.insert(uploadNameKey(entry.job.remoteName));
    }
    const QList<UploadJob> added = filteredDuplicateUploadJobs(jobs, taken);
    if (added.isEmpty())
        return 0;
    for (const UploadJob& job : added) {
        Entry& entry = m_entries.emplace_back(Entry{job, target.tv, target.key, target.name});
        if (isPaired)
            entry.preflight = m_preflight.prepareUploadPreflight(target.tv, job);
    }
    Q_EMIT itemsChanged();
    resumeUploadQueueIfNeeded();
    return added.size();
}

// From the event loop, after what queued the jobs has said its own.
void Uploads::resumeUploadQueueIfNeeded() {
    const auto resume = [this] {
        if (m_worker.isDone() && nextEntry())
            m_worker = processUploadQueue();
    };
    QMetaObject::invokeMethod(this, resume, Qt::QueuedConnection);
}

Task<> Uploads::processUploadQueue() {
    while ((m_current = nextEntry()))
        co_await process(m_current);
    StatusMessage finished{queueFinishedMessage(m_outcome.uploaded, m_outcome.failed)};
    if (m_outcome.failed > 0)
        finished.kind = StatusMessage::Kind::Failure;
    m_tvs.say(finished);
    if (m_outcome.uploaded + m_outcome.failed > 0)
        Q_EMIT queueFinished(finished);
    m_outcome = {};
    m_tasks.add(m_library.loadLibrary(Library::Load::Quiet));
}

Task<> Uploads::process(Entry* entry) {
    const QString name = entry->job.remoteName;
    co_await awaitTv(entry);
    show(*entry, UploadListItemState::Uploading);
    m_tvs.beginProgress(u"Uploading "_s + name);
    try {
        co_await carryOut(entry);
        ++m_outcome.uploaded;
        remove(*entry);
    } catch (const Error& error) {
        entry->stall.reset();
        m_hasLostTv = hasLostTv(error);
        if (entry->isCancelled || isCancellation(error)) {
            remove(*entry);
            m_tvs.say(u"Canceled "_s + name);
        } else if (isToWait(error) && ++entry->waits <= MostWaits) {
            show(*entry, UploadListItemState::Waiting, error.description());
        } else {
            ++m_outcome.failed;
            show(*entry, UploadListItemState::Failed, error.description());
            m_tvs.say(failureMessage(u"Upload failed for "_s + name + u": "_s, error));
        }
    }
}

// Completes when the job's TV answers and lets this client upload to it.
Task<> Uploads::awaitTv(Entry* entry) {
    bool hasFailed = entry->state == UploadListItemState::Waiting;
    const bool isDoubtful = std::exchange(m_hasLostTv, false);
    while (true) {
        const bool isKnownReady =
            !hasFailed && !isDoubtful && entry->tv.isSelected() && m_pairing.isKnownPaired();
        if (isKnownReady)
            co_return;
        if (hasFailed)
            co_await sleepFor(m_clock, PauseBetweenTries);
        const QString reason = co_await hindrance(entry->tv, !hasFailed);
        if (reason.isEmpty())
            co_return;
        if (!hasFailed && !m_pairing.state().requiresControlPairing)
            m_tvs.say(u"Waiting to upload "_s + entry->job.remoteName + u": "_s + reason);
        hasFailed = true;
        show(*entry, UploadListItemState::Waiting, reason);
    }
}

// Why this client cannot upload to the TV now; empty if it can.
Task<QString> Uploads::hindrance(Tv tv, bool isNew) {
    try {
        const auto status =
            co_await tv.get<PairingStatusResponse>(u"api/mac/auth/status"_s, ReadinessTimeout);
        if (status.authorized)
            co_return QString();
    } catch (const Error& error) {
        co_return error.description();
    }
    if (tv.isSelected())
        m_pairing.requirePairing(Action, isNew);
    co_return u"Waiting until this computer is paired with the TV."_s;
}

// Announces the file, sends it, and sends its still after it if the TV did not get that before.
Task<> Uploads::carryOut(Entry* entry) {
    const UploadJob job = entry->job;
    if (!entry->preflight)
        entry->preflight = m_preflight.prepareUploadPreflight(entry->tv, job);
    const UploadPreflightResult preflight = co_await std::move(*entry->preflight);
    const auto showProgress = [this, entry](std::int64_t sent, std::int64_t expected) {
        uploadProgressed(*entry, sent, expected);
    };
    const UploadTransport::Upload upload(job, preflight.sent && preflight.thumbnailPayload);
    entry->preflight.reset(); // a job that has to wait is announced once more
    const QString stored = co_await m_transport.uploadSingle(entry->tv, upload, showProgress);
    entry->isStored = true;
    entry->stall.reset();
    if (!preflight.sent && preflight.thumbnailPayload && hasSupportedVideoExtension(stored)) {
        co_await m_preflight.uploadThumbnailSidecar(entry->tv, *preflight.thumbnailPayload, stored);
    }
}

void Uploads::uploadProgressed(Entry& entry, std::int64_t sent, std::int64_t expected) {
    if (entry.isCancelled)
        return; // it was on its way when the user cancelled
    entry.progress = progressReported(entry.progress, sent, expected, m_clock.now());
    Q_EMIT progressChanged();
    m_tvs.sayProgress(
        uploadingMessage(entry.job.remoteName, waitingCount(), entry.progress.fraction));
    entry.stall = m_clock.after(StallTime, [this, &entry] {
        entry.progress.speedBytesPerSecond = 0;
        Q_EMIT progressChanged();
    });
}

void Uploads::cancelUploadJob(const QString& id) {
    const auto entry =
        std::ranges::find(m_entries, id, [](const Entry& each) { return each.job.id; });
    if (entry == m_entries.end())
        return;
    if (&*entry == m_current)
        return cancelCurrent(*entry);
    const QString name = entry->job.remoteName;
    remove(*entry);
    m_tvs.say(u"Removed "_s + name + u" from upload queue"_s);
}

void Uploads::cancelCurrent(Entry& entry) {
    if (entry.isStored)
        return; // only its still is under way
    const QString name = entry.job.remoteName;
    entry.isCancelled = true;
    if (m_transport.cancel()) {
        m_tvs.say(u"Canceling "_s + name + u"..."_s);
        return;
    }
    m_worker.cancel(); // it has sent nothing of the file yet
    remove(entry);
    m_tvs.say(u"Canceled "_s + name);
    m_worker = processUploadQueue();
}

void Uploads::retryUploadJob(const QString& id) {
    const auto entry =
        std::ranges::find(m_entries, id, [](const Entry& each) { return each.job.id; });
    if (entry == m_entries.end() || entry->state != UploadListItemState::Failed)
        return;
    entry->progress = {};
    entry->waits = 0;
    m_entries.splice(m_entries.end(), m_entries, entry);
    show(*entry, UploadListItemState::Queued);
    resumeUploadQueueIfNeeded();
}

void Uploads::show(Entry& entry, UploadListItemState state, const QString& reason) {
    if (entry.state == state && entry.reason == reason)
        return;
    entry.state = state;
    entry.reason = reason;
    Q_EMIT itemsChanged();
}

void Uploads::remove(const Entry& entry) {
    if (&entry == m_current)
        m_current = nullptr;
    m_entries.remove_if([&](const Entry& each) { return &each == &entry; });
    Q_EMIT itemsChanged();
}

Uploads::Entry* Uploads::nextEntry() {
    const auto next = std::ranges::find_if(
        m_entries, [](const Entry& entry) { return entry.state != UploadListItemState::Failed; });
    return next == m_entries.end() ? nullptr : &*next;
}

qsizetype Uploads::waitingCount() const {
    return std::ranges::count(m_entries, UploadListItemState::Queued, &Entry::state);
}

} // namespace quiv
