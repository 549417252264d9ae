#pragma once

#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/clock.h"
#include "transfer/upload_job.h"

#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>

namespace quiv {

// Moves one local file to a TV, and finds out how that ended: whatever seems to have
// failed is a success when the TV has the file.
//
// One upload at a time; destroying its task ends it. Main thread only.
class UploadTransport {
public:
    struct Upload {
        Upload(const UploadJob& job, bool hasSentThumbnail)
            : file(job.sourceURL.toLocalFile()),
              remoteName(job.remoteName),
              uploadId(job.id),
              expectsClientThumbnail(hasSentThumbnail) {}

        QString file; // path
        QString remoteName;
        QString uploadId;
        bool expectsClientThumbnail; // the TV has its still from us
    };
    // Bytes of the body sent and expected, the latter at least 1.
    using ProgressSink = std::function<void(std::int64_t sent, std::int64_t expected)>;

    explicit UploadTransport(Clock& clock);
    ~UploadTransport();

    // The name under which the TV stored the file. Throws UploadFailure or HttpError.
    Task<QString> uploadSingle(Tv tv, Upload upload, ProgressSink onProgress);

    // Ends the transfer under way as cancelled, unless the TV says at once that it has the file.
    // Returns false if there is nothing to end: dropping the task is enough.
    bool cancel();

private:
    struct UploadTaskState;
    struct StoredUpload {
        QUrl base;
        QString name;
    };
    class CurrentTransfer;

    Task<QString> sendAndConfirm(UploadTaskState* state);
    HttpRequest fileRequest(UploadTaskState* state);
    void transferProgressed(UploadTaskState* state, const HttpProgress& progress);
    void showProgress(UploadTaskState* state, const HttpProgress& progress);
    Task<> recoverRestarted(UploadTaskState* state, HttpProgress progress);
    Task<bool> confirmUploadOnServer(UploadTaskState* state);

    Clock& m_clock;
    std::optional<StoredUpload> m_lastStored; // by the upload before
    UploadTaskState* m_current = nullptr;     // lives in the frame of uploadSingle()
};

} // namespace quiv
