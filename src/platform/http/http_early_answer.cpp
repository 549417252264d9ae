#include "platform/http/http_early_answer.h"

namespace quiv {

namespace {

// Returns the status of a line such as "HTTP/1.1 413 Too Large", or 0 if it is not one.
int statusOf(const QByteArray& line) {
    if (!line.startsWith("HTTP/1."))
        return 0;
    const auto parts = line.split(' ');
    bool isNumber = false;
    const int status = parts.size() < 2 ? 0 : parts[1].toInt(&isNumber);
    return isNumber && status >= 100 && status <= 599 ? status : 0;
}

HttpHeaders headersOf(const QList<QByteArray>& lines) {
    HttpHeaders headers;
    for (const QByteArray& line : lines.sliced(1)) {
        const auto colon = line.indexOf(':');
        if (colon > 0)
            headers.append({line.first(colon).trimmed(), line.sliced(colon + 1).trimmed()});
    }
    return headers;
}

} // namespace

std::optional<HttpReply> parseEarlyAnswer(const QByteArray& bytes) {
    qsizetype start = 0;
    while (true) {
        const auto end = bytes.indexOf("\r\n\r\n", start);
        if (end < 0)
            return std::nullopt;
        const auto lines = bytes.sliced(start, end - start).split('\n');
        const int status = statusOf(lines.first().trimmed());
        if (status == 0)
            return std::nullopt;
        start = end + 4;
        if (status < 200)
            continue;
        HttpReply reply{status, headersOf(lines), {}};
        // Without a plain length the rest may be in pieces with lengths of their own: not the text.
        bool hasLength = false;
        const auto length = reply.header("Content-Length").value_or("").toLongLong(&hasLength);
        if (hasLength && length >= 0)
            reply.body = bytes.sliced(start).first(qMin<qint64>(length, bytes.size() - start));
        return reply;
    }
}

} // namespace quiv
