#include "platform/dialogs/portal_file_dialogs.h"

#include "platform/dialogs/portal_request.h"

#include <QDBusConnection>

namespace quiv {

Task<FileDialogAnswer> PortalFileDialogs::ask(FileDialogRequest request) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        co_return std::nullopt;
    PortalRequest dialog(bus, request, m_parentWindow(), m_deadline);
    co_return co_await dialog.answer().wait();
}

} // namespace quiv
