#include "ui/presenters/prompt_presenter.h"

#include <utility>

namespace quiv {

void PromptPresenter::show(const WindowState& state) {
    const WindowState before = std::exchange(m_state, state);
    if (!isSameTv(before, state))
        cancel();
}

void PromptPresenter::ask(const QString& message, std::function<void()> confirmed) {
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
