#pragma once

#include "platform/dialogs/file_dialogs.h"

#include <chrono>
#include <functional>

namespace quiv {

// The desktop's own file dialogs, by the desktop portal on the session bus
// (org.freedesktop.portal.FileChooser). None where there is no bus or no such portal, where it does
// not open the dialog in time, and when it ends before the dialog does.
class PortalFileDialogs final : public FileDialogs {
public:
    // Tells the window a dialog belongs to, as portals write it: "x11:2a" or nothing.
    using ParentWindow = std::function<QString()>;

    explicit PortalFileDialogs(ParentWindow parentWindow,
                               std::chrono::milliseconds patience = std::chrono::seconds(5))
        : m_parentWindow(std::move(parentWindow)), m_patience(patience) {}

    Task<FileDialogAnswer> ask(FileDialogRequest request) override;

private:
    ParentWindow m_parentWindow;
    std::chrono::milliseconds m_patience;
};

} // namespace quiv
