#pragma once

#include "platform/async/promise.h"
#include "platform/http/http_session.h"

#include <QScopeGuard>
#include <QUrl>

#include <algorithm>
#include <functional>
#include <list>
#include <stop_token>
#include <variant>

namespace quiv {

// HTTP without a network: requests wait until the test answers them, and are counted by path.
class FakeHttpSession final : public HttpSession {
public:
    using Result = std::variant<HttpReply, HttpErrorCode>;

    Task<HttpReply> send(HttpRequest request) override {
        const QUrl url = QUrl::fromEncoded(request.url);
        sent.append(request);
        paths.append(url.path().sliced(1));
        const Promise<HttpReply> reply;
        const auto place = m_pending.insert(m_pending.end(), Pending{url, reply});
        const auto leave = qScopeGuard([this, place] { m_pending.erase(place); });
        const std::function<void()> cancel = [reply] {
            reply.reject(std::make_exception_ptr(HttpError(HttpErrorCode::Cancelled)));
        };
        const std::stop_callback onStop(request.stop, cancel);
        co_return co_await reply.wait();
    }

    void dropIdleConnections() override { ++drops; }

    // Answers the oldest waiting request for the path; false when none waits.
    bool answer(const QString& path, const Result& result) {
        return complete(std::ranges::find(m_pending, u'/' + path, pathOf), result);
    }
    bool answer(const QString& path, const QByteArray& body, int status = 200,
                const HttpHeaders& headers = {}) {
        return answer(path, Result(HttpReply{status, headers, body}));
    }

    // Answers the newest one instead.
    bool answerLatest(const QString& path, const QByteArray& body) {
        const auto reversed =
            std::ranges::find(m_pending.rbegin(), m_pending.rend(), u'/' + path, pathOf);
        return reversed != m_pending.rend() &&
               complete(std::prev(reversed.base()), HttpReply{200, {}, body});
    }

    // The newest request for the path that was sent.
    HttpRequest latest(const QString& path) const {
        const auto isFor = [&](const HttpRequest& request) {
            return QUrl::fromEncoded(request.url).path() == u'/' + path;
        };
        const auto found = std::ranges::find_if(sent.rbegin(), sent.rend(), isFor);
        return found == sent.rend() ? HttpRequest() : *found;
    }

    std::size_t waiting() const { return m_pending.size(); }
    QList<QUrl> waitingUrls() const {
        QList<QUrl> urls;
        for (const Pending& pending : m_pending)
            urls.append(pending.url);
        return urls;
    }
    QStringList takePaths() { return std::exchange(paths, {}); }

    QList<HttpRequest> sent;
    int drops = 0;     // of idle connections
    QStringList paths; // of the requests in order, without the leading slash

private:
    struct Pending {
        QUrl url;
        Promise<HttpReply> reply;
    };
    static QString pathOf(const Pending& pending) { return pending.url.path(); }

    bool complete(std::list<Pending>::iterator position, const Result& result) {
        if (position == m_pending.end())
            return false;
        const Promise<HttpReply> reply = position->reply;
        if (const auto* code = std::get_if<HttpErrorCode>(&result))
            reply.rejectNow(std::make_exception_ptr(HttpError(*code)));
        else
            reply.resolveNow(std::get<HttpReply>(result));
        return true;
    }

    std::list<Pending> m_pending;
};

} // namespace quiv
