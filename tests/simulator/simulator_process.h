#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

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
    QString errorText() const { return m_errorText; }
    // What the process ended with; -1 while it runs or when it was killed.
    int exitCode() const;

    quint16 port() const { return m_port; }
    // The code that is valid now.
    QString pairingCode();
    // Put files here to have the TV list them.
    QString mediaFolder() const { return m_media.path(); }

    // What the TV's screen shows, as the README describes it.
    QJsonObject screen();

    // Adds a fault; simulator/README.md lists the kinds and their parameters.
    bool setFault(const QJsonObject& fault) { return change(u"faults"_s, fault); }
    void clearFaults();

    // Posts a change of its "pairing", "library", "name" or "announce", as the README describes it;
    // false if it was refused.
    bool change(const QString& what, const QJsonObject& change);

    // The requests seen, oldest first: method, path, query, headers, bodyBytes, status.
    QJsonArray requestsTo(const QString& path);
    void clearRequests();
    // Waits until `path` has been asked for at least `count` times.
    bool waitForRequests(const QString& path, int count = 1, int timeoutMs = 5000);

private:
    bool readLinesUntilReady(Announcing announcing);
    QStringList completed(QStringList arguments, Announcing announcing) const;
    void readLine(const QString& line);
    bool fail(const QString& reason);
    std::optional<QJsonObject> control(const QByteArray& method, const QString& path,
                                       const QJsonObject& body = {});

    QTemporaryDir m_media;
    QProcess m_process;
    QString m_errorText;
    quint16 m_port = 0;
    quint16 m_controlPort = 0;
    bool m_isReady = false;
    bool m_isAnnounced = false;
    bool m_usesSampleMedia = false;
};

} // namespace quiv::simulator
