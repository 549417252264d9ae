#include "transfer/pending_files.h"

#include <utility>

namespace quiv {

PendingFiles::Wait::Wait(PendingFiles& pending, QList<FileRequest> requests)
    : m_pending(pending), m_requests(std::move(requests)) {
    for (const FileRequest& each : m_requests)
        m_pending.m_requests.insert(each);
    Q_EMIT m_pending.changed();
}

PendingFiles::Wait::~Wait() {
    for (const FileRequest& each : m_requests)
        m_pending.m_requests.remove(each);
    Q_EMIT m_pending.changed();
}

} // namespace quiv
