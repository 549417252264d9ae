#include "ui/thumbnails/thumbnail_loader.h"

#include <algorithm>

namespace quiv {

using namespace std::chrono_literals;

std::chrono::milliseconds thumbnailRetryDelay(int n) {
    return 600ms + std::clamp(n, 1, 8) * 300ms;
}

ThumbnailLoader::ThumbnailLoader(ThumbnailStore& store, QObject* parent)
    : QObject(parent), m_store(store) {}

void ThumbnailLoader::load(const QUrl& url, const ThumbnailShape& shape) {
    if (url == m_currentURL && shape == m_shape) {
        if (m_image.size() == shape.size || !m_loadTask.isDone())
            return;
    } else {
        m_loadTask.cancel();
        m_retryTask.cancel();
        const bool isAnother = url != m_currentURL;
        m_currentURL = url;
        m_shape = shape;
        if (isAnother)
            show({}); // else the picture stays until it is there in its new size
    }
    if (url.isEmpty() || shape.size.isEmpty())
        return;
    if (const QImage cached = m_store.cached(url, shape); !cached.isNull())
        return show(cached);
    if (!m_store.isRefused(url))
        m_loadTask = loading();
}

Task<> ThumbnailLoader::loading() {
    const FetchedThumbnail fetched = co_await m_store.fetch(m_currentURL, m_shape);
    if (!fetched.picture.isNull())
        show(fetched.picture);
    else if (!fetched.isRefused)
        scheduleRetry();
}

void ThumbnailLoader::scheduleRetry() {
    const int retries = m_store.countRetry(m_currentURL);
    if (retries < MostThumbnailRetries)
        m_retryTask = retrying(thumbnailRetryDelay(retries + 1));
}

Task<> ThumbnailLoader::retrying(std::chrono::milliseconds delay) {
    co_await sleepFor(m_store.clock(), delay);
    load(m_currentURL, m_shape);
}

// A picture ends the retries.
void ThumbnailLoader::show(const QImage& image) {
    if (!image.isNull())
        m_retryTask.cancel();
    if (image.isNull() && m_image.isNull())
        return;
    m_image = image;
    Q_EMIT imageChanged();
}

} // namespace quiv
