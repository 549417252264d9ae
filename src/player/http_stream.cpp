#include "player/http_stream.h"

#include "platform/http/connection_rules.h"

#include <algorithm>
#include <cstring>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype MostWaiting = 1 << 20; // bytes that have come and were not read yet
constexpr auto Patience = 30s;             // without a byte, for a TV that comes back
constexpr auto StallLimit = 10s;           // without a byte, before a new connection is tried
constexpr auto FirstPause = 100ms;         // before the next attempt; doubled with each
constexpr auto LongestPause = 2s;

} // namespace

HttpStream::HttpStream(const StreamAddress& address, std::shared_ptr<StreamFault> fault)
    : m_address(address),
      m_fault(std::move(fault)),
      m_multi(curl_multi_init(), curl_multi_cleanup),
      m_easy(curl_easy_init(), curl_easy_cleanup),
      m_connectTo(address.connectTo.isEmpty()
                      ? nullptr
                      : curl_slist_append(nullptr, address.connectTo.constData()),
                  curl_slist_free_all),
      m_pause(FirstPause) {
    CURL* easy = m_easy.get();
    setConnectionRules(easy, m_address.url);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "QuivController");
    if (m_connectTo)
        curl_easy_setopt(easy, CURLOPT_CONNECT_TO, m_connectTo.get());
    if (m_address.addressScope != 0)
        curl_easy_setopt(easy, CURLOPT_ADDRESS_SCOPE, m_address.addressScope);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &HttpStream::onHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &HttpStream::onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
}

HttpStream::~HttpStream() {
    stop();
}

bool HttpStream::open() {
    return await() || (isAtEnd() && !m_hasFailed);
}

std::int64_t HttpStream::read(char* buffer, std::uint64_t capacity) {
    if (!await())
        return m_hasFailed ? -1 : 0;
    const auto count =
        std::min<qsizetype>(m_bytes.size() - m_taken,
                            static_cast<qsizetype>(std::min<std::uint64_t>(capacity, MostWaiting)));
    std::memcpy(buffer, m_bytes.constData() + m_taken, static_cast<std::size_t>(count));
    m_taken += count;
    m_position += count;
    if (m_taken == m_bytes.size()) {
        m_bytes.resize(0);
        m_taken = 0;
    }
    return count;
}

bool HttpStream::seek(std::int64_t position) {
    if (position < 0 || (m_size >= 0 && position > m_size))
        return false;
    const std::int64_t ahead = position - m_position;
    if (ahead >= 0 && ahead <= m_bytes.size() - m_taken) {
        m_taken += ahead;
    } else {
        stop();
        m_hasFailed = false;
    }
    m_hasEnded = false;
    m_position = position;
    return true;
}

void HttpStream::cancel() {
    m_isCancelled = true;
    curl_multi_wakeup(m_multi.get());
}

bool HttpStream::await() {
    const Time lastByte = std::chrono::steady_clock::now();
    Time attempt = lastByte;
    while (m_taken == m_bytes.size()) {
        if (m_hasFailed || m_hasEnded || isAtEnd() || !mayGoOn(lastByte))
            return false;
        if (!m_isUnderWay) {
            attempt = std::chrono::steady_clock::now();
            begin();
        }
        turn();
        if (m_isUnderWay && std::chrono::steady_clock::now() - attempt > StallLimit)
            stop();
    }
    m_pause = FirstPause;
    return true;
}

bool HttpStream::mayGoOn(Time lastByte) {
    if (m_isCancelled)
        fail({});
    else if (std::chrono::steady_clock::now() - lastByte > Patience)
        fail(u"the TV no longer sends"_s);
    return !m_hasFailed;
}

void HttpStream::begin() {
    m_status = 0;
    m_isPaused = false;
    const QByteArray range = QByteArray::number(m_position) + '-';
    curl_easy_setopt(m_easy.get(), CURLOPT_RANGE, range.constData());
    curl_multi_add_handle(m_multi.get(), m_easy.get());
    m_isUnderWay = true;
}

void HttpStream::stop() {
    if (m_isUnderWay)
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
    m_isUnderWay = false;
    m_bytes.resize(0);
    m_taken = 0;
}

void HttpStream::turn() {
    if (m_isPaused) {
        m_isPaused = false;
        curl_easy_pause(m_easy.get(), CURLPAUSE_CONT);
    }
    int running = 0;
    curl_multi_perform(m_multi.get(), &running);
    int left = 0;
    if (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
        const CURLcode code = message->data.result;
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
        m_isUnderWay = false;
        ended(code);
        return;
    }
    if (m_taken == m_bytes.size())
        curl_multi_poll(m_multi.get(), nullptr, 0, 500, nullptr);
}

// A reply that is no part of the file has failed already; what is missing is asked for again, after
// a moment.
void HttpStream::ended(CURLcode code) {
    if (m_hasFailed || m_taken < m_bytes.size())
        return;
    const bool wasPart = m_status == 200 || m_status == 206;
    if (code == CURLE_OK && wasPart && m_size < 0) {
        m_hasEnded = true;
        return;
    }
    curl_multi_poll(m_multi.get(), nullptr, 0, static_cast<int>(m_pause.count()), nullptr);
    m_pause = std::min<std::chrono::milliseconds>(2 * m_pause, LongestPause);
}

void HttpStream::fail(const QString& sentence) {
    stop();
    m_hasFailed = true;
    if (!sentence.isEmpty())
        m_fault->set(sentence);
}

// "Content-Range: bytes 5-9/10" tells the size, and so does the length of a whole file.
void HttpStream::takeHeader(QByteArrayView line) {
    const QByteArray text = line.toByteArray().trimmed();
    const qsizetype colon = text.indexOf(':');
    const QByteArray name = text.first(std::max<qsizetype>(colon, 0)).toLower();
    bool isNumber = false;
    if (name == "content-range") {
        const std::int64_t size = text.sliced(text.lastIndexOf('/') + 1).toLongLong(&isNumber);
        if (isNumber && size >= 0)
            m_size = size;
    } else if (name == "content-length" && m_status == 200) {
        const std::int64_t size = text.sliced(colon + 1).trimmed().toLongLong(&isNumber);
        if (isNumber && size >= 0)
            m_size = size;
    }
}

std::size_t HttpStream::take(const char* bytes, std::size_t count) {
    const bool isPart = m_status == 206 || (m_status == 200 && m_position == 0);
    if (!isPart)
        return count; // the words of a refusal
    if (m_bytes.size() - m_taken >= MostWaiting) {
        m_isPaused = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    m_bytes.append(bytes, static_cast<qsizetype>(count));
    return count;
}

std::size_t HttpStream::onHeader(char* bytes, std::size_t size, std::size_t count, void* stream) {
    auto& self = *static_cast<HttpStream*>(stream);
    curl_easy_getinfo(self.m_easy.get(), CURLINFO_RESPONSE_CODE, &self.m_status);
    self.takeHeader(QByteArrayView(bytes, static_cast<qsizetype>(size * count)));
    const bool isRefusal = self.m_status != 0 && self.m_status != 206 && self.m_status < 500 &&
                           self.m_status >= 200 && (self.m_status != 200 || self.m_position != 0);
    if (!isRefusal)
        return size * count;
    self.m_hasFailed = true;
    self.m_fault->set(u"the TV answered with HTTP %1"_s.arg(self.m_status));
    return 0; // ends the exchange
}

std::size_t HttpStream::onBody(char* bytes, std::size_t size, std::size_t count, void* stream) {
    return static_cast<HttpStream*>(stream)->take(bytes, size * count);
}

} // namespace quiv
