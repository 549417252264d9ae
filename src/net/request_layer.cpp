#include "net/request_layer.h"

#include <QStringDecoder>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// The text of a body, trimmed and cut as one that is only shown; empty when it is no valid UTF-8.
QString textOf(const QByteArray& body) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(body);
    return decoder.hasError() ? QString() : shownText(text.trimmed());
}

QString errorOf(const QByteArray& body) {
    try {
        return decode<ServerErrorPayload>(body).error.value_or(QString()).trimmed();
    } catch (const DecodingError&) {
        return {};
    }
}

QString messageOf(int status) {
    switch (status) {
    case 401:
        return u"Pairing required: enter the 3-digit code shown on TV."_s;
    case 408:
    case 504:
        return u"Upload failed: transfer timed out before completion."_s;
    case 413:
        return u"Upload failed: file is too large for the current upload target."_s;
    case 429:
        return u"Too many auth attempts. Wait before trying again."_s;
    case 507:
        return u"Upload failed: not enough free space on target storage."_s;
    default:
        return u"Upload failed (HTTP %1)."_s.arg(status);
    }
}

} // namespace

QString serverWords(const QByteArray& body) {
    const QString error = errorOf(body);
    return error.isEmpty() ? textOf(body) : error;
}

QString serverErrorMessage(int status, const QByteArray& body) {
    const QString words = serverWords(body);
    return words.isEmpty() ? messageOf(status) : words;
}

RequestLayer::RequestLayer(HttpSession& session, AuthTokens& tokens)
    : m_session(session), m_tokens(tokens) {}

Task<TvReply> RequestLayer::send(HttpRequest request, QUrl base) {
    const QString sentToken = m_tokens.storedAuthToken(base).value_or(QString());
    m_tokens.applyControlHeaders(request, base);
    TvReply reply(co_await exchange(std::move(request), base), sentToken);
    captureAuthToken(reply, base);
    co_return reply;
}

Task<HttpReply> RequestLayer::exchange(HttpRequest request, QUrl base) {
    try {
        HttpReply reply = co_await m_session.send(std::move(request));
        if (m_contactListener)
            m_contactListener->answered(base);
        co_return reply;
    } catch (const HttpError& error) {
        if (m_contactListener)
            m_contactListener->failed(base, error.code());
        throw;
    }
}

void RequestLayer::reportAuthFailure(const TvReply& reply, const QString& message) {
    if (m_listener)
        m_listener->handleAuthFailure(reply.status, message, reply.sentToken);
}

void RequestLayer::captureAuthToken(const HttpReply& reply, const QUrl& base) {
    const auto grant = authGrant(reply);
    if (grant && m_tokens.storeAuthToken(*grant, base) && m_listener)
        m_listener->authTokenStored(tokenDeviceKey(base), *grant->lifetimeSec);
}

} // namespace quiv
