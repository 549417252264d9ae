#include "platform/http/curl_transfer.h"

#include "platform/http/http_early_answer.h"

#include <QFileInfo>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace quiv {

namespace {

using namespace std::chrono_literals;

constexpr long UploadBufferSize = 1 << 20;
constexpr std::int64_t HeaderLimit = 64 << 10;
constexpr auto ProgressInterval = 250ms;
constexpr auto ConnectTimeout = 5s;
constexpr auto AnswerTimeout = 30min; // after the last byte of a body was sent
constexpr std::int64_t DiskReserve = 64 << 20;
constexpr std::int64_t DiskCheckInterval = 4 << 20; // bytes

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
      m_easy(curl_easy_init()) {}

CurlTransfer::~CurlTransfer() {
    if (m_socketCopy >= 0)
        ::close(m_socketCopy);
}

std::optional<HttpError> CurlTransfer::prepare() {
    if (!m_request.url.startsWith("http://") || hasControlCharacter(m_request.url) ||
        !areHeadersSendable(m_request.headers))
        return HttpError(HttpErrorCode::BadUrl);
    if (auto error = openFiles())
        return error;
    setRules();
    setHeaders();
    setMethodAndBody();
    setCallbacks();
    return std::nullopt;
}

std::optional<HttpError> CurlTransfer::openFiles() {
    if (!m_request.bodyFile.isEmpty()) {
        m_bodyFile.setFileName(m_request.bodyFile);
        // Opening anything but a plain file might block for good.
        if (!QFileInfo(m_request.bodyFile).isFile() ||
            !m_bodyFile.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            return HttpError(HttpErrorCode::CannotReadFile);
        m_bodySize = m_bodyFile.size();
    } else {
        m_bodySize = m_request.body.size();
    }
    if (!m_request.replyFile.isEmpty()) {
        m_replyFile.setFileName(m_request.replyFile);
        // Whoever wants no reply any more has removed it: it must not come back.
        if (!m_replyFile.open(QIODevice::WriteOnly | QIODevice::ExistingOnly |
                              QIODevice::Unbuffered))
            return HttpError(HttpErrorCode::CannotWriteFile);
    }
    return std::nullopt;
}

void CurlTransfer::setRules() {
    CURL* easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_URL, m_request.url.constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_UPLOAD_BUFFERSIZE, UploadBufferSize);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(std::chrono::milliseconds(ConnectTimeout).count()));
    curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
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
        curl_easy_setopt(easy, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(m_bodySize));
        return;
    }
    curl_easy_setopt(easy, CURLOPT_POST, 1L);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_bodySize));
    if (m_request.method != "POST")
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, m_request.method.constData());
}

void CurlTransfer::setCallbacks() {
    CURL* easy = m_easy.get();
    const auto read = +[](char* buffer, std::size_t size, std::size_t count, void* self) {
        return transferOf(self).readBody(buffer, size * count);
    };
    const auto seek = +[](void* self, curl_off_t offset, int origin) -> int {
        const bool isDone = origin == SEEK_SET && transferOf(self).rewindBody(offset);
        return isDone ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
    };
    const auto header = +[](char* data, std::size_t size, std::size_t count, void* self) {
        const auto length = size * count;
        return transferOf(self).takeHeader({data, qsizetype(length)}) ? length : 0;
    };
    const auto write = +[](char* data, std::size_t size, std::size_t count, void* self) {
        const auto length = size * count;
        return transferOf(self).takeBody({data, qsizetype(length)}) ? length : 0;
    };
    const auto progress = +[](void* self, curl_off_t receivedTotal, curl_off_t received, curl_off_t,
                              curl_off_t sent) -> int {
        CurlTransfer& transfer = transferOf(self);
        const HttpProgress moved{sent, transfer.m_bodySize, received,
                                 receivedTotal > 0 ? receivedTotal : -1};
        if (transfer.m_request.onProgress)
            transfer.reportProgress(moved, false);
        return transfer.isIdleTooLong(moved) ? 1 : 0;
    };
    const auto open = +[](void* self, curlsocktype, curl_sockaddr* address) -> curl_socket_t {
        return transferOf(self).openSocket(address);
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
    if (m_bodySize > 0) {
        // A connection of its own: the copy of its socket is what an early answer is read from.
        curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, open);
        curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
    }
}

int CurlTransfer::openSocket(curl_sockaddr* address) {
    const int descriptor =
        ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (m_socketCopy >= 0)
        ::close(std::exchange(m_socketCopy, -1));
    if (descriptor >= 0)
        m_socketCopy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return descriptor;
}

