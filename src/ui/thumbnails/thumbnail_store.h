#pragma once

#include "platform/async/semaphore.h"
#include "platform/async/task.h"
#include "platform/clock.h"
#include "platform/http/http_session.h"
#include "platform/pictures/picture_decoder.h"
#include "ui/thumbnails/thumbnail_picture.h"

#include <QCache>
#include <QImage>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// What came of asking for a picture.
struct FetchedThumbnail {
    QImage picture;         // null if the TV has none (yet), or sends none that can be shown
    bool isRefused = false; // the TV does not let this client have it
};

// The pictures of all rows: fetches a few at a time, has them decoded, and keeps the most recently
// used ones up to a number of bytes. Remembers what was asked for in vain, so that rows that come
// and go do not ask for it anew. Outlives the loaders that use it.
class ThumbnailStore : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")

public:
    static constexpr qsizetype DefaultCapacity = 64 << 20; // bytes

    ThumbnailStore(HttpSession& http, PictureDecoder& decoder, Clock& clock,
                   qsizetype capacity = DefaultCapacity);

    Clock& clock() { return m_clock; }

    // Returns a null image if the picture is not kept.
    QImage cached(const QUrl& url, const ThumbnailShape& shape);
    // Dropping the task ends the fetch.
    Task<FetchedThumbnail> fetch(QUrl url, ThumbnailShape shape);
    // Whether the TV has refused the rights that this address carries.
    bool isRefused(const QUrl& url) const;
    // How often the picture was tried again; counts one more.
    int countRetry(const QUrl& url);

private:
    static constexpr int MostRemembered = 10'000;

    Task<QImage> decoded(QByteArray body, QUrl url, ThumbnailShape shape);

    HttpSession& m_http;
    PictureDecoder& m_decoder;
    Clock& m_clock;
    QCache<QString, QImage> m_cache;                 // by address and size; costs are bytes
    QCache<QString, int> m_retries{MostRemembered};  // by address
    QCache<QString, bool> m_refused{MostRemembered}; // by TV and rights
    Semaphore m_semaphore;
};

} // namespace quiv
