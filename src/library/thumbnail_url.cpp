#include "library/thumbnail_url.h"

namespace quiv {

using namespace Qt::StringLiterals;

QUrl thumbnailURLForVideo(const ThumbnailAddress& address, const QString& videoName) {
    const QueryItems query = QueryItems{{u"name"_s, videoName}} + address.identity;
    return QUrl::fromEncoded(tvRequest("GET", address.base, u"api/thumbnail"_s, query).url);
}

} // namespace quiv
