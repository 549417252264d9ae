#include "ui/desktop/transfer_watch.h"

#include "ui/desktop/transfers_at_work.h"
#include "ui/presenters/window_actions.h"

#include <utility>

namespace quiv {

TransferWatch::TransferWatch(const DesktopPorts& desktop, WindowActions& actions, Window window)
    : m_desktop(desktop), m_actions(actions), m_window(std::move(window)) {}

TransferWatch::~TransferWatch() {
    m_desktop.notifier.withdraw();
}

void TransferWatch::show(const WindowState& state) {
    m_desktop.awakeForTransfers.setInhibited(isMovingBytes(state));
    m_desktop.launcher.showProgress(transferProgress(state));
}

void TransferWatch::uploadsFinished(const StatusMessage& outcome) {
    tell(uploadsNotification(outcome), {});
}

void TransferWatch::downloadFinished(const StatusMessage& outcome) {
    tell(downloadNotification(outcome), outcome.file);
}

void TransferWatch::windowActivated() {
    m_desktop.notifier.withdraw();
}

void TransferWatch::tell(const Notification& notification, const QUrl& file) {
    if (m_window.isInFront())
        return;
    m_desktop.notifier.notify(notification, [this, file](const NotificationAnswer& answer) {
        if (answer.isAction)
            m_actions.showInFileManager(file);
        else
            m_window.raise(answer.activationToken);
    });
}

} // namespace quiv
