#pragma once

#include "net/request_layer.h"
#include "platform/async/task.h"
#include "platform/async/semaphore.h"
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
// that did not work. Failures are logged, none ends an upload.
class UploadPreflight {
public:
    UploadPreflight(RequestLayer& requests, const SelectedDevice& selected, StillExtractor& stills,
                    SystemLog& log);

    Task<UploadPreflightResult> prepareUploadPreflight(UploadJob job);
    Task<> uploadThumbnailSidecar(QByteArray thumbnail, QString storedName);

private:
    Task<> sendUploadPreflight(QString name, std::optional<std::int64_t> sizeBytes,
                               QByteArray thumbnail, QUrl base);
    Task<> put(HttpRequest request, QUrl base);

    RequestLayer& m_requests;
    const SelectedDevice& m_selected;
    StillExtractor& m_stills;
    SystemLog& m_log;
    Semaphore m_semaphore;
};

} // namespace quiv
