#include "net/status_line.h"

#include "net/reachability.h"
#include "platform/publish.h"

namespace quiv {

namespace {

constexpr std::chrono::seconds ReadingTime{4};

} // namespace

StatusMessage failureMessage(const QString& what, const Error& error) {
    StatusMessage message = failureMessage(what + error.description());
    const auto* exchange = dynamic_cast<const HttpError*>(&error);
    message.isOfSilence = exchange && isWithoutAnswer(exchange->code());
    return message;
}

StatusMessage failureMessage(const QString& text) {
    return {text, StatusMessage::Kind::Failure};
}

void StatusLine::post(const StatusMessage& message) {
    m_readableUntil = m_clock.now() + ReadingTime;
    show(message);
}

void StatusLine::beginProgress(const QString& text) {
    m_readableUntil = {};
    show({text});
}

void StatusLine::postProgress(const QString& text) {
    if (m_clock.now() >= m_readableUntil)
        show({text});
}

void StatusLine::retractSilence(const QString& text) {
    if (m_message.isOfSilence)
        post(text);
}

void StatusLine::show(const StatusMessage& message) {
    publish(this, m_message, message, &StatusLine::statusMessageChanged);
}

} // namespace quiv
