#pragma once

#include "platform/http/file_writer.h"
#include "platform/http/http_session.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <optional>

namespace quiv {

// The body of a reply as it arrives: that of a successful one goes into the request's file, if it
// names one; others are kept in memory, within their limits.
class ReplyBody {
public:
    struct Taken {
        bool isPending = false;               // nothing was taken, as the disk is not that fast
        std::optional<HttpErrorCode> error{}; // why the exchange cannot go on
    };

    explicit ReplyBody(const HttpRequest& request);

    // Before the first byte. `onReady` is called on another thread when it is worth asking again
    // after Pending.
    void open(std::function<void()> onReady);
    Taken take(bool isSuccess, QByteArrayView bytes);
    // Whether what was taken is where it belongs.
    Taken finish();
    // Whether less has come into the file than was announced.
    bool isCut() const;
    QByteArray takeBytes() { return std::move(m_bytes); }

private:
    Taken keep(QByteArrayView bytes);
    Taken keepBeginning(QByteArrayView bytes);
    Taken write(QByteArrayView bytes);

    const std::shared_ptr<const OpenFile> m_file; // nullptr if there is none
    const std::optional<std::int64_t> m_fileSize;
    const std::int64_t m_limit;
    QByteArray m_bytes;
    std::optional<FileWriter> m_writer;
    std::int64_t m_taken = 0; // into the file
};

} // namespace quiv
