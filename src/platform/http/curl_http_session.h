#pragma once

#include "platform/async/promise.h"
#include "platform/http/curl_network_thread.h"
#include "platform/http/http_session.h"

#include <map>
#include <memory>

namespace quiv {

class HostResolver;

// HTTP on libcurl, with the transfers on a network thread of its own.
//
// Host names in ".local" are resolved through `resolver` alone: the system's own resolver may take
// its time, and knows these names on some systems only. Destroying the session ends every exchange
// as Cancelled.
class CurlHttpSession final : public HttpSession {
public:
    explicit CurlHttpSession(HostResolver* resolver = nullptr);
    ~CurlHttpSession() override;

    Task<HttpReply> send(HttpRequest request) override;
    void dropIdleConnections() override { m_network.dropIdleConnections(); }

private:
    struct Exchange;

    Task<> start(TransferId id, HttpRequest request);
    void fail(TransferId id, HttpErrorCode code);
    void abandon(TransferId id);
    void requestStop(TransferId id);
    void report(TransferId id, const HttpProgress& progress);
    void deliver(TransferId id, HttpResult result);

    HostResolver* m_resolver;
    std::map<TransferId, std::unique_ptr<Exchange>> m_exchanges;
    TransferId m_lastId = 0;
    std::shared_ptr<const void> m_token = std::make_shared<char>(); // expires with the session
    CurlNetworkThread m_network;
};

} // namespace quiv
