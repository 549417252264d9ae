#include "platform/http/curl_http_session.h"

#include "platform/host_resolver.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

// The host as the local network knows it: its names are plain text where URLs have them encoded.
QString multicastHostOf(const QByteArray& url) {
    return QUrl::fromAce(QUrl::fromEncoded(url).host().toLatin1(), QUrl::IgnoreIDNWhitelist);
}

} // namespace

// One exchange awaited on the main thread.
class CurlHttpSession::Exchange {
public:
    Exchange(CurlHttpSession& session, HttpRequest request, std::optional<HostAddress> address)
        : m_session(&session), m_request(std::move(request)), m_address(std::move(address)) {}
    Exchange(Exchange&&) noexcept = default;
    Exchange& operator=(Exchange&&) = delete;

    ~Exchange() {
        if (m_id != 0 && !m_result)
            m_session->abandon(m_id);
    }

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting) {
        m_waiting = waiting;
        m_id = m_session->begin(*this);
        auto requestStop = [session = m_session, id = m_id] {
            session->requestStop(id);
        };
        m_stopCallback.emplace(m_request.stop, std::move(requestStop));
    }

    HttpReply await_resume() {
        if (auto* error = std::get_if<HttpError>(&*m_result))
            throw HttpError(*error);
        return std::get<HttpReply>(std::move(*m_result));
    }

    std::unique_ptr<CurlTransfer> makeTransfer(CurlTransfer::ProgressSink sink) const {
        return std::make_unique<CurlTransfer>(m_request, m_address, std::move(sink));
    }

    void report(const HttpProgress& progress) const {
        const auto onProgress = m_request.onProgress; // which may end this exchange
        onProgress(progress);
    }

    void complete(HttpResult result) {
        m_stopCallback.reset();
        m_result = std::move(result);
        m_waiting.resume();
    }

private:
    using StopCallback = std::stop_callback<std::function<void()>>;

    // Movable until awaited, when the rest of it gets its place.
    struct StopSlot {
        std::unique_ptr<StopCallback> callback;
        void emplace(const std::stop_token& token, std::function<void()> call) {
            callback = std::make_unique<StopCallback>(token, std::move(call));
        }
        void reset() { callback.reset(); }
    };

    CurlHttpSession* m_session;
    HttpRequest m_request;
    std::optional<HostAddress> m_address;
    std::coroutine_handle<> m_waiting;
    TransferId m_id = 0;
    StopSlot m_stopCallback;
    std::optional<HttpResult> m_result;
};

CurlHttpSession::CurlHttpSession(HostResolver* resolver)
    : m_resolver(resolver), m_network([this](TransferId id, HttpResult result) {
          QMetaObject::invokeMethod(
              &m_mainThread,
              [this, id, result = std::move(result)]() mutable { deliver(id, std::move(result)); },
              Qt::QueuedConnection);
      }) {}

CurlHttpSession::~CurlHttpSession() {
    *m_isAlive = false;
    while (!m_exchanges.empty()) {
        const TransferId id = m_exchanges.begin()->first;
        m_network.cancel(id);
        deliver(id, HttpError(HttpErrorCode::Cancelled));
    }
}

Task<HttpReply> CurlHttpSession::send(HttpRequest request) {
    const auto deadline = std::chrono::steady_clock::now() + request.timeouts.total;
    const std::shared_ptr<const bool> isAlive = m_isAlive;
    const QString host = multicastHostOf(request.url);
    std::optional<HostAddress> address;
    if (m_resolver && host.endsWith(".local"_L1, Qt::CaseInsensitive)) {
        auto resolution = m_resolver->resolve(host, request.timeouts.total);
        address = co_await std::move(resolution);
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        request.timeouts.total = std::max(left, std::chrono::milliseconds(1));
    }
    if (!*isAlive || request.stop.stop_requested())
        throw HttpError(HttpErrorCode::Cancelled);
    try {
        Exchange exchange(*this, std::move(request), address);
        co_return co_await std::move(exchange);
    } catch (const HttpError& error) {
        if (address && error.code() != HttpErrorCode::Cancelled && *isAlive)
            m_resolver->forget(host);
        throw;
    }
}

TransferId CurlHttpSession::begin(Exchange& exchange) {
    const TransferId id = ++m_lastId;
    m_exchanges.emplace(id, &exchange);
    m_network.start(id, exchange.makeTransfer([this, id](const HttpProgress& progress) {
        QMetaObject::invokeMethod(
            &m_mainThread, [this, id, progress] { report(id, progress); }, Qt::QueuedConnection);
    }));
    return id;
}

void CurlHttpSession::abandon(TransferId id) {
    if (m_exchanges.erase(id) > 0)
        m_network.cancel(id);
}

void CurlHttpSession::requestStop(TransferId id) {
    m_network.cancel(id);
    QMetaObject::invokeMethod(
        &m_mainThread, [this, id] { deliver(id, HttpError(HttpErrorCode::Cancelled)); },
        Qt::QueuedConnection);
}

void CurlHttpSession::report(TransferId id, const HttpProgress& progress) {
    const auto found = m_exchanges.find(id);
    if (found != m_exchanges.end())
        found->second->report(progress);
}

void CurlHttpSession::deliver(TransferId id, HttpResult result) {
    const auto found = m_exchanges.find(id);
    if (found == m_exchanges.end())
        return; // cancelled while its result was on the way
    Exchange* const exchange = found->second;
    m_exchanges.erase(found);
    exchange->complete(std::move(result));
}

} // namespace quiv
