#include "net/status_line.h"

#include "platform/publish.h"

namespace quiv {

void StatusLine::post(const QString& message) {
    publish(this, m_statusMessage, message, &StatusLine::statusMessageChanged);
}

} // namespace quiv
