#include "ui/thumbnails/thumbnail_store.h"

using namespace Qt::StringLiterals;

namespace quiv {

using namespace std::chrono_literals;

namespace {

constexpr auto FetchTimeout = 20s;
constexpr int FetchesAtOnce = 4;

QString keyOf(const QUrl& url, const ThumbnailShape& shape) {
    return u"%1x%2 "_s.arg(shape.size.width()).arg(shape.size.height()) +
           url.toString(QUrl::FullyEncoded);
}

} // namespace

ThumbnailStore::ThumbnailStore(HttpSession& http, PictureDecoder& decoder, Clock& clock,
                               qsizetype capacity)
    : m_http(http),
      m_decoder(decoder),
      m_clock(clock),
      m_cache(capacity),
      m_semaphore(FetchesAtOnce) {}

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
    request.replyLimit = PictureDecoder::MostBytes;
    HttpReply reply;
    try {
        reply = co_await m_http.send(std::move(request));
    } catch (const HttpError&) {
        co_return QImage();
    }
    if (!reply.isSuccess())
        co_return QImage();
    const auto pixels = co_await m_decoder.decode(std::move(reply.body), shape.size);
    if (!pixels)
        co_return QImage();
    const QImage picture = roundedThumbnail(*pixels, shape);
    m_cache.insert(keyOf(url, shape), new QImage(picture), picture.sizeInBytes());
    co_return picture;
}

} // namespace quiv
