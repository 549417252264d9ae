#pragma once

#include "platform/async/task.h"
#include "ui/thumbnails/thumbnail_store.h"

#include <QImage>
#include <QObject>
#include <QUrl>

#include <chrono>

namespace quiv {

inline constexpr int MostThumbnailRetries = 45;

// How long the n-th retry waits: the TV may still be making the picture.
std::chrono::milliseconds thumbnailRetryDelay(int n);

// Loads the picture of one address at a time, and tries again while there is none. Destroying it
// ends what is under way. No failure is ever reported: there is just no picture.
class ThumbnailLoader : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailLoader(ThumbnailStore& store, QObject* parent = nullptr);

    // Returns a null image while there is no picture.
    const QImage& image() const { return m_image; }

    // An empty address has no picture. An address that is loading or shown already is left alone;
    // one whose picture could not be had is tried again.
    void load(const QUrl& url, const ThumbnailShape& shape);

Q_SIGNALS:
    void imageChanged();

private:
    Task<> loading();
    Task<> retrying(std::chrono::milliseconds delay);
    void scheduleRetry();
    void show(const QImage& image);

    ThumbnailStore& m_store;
    QImage m_image;
    QUrl m_currentURL;
    ThumbnailShape m_shape;
    Task<> m_loadTask;
    Task<> m_retryTask;
};

} // namespace quiv
