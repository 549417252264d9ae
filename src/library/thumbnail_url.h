#pragma once

#include "net/tv_request.h"

#include <QString>
#include <QUrl>

namespace quiv {

// Where a TV gives out the pictures of its videos, and who asks: such requests carry no headers.
struct ThumbnailAddress {
    QUrl base;
    QueryItems identity; // as AuthTokens::authQueryItems() says it

    bool operator==(const ThumbnailAddress&) const = default;
};

// The whole of it identifies the picture; it holds an access token and must not be shown.
QUrl thumbnailURLForVideo(const ThumbnailAddress& address, const QString& videoName);

} // namespace quiv
