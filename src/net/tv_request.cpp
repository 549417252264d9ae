#include "net/tv_request.h"

namespace quiv {

using namespace Qt::StringLiterals;

std::optional<QUrl> baseURL(const TVEndpoint& endpoint) {
    const QUrl url(u"http://"_s + endpointKey(endpoint), QUrl::StrictMode);
    const bool isOfEndpoint = url.isValid() && !url.host().isEmpty() && url.path().isEmpty() &&
                              url.userInfo().isEmpty() && !url.hasQuery() && !url.hasFragment() &&
                              url.port() == endpoint.port;
    return isOfEndpoint ? std::optional(url) : std::nullopt;
}

QString tokenDeviceKey(const QUrl& url) {
    const QString host = url.host().toLower();
    return (host.isEmpty() ? u"unknown"_s : host) + u':' + QString::number(url.port(80));
}

HttpRequest tvRequest(const QByteArray& method, const QUrl& base, const QString& path,
                      const QueryItems& query) {
    HttpRequest request;
    request.method = method;
    request.url = base.toEncoded() + '/' + path.toUtf8();
    char separator = '?';
    for (const auto& [name, value] : query) {
        request.url += separator + percentEncoded(name) + '=' + percentEncoded(value);
        separator = '&';
    }
    return request;
}

} // namespace quiv
