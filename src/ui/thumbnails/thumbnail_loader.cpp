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
        if (!m_image.isNull() || !m_loadTask.isDone())
            return;
    } else {
        m_loadTask.cancel();
        m_retryTask.cancel();
        m_retryAttemptCount = 0;
        m_currentURL = url;
        m_shape = shape;
        show({});
    }
    if (url.isEmpty() || shape.size.isEmpty())
        return;
    if (const QImage cached = m_store.cached(url, shape); !cached.isNull())
        return show(cached);
    m_loadTask = loading();
}

Task<> ThumbnailLoader::loading() {
    const QImage picture = co_await m_store.fetch(m_currentURL, m_shape);
    if (picture.isNull())
        scheduleRetry();
    else
        show(picture);
}

void ThumbnailLoader::scheduleRetry() {
    if (m_retryAttemptCount >= MostThumbnailRetries)
        return;
    ++m_retryAttemptCount;
    m_retryTask = retrying(thumbnailRetryDelay(m_retryAttemptCount));
}

Task<> ThumbnailLoader::retrying(std::chrono::milliseconds delay) {
    co_await sleepFor(m_store.clock(), delay);
    if (m_image.isNull())
        load(m_currentURL, m_shape);
}

// A picture ends the retries.
void ThumbnailLoader::show(const QImage& image) {
    if (!image.isNull()) {
        m_retryTask.cancel();
        m_retryAttemptCount = 0;
    }
    if (image.isNull() && m_image.isNull())
        return;
    m_image = image;
    Q_EMIT imageChanged();
}

} // namespace quiv
