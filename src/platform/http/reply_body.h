#pragma once

#include "platform/http/http_session.h"

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <optional>

namespace quiv {

// The body of a reply as it arrives: that of a successful one goes into the request's file, if it
// names one; others are kept in memory, within their limits.
class ReplyBody {
public:
    explicit ReplyBody(const HttpRequest& request);

    // Returns why the exchange cannot go on, or nullopt.
    std::optional<HttpErrorCode> take(bool isSuccess, QByteArrayView bytes);
    // Whether less has come into the file than was announced.
    bool isCut() const;
    QByteArray takeBytes() { return std::move(m_bytes); }

private:
    std::optional<HttpErrorCode> keep(QByteArrayView bytes);
    std::optional<HttpErrorCode> keepBeginning(QByteArrayView bytes);
    std::optional<HttpErrorCode> write(QByteArrayView bytes);
    bool isDiskNearlyFull() const;

    const std::shared_ptr<const OpenFile> m_file; // nullptr if there is none
    const std::optional<std::int64_t> m_fileSize;
    const std::int64_t m_limit;
    QByteArray m_bytes;
    std::int64_t m_written = 0;
};

} // namespace quiv
