#include "simulator/announcing/announcer.h"

#include "simulator/announcing/daemon_announcer.h"
#include "simulator/announcing/embedded_announcer.h"

#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>

#include <QUuid>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

std::unique_ptr<Announcer> Announcer::create(const Settings& settings) {
    QString problem;
    if (settings.way != Way::Embedded) {
        if (auto announcer = DaemonAnnouncer::create(settings, &problem))
            return announcer;
    }
    if (settings.way != Way::Daemon) {
        if (auto announcer = EmbeddedAnnouncer::create(settings, &problem))
            return announcer;
    }
    settings.failed(problem);
    return nullptr;
}

namespace {

QString randomHostName() {
    return u"quiv-tv-"_s + QUuid::createUuid().toString(QUuid::Id128).left(8);
}

} // namespace

Announcer::Announcer(Settings settings)
    : m_settings(std::move(settings)),
      m_hostName(m_settings.hostName.isEmpty() ? randomHostName() : m_settings.hostName) {}

void Announcer::announce(const Announcement& announcement) {
    lock();
    m_announcement = announcement;
    publish();
    unlock();
}

void Announcer::withdraw() {
    lock();
    m_announcement.reset();
    reset();
    unlock();
}

void Announcer::publish() {
    if (!m_announcement || !isReady())
        return;
    reset();
    int error = addRecords();
    while (error == AVAHI_ERR_COLLISION) {
        takeOtherNames();
        reset();
        error = addRecords();
    }
    if (error >= 0)
        error = commit();
    if (error < 0)
        broke(error);
}

int Announcer::addRecords() {
    const QByteArray name = m_announcement->serviceName.toUtf8();
    const QByteArray host = m_hostName.toUtf8() + ".local";
    int error = m_settings.ipv6Only ? AVAHI_OK : addAddresses(host, AddressFamily::Ipv4);
    if (error >= 0)
        error = addAddresses(host, AddressFamily::Ipv6);
    return error < 0 ? error : addService(name.constData(), host.constData(), m_announcement->port);
}

int Announcer::addAddresses(const QByteArray& host, AddressFamily family) {
    for (const InterfaceAddress& address : reachableAddresses(family)) {
        const int error = addAddress(host.constData(), address);
        if (error < 0)
            return error;
    }
    return AVAHI_OK;
}

namespace {

QString takeText(char* text) {
    QString result = QString::fromUtf8(text);
    avahi_free(text);
    return result;
}

} // namespace

// A collision does not tell which name was taken.
void Announcer::takeOtherNames() {
    m_announcement->serviceName =
        takeText(avahi_alternative_service_name(m_announcement->serviceName.toUtf8().constData()));
    m_hostName = takeText(avahi_alternative_host_name(m_hostName.toUtf8().constData()));
}

void Announcer::groupChanged(AvahiEntryGroupState state) {
    if (state == AVAHI_ENTRY_GROUP_FAILURE)
        broke(AVAHI_ERR_FAILURE);
    else if (state == AVAHI_ENTRY_GROUP_COLLISION)
        collided();
    else if (state == AVAHI_ENTRY_GROUP_ESTABLISHED && m_announcement)
        m_settings.announced(m_announcement->serviceName);
}

void Announcer::collided() {
    if (!m_announcement)
        return;
    takeOtherNames();
    publish();
}

void Announcer::broke(int error) {
    m_settings.failed(QString::fromUtf8(avahi_strerror(error)));
}

} // namespace quiv::simulator
