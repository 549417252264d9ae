#pragma once

#include "platform/desktop/notifier.h"

#include <QObject>
#include <QStringList>

#include <optional>

namespace quiv {

// The notifications of the session's desktop (org.freedesktop.Notifications).
class DBusNotifier final : public QObject, public Notifier {
    Q_OBJECT

public:
    // `applicationId` names the desktop entry and the icon.
    explicit DBusNotifier(const QString& applicationId);
    ~DBusNotifier() override;

    void notify(const Notification& notification,
                std::function<void(const NotificationAnswer&)> answered) override;
    void withdraw() override;

private Q_SLOTS:
    // By the names of the desktop's signals.
    void tokenGiven(uint id, const QString& token);
    void actionInvoked(uint id, const QString& key);
    void closed(uint id);

private:
    void askWhatItCan();
    void send();

    const QString m_applicationId;
    std::optional<QStringList> m_capabilities; // of the desktop, once it has told them
    std::optional<Notification> m_wanted;      // not sent
    std::function<void(const NotificationAnswer&)> m_answered;
    uint m_id = 0; // of the last one; 0 before the first
    bool m_isSending = false;
    QString m_token;
};

} // namespace quiv
