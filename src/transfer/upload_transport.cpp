#include "transfer/upload_transport.h"

#include "platform/async/background.h"
#include "platform/open_file.h"
#include "transfer/upload_recovery.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stop_token>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto UploadPath = u"api/files/upload"_s;
constexpr std::chrono::seconds IdleTimeout = 2min;
// How long a cancelled upload may go on asking the TV whether it has the file after all.
constexpr auto ConfirmationAfterCancel = 700ms;

QString storedName(const HttpReply& reply, const QString& requestedName) {
    try {
        const auto payload = decode<UploadSuccessPayload>(reply.body);
        const QString name = payload.fileName.value_or(QString()).trimmed();
        return name.isEmpty() ? requestedName : name;
    } catch (const DecodingError&) {
        return requestedName;
    }
}

} // namespace

// The transfer under way.
struct UploadTransport::UploadTaskState {
    UploadTaskState(Tv receiver, Upload what, std::shared_ptr<const OpenFile> source,
                    std::int64_t nowMs, std::optional<QString> storedBefore,
                    ProgressSink progressSink)
        : tv(std::move(receiver)),
          upload(std::move(what)),
          file(std::move(source)),
          expected{upload.remoteName, file->openedStamp().sizeBytes, nowMs,
                   std::move(storedBefore)},
          onProgress(std::move(progressSink)) {}

    const Tv tv;
    const Upload upload;
    const std::shared_ptr<const OpenFile> file;
    const ExpectedUpload expected;
    const ProgressSink onProgress;

    std::int64_t lastTotalBytesSent = 0;
    std::int64_t lastKnownExpectedBytes = 0;
    bool completionRecoveryStarted = false;
    bool isAnswered = false;  // with success, so that only the file is looked at once more
    bool isConfirmed = false; // the TV has the file, whatever becomes of the transfer
    Task<> recovery;

    std::stop_source stop;             // of the transfer
    std::stop_source stopConfirmation; // of what is asked after it
    std::unique_ptr<Clock::Timer> confirmationLimit;
};

// Names a transfer as the one to cancel for as long as it lives.
class UploadTransport::CurrentTransfer {
public:
    CurrentTransfer(UploadTaskState*& slot, UploadTaskState* state) : m_slot(slot) {
        m_slot = state;
    }
    ~CurrentTransfer() { m_slot = nullptr; }
    Q_DISABLE_COPY_MOVE(CurrentTransfer)

private:
    UploadTaskState*& m_slot;
};

UploadTransport::UploadTransport(Clock& clock) : m_clock(clock) {}

UploadTransport::~UploadTransport() = default;

Task<QString> UploadTransport::uploadSingle(Tv tv, Upload upload, ProgressSink onProgress) {
    const auto opening = [path = upload.file] {
        return OpenFile::reading(path);
    };
    const std::shared_ptr<const OpenFile> file = co_await onDisk(opening);
    if (!file)
        throw HttpError(HttpErrorCode::CannotReadFile);
    const std::int64_t nowMs = m_clock.wallTime().time_since_epoch().count();
    const bool isSameTv = m_lastStored && m_lastStored->base == tv.base();
    UploadTaskState state(tv, std::move(upload), file, nowMs,
                          isSameTv ? std::optional(m_lastStored->name) : std::nullopt,
                          std::move(onProgress));
    const CurrentTransfer current(m_current, &state);
    const QString name = co_await sendAndConfirm(&state);
    m_lastStored = {tv.base(), name};
    co_return name;
}

