#pragma once

#include "platform/host_address.h"
#include "platform/http/http_session.h"

#include <curl/curl.h>

#include <QFile>

#include <chrono>
#include <functional>
#include <memory>
#include <variant>

namespace quiv {

using HttpResult = std::variant<HttpReply, HttpError>;

// One exchange on the network thread: owns the easy handle, the files and the reply being
// collected. Made on the main thread, then used on the network thread only.
class CurlTransfer {
public:
    using ProgressSink = std::function<void(const HttpProgress&)>;

    CurlTransfer(HttpRequest request, std::optional<HostAddress> address, ProgressSink progress);
    ~CurlTransfer();
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    // Opens the files and sets every option. Returns an error if that is impossible.
    std::optional<HttpError> prepare();
    CURL* handle() const { return m_easy.get(); }
    // What came of it, once libcurl says that it is over.
    HttpResult finish(CURLcode code);

private:
    std::optional<HttpError> openFiles();
    void setRules();
    void setMethodAndBody();
    void setHeaders();
    void setCallbacks();
    std::size_t readBody(char* buffer, std::size_t capacity);
    bool rewindBody(curl_off_t offset);
    bool takeHeader(QByteArrayView line);
    bool takeBody(QByteArrayView bytes);
    std::optional<HttpErrorCode> writeReply(QByteArrayView bytes);
    bool isIdleTooLong(const HttpProgress& progress);
    void reportProgress(const HttpProgress& progress, bool isLast);
    bool readEarlyAnswer();
    int openSocket(curl_sockaddr* address);

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
    QFile m_bodyFile;
    QFile m_replyFile;
    std::int64_t m_bodySize = 0;
    std::int64_t m_bodyOffset = 0;
    std::int64_t m_headerBytes = 0;
    std::int64_t m_replyFileBytes = 0;
    std::int64_t m_movedBytes = 0; // in both directions
    std::optional<std::chrono::steady_clock::time_point> m_lastMoveAt;
    HttpReply m_reply;
    std::optional<HttpErrorCode> m_failure; // what one of our callbacks stopped the exchange for
    HttpProgress m_seenProgress;
    HttpProgress m_lastProgress; // reported
    std::optional<std::chrono::steady_clock::time_point> m_lastReportAt;
    int m_socketCopy = -1; // second descriptor of an upload's socket, to read an early answer from
};

// The error a finished exchange ends in.
HttpErrorCode errorCodeFor(CURLcode code);

} // namespace quiv
