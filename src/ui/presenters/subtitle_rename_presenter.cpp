#include "ui/presenters/subtitle_rename_presenter.h"

#include "transfer/upload_job.h"
#include "transfer/upload_names.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

namespace quiv {

using namespace Qt::StringLiterals;

void SubtitleRenamePresenter::attach(const QUrl& subtitle, const QString& videoName) {
    const SubtitleRenamePrompt prompt{subtitle, videoName,
                                      proposedSubtitleRemoteName(videoName, subtitle)};
    const auto queue = [this, prompt] {
        m_actions.queueSubtitleUpload(prompt.sourceURL, prompt.proposedRemoteName);
    };
    if (prompt.proposedRemoteName.compare(subtitle.fileName(), Qt::CaseInsensitive) == 0)
        return queue();
    show(u"The selected subtitle filename does not match this video. It will be "
         "uploaded as \""_s +
             displayText(prompt.proposedRemoteName) + u"\" so it links correctly."_s,
         queue);
}

} // namespace quiv
