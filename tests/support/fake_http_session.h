#pragma once

#include "platform/http/http_session.h"

#include <QObject>
#include <QUrl>

#include <algorithm>
#include <coroutine>
#include <functional>
#include <list>
#include <memory>
#include <optional>
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
        Pending pending(*this, url, request.stop);
        Result result = co_await std::move(pending);
        if (const auto* code = std::get_if<HttpErrorCode>(&result))
            throw HttpError(*code);
        co_return std::get<HttpReply>(std::move(result));
    }

    void dropIdleConnections() override { ++drops; }

    // Answers the oldest waiting request for the path; false when none waits.
    bool answer(const QString& path, const Result& result) {
        return complete(std::ranges::find(m_pending, u'/' + path, &Pending::path), result);
    }
    bool answer(const QString& path, const QByteArray& body, int status = 200,
                const HttpHeaders& headers = {}) {
        return answer(path, Result(HttpReply{status, headers, body}));
    }

    // Answers the newest one instead.
    bool answerLatest(const QString& path, const QByteArray& body) {
        const auto reversed =
            std::ranges::find(m_pending.rbegin(), m_pending.rend(), u'/' + path, &Pending::path);
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
        for (const Pending* pending : m_pending)
            urls.append(pending->url);
        return urls;
    }
    QStringList takePaths() { return std::exchange(paths, {}); }

    QList<HttpRequest> sent;
    int drops = 0;     // of idle connections
    QStringList paths; // of the requests in order, without the leading slash

private:
    struct Pending {
        Pending(FakeHttpSession& owner, QUrl address, std::stop_token token)
            : session(&owner), url(std::move(address)), stop(std::move(token)) {}
        Pending(Pending&& other) noexcept // before it waits
            : Pending(*other.session, std::move(other.url), std::move(other.stop)) {}
        Pending& operator=(Pending&&) = delete;
        ~Pending() { session->m_pending.remove(this); }
        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> handle) {
            waiting = handle;
            session->m_pending.push_back(this);
            context = std::make_unique<QObject>();
            onStop.emplace(stop, [this] {
                const auto cancel = [this] {
                    session->complete(std::ranges::find(session->m_pending, this),
                                      HttpErrorCode::Cancelled);
                };
                QMetaObject::invokeMethod(context.get(), cancel, Qt::QueuedConnection);
            });
        }
        static QString path(const Pending* pending) { return pending->url.path(); }
        Result await_resume() { return std::move(*result); }

        FakeHttpSession* session;
        QUrl url;
        std::stop_token stop;
        std::coroutine_handle<> waiting;
        std::optional<Result> result;
        std::unique_ptr<QObject> context; // of the queued cancellation
        std::optional<std::stop_callback<std::function<void()>>> onStop;
    };

    bool complete(std::list<Pending*>::iterator position, const Result& result) {
        if (position == m_pending.end())
            return false;
        Pending* pending = *position;
        m_pending.erase(position);
        pending->result = result;
        pending->waiting.resume();
        return true;
    }

    std::list<Pending*> m_pending;
};

} // namespace quiv
