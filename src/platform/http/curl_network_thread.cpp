#include "platform/http/curl_network_thread.h"

#include <algorithm>

namespace quiv {

namespace {

constexpr int LongestPollMs = 1000;

void initialiseLibrary() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)initialised;
}

CURLM* newMulti() {
    CURLM* multi = curl_multi_init();
    curl_multi_setopt(multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, CurlNetworkThread::mostConnections);
    return multi;
}

} // namespace

CurlNetworkThread::CurlNetworkThread(Sink sink) : m_sink(std::move(sink)) {
    initialiseLibrary();
    m_multi.reset(newMulti());
    m_thread = std::thread([this] { run(); });
}

CurlNetworkThread::~CurlNetworkThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        curl_multi_wakeup(m_multi.get());
    }
    m_thread.join();
    while (!m_transfers.empty())
        end(m_transfers.begin()->first);
}

void CurlNetworkThread::start(TransferId id, std::unique_ptr<CurlTransfer> transfer) {
    post({Command::Kind::Start, id, std::move(transfer)});
}

void CurlNetworkThread::cancel(TransferId id) {
    post({Command::Kind::Cancel, id});
}

void CurlNetworkThread::dropIdleConnections() {
    post({Command::Kind::DropIdleConnections});
}

void CurlNetworkThread::post(Command command) {
    const std::lock_guard lock(m_mutex);
    m_commands.push_back(std::move(command));
    curl_multi_wakeup(m_multi.get());
}

void CurlNetworkThread::run() {
    while (takeCommands()) {
        int running = 0;
        curl_multi_perform(m_multi.get(), &running);
        collectFinished();
        beginWaiting();
        dropConnectionsIfIdle();
        curl_multi_poll(m_multi.get(), nullptr, 0, LongestPollMs, nullptr);
    }
}

bool CurlNetworkThread::takeCommands() {
    std::vector<Command> commands;
    {
        const std::lock_guard lock(m_mutex);
        if (m_isEnding)
            return false;
        commands.swap(m_commands);
    }
    for (Command& command : commands)
        carryOut(std::move(command));
    beginWaiting();
    return true;
}

void CurlNetworkThread::carryOut(Command command) {
    switch (command.kind) {
    case Command::Kind::Start:
        if (command.transfer->priority() == HttpPriority::Background)
            m_waiting.emplace_back(command.id, std::move(command.transfer));
        else
            begin(command.id, std::move(command.transfer));
        return;
    case Command::Kind::Cancel:
        return end(command.id);
    case Command::Kind::GoOn:
        return goOn(command.id);
    case Command::Kind::DropIdleConnections:
        m_dropsIdleConnections = true;
    }
}

void CurlNetworkThread::beginWaiting() {
    while (!m_waiting.empty() && hasRoomInBackground()) {
        auto [id, transfer] = std::move(m_waiting.front());
        m_waiting.pop_front();
        begin(id, std::move(transfer));
    }
}

bool CurlNetworkThread::hasRoomInBackground() const {
    return std::ranges::count_if(m_transfers, [](const auto& entry) {
               return entry.second.transfer->priority() == HttpPriority::Background;
           }) < mostInBackground;
}

void CurlNetworkThread::begin(TransferId id, std::unique_ptr<CurlTransfer> transfer) {
    const auto onDiskReady = [this, id] {
        post({Command::Kind::GoOn, id});
    };
    if (const auto error = transfer->prepare(onDiskReady)) {
        m_sink(id, *error);
        return;
    }
    dropConnectionsIfIdle();
    if (m_dropsIdleConnections)
        curl_easy_setopt(transfer->handle(), CURLOPT_FRESH_CONNECT, 1L);
    curl_multi_add_handle(m_multi.get(), transfer->handle());
    m_transfers.emplace(id, Entry(std::move(transfer)));
}

void CurlNetworkThread::goOn(TransferId id) {
    const auto found = m_transfers.find(id);
    if (found == m_transfers.end())
        return; // finished or cancelled meanwhile
    if (found->second.code)
        return settle(id, *found->second.code);
    // Bytes that were held back are delivered from inside; if that fails, libcurl says it here
    // only.
    const CURLcode result = found->second.transfer->goOn();
    if (result != CURLE_OK)
        settle(id, result);
}

void CurlNetworkThread::settle(TransferId id, CURLcode code) {
    Entry& entry = m_transfers.at(id);
    entry.code = code;
    auto result = entry.transfer->finish(code);
    if (!result)
        return;
    end(id);
    m_sink(id, std::move(*result));
}

void CurlNetworkThread::end(TransferId id) {
    std::erase_if(m_waiting, [id](const auto& waiting) { return waiting.first == id; });
    const auto found = m_transfers.find(id);
    if (found == m_transfers.end())
        return; // finished meanwhile
    curl_multi_remove_handle(m_multi.get(), found->second.transfer->handle());
    m_transfers.erase(found);
}

void CurlNetworkThread::dropConnectionsIfIdle() {
    if (!m_dropsIdleConnections || !m_transfers.empty())
        return;
    m_dropsIdleConnections = false;
    std::unique_ptr<CURLM, MultiDeleter> multi(newMulti());
    const std::lock_guard lock(m_mutex);
    m_multi.swap(multi);
    curl_multi_wakeup(m_multi.get()); // a command may have woken the old one
}

void CurlNetworkThread::collectFinished() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        CURL* const easy = message->easy_handle;
        const auto found = std::ranges::find_if(m_transfers, [easy](const auto& entry) {
            return entry.second.transfer->handle() == easy;
        });
        settle(found->first, message->data.result);
    }
}

} // namespace quiv
