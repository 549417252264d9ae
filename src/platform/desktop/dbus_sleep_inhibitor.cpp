#include "platform/desktop/dbus_sleep_inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr uint Suspend = 4; // of the portal's flags
constexpr uint Idle = 8;

QString reason(DBusSleepInhibitor::Activity activity) {
    return activity == DBusSleepInhibitor::Activity::VideoPlaying
               ? u"A video is playing"_s
               : u"Files are being transferred"_s;
}

} // namespace

// Something that is lent on request and given back later. One request at a time: what is wanted
// may change before it is answered.
class DBusSleepInhibitor::Lease : public QObject {
public:
    void want(bool isWanted) {
        m_isWanted = isWanted;
        settle();
    }

protected:
    explicit Lease(const QDBusConnection& bus) : m_bus(bus) {}

    virtual QDBusMessage request() const = 0;
    // Keeps what was lent; returns false if it is nothing.
    virtual bool keep(const QVariant& lent) = 0;
    virtual void giveBack() = 0;

    QDBusConnection m_bus;

private:
    void settle() {
        if (m_isAsking || m_isWanted == m_isHeld || !m_bus.isConnected())
            return;
        if (m_isHeld) {
            m_isHeld = false;
            giveBack();
            return;
        }
        m_isAsking = true;
        auto* const asking = new QDBusPendingCallWatcher(m_bus.asyncCall(request()), this);
        connect(asking, &QDBusPendingCallWatcher::finished, this,
                [this, asking] { answered(*asking); });
    }
    void answered(QDBusPendingCallWatcher& asking) {
        const QVariantList lent = asking.reply().arguments();
        m_isAsking = false;
        asking.deleteLater();
        if (asking.isError() || lent.isEmpty() || !keep(lent.constFirst()))
            return; // not asked again until it is wanted anew
        m_isHeld = true;
        settle();
    }

    bool m_isWanted = false;
    bool m_isAsking = false;
    bool m_isHeld = false;
};

class DBusSleepInhibitor::PortalLease final : public Lease {
public:
    explicit PortalLease(Activity activity)
        : Lease(QDBusConnection::sessionBus()), m_activity(activity) {}
    ~PortalLease() override {
        if (!m_path.isEmpty())
            giveBack();
    }

private:
    QDBusMessage request() const override {
        QDBusMessage call = QDBusMessage::createMethodCall(
            u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
            u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s);
        const uint what = m_activity == Activity::VideoPlaying ? Suspend | Idle : Suspend;
        call.setArguments({QString(), what, QVariantMap{{u"reason"_s, reason(m_activity)}}});
        return call;
    }
    bool keep(const QVariant& lent) override {
        m_path = lent.value<QDBusObjectPath>().path();
        return !m_path.isEmpty();
    }
    void giveBack() override {
        m_bus.send(QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                  std::exchange(m_path, {}),
                                                  u"org.freedesktop.portal.Request"_s, u"Close"_s));
    }

    const Activity m_activity;
    QString m_path; // of what is held
};

class DBusSleepInhibitor::LoginLease final : public Lease {
public:
    explicit LoginLease(Activity activity)
        : Lease(QDBusConnection::systemBus()), m_activity(activity) {}

private:
    QDBusMessage request() const override {
        QDBusMessage call = QDBusMessage::createMethodCall(
            u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
            u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
        call.setArguments({u"idle"_s, u"Quiv Controller"_s, reason(m_activity), u"block"_s});
        return call;
    }
    bool keep(const QVariant& lent) override {
        m_held = lent.value<QDBusUnixFileDescriptor>();
        return m_held.isValid();
    }
    void giveBack() override { m_held = QDBusUnixFileDescriptor(); }

    const Activity m_activity;
    QDBusUnixFileDescriptor m_held; // open as long as it is held
};

DBusSleepInhibitor::DBusSleepInhibitor(Activity activity) : m_activity(activity) {}

DBusSleepInhibitor::~DBusSleepInhibitor() = default;

void DBusSleepInhibitor::setInhibited(bool isInhibited) {
    if (isInhibited == m_isInhibited)
        return;
    m_isInhibited = isInhibited;
    if (!m_portal) {
        m_portal = std::make_unique<PortalLease>(m_activity);
        m_login = std::make_unique<LoginLease>(m_activity);
    }
    m_portal->want(isInhibited);
    m_login->want(isInhibited);
}

} // namespace quiv
