#include "platform/avahi/avahi_test_daemon.h"

#include <QElapsedTimer>
#include <QFile>
#include <signal.h>
#include <sys/prctl.h>

namespace quiv {

namespace {

constexpr auto busConfiguration = R"(<busconfig>
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

constexpr auto daemonConfiguration = R"([server]
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
    constexpr int patience = 20000;
    QElapsedTimer timer;
    timer.start();
    QByteArray output = process.readAll();
    while (!output.contains(text) && timer.elapsed() < patience) {
        if (!process.waitForReadyRead(patience))
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
    write(path("bus.conf"), QString::fromLatin1(busConfiguration).arg(path("bus")));
    write(path("avahi.conf"), QString::fromLatin1(daemonConfiguration));
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
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                 QStringLiteral("--config-file=%1").arg(path("bus.conf"))});
    return waitForText(m_bus, "unix:path=");
}

bool AvahiTestDaemon::startDaemon() {
    m_daemon.start(QStringLiteral("/usr/sbin/avahi-daemon"),
                   {QStringLiteral("--no-drop-root"), QStringLiteral("--no-chroot"),
                    QStringLiteral("--no-rlimits"), QStringLiteral("-f"), path("avahi.conf")});
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
