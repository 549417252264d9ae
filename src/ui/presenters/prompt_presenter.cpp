#include "ui/presenters/prompt_presenter.h"

#include <utility>

namespace quiv {

void PromptPresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    const QString key = device ? endpointKey(*device) : QString();
    if (std::exchange(m_selectedKey, key) != key)
        cancel();
}

void PromptPresenter::show(const QString& message, std::function<void()> confirmed) {
    m_message = message;
    m_confirmed = std::move(confirmed);
    Q_EMIT changed();
}

void PromptPresenter::cancel() {
    if (std::exchange(m_confirmed, nullptr))
        Q_EMIT changed();
}

void PromptPresenter::confirm() {
    const auto confirmed = m_confirmed;
    cancel();
    if (confirmed)
        confirmed();
}

} // namespace quiv
