#pragma once

#include "platform/http/curl_transfer.h"

#include <curl/curl.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quiv {

using TransferId = std::uint64_t;

// The thread on which libcurl's multi interface runs.
//
// Its functions may be called from any thread and never wait; the sink is called on the
// network thread, once for every transfer that was started and not cancelled. The destructor drops
// what is under way and joins.
//
// At most `mostConnections` sockets are open; at most `mostInBackground` of them belong to
// transfers in the background, which wait here for their turn. So there is always room for the
// others.
class CurlNetworkThread {
public:
    using Sink = std::function<void(TransferId, HttpResult)>;

    static constexpr long mostConnections = 16;
    static constexpr int mostInBackground = 6;

    explicit CurlNetworkThread(Sink sink);
    ~CurlNetworkThread();
    CurlNetworkThread(const CurlNetworkThread&) = delete;
    CurlNetworkThread& operator=(const CurlNetworkThread&) = delete;

    void start(TransferId id, std::unique_ptr<CurlTransfer> transfer);
    void cancel(TransferId id);
    // Transfers started from now on use none of the connections that are open.
    void dropIdleConnections();

private:
    struct Command {
        TransferId id = 0;
        std::unique_ptr<CurlTransfer> transfer; // nullptr stands for cancelling
        bool dropsIdleConnections = false;      // and nothing else
    };
    struct MultiDeleter {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };

    void post(Command command);
    void run();
    bool takeCommands(); // returns false once the thread has to end
    void begin(Command command);
    void beginWaiting();
    bool hasRoomInBackground() const;
    void end(TransferId id);
    // Replaces the multi handle, and so the connections it keeps, once no transfer needs it.
    void dropConnectionsIfIdle();
    void collectFinished();

    Sink m_sink;
    std::unique_ptr<CURLM, MultiDeleter> m_multi; // replaced under m_mutex by the network thread
    std::map<TransferId, std::unique_ptr<CurlTransfer>> m_transfers; // network thread only
    std::deque<Command> m_waiting;       // in the background; network thread only
    bool m_dropsIdleConnections = false; // network thread only
    std::mutex m_mutex;
    std::vector<Command> m_commands; // guarded by m_mutex, like m_isEnding
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace quiv
