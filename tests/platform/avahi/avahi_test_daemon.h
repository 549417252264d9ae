#pragma once

#include <QProcess>
#include <QTemporaryDir>

namespace quiv {

// A system bus and an Avahi daemon of the test's own, neither running at first. Needs
// scripts/with-private-avahi. Made before anything looks for the bus: its address goes into the
// environment, where the bus library looks once.
class AvahiTestDaemon {
public:
    AvahiTestDaemon();
    ~AvahiTestDaemon();

    // Each waits until the other side can tell; false when that does not come about.
    bool startBus();
    bool startDaemon();
    bool stopDaemon();
    bool stopBus();

    // The daemon keeps its connections, but does nothing any more, and goes on when thawed.
    void freeze();
    void thaw();

private:
    QString path(const char* fileName) const;

    QTemporaryDir m_directory;
    QProcess m_bus;
    QProcess m_daemon;
};

} // namespace quiv
