#include "ui/desktop/opened_files.h"

#include "ui/presenters/window_actions.h"

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString waitingMessage(qsizetype files) {
    const QString which = files == 1 ? u"1 file waits"_s : u"%1 files wait"_s.arg(files);
    return which + u" to be uploaded: select a TV"_s;
}

} // namespace

OpenedFiles::OpenedFiles(WindowActions& actions) : m_actions(actions) {}

void OpenedFiles::show(const WindowState& state) {
    m_hasTv = state.selectedDevice.has_value();
    if (m_hasTv && !m_waiting.isEmpty())
        m_actions.queueDroppedFiles(std::exchange(m_waiting, {}));
}

void OpenedFiles::open(const QList<QUrl>& files) {
    if (files.isEmpty())
        return;
    if (m_hasTv) {
        m_actions.queueDroppedFiles(files);
        return;
    }
    m_waiting += files;
    m_actions.post({waitingMessage(m_waiting.size())});
}

} // namespace quiv
