#include "transfer/upload_preflight.h"

#include "platform/async/background.h"
#include "platform/stills/still_extractor.h"
#include "platform/system_log.h"
#include "transfer/upload_names.h"

#include <QFileInfo>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto PreflightTimeout = 120s;
// So that a TV that does not answer is not sent hundreds of requests: the stills of the next ones
// are made while these are sent.
constexpr int PreflightsAtOnce = 4;

std::optional<std::int64_t> sizeOf(const QString& path) {
    const QFileInfo file(path);
    return file.isFile() ? std::optional(file.size()) : std::nullopt;
}

Task<> put(Tv tv, QString path, QueryItems query, QByteArray thumbnail) {
    HttpRequest request = tv.request("PUT", path, query);
    request.body = thumbnail;
    const QByteArray type = thumbnail.isEmpty() ? "application/octet-stream" : "image/jpeg";
    request.headers.append(std::pair("Content-Type", type));
    request.timeouts.total = PreflightTimeout;
    const TvReply reply = co_await tv.send(std::move(request));
    if (!reply.isSuccess())
        tv.refuse(reply, serverErrorMessage(reply.status, reply.body));
}

Task<> sendUploadPreflight(Tv tv, QString name, std::optional<std::int64_t> sizeBytes,
                           QByteArray thumbnail) {
    QueryItems query{{u"name"_s, name}};
    if (sizeBytes.value_or(0) >= 1)
        query.append({u"sizeBytes"_s, QString::number(*sizeBytes)});
    return put(tv, u"api/files/upload-preflight"_s, query, thumbnail);
}

} // namespace

UploadPreflight::UploadPreflight(StillExtractor& stills, SystemLog& log)
    : m_stills(stills), m_log(log), m_semaphore(PreflightsAtOnce) {}

Task<UploadPreflightResult> UploadPreflight::prepareUploadPreflight(Tv tv, UploadJob job) {
    UploadPreflightResult result;
    if (!hasSupportedVideoExtension(job.remoteName))
        co_return result;
    const Semaphore::Permit permit = co_await m_semaphore.acquire();
    const QString path = job.sourceURL.toLocalFile();
    result.thumbnailPayload = co_await m_stills.makeUploadThumbnail(path);
    const auto measuring = [path] {
        return sizeOf(path);
    };
    const std::optional<std::int64_t> sizeBytes = co_await onDisk(measuring);
    try {
        co_await sendUploadPreflight(tv, job.remoteName, sizeBytes,
                                     result.thumbnailPayload.value_or(QByteArray()));
        result.sent = true;
    } catch (const Error& error) {
        m_log.write(u"QuivController upload preflight failed for %1: %2"_s.arg(
            job.remoteName, error.description()));
    }
    co_return result;
}

Task<> UploadPreflight::uploadThumbnailSidecar(Tv tv, QByteArray thumbnail, QString storedName) {
    const QueryItems query{{u"name"_s, storedName}};
    try {
        co_await put(tv, u"api/files/thumbnail"_s, query, thumbnail);
    } catch (const Error& error) {
        m_log.write(u"QuivController thumbnail sidecar upload failed for %1: %2"_s.arg(
            storedName, error.description()));
    }
}

} // namespace quiv
