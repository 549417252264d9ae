#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <mutex>
#include <optional>
#include <vector>

namespace quiv::simulator {

// Something that shall go wrong with requests to one path.
struct Fault {
    enum class Kind {
        // Before the reply
        Delay,            // milliseconds
        Hang,             // no reply, ever
        ResetBeforeReply, // the connection breaks
        Status,           // status, body
        Body,             // body, status, contentType
        BrokenJson,       // cut off in the middle
        OversizedJson,    // bytes, chunked
        // To the reply
        MistypedJson,    // field
        OneAuthHeader,   // header: "token" or "lifetime"
        Trickle,         // bytesPerSecond
        ResetAfterBytes, // bytes of the body
    };

    Kind kind = Kind::Status;
    QString path;   // without leading slash; "*": every path
    QString method; // empty: every method
    QJsonObject parameters;
    std::optional<int> timesLeft; // none: for good
    int skip = 0;                 // requests to leave alone first
    int fired = 0;

    bool actsBeforeReply() const { return kind <= Kind::OversizedJson; }
    qint64 number(const char* parameter, qint64 otherwise = 0) const;
    QString text(const char* parameter) const;
};

// The faults that are switched on. Thread-safe.
class FaultList {
public:
    // A sentence when the description makes no sense, else none.
    std::optional<QString> add(const QJsonObject& description);
    void clear();
    QJsonArray toJson() const;

    // The first fault that applies to a request, counted as fired; `beforeReply` says which sort.
    std::optional<Fault> take(const QString& method, const QString& path, bool beforeReply);

private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

} // namespace quiv::simulator
