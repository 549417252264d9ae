#pragma once

#include "model/window_state.h"
#include "ui/desktop/desktop_ports.h"

#include <functional>

namespace quiv {

class WindowActions;

// Keeps the computer awake while files move, shows in the launcher how far they are, and tells when
// they have ended if the user looks elsewhere.
class TransferWatch {
public:
    struct Window {
        std::function<bool()> isInFront;
        std::function<void(const QString& activationToken)> raise;
    };

    TransferWatch(const DesktopPorts& desktop, WindowActions& actions, Window window);
    ~TransferWatch(); // nothing that was told can be answered any more
    TransferWatch(const TransferWatch&) = delete;
    TransferWatch& operator=(const TransferWatch&) = delete;

    void show(const WindowState& state);
    void uploadsFinished(const StatusMessage& outcome);
    void downloadFinished(const StatusMessage& outcome);
    // The window came to the front: what was told is seen there.
    void windowActivated();

private:
    void tell(const Notification& notification, const QUrl& file);

    const DesktopPorts m_desktop;
    WindowActions& m_actions;
    const Window m_window;
};

} // namespace quiv
