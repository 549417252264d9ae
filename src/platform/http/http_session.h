#pragma once

#include "platform/async/task.h"
#include "platform/error.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace quiv {

class OpenFile;

// Why an exchange gave no reply. Numbers are those of the desktop platforms' URL errors, so that
// logs and reports of all builds speak of the same thing.
enum class HttpErrorCode {
    Cancelled = -999,
    BadUrl = -1000, // also: a header that must not be sent
    TimedOut = -1001,
    CannotFindHost = -1003,
    CannotConnect = -1004,
    ConnectionLost = -1005,
    BadServerResponse = -1011,
    CannotReadFile = -1102,
    ReplyTooLarge = -1103,
    CannotWriteFile = -3003,
};

class HttpError : public Error {
public:
    explicit HttpError(HttpErrorCode code);

    HttpErrorCode code() const { return m_code; }

private:
    HttpErrorCode m_code;
};

bool isCancellation(const Error& error);

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

struct HttpTimeouts {
    // The whole exchange, name look-up included but not the wait for its turn; nullopt for
    // transfers that may take any time as long as bytes move.
    std::optional<std::chrono::milliseconds> total{60'000};
    // Ends an exchange in which no byte moves for this long. Once a body is sent, the TV has half
    // an hour to write it out and answer.
    std::optional<std::chrono::seconds> idle;
};

// Bytes of the body moved so far; totals are -1 while unknown.
struct HttpProgress {
    std::int64_t sent = 0;
    std::int64_t sentTotal = -1;
    std::int64_t received = 0;
    std::int64_t receivedTotal = -1;

    bool operator==(const HttpProgress&) const = default;
};

inline constexpr std::int64_t StandardReplyLimit = 64ll << 10;
inline constexpr std::int64_t ErrorReplyLimit = 64ll << 10;

// Who goes first when more requests wait than may be sent at once.
enum class HttpPriority {
    Standard,
    Background, // what nobody has asked for: a few at once, so that they leave room for the rest
};

struct HttpRequest {
    QByteArray method = "GET";
    QByteArray url; // absolute, "http" only, fully percent-encoded
    HttpHeaders headers;
    QByteArray body;
    std::shared_ptr<const OpenFile> bodyFile;  // the body instead of `body`, unless nullptr
    std::shared_ptr<const OpenFile> replyFile; // gets a 2xx reply's body, unless nullptr
    // Bytes of that body: a shorter one is a lost connection, a longer one is stopped. Without it,
    // a body is stopped before it fills the disk.
    std::optional<std::int64_t> replyFileSize;
    // Largest body kept in memory; failed replies are cut off at ErrorReplyLimit instead.
    std::int64_t replyLimit = StandardReplyLimit;
    HttpPriority priority = HttpPriority::Standard;
    HttpTimeouts timeouts;
    std::stop_token stop; // asking it to stop ends the exchange as Cancelled
    // Main thread; the first and last report and about four a second between them; a body that
    // starts over is reported at once, after the count it had reached.
    std::function<void(const HttpProgress&)> onProgress;
};

struct HttpReply {
    int status = 0;
    HttpHeaders headers;
    QByteArray body;

    bool isSuccess() const { return status >= 200 && status <= 299; }
    // Value of the first header of this name, in any letter case.
    std::optional<QByteArray> header(QByteArrayView name) const;
};

// Sends HTTP requests. Used on the main thread.
//
// Every exchange completes exactly once, from the event loop: with a reply of any status, or by
// throwing HttpError; also when the session is destroyed meanwhile (Cancelled). Destroying the task
// cancels: its socket is closed, and nothing is resumed. Redirects are replies like any other; no
// proxy, no cookies, no stored credentials. Only a GET may be sent again by itself, when a
// connection that was kept open turns out to be dead. A 2xx reply to a body that was not sent whole
// is a lost connection. Hosts are numeric addresses or names in ".local"; no other name is looked
// up. A limited number of connections is open at a time; what exceeds it waits.
class HttpSession {
public:
    virtual ~HttpSession() = default;
    virtual Task<HttpReply> send(HttpRequest request) = 0;
    // No later request uses a connection that is open now, as it may be dead after a change of the
    // network. What is under way goes on.
    virtual void dropIdleConnections() = 0;
};

// Percent-encodes everything but unreserved characters, so that every server decodes the same text.
QByteArray percentEncoded(const QString& text);

} // namespace quiv
