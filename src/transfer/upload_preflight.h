#pragma once

#include "net/tv.h"
#include "platform/async/semaphore.h"
#include "platform/async/task.h"
#include "transfer/upload_job.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quiv {

class StillExtractor;
class SystemLog;

struct UploadPreflightResult {
    bool sent = false;                            // the TV accepted it
    std::optional<QByteArray> thumbnailPayload{}; // a JPEG, when one could be made
};

// Tells the TV what is coming: name, size and a still of the video; the still alone afterwards if
// that did not work. Failures are logged and do not end the upload.
class UploadPreflight {
public:
    UploadPreflight(StillExtractor& stills, SystemLog& log);

    Task<UploadPreflightResult> prepareUploadPreflight(Tv tv, UploadJob job);
    Task<> uploadThumbnailSidecar(Tv tv, QByteArray thumbnail, QString storedName);

private:
    StillExtractor& m_stills;
    SystemLog& m_log;
    Semaphore m_semaphore;
};

} // namespace quiv
