#include "ui/presenters/delete_prompt_presenter.h"

#include "transfer/deletion.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

QString deleteMessage(const FileGroup& group) {
    return QStringLiteral("This will delete ") + QString::number(filesOf(group).size()) +
           QStringLiteral(" file(s) from the TV, including subtitles linked to \"") +
           displayText(group.title) + QStringLiteral("\".");
}

void DeletePromptPresenter::ask(const FileGroup& group) {
    show(deleteMessage(group), [this, group] { m_actions.deleteGroup(group); });
}

} // namespace quiv
