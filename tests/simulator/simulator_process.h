#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

namespace quiv::simulator {

// A simulated TV running beside a test: a process of its own, real sockets, a media folder of its
// own that starts empty.
//
//   SimulatorProcess tv;
//   QVERIFY2(tv.start({"--generate", "1000"}), qPrintable(tv.errorText()));
//   tv.setFault({{"path", "api/files"}, {"kind", "status"}, {"status", 500}, {"times", 1}});
//
// Whatever the arguments do not say is chosen for tests: free ports, code 123, no sample media, no
// USB drive, no announcing. The process ends with this object, and with the test program even if
// that crashes. All functions block; those that wait for something run the event loop meanwhile.
// Used on one thread.
class SimulatorProcess {
public:
    enum class Announcing {
        None,
        // With an mDNS stack of its own: only inside a network namespace.
        Embedded,
    };

    SimulatorProcess();
    ~SimulatorProcess();
    Q_DISABLE_COPY_MOVE(SimulatorProcess)

    // Fills the empty media folder (and an empty "--usb" folder) at the next start; takes a few
    // seconds and the ffmpeg program.
    void useSampleMedia() { m_usesSampleMedia = true; }
    // Returns when the TV answers (and, if announcing, is announced); false: see errorText().
    // May be called again after stop(), for example with the same "--port".
    bool start(const QStringList& arguments = {}, Announcing announcing = Announcing::None);
    // The TV says goodbye and goes; returns when it is gone.
    void stop();
    // The TV loses its power: no goodbye, connections break.
    void kill();
    bool isRunning() const;
    QString errorText() const { return m_errorText; }
    // What the process ended with; -1 while it runs or when it was killed.
    int exitCode() const;

    QString host() const { return m_host; }
    quint16 port() const { return m_port; }
    quint16 controlPort() const { return m_controlPort; }
    // "http://" + host + ":" + port
    QString baseUrl() const;
    // The code that is valid now.
    QString pairingCode();
    // The announced name, which differs from the wanted one after a collision.
    QString serviceName() const { return m_serviceName; }
    // Put files here to have the TV list them.
    QString mediaFolder() const { return m_media.path(); }

    // Adds a fault; simulator/README.md lists the kinds and their parameters.
    bool setFault(const QJsonObject& fault);
    void clearFaults();
    // Every fault with its "fired" count.
    QJsonArray faults();

    // The requests seen, oldest first: method, path, query, headers, bodyBytes, status.
    QJsonArray requests();
    QJsonArray requestsTo(const QString& path);
    void clearRequests();
    // Waits until `path` has been asked for at least `count` times.
    bool waitForRequests(const QString& path, int count = 1, int timeoutMs = 5000);

    bool setCode(const QString& code);
    bool setName(const QString& name);
    // Any of: expireTokens, expireCode, tokenLifetime (seconds), code (empty: random).
    bool changePairing(const QJsonObject& change);
    // {"action": "touch|add|remove|rename", "name": ..., "displayName": ...}
    bool changeLibrary(const QJsonObject& change);
    // {"serviceName": ...}, {"port": ...} or {"announced": false}; returns when it is announced.
    bool announce(const QJsonObject& announcement);

    // Any request of the control address; false unless it answered 200.
    bool control(const QByteArray& method, const QString& path, const QJsonObject& body = {},
                 QJsonObject* reply = nullptr);

private:
    bool waitUntilReady(Announcing announcing);
    QStringList completed(QStringList arguments, Announcing announcing) const;
    bool readLinesUntil(const std::function<bool()>& done);
    void readLine(const QString& line);
    bool fail(const QString& reason);

    QTemporaryDir m_media;
    QProcess m_process;
    QString m_host;
    QString m_serviceName;
    QString m_errorText;
    quint16 m_port = 0;
    quint16 m_controlPort = 0;
    bool m_usesSampleMedia = false;
    bool m_ready = false;
};

} // namespace quiv::simulator
