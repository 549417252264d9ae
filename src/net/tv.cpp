#include "net/tv.h"

namespace quiv {

Tv Tv::whicheverIsSelected() const {
    Tv tv = *this;
    tv.m_endsWithSelection = false;
    return tv;
}

void Tv::requireSelected() const {
    if (hasToEnd())
        throw AnotherTvSelected();
}

HttpRequest Tv::getRequest(const QString& path, std::int64_t limit,
                           std::chrono::milliseconds timeout) const {
    HttpRequest get = request("GET", path);
    get.replyLimit = limit;
    get.timeouts.total = timeout;
    return get;
}

Task<> Tv::post(QString path, QueryItems query, FailureText failureText) const {
    HttpRequest post = request("POST", path, query);
    post.timeouts.total = StandardTimeout;
    return postTo(*this, std::move(post), failureText);
}

Task<TvReply> Tv::send(HttpRequest request) const {
    return exchange(*this, std::move(request));
}

Task<TvReply> Tv::exchange(Tv tv, HttpRequest request) {
    try {
        TvReply reply = co_await tv.m_requests->send(std::move(request), tv.m_base);
        tv.requireSelected();
        co_return reply;
    } catch (const Error&) {
        tv.requireSelected();
        throw;
    }
}

Task<QByteArray> Tv::fetch(Tv tv, HttpRequest request) {
    const TvReply reply = co_await exchange(tv, std::move(request));
    if (reply.isSuccess())
        co_return reply.body;
    tv.refuse(reply, serverErrorMessage(reply.status, reply.body));
}

Task<> Tv::postTo(Tv tv, HttpRequest request, FailureText failureText) {
    const TvReply reply = co_await exchange(tv, std::move(request));
    if (!reply.isSuccess())
        tv.refuse(reply, failureText(reply.status, reply.body));
}

void Tv::refuse(const TvReply& reply, const QString& message) const {
    if (isSelected())
        m_requests->reportAuthFailure(reply, message);
    throw UploadFailure(message, reply.status);
}

void Tv::say(const StatusMessage& message) const {
    if (!hasToEnd())
        m_status->post(message);
}

std::optional<Tv> TvAccess::current() const {
    const auto base = m_selected->baseURL();
    if (!base)
        return std::nullopt;
    return Tv(*m_requests, *m_status, *m_selected, *base);
}

void TvAccess::say(const StatusMessage& message) const {
    m_status->post(message);
}

void TvAccess::beginProgress(const QString& message) const {
    m_status->beginProgress(message);
}

void TvAccess::sayProgress(const QString& message) const {
    m_status->postProgress(message);
}

} // namespace quiv
