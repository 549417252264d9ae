#include "platform/http/curl_transfer.h"

#include "platform/http/connection_rules.h"
#include "platform/http/http_early_answer.h"

#include <algorithm>
#include <sys/socket.h>
#include <unistd.h>

namespace quiv {

namespace {

using namespace std::chrono_literals;

constexpr long UploadBufferSize = 1 << 20;
constexpr long DownloadBufferSize = 256 << 10;
constexpr std::int64_t HeaderLimit = 64 << 10;
constexpr auto ProgressInterval = 250ms;
constexpr auto AnswerTimeout = 30min; // after the last byte of a body was sent

CurlTransfer& transferOf(void* pointer) {
    return *static_cast<CurlTransfer*>(pointer);
}

bool hasControlCharacter(QByteArrayView text) {
    return std::any_of(text.begin(), text.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7f;
    });
}

bool areHeadersSendable(const HttpHeaders& headers) {
    return std::none_of(headers.begin(), headers.end(), [](const auto& header) {
        return header.first.isEmpty() || hasControlCharacter(header.first) ||
               hasControlCharacter(header.second);
    });
}

} // namespace

HttpErrorCode errorCodeFor(CURLcode code) {
    switch (code) {
    case CURLE_URL_MALFORMAT:
        return HttpErrorCode::BadUrl;
    case CURLE_OPERATION_TIMEDOUT:
        return HttpErrorCode::TimedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return HttpErrorCode::CannotFindHost;
    case CURLE_COULDNT_CONNECT:
    case CURLE_INTERFACE_FAILED:
        return HttpErrorCode::CannotConnect;
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_SEND_FAIL_REWIND:
    case CURLE_PARTIAL_FILE:
        return HttpErrorCode::ConnectionLost;
    case CURLE_READ_ERROR:
    case CURLE_ABORTED_BY_CALLBACK:
        return HttpErrorCode::CannotReadFile;
    default:
        return HttpErrorCode::BadServerResponse;
    }
}

CurlTransfer::CurlTransfer(HttpRequest request, std::optional<HostAddress> address,
                           ProgressSink progress)
    : m_request(std::move(request)),
      m_address(std::move(address)),
      m_progressSink(std::move(progress)),
      m_easy(curl_easy_init()),
      m_requestBody(m_request.body, m_request.bodyFile),
      m_replyBody(m_request) {}

std::optional<HttpError> CurlTransfer::prepare(std::function<void()> onDiskReady) {
    if (!m_request.url.startsWith("http://") || hasControlCharacter(m_request.url) ||
        !areHeadersSendable(m_request.headers))
        return HttpError(HttpErrorCode::BadUrl);
    setRules();
    setHeaders();
    setMethodAndBody();
    setCallbacks();
    m_requestBody.open(onDiskReady);
    m_replyBody.open(std::move(onDiskReady));
    return std::nullopt;
}

CURLcode CurlTransfer::goOn() {
    m_waitsFor.reset();
    return curl_easy_pause(m_easy.get(), CURLPAUSE_CONT);
}

void CurlTransfer::setRules() {
    CURL* easy = m_easy.get();
    setConnectionRules(easy, m_request.url);
    curl_easy_setopt(easy, CURLOPT_UPLOAD_BUFFERSIZE, UploadBufferSize);
    if (m_request.replyFile)
        curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, DownloadBufferSize);
    if (m_request.timeouts.total)
        curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS,
                         static_cast<long>(m_request.timeouts.total->count()));
    // libcurl repeats a request whose kept-alive connection broke, even one that was acted upon.
    if (m_request.method != "GET")
        curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, 1L);
    if (m_address) {
        const QByteArray text = m_address->toText().toLatin1();
        const bool isIpv6 = m_address->family == HostAddress::Family::IPv6;
        const QByteArray target = isIpv6 ? "::[" + text + "]:" : "::" + text + ":";
        m_connectTo.reset(curl_slist_append(nullptr, target.constData()));
        curl_easy_setopt(easy, CURLOPT_CONNECT_TO, m_connectTo.get());
        if (m_address->scope != 0)
            curl_easy_setopt(easy, CURLOPT_ADDRESS_SCOPE, static_cast<long>(m_address->scope));
    }
}

