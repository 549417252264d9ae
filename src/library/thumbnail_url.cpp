#include "library/thumbnail_url.h"

namespace quiv {

QUrl thumbnailURLForVideo(const ThumbnailAddress& address, const QString& videoName) {
    const QueryItems query = QueryItems{{QStringLiteral("name"), videoName}} + address.identity;
    return QUrl::fromEncoded(
        tvRequest("GET", address.base, QStringLiteral("api/thumbnail"), query).url);
}

} // namespace quiv
