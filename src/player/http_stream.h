#pragma once

#include "platform/player/player_plugin.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <curl/curl.h>
#include <memory>
#include <mutex>

namespace quiv {

// Why a stream ended before its end. Any thread.
class StreamFault {
public:
    void set(const QString& sentence) {
        const std::scoped_lock lock(m_mutex);
        m_sentence = sentence;
    }
    QString sentence() const {
        const std::scoped_lock lock(m_mutex);
        return m_sentence;
    }

private:
    mutable std::mutex m_mutex;
    QString m_sentence; // empty while nothing is wrong; never has credentials
};

// A file of the TV as the player reads it: the player itself has no network at all, so that nothing
// in a file makes it fetch anything else.
//
// Reads by ranges from where the player is. Asks no other host, follows no redirect, uses no proxy.
// A connection that breaks is opened again where it broke, for as long as a TV may take to return.
// Used on one thread at a time; only cancel() may be called on any. All calls block.
class HttpStream {
public:
    HttpStream(const StreamAddress& address, std::shared_ptr<StreamFault> fault);
    ~HttpStream();
    HttpStream(const HttpStream&) = delete;
    HttpStream& operator=(const HttpStream&) = delete;

    // Waits for the first bytes; false if the TV gives none.
    bool open();
    // Bytes of the file; negative if the TV did not tell.
    std::int64_t size() const { return m_size; }
    // Returns how many bytes were read, 0 at the end, -1 after a failure.
    std::int64_t read(char* buffer, std::uint64_t capacity);
    bool seek(std::int64_t position);
    // Makes every call return soon, with a failure.
    void cancel();

private:
    using Time = std::chrono::steady_clock::time_point;

    bool isAtEnd() const { return m_size >= 0 && m_position >= m_size; }
    // Waits until there are bytes to take; false at the end and after a failure.
    bool await();
    void begin();
    void stop();
    void turn();
    void ended(CURLcode code);
    bool mayGoOn(Time lastByte);
    void fail(const QString& sentence);
    void takeHeader(QByteArrayView line);
    std::size_t take(const char* bytes, std::size_t count);
    static std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* stream);
    static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* stream);

    const StreamAddress m_address;
    const std::shared_ptr<StreamFault> m_fault;
    const std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_multi;
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> m_easy;
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> m_connectTo;
    std::atomic<bool> m_isCancelled = false;
    bool m_isUnderWay = false; // a request
    bool m_isPaused = false;   // because nobody takes what has come
    bool m_hasFailed = false;
    bool m_hasEnded = false; // a file of unknown size
    long m_status = 0;       // of the reply; 0 before it
    std::int64_t m_size = -1;
    std::int64_t m_position = 0; // of the next byte that is read
    QByteArray m_bytes;          // that have come
    qsizetype m_taken = 0;       // of those
    std::chrono::milliseconds m_pause{};
};

} // namespace quiv
