#include "platform/http/curl_http_session.h"

#include "platform/host_resolver.h"

#include <QUrl>

#include <algorithm>
#include <arpa/inet.h>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

constexpr std::chrono::seconds LongestLookUp{60};

// The host as the local network knows it: its names are plain text where URLs have them encoded.
QString multicastHostOf(const QByteArray& url) {
    return QUrl::fromAce(QUrl::fromEncoded(url).host().toLatin1(), QUrl::IgnoreIDNWhitelist);
}

bool hasHostName(const QByteArray& url) {
    const QByteArray host = QUrl::fromEncoded(url).host().toLatin1();
    in6_addr address{};
    return !host.isEmpty() && ::inet_pton(AF_INET, host.constData(), &address) != 1 &&
           ::inet_pton(AF_INET6, host.constData(), &address) != 1;
}

} // namespace

// An exchange that has not completed.
struct CurlHttpSession::Exchange {
    Promise<HttpReply> reply;
    std::function<void(const HttpProgress&)> onProgress;
    std::optional<QString> resolvedHost{};
    Task<> start{}; // ends when the network thread has the request
    std::optional<std::stop_callback<std::function<void()>>> onStop{};
};

CurlHttpSession::CurlHttpSession(HostResolver* resolver)
    : m_resolver(resolver),
      m_network([this, token = std::weak_ptr(m_token)](TransferId id, HttpResult result) {
          postToMainThread(token, [this, id, result = std::move(result)]() mutable {
              deliver(id, std::move(result));
          });
      }) {}

CurlHttpSession::~CurlHttpSession() {
    m_token.reset();
    while (!m_exchanges.empty())
        deliver(m_exchanges.begin()->first, HttpError(HttpErrorCode::Cancelled));
}

Task<HttpReply> CurlHttpSession::send(HttpRequest request) {
    const TransferId id = ++m_lastId;
    const Promise<HttpReply> reply;
    const auto exchange =
        m_exchanges.emplace(id, std::make_unique<Exchange>(reply, request.onProgress)).first;
    exchange->second->onStop.emplace(request.stop, [this, id] { requestStop(id); });
    exchange->second->start = start(id, std::move(request));
    const std::function<void()> onDropped = [this, id] {
        abandon(id);
    };
    co_return co_await reply.wait(onDropped);
}

Task<> CurlHttpSession::start(TransferId id, HttpRequest request) {
    std::optional<HostAddress> address;
    if (hasHostName(request.url)) {
        const auto start = std::chrono::steady_clock::now();
        const QString host = multicastHostOf(request.url);
        if (m_resolver && host.endsWith(".local"_L1, Qt::CaseInsensitive))
            address =
                co_await m_resolver->resolve(host, request.timeouts.total.value_or(LongestLookUp));
        if (!address)
            co_return fail(id, HttpErrorCode::CannotFindHost);
        m_exchanges.at(id)->resolvedHost = host;
        if (request.timeouts.total) {
            using std::chrono::milliseconds;
            const auto spent =
                std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
            request.timeouts.total = std::max(*request.timeouts.total - spent, milliseconds(1));
        }
    }
    const auto onProgress = [this, id,
                             token = std::weak_ptr(m_token)](const HttpProgress& progress) {
        postToMainThread(token, [this, id, progress] { report(id, progress); });
    };
    m_network.start(
        id, std::make_unique<CurlTransfer>(std::move(request), std::move(address), onProgress));
}

// From the event loop, as every exchange completes.
void CurlHttpSession::fail(TransferId id, HttpErrorCode code) {
    postToMainThread(m_token, [this, id, code] { deliver(id, HttpError(code)); });
}

void CurlHttpSession::abandon(TransferId id) {
    m_exchanges.erase(id);
    m_network.cancel(id);
}

void CurlHttpSession::requestStop(TransferId id) {
    postToMainThread(m_token, [this, id] {
        m_network.cancel(id);
        deliver(id, HttpError(HttpErrorCode::Cancelled));
    });
}

void CurlHttpSession::report(TransferId id, const HttpProgress& progress) {
    const auto found = m_exchanges.find(id);
    if (found == m_exchanges.end())
        return;
    const auto onProgress = found->second->onProgress; // which may end this exchange
    onProgress(progress);
}

void CurlHttpSession::deliver(TransferId id, HttpResult result) {
    const auto found = m_exchanges.find(id);
    if (found == m_exchanges.end())
        return; // cancelled while its result was on the way
    const Promise<HttpReply> reply = found->second->reply;
    const std::optional<QString> resolvedHost = found->second->resolvedHost;
    m_exchanges.erase(found);
    const auto* error = std::get_if<HttpError>(&result);
    if (error && resolvedHost && error->code() != HttpErrorCode::Cancelled)
        m_resolver->forget(*resolvedHost);
    if (error)
        reply.rejectNow(std::make_exception_ptr(*error));
    else
        reply.resolveNow(std::get<HttpReply>(std::move(result)));
}

} // namespace quiv
