#pragma once

#include "library/library_content.h"
#include "ui/presenters/prompt_presenter.h"

namespace quiv {

class WindowActions;

// Asks before a group is deleted from the TV.
class DeletePromptPresenter : public PromptPresenter {
    Q_OBJECT

public:
    explicit DeletePromptPresenter(WindowActions& actions, QObject* parent = nullptr)
        : PromptPresenter(parent), m_actions(actions) {}

    void ask(const FileGroup& group);

private:
    WindowActions& m_actions;
};

// "This will delete 3 file(s) from the TV, including subtitles linked to "Title"."
QString deleteMessage(const FileGroup& group);

} // namespace quiv
