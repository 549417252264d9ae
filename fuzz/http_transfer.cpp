// One HTTP exchange with a server that sends and reads whatever it likes.

#include "fuzz/bytes.h"
#include "platform/async/threads.h"
#include "platform/http/curl_transfer.h"

#include <QTemporaryFile>

#include <atomic>
#include <cstdlib>
#include <sys/socket.h>
#include <unistd.h>

using namespace quiv;

namespace {

constexpr int BodySize = 600 << 10; // more than the sockets hold

std::shared_ptr<const OpenFile> body() {
    static const auto file = [] {
        static QTemporaryFile bytes;
        if (!bytes.open() || bytes.write(QByteArray(BodySize, 'b')) != BodySize || !bytes.flush())
            std::abort();
        return OpenFile::reading(bytes.fileName());
    }();
    return file;
}

HttpRequest request(Bytes& bytes) {
    HttpRequest request;
    request.url = "http://tv/";
    request.replyLimit = 4096;
    const int kind = bytes.below(4);
    if (kind == 0)
        return request;
    if (kind == 1) {
        request.method = "POST";
        request.body = QByteArray(bytes.byte() * 100, 'p');
        return request;
    }
    request.onProgress = [](const HttpProgress&) {
    };
    if (kind == 2) {
        request.method = "PUT";
        request.bodyFile = body();
        return request;
    }
    static QTemporaryFile target;
    if (!target.isOpen() && !target.open())
        std::abort();
    request.replyFile = OpenFile::owning(::dup(target.handle()));
    if (bytes.below(2) == 1)
        request.replyFileSize = bytes.byte();
    return request;
}

// The server's end of a connection: reads a part of the request, sends its words, reads on or not,
// and closes.
class Server {
public:
    explicit Server(Bytes& bytes)
        : m_readFirst(bytes.byte() * 4096), m_readsOn(bytes.below(2) == 1), m_words(bytes.rest()) {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) != 0)
            std::abort();
        client = ends[0];
        m_socket = ends[1];
    }
    ~Server() {
        if (m_socket >= 0)
            ::close(m_socket);
        if (client >= 0)
            ::close(client);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    void turn(bool isIdle) {
        if (m_socket < 0)
            return;
        bool hasMoved = false;
        if (m_read < m_readFirst || m_readsOn)
            hasMoved = read();
        if (m_read >= m_readFirst || isIdle)
            hasMoved = write() || hasMoved;
        if (isIdle && !hasMoved) {
            ::close(m_socket);
            m_socket = -1;
        }
    }

    int client;

private:
    bool read() {
        char buffer[64 << 10];
        const auto count = ::recv(m_socket, buffer, sizeof buffer, 0);
        m_read += std::max<ssize_t>(count, 0);
        return count > 0;
    }
    bool write() {
        const auto count =
            ::send(m_socket, m_words.constData(), std::size_t(m_words.size()), MSG_NOSIGNAL);
        if (count > 0)
            m_words.remove(0, count);
        return count > 0;
    }

    int m_socket;
    std::int64_t m_read = 0;
    const std::int64_t m_readFirst;
    const bool m_readsOn;
    QByteArray m_words;
};

curl_socket_t openSocket(void* server, curlsocktype, curl_sockaddr*) {
    return std::exchange(static_cast<Server*>(server)->client, -1);
}

int isConnected(void*, curl_socket_t, curlsocktype) {
    return CURL_SOCKOPT_ALREADY_CONNECTED;
}

struct MultiDeleter {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};

HttpResult exchange(CURLM* multi, CurlTransfer& transfer, Server& server,
                    std::atomic<bool>& isDiskReady) {
    std::optional<CURLcode> code;
    while (true) {
        int running = 0;
        int left = 0;
        curl_multi_perform(multi, &running);
        if (const CURLMsg* message = curl_multi_info_read(multi, &left))
            code = message->data.result;
        if (isDiskReady.exchange(false) && !code) {
            if (const CURLcode result = transfer.goOn(); result != CURLE_OK)
                code = result;
        }
        if (code) {
            if (auto result = transfer.finish(*code))
                return std::move(*result);
        }
        int active = 0;
        curl_multi_poll(multi, nullptr, 0, 1, &active);
        server.turn(active == 0 && awaitDiskThreads(std::chrono::milliseconds(0)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)initialised;
    Bytes bytes(data, size);
    HttpRequest toSend = request(bytes);
    const bool hasBody = toSend.bodyFile != nullptr;
    Server server(bytes);
    HostAddress address;
    address.bytes = {127, 0, 0, 1};
    std::atomic<bool> isDiskReady = false;
    const std::unique_ptr<CURLM, MultiDeleter> multi(curl_multi_init());
    CurlTransfer transfer(std::move(toSend), address, [](const HttpProgress&) {});
    if (transfer.prepare([&] {
            isDiskReady = true;
            curl_multi_wakeup(multi.get());
        }))
        std::abort();
    curl_easy_setopt(transfer.handle(), CURLOPT_OPENSOCKETFUNCTION, openSocket);
    curl_easy_setopt(transfer.handle(), CURLOPT_OPENSOCKETDATA, &server);
    curl_easy_setopt(transfer.handle(), CURLOPT_SOCKOPTFUNCTION, isConnected);
    curl_multi_add_handle(multi.get(), transfer.handle());
    const HttpResult result = exchange(multi.get(), transfer, server, isDiskReady);
    curl_multi_remove_handle(multi.get(), transfer.handle());
    const auto* reply = std::get_if<HttpReply>(&result);
    if (reply && hasBody && reply->isSuccess() && size < 20)
        std::abort(); // no room for a status line
    if (reply && reply->body.size() > ErrorReplyLimit)
        std::abort();
    return 0;
}
