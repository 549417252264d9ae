#include "ui/thumbnails/thumbnail_store.h"

#include "platform/async/background.h"

#include <QImageReader>

using namespace Qt::StringLiterals;

namespace quiv {

using namespace std::chrono_literals;

namespace {

constexpr auto FetchTimeout = 20s;
constexpr int FetchesAtOnce = 4;
// For one picture: enough for the pixels that are allowed.
constexpr int DecoderMegabytes = 64;

QString keyOf(const QUrl& url, const ThumbnailShape& shape) {
    return u"%1x%2 "_s.arg(shape.size.width()).arg(shape.size.height()) +
           url.toString(QUrl::FullyEncoded);
}

} // namespace

ThumbnailStore::ThumbnailStore(HttpSession& http, Clock& clock, qsizetype capacity)
    : m_http(http), m_clock(clock), m_cache(capacity), m_semaphore(FetchesAtOnce) {
    QImageReader::setAllocationLimit(DecoderMegabytes);
}

QImage ThumbnailStore::cached(const QUrl& url, const ThumbnailShape& shape) {
    const QImage* picture = m_cache.object(keyOf(url, shape));
    return picture ? *picture : QImage();
}

Task<QImage> ThumbnailStore::fetch(QUrl url, ThumbnailShape shape) {
    const Semaphore::Permit permit = co_await m_semaphore.acquire();
    HttpRequest request;
    request.priority = HttpPriority::Background;
    request.url = url.toEncoded();
    request.timeouts.total = FetchTimeout;
    request.replyLimit = ImageReplyLimit;
    HttpReply reply;
    try {
        reply = co_await m_http.send(std::move(request));
    } catch (const HttpError&) {
        co_return QImage();
    }
    if (!reply.isSuccess())
        co_return QImage();
    const auto decode = [bytes = reply.body, shape] {
        return decodedThumbnail(bytes, shape);
    };
    const QImage picture = co_await inBackground(decode);
    if (!picture.isNull())
        m_cache.insert(keyOf(url, shape), new QImage(picture), picture.sizeInBytes());
    co_return picture;
}

} // namespace quiv
