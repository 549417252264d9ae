#include "ui/subtitle_rename_presenter.h"

#include "platform/publish.h"
#include "transfer/upload_names.h"
#include "ui/display_format.h"
#include "ui/window_actions.h"

#include <utility>

namespace quiv {

SubtitleRenamePresenter::SubtitleRenamePresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {}

void SubtitleRenamePresenter::setSelectedDevice(const std::optional<TVEndpoint>& device) {
    const QString key = device ? endpointKey(*device) : QString();
    if (std::exchange(m_selectedKey, key) != key)
        cancel();
}

void SubtitleRenamePresenter::attach(const QUrl& subtitle, const QString& videoName) {
    const QString proposed = proposedSubtitleRemoteName(videoName, subtitle);
    if (proposed.compare(subtitle.fileName(), Qt::CaseInsensitive) == 0)
        return m_actions.queueSubtitleUpload(subtitle, proposed);
    m_message = QStringLiteral("The selected subtitle filename does not match this video. It will "
                               "be uploaded as \"") +
                displayText(proposed) + QStringLiteral("\" so it links correctly.");
    publish(this, m_prompt, std::optional(SubtitleRenamePrompt{subtitle, videoName, proposed}),
            &SubtitleRenamePresenter::changed);
}

void SubtitleRenamePresenter::cancel() {
    publish(this, m_prompt, std::optional<SubtitleRenamePrompt>(),
            &SubtitleRenamePresenter::changed);
}

void SubtitleRenamePresenter::confirm() {
    const auto prompt = m_prompt;
    cancel();
    if (prompt)
        m_actions.queueSubtitleUpload(prompt->sourceURL, prompt->proposedRemoteName);
}

} // namespace quiv
