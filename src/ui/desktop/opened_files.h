#pragma once

#include "model/window_state.h"

#include <QList>
#include <QUrl>

namespace quiv {

class WindowActions;

// Files that the desktop or a command line hands to the application, to be uploaded: to the TV that
// is selected, or to the first one that will be.
class OpenedFiles {
public:
    explicit OpenedFiles(WindowActions& actions);

    void show(const WindowState& state);
    void open(const QList<QUrl>& files);

private:
    WindowActions& m_actions;
    bool m_hasTv = false;
    QList<QUrl> m_waiting;
};

} // namespace quiv
