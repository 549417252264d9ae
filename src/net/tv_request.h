#pragma once

#include "net/tv_endpoint.h"
#include "platform/http/http_session.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

namespace quiv {

using QueryItems = QList<std::pair<QString, QString>>;

// "http://" host ":" port. Returns nullopt if that is no valid address.
std::optional<QUrl> baseURL(const TVEndpoint& endpoint);

// Lower-cased host ("unknown" without one), ":" and port (80 without one): any URL of a TV gives
// the same key, whatever its path.
QString tokenDeviceKey(const QUrl& url);

// A request for a path of the TV ("api/files"), with every query item fully percent-encoded.
HttpRequest tvRequest(const QByteArray& method, const QUrl& base, const QString& path,
                      const QueryItems& query = {});

} // namespace quiv
