#pragma once

#include "platform/dialogs/file_dialogs.h"

#include <chrono>
#include <functional>

namespace quiv {

// The desktop's own file dialogs, by the desktop portal on the session bus
// (org.freedesktop.portal.FileChooser). The answer is nullopt if there is no bus or no such portal,
// if it does not open the dialog by the deadline, or if it ends before the dialog does.
class PortalFileDialogs final : public FileDialogs {
public:
    // Tells the window a dialog belongs to, as portals write it: "x11:2a" or nothing.
    using ParentWindow = std::function<QString()>;

    explicit PortalFileDialogs(ParentWindow parentWindow,
                               std::chrono::milliseconds deadline = std::chrono::seconds(5))
        : m_parentWindow(std::move(parentWindow)), m_deadline(deadline) {}

    Task<FileDialogAnswer> ask(FileDialogRequest request) override;

private:
    ParentWindow m_parentWindow;
    std::chrono::milliseconds m_deadline;
};

} // namespace quiv