Task<QString> UploadTransport::sendAndConfirm(UploadTaskState* state) {
    std::optional<TvReply> reply;
    std::optional<HttpError> error;
    try {
        reply = co_await state->tv.send(fileRequest(state));
    } catch (const HttpError& failure) {
        error = failure;
    }
    state->recovery.cancel();
    if (reply && reply->isSuccess() && !state->isConfirmed) {
        const auto asking = [file = state->file] {
            return file->stamp();
        };
        state->isAnswered = true;
        const std::optional<FileStamp> stamp = co_await onDisk(asking);
        if (stamp != state->file->openedStamp())
            throw UploadFailure(u"The file changed while it was being uploaded. "
                                "Upload it again when it is complete."_s);
        co_return storedName(*reply, state->upload.remoteName);
    }
    if (!state->isConfirmed)
        state->isConfirmed = co_await confirmUploadOnServer(state);
    if (state->isConfirmed)
        co_return state->upload.remoteName;
    if (reply)
        state->tv.refuse(*reply, serverErrorMessage(reply->status, reply->body));
    if (error->code() == HttpErrorCode::BadServerResponse)
        throw UploadFailure(u"Upload failed: invalid server response"_s);
    throw HttpError(error->code());
}

HttpRequest UploadTransport::fileRequest(UploadTaskState* state) {
    QueryItems query{{u"name"_s, state->upload.remoteName},
                     {u"uploadId"_s, state->upload.uploadId}};
    if (state->upload.expectsClientThumbnail)
        query.append({u"thumbnailMode"_s, u"client"_s});
    HttpRequest request = state->tv.request("PUT", UploadPath, query);
    request.bodyFile = state->file;
    request.timeouts = {std::nullopt, IdleTimeout};
    request.stop = state->stop.get_token();
    request.onProgress = [this, state](const HttpProgress& progress) {
        transferProgressed(state, progress);
    };
    return request;
}

void UploadTransport::transferProgressed(UploadTaskState* state, const HttpProgress& progress) {
    if (progress.sentTotal < 1)
        return;
    state->lastKnownExpectedBytes = std::max(state->lastKnownExpectedBytes, progress.sentTotal);
    const bool startedOver = progress.sent < state->lastTotalBytesSent;
    const bool wasNearEnd =
        state->lastTotalBytesSent >= nearEndThreshold(state->lastKnownExpectedBytes);
    if (startedOver && wasNearEnd && !state->completionRecoveryStarted) {
        state->completionRecoveryStarted = true;
        state->recovery = recoverRestarted(state, progress);
        return;
    }
    showProgress(state, progress);
}

void UploadTransport::showProgress(UploadTaskState* state, const HttpProgress& progress) {
    state->lastTotalBytesSent = std::max(state->lastTotalBytesSent, progress.sent);
    state->onProgress(progress.sent, progress.sentTotal);
}

// The body starts over although nearly all of it was sent: the TV may have taken it the first time.
Task<> UploadTransport::recoverRestarted(UploadTaskState* state, HttpProgress progress) {
    const bool isConfirmed = co_await confirmUploadOnServer(state);
    if (isConfirmed) {
        state->isConfirmed = true;
        state->stop.request_stop();
        co_return;
    }
    state->completionRecoveryStarted = false;
    showProgress(state, progress);
}

Task<bool> UploadTransport::confirmUploadOnServer(UploadTaskState* state) {
    const std::stop_token stop = state->stopConfirmation.get_token();
    try {
        const auto status =
            co_await state->tv.get<UploadStatusResponse>(u"api/upload-status"_s, 3s, stop);
        if (confirmsUpload(status, state->expected))
            co_return true;
    } catch (const Error&) {
        // The listing may still tell.
    }
    try {
        auto listing = co_await state->tv.get<FilesResponse>(u"api/files"_s, 5s, stop);
        const auto looking = [listing = std::move(listing), expected = state->expected] {
            return confirmsUpload(listing, expected);
        };
        const bool isConfirmed = co_await inBackground(looking);
        co_return isConfirmed;
    } catch (const Error&) {
        co_return false;
    }
}

bool UploadTransport::cancel() {
    if (!m_current || m_current->isAnswered)
        return false;
    m_current->stop.request_stop();
    m_current->confirmationLimit = m_clock.after(
        ConfirmationAfterCancel, [state = m_current] { state->stopConfirmation.request_stop(); });
    return true;
}

} // namespace quiv
