#pragma once

#include "platform/http/curl_transfer.h"

#include <curl/curl.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
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
        enum class Kind { Start, Cancel, GoOn, DropIdleConnections };
        Kind kind;
        TransferId id = 0;
        std::unique_ptr<CurlTransfer> transfer{}; // to start
    };
    struct Entry {
        std::unique_ptr<CurlTransfer> transfer;
        std::optional<CURLcode> code{}; // once libcurl has done its part
    };
    struct MultiDeleter {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };

    void post(Command command);
    void run();
    bool takeCommands(); // returns false once the thread has to end
    void carryOut(Command command);
    void begin(TransferId id, std::unique_ptr<CurlTransfer> transfer);
    void beginWaiting();
    bool hasRoomInBackground() const;
    void goOn(TransferId id);
    void end(TransferId id);
    // Hands the result over, unless the disk is still behind.
    void settle(TransferId id, CURLcode code);
    // Replaces the multi handle, and so the connections it keeps, once no transfer needs it.
    void dropConnectionsIfIdle();
    void collectFinished();

    Sink m_sink;
    std::unique_ptr<CURLM, MultiDeleter> m_multi; // replaced under m_mutex by the network thread
    std::map<TransferId, Entry> m_transfers;      // network thread only, like the next two
    std::deque<std::pair<TransferId, std::unique_ptr<CurlTransfer>>> m_waiting; // in the background
    bool m_dropsIdleConnections = false;
    std::mutex m_mutex;
    std::vector<Command> m_commands; // guarded by m_mutex, like m_isEnding
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace quiv
