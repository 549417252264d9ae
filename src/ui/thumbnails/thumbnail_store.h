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

// The pictures of all rows: fetches a few at a time, has them decoded, and keeps the most recently
// used ones up to a number of bytes. Outlives the loaders that use it.
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
    // Returns a null image if the TV has none (yet), or sends none that can be shown. Dropping the
    // task ends the fetch.
    Task<QImage> fetch(QUrl url, ThumbnailShape shape);

private:
    HttpSession& m_http;
    PictureDecoder& m_decoder;
    Clock& m_clock;
    QCache<QString, QImage> m_cache; // by address and size; costs are bytes
    Semaphore m_semaphore;
};

} // namespace quiv
