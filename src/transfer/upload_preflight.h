#pragma once

#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/turnstile.h"
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
    std::optional<QUrl> sentTo{};                 // the TV that accepted it
    std::optional<QByteArray> thumbnailPayload{}; // a JPEG, when one could be made
};

// Tells the TV what is coming: name, size and a still of the video; the still alone afterwards if
// that did not work. Failures are logged and do not end the upload.
class UploadPreflight {
public:
    UploadPreflight(const TvAccess& tvs, StillExtractor& stills, SystemLog& log);

    Task<UploadPreflightResult> prepareUploadPreflight(UploadJob job);
    Task<> uploadThumbnailSidecar(QByteArray thumbnail, QString storedName);

private:
    const TvAccess m_tvs;
    StillExtractor& m_stills;
    SystemLog& m_log;
    Turnstile m_turnstile;
};

} // namespace quiv
