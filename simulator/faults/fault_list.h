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
    // When it shall happen.
    enum class Phase { BeforeReply, Receiving, Replying };

    enum class Kind {
        // Before the reply
        Delay,            // milliseconds
        Hang,             // no reply, ever
        ResetBeforeReply, // the connection breaks
        Status,           // status, body
        Body,             // body, repeat, before, after, status, contentType, tokenBytes
        BrokenJson,       // cut off in the middle
        OversizedJson,    // bytes, chunked
        // While a file arrives
        ReadThenReset, // bytes
        StallReading,  // bytes
        SlowReading,   // bytesPerSecond
        FillUp,        // bytes
        AnswerEarly,   // bytes, status
        Vanish,        // bytes, milliseconds
        StoreThenHang,
        StoreThenReset,
        TruncateStore, // bytes
        RenameStore,
        // To the reply
        MistypedJson,    // field
        OneAuthHeader,   // header: "token" or "lifetime"
        Trickle,         // bytesPerSecond
        ResetAfterBytes, // bytes of the body
        AnnounceMore,    // bytes
        OmitLength,      // bytes
    };

    Kind kind = Kind::Status;
    QString path;   // without leading slash; "*" stands for every path
    QString method; // is empty for every method
    QJsonObject parameters;
    std::optional<int> timesLeft; // is nullopt for a fault that stays
    int skip = 0;                 // requests to leave alone first
    int fired = 0;

    Phase phase() const {
        if (kind <= Kind::OversizedJson)
            return Phase::BeforeReply;
        return kind <= Kind::RenameStore ? Phase::Receiving : Phase::Replying;
    }
    qint64 number(const char* parameter, qint64 otherwise = 0) const;
    QString text(const char* parameter) const;
};

// The faults that are switched on. Thread-safe.
class FaultList {
public:
    // Returns a sentence if the description makes no sense.
    std::optional<QString> add(const QJsonObject& description);
    void clear();
    QJsonArray toJson() const;

    // Returns the first fault of this phase that applies to a request, and counts it as fired.
    std::optional<Fault> take(const QString& method, const QString& path, Fault::Phase phase);

private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

} // namespace quiv::simulator
