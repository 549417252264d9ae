#include "net/status_line.h"

#include "platform/publish.h"

namespace quiv {

namespace {

constexpr std::chrono::seconds ReadingTime{4};

} // namespace

void StatusLine::post(const QString& message) {
    m_readableUntil = m_clock.now() + ReadingTime;
    show(message);
}

void StatusLine::beginProgress(const QString& message) {
    m_readableUntil = {};
    show(message);
}

void StatusLine::postProgress(const QString& message) {
    if (m_clock.now() >= m_readableUntil)
        show(message);
}

void StatusLine::show(const QString& message) {
    publish(this, m_statusMessage, message, &StatusLine::statusMessageChanged);
}

} // namespace quiv
