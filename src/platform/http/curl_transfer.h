#pragma once

#include "platform/host_address.h"
#include "platform/http/http_session.h"
#include "platform/http/reply_body.h"
#include "platform/http/request_body.h"

#include <curl/curl.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>

namespace quiv {

using HttpResult = std::variant<HttpReply, HttpError>;

// One exchange on the network thread: owns the easy handle, the body being sent and the reply being
// collected. Made on the main thread, then used on the network thread only.
class CurlTransfer {
public:
    using ProgressSink = std::function<void(const HttpProgress&)>;

    CurlTransfer(HttpRequest request, std::optional<HostAddress> address, ProgressSink progress);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    // Sets every option. Returns an error if the request cannot be sent. `onDiskReady` is called on
    // another thread when the disk has caught up, and goOn() or finish() is to be called.
    std::optional<HttpError> prepare(std::function<void()> onDiskReady);
    CURL* handle() const { return m_easy.get(); }
    HttpPriority priority() const { return m_request.priority; }
    // Takes up a transfer that has waited for the disk.
    CURLcode goOn();
    // What came of it, once libcurl says that it is over; nullopt while the disk is behind.
    std::optional<HttpResult> finish(CURLcode code);

private:
    void setRules();
    void setMethodAndBody();
    void setHeaders();
    void setCallbacks();
    std::size_t readBody(std::span<char> target);
    bool takeHeader(QByteArrayView line);
    std::size_t takeBody(QByteArrayView bytes);
    bool isIdleTooLong(const HttpProgress& progress);
    void reportProgress(const HttpProgress& progress, bool isLast);
    void closeSocket(curl_socket_t socket);
    std::optional<HttpReply> earlyRefusal() const;
    HttpResult failureFor(CURLcode code, int status);

    struct EasyDeleter {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
    };
    struct ListDeleter {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    HttpRequest m_request;
    std::optional<HostAddress> m_address; // where to connect instead of looking the host up
    ProgressSink m_progressSink;
    std::unique_ptr<CURL, EasyDeleter> m_easy;
    std::unique_ptr<curl_slist, ListDeleter> m_headerList;
    std::unique_ptr<curl_slist, ListDeleter> m_connectTo;
    RequestBody m_requestBody;
    ReplyBody m_replyBody;
    std::int64_t m_headerBytes = 0;
    std::int64_t m_movedBytes = 0; // in both directions
    std::optional<std::chrono::steady_clock::time_point> m_lastMoveAt;
    HttpReply m_reply;
    std::optional<HttpErrorCode> m_waitsFor; // what it is called if the disk never comes
    std::optional<HttpErrorCode> m_failure;  // what one of our callbacks stopped the exchange for
    HttpProgress m_seenProgress;
    HttpProgress m_lastProgress; // reported
    std::optional<std::chrono::steady_clock::time_point> m_lastReportAt;
    QByteArray m_leftInSocket; // what the TV had sent and libcurl had not read
};

// The error a finished exchange ends in.
HttpErrorCode errorCodeFor(CURLcode code);

} // namespace quiv
