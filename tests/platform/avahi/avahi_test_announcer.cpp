#include "platform/avahi/avahi_test_announcer.h"

#include <QCoreApplication>

namespace quiv {

using namespace Qt::StringLiterals;

AvahiTestAnnouncer::AvahiTestAnnouncer(const Service& service) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + u"/avahi_announcer"_s,
                    {QString::fromLatin1(service.name.toHex()),
                     QString::fromLatin1(service.hostName), QString::fromLatin1(service.ipv4),
                     QString::fromLatin1(service.ipv6), QString::number(service.port)});
    if (!m_process.waitForReadyRead() || !m_process.readAll().contains("announced"))
        qFatal("%s could not be announced", service.name.constData());
}

AvahiTestAnnouncer::~AvahiTestAnnouncer() {
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

} // namespace quiv
