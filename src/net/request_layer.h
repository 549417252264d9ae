#pragma once

#include "net/auth_tokens.h"
#include "net/selected_device.h"
#include "net/tv_request.h"
#include "net/wire_decoding.h"
#include "platform/async/background.h"
#include "platform/async/task.h"
#include "platform/error.h"
#include "platform/http/http_session.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <optional>
#include <stop_token>

namespace quiv {

// A failed request: a complete sentence for the status line.
class UploadFailure : public Error {
public:
    using Error::Error;
    const QString& message() const { return description(); }
};

// What a failed reply says itself; empty when it says nothing.
QString serverWords(const QByteArray& body);

// The message of a failed reply: the TV's own words, else one by status.
QString serverErrorMessage(int status, const QByteArray& body);

// Makes the message of a failed reply.
using FailureText = QString (*)(int status, const QByteArray& body);

// Sends the requests to TVs: identifies this client, keeps the tokens that replies hand out, turns
// failed replies into messages.
//
// Errors are thrown as Error: HttpError, UploadFailure, DecodingError. Main thread only.
class RequestLayer {
public:
    // Who is told what replies say of this client's rights.
    class AuthListener {
    public:
        virtual ~AuthListener() = default;
        // A token was stored for the TV with this tokenDeviceKey.
        virtual void authTokenStored(const QString& deviceKey, std::int64_t lifetimeSec) = 0;
        // A request for a record failed with 401 or 429.
        virtual void handleAuthFailure(int status, const QString& message) = 0;
    };

    // Requests for the TV that was selected when they were sent; once another is, their replies
    // change nothing but the token. None: a request for whatever TV.
    using Guard = std::optional<SelectedDevice::Guard>;

    RequestLayer(HttpSession& session, AuthTokens& tokens);

    void setAuthListener(AuthListener* listener) { m_listener = listener; }

    // Any reply, with its token captured.
    Task<HttpReply> send(HttpRequest request, QUrl base);
    // GET; the body of a 2xx reply. Asking `stop` to stop cancels.
    Task<QByteArray> fetchBody(QUrl base, QString path, std::chrono::milliseconds timeout,
                               Guard guard, std::stop_token stop = {});
    // GET; the record of a 2xx reply.
    template <class Record>
    Task<Record> fetchJSON(QUrl base, QString path, std::chrono::milliseconds timeout, Guard guard,
                           std::stop_token stop = {});
    // POST without a body, within 60 s; completes when the TV said yes. Without a base the address
    // was bad.
    Task<> post(std::optional<QUrl> base, QString path, QueryItems query, Guard guard,
                FailureText failureText = serverErrorMessage);
    // Throws the message of a failed reply; tells the listener when it is about rights.
    [[noreturn]] void refuse(int status, const QString& message, const Guard& guard);

private:
    void captureAuthToken(const HttpReply& reply, const QUrl& base);

    HttpSession& m_session;
    AuthTokens& m_tokens;
    AuthListener* m_listener = nullptr;
};

inline constexpr qsizetype DecodedInPlaceLimit = 64 << 10; // bytes; larger replies go to a worker

template <class Record>
Task<Record> RequestLayer::fetchJSON(QUrl base, QString path, std::chrono::milliseconds timeout,
                                     Guard guard, std::stop_token stop) {
    auto fetching = fetchBody(base, path, timeout, guard, stop);
    const QByteArray body = co_await std::move(fetching);
    if (body.size() <= DecodedInPlaceLimit)
        co_return decode<Record>(body);
    auto decoding = inBackground([body] { return decode<Record>(body); });
    co_return co_await std::move(decoding);
}

} // namespace quiv
