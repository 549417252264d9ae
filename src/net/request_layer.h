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

#include <cstdint>

namespace quiv {

// A failed request: a complete sentence for the status line.
class UploadFailure : public Error {
public:
    explicit UploadFailure(QString message, int status = 0)
        : Error(std::move(message)), m_status(status) {}

    const QString& message() const { return description(); }
    // The TV does not (or not now) let this client do what it asked for.
    bool isAboutRights() const { return m_status == 401 || m_status == 429; }

private:
    int m_status; // of the reply; 0 if the failure is not a reply's
};

// What a failed reply says itself; empty when it says nothing.
QString serverWords(const QByteArray& body);

// The message of a failed reply: the TV's own words, else one by status.
QString serverErrorMessage(int status, const QByteArray& body);

// Makes the message of a failed reply.
using FailureText = QString (*)(int status, const QByteArray& body);

// A reply, and the access token its request carried; empty if it carried none.
struct TvReply : HttpReply {
    TvReply(HttpReply reply, QString token)
        : HttpReply(std::move(reply)), sentToken(std::move(token)) {}

    QString sentToken;
};

// Sends requests to TVs: identifies this client and keeps the tokens that replies hand out. Flows
// use it through Tv. Main thread only.
class RequestLayer {
public:
    // Who is told what replies say of this client's rights.
    class AuthListener {
    public:
        virtual ~AuthListener() = default;
        // A token was stored for the TV with this tokenDeviceKey.
        virtual void authTokenStored(const QString& deviceKey, std::int64_t lifetimeSec) = 0;
        // A request to the selected TV, which carried this token, failed with this status.
        virtual void handleAuthFailure(int status, const QString& message,
                                       const QString& sentToken) = 0;
    };

    // Who is told how exchanges with TVs end.
    class ContactListener {
    public:
        virtual ~ContactListener() = default;
        virtual void answered(const QUrl& base) = 0;
        virtual void failed(const QUrl& base, HttpErrorCode code) = 0;
    };

    RequestLayer(HttpSession& session, AuthTokens& tokens);

    void setAuthListener(AuthListener* listener) { m_listener = listener; }
    void setContactListener(ContactListener* listener) { m_contactListener = listener; }

    // Any reply, with its token captured. Throws HttpError.
    Task<TvReply> send(HttpRequest request, QUrl base);
    void reportAuthFailure(const TvReply& reply, const QString& message);

private:
    Task<HttpReply> exchange(HttpRequest request, QUrl base);
    void captureAuthToken(const HttpReply& reply, const QUrl& base);

    HttpSession& m_session;
    AuthTokens& m_tokens;
    AuthListener* m_listener = nullptr;
    ContactListener* m_contactListener = nullptr;
};

} // namespace quiv
