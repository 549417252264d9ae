#include "platform/http/reply_body.h"

#include "platform/open_file.h"

#include <algorithm>

namespace quiv {

namespace {

constexpr std::int64_t DiskReserve = 64 << 20;

ReplyBody::Taken takenBy(FileWriter::Outcome outcome) {
    switch (outcome) {
    case FileWriter::Outcome::Done:
        return {};
    case FileWriter::Outcome::Pending:
        return {.isPending = true};
    case FileWriter::Outcome::Failed:
        break;
    }
    return {.error = HttpErrorCode::CannotWriteFile};
}

} // namespace

ReplyBody::ReplyBody(const HttpRequest& request)
    : m_file(request.replyFile), m_fileSize(request.replyFileSize), m_limit(request.replyLimit) {}

void ReplyBody::open(std::function<void()> onReady) {
    if (m_file)
        m_writer.emplace(m_file, m_fileSize ? 0 : DiskReserve, std::move(onReady));
}

ReplyBody::Taken ReplyBody::take(bool isSuccess, QByteArrayView bytes) {
    if (!isSuccess)
        return keepBeginning(bytes);
    return m_writer ? write(bytes) : keep(bytes);
}

ReplyBody::Taken ReplyBody::finish() {
    return m_writer ? takenBy(m_writer->finish()) : Taken();
}

bool ReplyBody::isCut() const {
    return m_file && m_fileSize && m_taken < *m_fileSize;
}

ReplyBody::Taken ReplyBody::keep(QByteArrayView bytes) {
    if (m_bytes.size() + bytes.size() > m_limit)
        return {.error = HttpErrorCode::ReplyTooLarge};
    m_bytes.append(bytes);
    return {};
}

// Only the first words of a refusal are of use.
ReplyBody::Taken ReplyBody::keepBeginning(QByteArrayView bytes) {
    const auto room = std::max<std::int64_t>(0, ErrorReplyLimit - m_bytes.size());
    m_bytes.append(bytes.first(std::min<std::int64_t>(room, bytes.size())));
    if (bytes.size() > room)
        return {.error = HttpErrorCode::ReplyTooLarge};
    return {};
}

ReplyBody::Taken ReplyBody::write(QByteArrayView bytes) {
    if (m_fileSize && m_taken + bytes.size() > *m_fileSize)
        return {.error = HttpErrorCode::ReplyTooLarge};
    const Taken taken = takenBy(m_writer->put(bytes));
    if (!taken.isPending && !taken.error)
        m_taken += bytes.size();
    return taken;
}

} // namespace quiv