void CurlTransfer::setHeaders() {
    // "Expect:" would hold an upload back for up to a second; libcurl's own content type is wrong.
    QList<QByteArray> lines{"Expect:", "User-Agent: QuivController"};
    bool hasContentType = false;
    for (const auto& [name, value] : m_request.headers) {
        hasContentType = hasContentType || name.compare("Content-Type", Qt::CaseInsensitive) == 0;
        lines.append(value.isEmpty() ? name + ";" : name + ": " + value);
    }
    if (!hasContentType)
        lines.append("Content-Type:");
    curl_slist* list = nullptr;
    for (const QByteArray& line : lines)
        list = curl_slist_append(list, line.constData());
    m_headerList.reset(list);
    curl_easy_setopt(m_easy.get(), CURLOPT_HTTPHEADER, list);
}

void CurlTransfer::setMethodAndBody() {
    CURL* easy = m_easy.get();
    if (m_request.method == "GET") {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
        return;
    }
    if (m_request.method == "PUT") {
        curl_easy_setopt(easy, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(easy, CURLOPT_INFILESIZE_LARGE,
                         static_cast<curl_off_t>(m_requestBody.size()));
        return;
    }
    curl_easy_setopt(easy, CURLOPT_POST, 1L);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(m_requestBody.size()));
    if (m_request.method != "POST")
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, m_request.method.constData());
}

void CurlTransfer::setCallbacks() {
    CURL* easy = m_easy.get();
    const auto read = +[](char* buffer, std::size_t size, std::size_t count, void* self) {
        return transferOf(self).readBody({buffer, size * count});
    };
    const auto seek = +[](void* self, curl_off_t offset, int origin) -> int {
        if (origin != SEEK_SET)
            return CURL_SEEKFUNC_FAIL;
        transferOf(self).m_requestBody.rewind(offset);
        return CURL_SEEKFUNC_OK;
    };
    const auto header = +[](char* data, std::size_t size, std::size_t count, void* self) {
        const auto length = size * count;
        return transferOf(self).takeHeader({data, qsizetype(length)}) ? length : 0;
    };
    const auto write = +[](char* data, std::size_t size, std::size_t count, void* self) {
        return transferOf(self).takeBody({data, qsizetype(size * count)});
    };
    const auto progress = +[](void* self, curl_off_t receivedTotal, curl_off_t received, curl_off_t,
                              curl_off_t sent) -> int {
        CurlTransfer& transfer = transferOf(self);
        const HttpProgress moved{sent, transfer.m_requestBody.size(), received,
                                 receivedTotal > 0 ? receivedTotal : -1};
        if (transfer.m_request.onProgress)
            transfer.reportProgress(moved, false);
        return transfer.isIdleTooLong(moved) ? 1 : 0;
    };
    const auto close = +[](void* self, curl_socket_t socket) -> int {
        transferOf(self).closeSocket(socket);
        return 0;
    };
    curl_easy_setopt(easy, CURLOPT_READFUNCTION, read);
    curl_easy_setopt(easy, CURLOPT_READDATA, this);
    curl_easy_setopt(easy, CURLOPT_SEEKFUNCTION, seek);
    curl_easy_setopt(easy, CURLOPT_SEEKDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, header);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, write);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    if (m_request.onProgress || m_request.timeouts.idle) {
        curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, progress);
        curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
    }
    if (m_requestBody.size() > 0) {
        // Closed before the transfer ends, as closing it calls back.
        curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
        curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, close);
        curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
    }
}

std::size_t CurlTransfer::readBody(std::span<char> target) {
    const FileReader::Taken taken = m_requestBody.read(target);
    switch (taken.kind) {
    case FileReader::Taken::Kind::Bytes:
        return taken.count;
    case FileReader::Taken::Kind::Pending:
        m_waitsFor = HttpErrorCode::CannotReadFile;
        return CURL_READFUNC_PAUSE;
    case FileReader::Taken::Kind::Failed:
        break;
    }
    m_failure = HttpErrorCode::CannotReadFile;
    return CURL_READFUNC_ABORT;
}

bool CurlTransfer::takeHeader(QByteArrayView line) {
    m_headerBytes += line.size();
    if (m_headerBytes > HeaderLimit) {
        m_failure = HttpErrorCode::BadServerResponse;
        return false;
    }
    if (line.startsWith("HTTP/")) { // a new reply begins, after an interim one
        m_reply.headers.clear();
        return true;
    }
    const auto colon = line.indexOf(':');
    if (colon > 0) {
        m_reply.headers.append({line.first(colon).trimmed().toByteArray(),
                                line.sliced(colon + 1).trimmed().toByteArray()});
    }
    return true;
}

