#include "transfer/upload_preflight.h"

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

void setBody(HttpRequest& request, const QByteArray& thumbnail) {
    request.body = thumbnail;
    const QByteArray type = thumbnail.isEmpty() ? "application/octet-stream" : "image/jpeg";
    request.headers.append(std::pair("Content-Type", type));
    request.timeouts.total = PreflightTimeout;
}

} // namespace

UploadPreflight::UploadPreflight(RequestLayer& requests, const SelectedDevice& selected,
                                 StillExtractor& stills, SystemLog& log)
    : m_requests(requests),
      m_selected(selected),
      m_stills(stills),
      m_log(log),
      m_semaphore(PreflightsAtOnce) {}

Task<UploadPreflightResult> UploadPreflight::prepareUploadPreflight(UploadJob job) {
    UploadPreflightResult result;
    if (!hasSupportedVideoExtension(job.remoteName) || !m_selected.baseURL())
        co_return result;
    auto entering = m_semaphore.acquire();
    const Semaphore::Permit permit = co_await std::move(entering);
    const QString path = job.sourceURL.toLocalFile();
    auto extracting = m_stills.makeUploadThumbnail(path);
    result.thumbnailPayload = co_await std::move(extracting);
    const auto base = m_selected.baseURL(); // may be another TV by now
    if (!base)
        co_return result;
    try {
        auto sending = sendUploadPreflight(job.remoteName, sizeOf(path),
                                           result.thumbnailPayload.value_or(QByteArray()), *base);
        co_await std::move(sending);
        result.sentTo = base;
    } catch (const Error& error) {
        m_log.write(u"QuivController upload preflight failed for %1: %2"_s.arg(
            job.remoteName, error.description()));
    }
    co_return result;
}

Task<> UploadPreflight::sendUploadPreflight(QString name, std::optional<std::int64_t> sizeBytes,
                                            QByteArray thumbnail, QUrl base) {
    QueryItems query{{u"name"_s, name}};
    if (sizeBytes.value_or(0) >= 1)
        query.append({u"sizeBytes"_s, QString::number(*sizeBytes)});
    HttpRequest request = tvRequest("PUT", base, u"api/files/upload-preflight"_s, query);
    setBody(request, thumbnail);
    auto putting = put(std::move(request), base);
    co_await std::move(putting);
}

Task<> UploadPreflight::uploadThumbnailSidecar(QByteArray thumbnail, QString storedName) {
    const auto base = m_selected.baseURL();
    if (!base)
        co_return;
    HttpRequest request =
        tvRequest("PUT", *base, u"api/files/thumbnail"_s, {{u"name"_s, storedName}});
    setBody(request, thumbnail);
    try {
        auto putting = put(std::move(request), *base);
        co_await std::move(putting);
    } catch (const Error& error) {
        m_log.write(u"QuivController thumbnail sidecar upload failed for %1: %2"_s.arg(
            storedName, error.description()));
    }
}

Task<> UploadPreflight::put(HttpRequest request, QUrl base) {
    const SelectedDevice::Guard guard(m_selected);
    auto sending = m_requests.send(std::move(request), base);
    const HttpReply reply = co_await std::move(sending);
    if (!reply.isSuccess())
        m_requests.refuse(reply.status, serverErrorMessage(reply.status, reply.body), guard);
}

} // namespace quiv
