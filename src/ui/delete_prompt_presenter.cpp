#include "ui/delete_prompt_presenter.h"

#include "platform/publish.h"
#include "transfer/deletion.h"
#include "ui/display_format.h"
#include "ui/window_actions.h"

#include <utility>

namespace quiv {

QString deleteMessage(const FileGroup& group) {
    return QStringLiteral("This will delete ") + QString::number(filesOf(group).size()) +
           QStringLiteral(" file(s) from the TV, including subtitles linked to \"") +
           displayText(group.title) + QStringLiteral("\".");
}

DeletePromptPresenter::DeletePromptPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {}

void DeletePromptPresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    const QString key = device ? endpointKey(*device) : QString();
    if (std::exchange(m_selectedKey, key) != key)
        cancel();
}

void DeletePromptPresenter::ask(const FileGroup& group) {
    m_message = deleteMessage(group);
    publish(this, m_pendingDeleteGroup, std::optional(group), &DeletePromptPresenter::changed);
}

void DeletePromptPresenter::cancel() {
    publish(this, m_pendingDeleteGroup, std::optional<FileGroup>(),
            &DeletePromptPresenter::changed);
}

void DeletePromptPresenter::confirm() {
    const auto group = m_pendingDeleteGroup;
    cancel();
    if (group)
        m_actions.deleteGroup(*group);
}

} // namespace quiv
