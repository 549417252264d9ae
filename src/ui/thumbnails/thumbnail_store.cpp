#include "ui/thumbnails/thumbnail_store.h"

#include <QUrlQuery>

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

// The TV and what the client shows it, whichever video is asked for.
QString rightsOf(const QUrl& url) {
    QUrlQuery query(url);
    query.removeAllQueryItems(u"name"_s);
    QUrl rights = url;
    rights.setQuery(query);
    return rights.toString(QUrl::FullyEncoded);
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

Task<FetchedThumbnail> ThumbnailStore::fetch(QUrl url, ThumbnailShape shape) {
    const Semaphore::Permit permit = co_await m_semaphore.acquire();
    FetchedThumbnail fetched;
    if ((fetched.isRefused = isRefused(url)))
        co_return fetched; // while it waited
    HttpRequest request;
    request.priority = HttpPriority::Background;
    request.url = url.toEncoded();
    request.timeouts.total = FetchTimeout;
    request.replyLimit = PictureDecoder::MostBytes;
    HttpReply reply;
    try {
        reply = co_await m_http.send(std::move(request));
    } catch (const HttpError&) {
        co_return fetched;
    }
    if (reply.isSuccess())
        fetched.picture = co_await decoded(std::move(reply.body), url, shape);
    if ((fetched.isRefused = reply.status == 401))
        m_refused.insert(rightsOf(url), new bool(true));
    co_return fetched;
}

Task<QImage> ThumbnailStore::decoded(QByteArray body, QUrl url, ThumbnailShape shape) {
    const auto pixels = co_await m_decoder.decode(std::move(body), shape.size);
    if (!pixels)
        co_return QImage();
    const QImage picture = roundedThumbnail(*pixels, shape);
    m_cache.insert(keyOf(url, shape), new QImage(picture), picture.sizeInBytes());
    m_retries.remove(url.toString(QUrl::FullyEncoded));
    co_return picture;
}

bool ThumbnailStore::isRefused(const QUrl& url) const {
    return m_refused.contains(rightsOf(url));
}

int ThumbnailStore::countRetry(const QUrl& url) {
    const QString key = url.toString(QUrl::FullyEncoded);
    if (int* count = m_retries.object(key))
        return (*count)++;
    m_retries.insert(key, new int(1));
    return 0;
}

} // namespace quiv