std::size_t CurlTransfer::takeBody(QByteArrayView bytes) {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const ReplyBody::Taken taken = m_replyBody.take(status >= 200 && status <= 299, bytes);
    m_failure = taken.error;
    if (taken.error)
        return 0;
    if (!taken.isPending)
        return std::size_t(bytes.size());
    m_waitsFor = HttpErrorCode::CannotWriteFile;
    return CURL_WRITEFUNC_PAUSE;
}

bool CurlTransfer::isIdleTooLong(const HttpProgress& progress) {
    if (!m_request.timeouts.idle)
        return false;
    const auto now = std::chrono::steady_clock::now();
    const std::int64_t moved = progress.sent + progress.received;
    if (!m_lastMoveAt || moved != m_movedBytes) {
        m_movedBytes = moved;
        m_lastMoveAt = now;
        return false;
    }
    const bool awaitsAnswer =
        m_requestBody.size() > 0 && progress.sent >= m_requestBody.size() && progress.received == 0;
    const std::chrono::seconds limit = awaitsAnswer ? AnswerTimeout : *m_request.timeouts.idle;
    if (now - *m_lastMoveAt < limit)
        return false;
    m_failure = m_waitsFor.value_or(HttpErrorCode::TimedOut);
    return true;
}

void CurlTransfer::reportProgress(const HttpProgress& progress, bool isLast) {
    const HttpProgress before = std::exchange(m_seenProgress, progress);
    const bool startsOver = progress.sent < before.sent;
    if (startsOver && before != m_lastProgress)
        m_progressSink(before); // how far the body had come
    const auto now = std::chrono::steady_clock::now();
    const bool isDue = !m_lastReportAt || now - *m_lastReportAt >= ProgressInterval;
    if (progress == m_lastProgress || (!isDue && !isLast && !startsOver))
        return;
    m_lastReportAt = now;
    m_lastProgress = progress;
    m_progressSink(progress);
}

// A TV that refuses an upload answers and closes while the body is still on its way. Sending then
// fails, and libcurl closes the socket without reading the answer.
void CurlTransfer::closeSocket(curl_socket_t socket) {
    QByteArray bytes(ErrorReplyLimit, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const auto count =
            ::recv(socket, bytes.data() + length, std::size_t(bytes.size() - length), MSG_DONTWAIT);
        if (count <= 0)
            break;
        length += count;
    }
    if (length > 0) // an address that was only tried leaves nothing
        m_leftInSocket = bytes.first(length);
    ::close(socket);
}

std::optional<HttpReply> CurlTransfer::earlyRefusal() const {
    auto answer = parseEarlyAnswer(m_leftInSocket);
    return answer && !answer->isSuccess() ? answer : std::nullopt;
}

std::optional<HttpResult> CurlTransfer::finish(CURLcode code) {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isCutErrorReply =
        m_failure == HttpErrorCode::ReplyTooLarge && status >= 300; // its beginning is enough
    if (code != CURLE_OK && !isCutErrorReply)
        return failureFor(code, int(status));
    const ReplyBody::Taken written = m_replyBody.finish();
    if (written.isPending)
        return std::nullopt;
    if (written.error)
        return HttpError(*written.error);
    m_reply.status = int(status);
    m_reply.body = m_replyBody.takeBytes();
    curl_off_t uploaded = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_UPLOAD_T, &uploaded);
    if (m_reply.isSuccess() && (uploaded < m_requestBody.size() || m_replyBody.isCut()))
        return HttpError(HttpErrorCode::ConnectionLost);
    if (m_request.onProgress && m_reply.isSuccess()) {
        curl_off_t received = 0;
        curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_DOWNLOAD_T, &received);
        reportProgress({uploaded, m_requestBody.size(), received, received}, true);
    }
    return std::move(m_reply);
}

HttpResult CurlTransfer::failureFor(CURLcode code, int status) {
    const bool wasSending = code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR;
    if (wasSending && !m_failure && status == 0) {
        if (auto refusal = earlyRefusal())
            return std::move(*refusal);
    }
    return HttpError(m_failure.value_or(errorCodeFor(code)));
}

} // namespace quiv
