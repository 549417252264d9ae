#include "platform/desktop/dbus_launcher_entry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <cmath>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

DBusLauncherEntry::DBusLauncherEntry(const QString& applicationId)
    : m_entry(u"application://%1.desktop"_s.arg(applicationId)) {}

DBusLauncherEntry::~DBusLauncherEntry() {
    showProgress(std::nullopt);
}

void DBusLauncherEntry::showProgress(std::optional<double> progress) {
    std::optional<int> percent;
    if (progress)
        percent = static_cast<int>(std::floor(*progress * 100));
    if (std::exchange(m_percent, percent) == percent)
        return;
    QDBusMessage update = QDBusMessage::createSignal(
        u"/app/quiv/Controller"_s, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    update << m_entry
           << QVariantMap{{u"progress"_s, percent.value_or(0) / 100.0},
                          {u"progress-visible"_s, percent.has_value()}};
    QDBusConnection::sessionBus().send(update);
}

} // namespace quiv
