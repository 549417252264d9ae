#include "platform/avahi/avahi_test_daemon.h"

#include <QElapsedTimer>
#include <QFile>
#include <signal.h>
#include <sys/prctl.h>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr auto BusConfiguration = R"(<busconfig>
  <type>system</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
)";

constexpr auto DaemonConfiguration = R"([server]
host-name=private-daemon
[publish]
disable-publishing=yes
)";

void write(const QString& path, const QString& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
        qFatal("cannot write the configuration of a test's daemon");
}

void dieWithTheTest(QProcess& process) {
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

// Until the process has written the text.
bool waitForText(QProcess& process, const QByteArray& text) {
    constexpr int timeoutMs = 20000;
    QElapsedTimer timer;
    timer.start();
    QByteArray output = process.readAll();
    while (!output.contains(text) && timer.elapsed() < timeoutMs) {
        if (!process.waitForReadyRead(timeoutMs))
            break;
        output += process.readAll();
    }
    if (!output.contains(text))
        qWarning("%s", output.constData());
    return output.contains(text);
}

bool end(QProcess& process) {
    process.terminate();
    if (process.waitForFinished(5000))
        return true;
    process.kill(); // a daemon that has just lost its bus may miss the signal
    return process.waitForFinished();
}

} // namespace

AvahiTestDaemon::AvahiTestDaemon() {
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path("bus").toUtf8());
    write(path("bus.conf"), QString::fromLatin1(BusConfiguration).arg(path("bus")));
    write(path("avahi.conf"), QString::fromLatin1(DaemonConfiguration));
    dieWithTheTest(m_bus);
    dieWithTheTest(m_daemon);
}

AvahiTestDaemon::~AvahiTestDaemon() {
    for (QProcess* process : {&m_daemon, &m_bus}) {
        process->kill();
        process->waitForFinished();
    }
}

bool AvahiTestDaemon::startBus() {
    m_bus.start(u"dbus-daemon"_s,
                {u"--nofork"_s, u"--print-address"_s, u"--config-file=%1"_s.arg(path("bus.conf"))});
    return waitForText(m_bus, "unix:path=");
}

bool AvahiTestDaemon::startDaemon() {
    m_daemon.start(u"/usr/sbin/avahi-daemon"_s, {u"--no-drop-root"_s, u"--no-chroot"_s,
                                                 u"--no-rlimits"_s, u"-f"_s, path("avahi.conf")});
    return waitForText(m_daemon, "Server startup complete");
}

bool AvahiTestDaemon::stopDaemon() {
    return end(m_daemon);
}

bool AvahiTestDaemon::stopBus() {
    return end(m_bus);
}

void AvahiTestDaemon::freeze() {
    ::kill(static_cast<pid_t>(m_daemon.processId()), SIGSTOP);
}

void AvahiTestDaemon::thaw() {
    ::kill(static_cast<pid_t>(m_daemon.processId()), SIGCONT);
}

QString AvahiTestDaemon::path(const char* fileName) const {
    return m_directory.filePath(QString::fromLatin1(fileName));
}

} // namespace quiv
