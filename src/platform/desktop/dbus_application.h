#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace quiv {

// How the application was started: with which files, and with the token by which the desktop lets
// its window come to the front.
struct Launch {
    QList<QUrl> files;
    QString activationToken;
};

// The one running application, on the session bus by the interface that desktops start applications
// with (org.freedesktop.Application). Who is started second hands over to it. Main thread only.
class DBusApplication : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Claim {
        First,      // or there is no bus
        HandedOver, // another one runs and has the launch
        Unanswered, // another one runs, but does not answer
    };

    // `applicationId` is the name on the bus.
    explicit DBusApplication(const QString& applicationId, QObject* parent = nullptr);
    ~DBusApplication() override;

    // Becomes the running application, or gives this to it. Waits for its answer for a few seconds.
    Claim claim(const Launch& launch);
    // Who is started from now on is the first.
    void release();

public Q_SLOTS:
    // By the names of the interface.
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameters,
                        const QVariantMap& platformData);

Q_SIGNALS:
    // Another start handed this over.
    void launched(const quiv::Launch& launch);

private:
    const QString m_name;
    bool m_isRegistered = false;
};

} // namespace quiv
