#pragma once

#include "platform/appearance/desktop_appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

class QDBusPendingCallWatcher;

namespace quiv {

// The look that the desktop's portal tells of. Asked for when this is made and whenever a portal
// comes, and followed from then on; without a session bus or a portal nothing is stated.
class PortalAppearance final : public DesktopAppearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QObject* parent = nullptr);

private Q_SLOTS:
    void changeSetting(const QDBusMessage& change);

private:
    void readAll();
    void takeAll(QDBusPendingCallWatcher* reading);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    DesktopSettings m_settings;
};

} // namespace quiv
