#pragma once

#include "ui/presenters/prompt_presenter.h"

#include <QUrl>

namespace quiv {

class WindowActions;

// Attaches a subtitle to a video; asks first when the file needs another name for that.
class SubtitleRenamePresenter : public PromptPresenter {
    Q_OBJECT

public:
    explicit SubtitleRenamePresenter(WindowActions& actions, QObject* parent = nullptr)
        : PromptPresenter(parent), m_actions(actions) {}

    void attach(const QUrl& subtitle, const QString& videoName);

private:
    WindowActions& m_actions;
};

} // namespace quiv