std::size_t CurlTransfer::readBody(char* buffer, std::size_t capacity) {
    const auto wanted = std::min<std::int64_t>(std::int64_t(capacity), m_bodySize - m_bodyOffset);
    if (wanted <= 0)
        return 0;
    std::int64_t count = wanted;
    if (m_bodyFile.isOpen())
        count = m_bodyFile.read(buffer, wanted);
    else
        std::memcpy(buffer, m_request.body.constData() + m_bodyOffset, std::size_t(wanted));
    if (count <= 0) { // unreadable, or shorter than when it was announced
        m_failure = HttpErrorCode::CannotReadFile;
        return CURL_READFUNC_ABORT;
    }
    m_bodyOffset += count;
    return std::size_t(count);
}

bool CurlTransfer::rewindBody(curl_off_t offset) {
    m_bodyOffset = offset;
    return !m_bodyFile.isOpen() || m_bodyFile.seek(offset);
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

bool CurlTransfer::takeBody(QByteArrayView bytes) {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isSuccess = status >= 200 && status <= 299;
    if (isSuccess && m_replyFile.isOpen()) {
        m_failure = writeReply(bytes);
        return !m_failure;
    }
    if (!isSuccess) { // only its first words are of use
        const auto room = std::max<std::int64_t>(0, ErrorReplyLimit - m_reply.body.size());
        m_reply.body.append(bytes.first(std::min<std::int64_t>(room, bytes.size())));
        if (bytes.size() <= room)
            return true;
        m_failure = HttpErrorCode::ReplyTooLarge;
        return false;
    }
    if (m_reply.body.size() + bytes.size() > m_request.replyLimit) {
        m_failure = HttpErrorCode::ReplyTooLarge;
        return false;
    }
    m_reply.body.append(bytes);
    return true;
}

std::optional<HttpErrorCode> CurlTransfer::writeReply(QByteArrayView bytes) {
    const std::int64_t size = m_replyFileBytes + bytes.size();
    if (m_request.replyFileSize) {
        if (size > *m_request.replyFileSize)
            return HttpErrorCode::ReplyTooLarge;
    } else if (size / DiskCheckInterval != m_replyFileBytes / DiskCheckInterval) {
        struct statvfs disk {};
        const bool isKnown = ::fstatvfs(m_replyFile.handle(), &disk) == 0;
        if (isKnown && std::int64_t(disk.f_bavail * disk.f_frsize) < DiskReserve)
            return HttpErrorCode::CannotWriteFile;
    }
    m_replyFileBytes = size;
    if (m_replyFile.write(bytes.data(), bytes.size()) != bytes.size())
        return HttpErrorCode::CannotWriteFile;
    return std::nullopt;
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
        m_bodySize > 0 && progress.sent >= m_bodySize && progress.received == 0;
    const std::chrono::seconds limit = awaitsAnswer ? AnswerTimeout : *m_request.timeouts.idle;
    if (now - *m_lastMoveAt < limit)
        return false;
    m_failure = HttpErrorCode::TimedOut;
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

// A TV that refuses an upload answers and closes while the body is still on its way; its answer may
// then wait in the socket behind the error that sending met.
bool CurlTransfer::readEarlyAnswer() {
    if (m_socketCopy < 0)
        return false;
    QByteArray bytes(ErrorReplyLimit, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const auto count = ::recv(m_socketCopy, bytes.data() + length,
                                  std::size_t(bytes.size() - length), MSG_DONTWAIT);
        if (count <= 0)
            break;
        length += count;
    }
    bytes.truncate(length);
    auto answer = parseEarlyAnswer(bytes);
    if (!answer)
        return false;
    m_reply = std::move(*answer);
    return true;
}

HttpResult CurlTransfer::finish(CURLcode code) {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isCutErrorReply =
        m_failure == HttpErrorCode::ReplyTooLarge && status >= 300; // its beginning is enough
    if (code != CURLE_OK && !isCutErrorReply) {
        const bool wasSending = code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR;
        if (wasSending && !m_failure && status == 0 && readEarlyAnswer() && !m_reply.isSuccess())
            return std::move(m_reply);
        return HttpError(m_failure.value_or(errorCodeFor(code)));
    }
    m_reply.status = int(status);
    curl_off_t uploaded = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_UPLOAD_T, &uploaded);
    const bool isCutBody = m_request.replyFileSize && m_replyFileBytes < *m_request.replyFileSize;
    if (m_reply.isSuccess() && (uploaded < m_bodySize || isCutBody))
        return HttpError(HttpErrorCode::ConnectionLost);
    if (m_request.onProgress && m_reply.isSuccess()) {
        curl_off_t received = 0;
        curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_DOWNLOAD_T, &received);
        reportProgress({uploaded, m_bodySize, received, received}, true);
    }
    return std::move(m_reply);
}

} // namespace quiv
