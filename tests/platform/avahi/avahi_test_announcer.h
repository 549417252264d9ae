#pragma once

#include <QByteArray>
#include <QProcess>

namespace quiv {

// A host that announces a service, under a host name and addresses of its own choice: the program
// avahi_announcer. Says goodbye when it is destroyed.
class AvahiTestAnnouncer {
public:
    struct Service {
        QByteArray name;
        QByteArray hostName;
        QByteArray ipv4 = "192.0.2.7"; // none when empty
        QByteArray ipv6 = {};
        quint16 port = 8080;
    };

    // Returns when the service is announced; aborts the test when that cannot be done.
    explicit AvahiTestAnnouncer(const Service& service);
    ~AvahiTestAnnouncer();
    AvahiTestAnnouncer(const AvahiTestAnnouncer&) = delete;
    AvahiTestAnnouncer& operator=(const AvahiTestAnnouncer&) = delete;

private:
    QProcess m_process;
};

} // namespace quiv
