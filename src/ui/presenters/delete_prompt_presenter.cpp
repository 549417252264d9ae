#include "ui/presenters/delete_prompt_presenter.h"

#include "transfer/deletion.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

QString deleteMessage(const FileGroup& group) {
    return u"This will delete "_s + QString::number(filesOf(group).size()) +
           u" file(s) from the TV, including subtitles linked to \""_s + displayText(group.title) +
           u"\"."_s;
}

void DeletePromptPresenter::ask(const FileGroup& group) {
    show(deleteMessage(group), [this, group] { m_actions.deleteGroup(group); });
}

} // namespace quiv
