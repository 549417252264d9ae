#pragma once

#include "net/request_layer.h"
#include "net/status_line.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <exception>
#include <optional>
#include <stop_token>

namespace quiv {

// Whether an operation tells the user of its failure.
enum class Errors { Reported, Quiet };

// Ends a flow whose TV is no longer the selected one. It is no Error: nothing catches it on its way
// out of the flow, and nobody reports it.
class AnotherTvSelected : public std::exception {};

// The TV that a flow talks to, taken once when the flow starts. A value; copies are cheap.
//
// A flow that is about the selected TV ends with AnotherTvSelected at the first answer that comes
// after another TV was selected; the answer's token is kept all the same. Failures are thrown as
// Error: HttpError, UploadFailure, DecodingError. Main thread only.
class Tv {
public:
    static constexpr std::chrono::milliseconds StandardTimeout{60'000};

    Tv(RequestLayer& requests, StatusLine& status, const SelectedDevice& selected, QUrl base)
        : m_requests(&requests),
          m_status(&status),
          m_selected(&selected),
          m_base(std::move(base)),
          m_guard(selected) {}

    const QUrl& base() const { return m_base; }
    // Whether it is the selected one now.
    bool isSelected() const { return m_selected->baseURL() == m_base; }
    // This TV for a flow that goes on whichever TV is selected.
    Tv whicheverIsSelected() const;
    // Ends the flow if it has to end; for after an await that is no request.
    void requireSelected() const;

    // GET; the record of a 2xx reply. Asking `stop` to stop cancels.
    template <class Record>
    Task<Record> get(QString path, std::chrono::milliseconds timeout = StandardTimeout,
                     std::stop_token stop = {},
                     HttpPriority priority = HttpPriority::Standard) const {
        HttpRequest get = getRequest(path, ReplyLimit<Record>, timeout);
        get.stop = std::move(stop);
        get.priority = priority;
        return getRecord<Record>(*this, std::move(get));
    }
    // GET; the body of a 2xx reply of at most `limit` bytes.
    Task<QByteArray> getBody(QString path, std::int64_t limit) const {
        return fetch(*this, getRequest(path, limit, StandardTimeout));
    }
    // POST without a body; completes when the TV said yes.
    Task<> post(QString path, QueryItems query, FailureText failureText = serverErrorMessage) const;
    // Any reply to a request of this TV's.
    Task<TvReply> send(HttpRequest request) const;
    HttpRequest request(const QByteArray& method, const QString& path,
                        const QueryItems& query = {}) const {
        return tvRequest(method, m_base, path, query);
    }

    // Throws the message of a failed reply, after telling whom it concerns when it is about rights.
    [[noreturn]] void refuse(const TvReply& reply, const QString& message) const;
    // Shows a message, unless the flow has to end.
    void say(const StatusMessage& message) const;
    void say(const QString& message) const { say(StatusMessage{message}); }

private:
    bool hasToEnd() const { return m_endsWithSelection && !m_guard.isCurrent(); }
    static Task<TvReply> exchange(Tv tv, HttpRequest request);
    static Task<QByteArray> fetch(Tv tv, HttpRequest request);
    static Task<> postTo(Tv tv, HttpRequest request, FailureText failureText);
    HttpRequest getRequest(const QString& path, std::int64_t limit,
                           std::chrono::milliseconds timeout) const;
    template <class Record> static Task<Record> getRecord(Tv tv, HttpRequest request);

    RequestLayer* m_requests;
    StatusLine* m_status;
    const SelectedDevice* m_selected;
    QUrl m_base;
    SelectedDevice::Guard m_guard;
    bool m_endsWithSelection = true;
};

// What every part needs to talk to TVs and to the user. A value; what it names outlives it.
class TvAccess {
public:
    TvAccess(RequestLayer& requests, const SelectedDevice& selected, StatusLine& status)
        : m_requests(&requests), m_selected(&selected), m_status(&status) {}

    // The selected TV; nullopt when none is selected or its address is not valid.
    std::optional<Tv> current() const;
    // A TV by its address, whichever is selected.
    Tv at(const QUrl& base) const {
        return Tv(*m_requests, *m_status, *m_selected, base).whicheverIsSelected();
    }
    const SelectedDevice& selected() const { return *m_selected; }
    // Shows a message; the progress of something, as StatusLine has it.
    void say(const StatusMessage& message) const;
    void say(const QString& message) const { say(StatusMessage{message}); }
    void beginProgress(const QString& message) const;
    void sayProgress(const QString& message) const;

private:
    RequestLayer* m_requests;
    const SelectedDevice* m_selected;
    StatusLine* m_status;
};

inline constexpr qsizetype DecodedInPlaceLimit = 64 << 10; // bytes; larger replies go to a worker

template <class Record> Task<Record> Tv::getRecord(Tv tv, HttpRequest request) {
    const QByteArray body = co_await fetch(tv, std::move(request));
    if (body.size() <= DecodedInPlaceLimit)
        co_return decode<Record>(body);
    auto decoding = [body] {
        return decode<Record>(body);
    };
    Record record = co_await inBackground(decoding);
    tv.requireSelected();
    co_return record;
}

} // namespace quiv
