#include "platform/desktop/dbus_application.h"
#include "platform/desktop/dbus_media_controls.h"
#include "platform/desktop/dbus_notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const auto Id = u"app.quiv.Controller"_s;

QDBusConnection desktopBus() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"desktop"_s);
}

// What a desktop's media control says or does; the event loop runs meanwhile.
QString playerctl(const QStringList& arguments) {
    QProcess process;
    process.start(u"playerctl"_s, QStringList{u"--player=quiv-controller"_s} + arguments);
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }))
        return u"no answer"_s;
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

class RecordingPlayer final : public MediaControls::Player {
public:
    std::int64_t positionMs() const override { return 61'000; }
    void setPlaying(bool isPlaying) override { calls << (isPlaying ? u"play"_s : u"pause"_s); }
    void stop() override { calls << u"stop"_s; }
    void seekBy(std::int64_t offsetMs) override { calls << u"by %1"_s.arg(offsetMs); }
    void seekTo(std::int64_t positionMs) override { calls << u"to %1"_s.arg(positionMs); }
    void setSpeed(double speed) override { calls << u"speed %1"_s.arg(speed); }
    void raiseWindow() override { calls << u"raise"_s; }

    QStringList calls;
};

} // namespace

// A desktop's notifications, in the test's hand.
class Notifications : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    Notifications() {
        desktopBus().registerObject(u"/org/freedesktop/Notifications"_s, this,
                                    QDBusConnection::ExportAllSlots |
                                        QDBusConnection::ExportAllSignals);
        desktopBus().registerService(u"org.freedesktop.Notifications"_s);
    }
    ~Notifications() override {
        desktopBus().unregisterService(u"org.freedesktop.Notifications"_s);
    }

    QStringList told;
    QStringList actions;

public Q_SLOTS:
    QStringList GetCapabilities() { return {u"body-markup"_s, u"actions"_s}; }
    uint Notify(const QString&, uint replaced, const QString&, const QString& title,
                const QString& text, const QStringList& offered, const QVariantMap&, int) {
        told << u"%1|%2|%3"_s.arg(QString::number(replaced), title, text);
        actions = offered;
        return 7;
    }
    void CloseNotification(uint id) { told << u"closed %1"_s.arg(id); }

Q_SIGNALS:
    void ActivationToken(uint id, const QString& token);
    void ActionInvoked(uint id, const QString& key);
};

class DesktopServicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mediaControlsSeeAndMoveWhatPlays() {
        RecordingPlayer player;
        DBusMediaControls controls(Id);
        controls.setPlayer(&player);
        QCOMPARE(playerctl({u"status"_s}), QString()); // nothing plays: no keys are taken
        MediaSession session;
        session.id = u"a/b c.mkv"_s;
        session.title = u"Harbour & Co"_s;
        session.isPlaying = true;
        session.slowest = 0.5;
        session.fastest = 2;
        session.durationMs = 90'000;
        controls.show(session);
        QCOMPARE(playerctl({u"status"_s}), u"Playing"_s);
        QCOMPARE(playerctl({u"metadata"_s, u"title"_s}), u"Harbour & Co"_s);
        QCOMPARE(playerctl({u"metadata"_s, u"mpris:length"_s}), u"90000000"_s);
        QVERIFY(playerctl({u"position"_s}).startsWith(u"61."));
        playerctl({u"play"_s}); // it does already
        playerctl({u"play-pause"_s});
        playerctl({u"position"_s, u"20"_s});
        playerctl({u"position"_s, u"5+"_s});
        playerctl({u"stop"_s});
        QCOMPARE(player.calls, QStringList({u"pause"_s, u"to 20000"_s, u"by 5000"_s, u"stop"_s}));
        controls.show(std::nullopt);
        QCOMPARE(playerctl({u"status"_s}), QString());
    }

    void aNotificationIsToldAsTextAndAnswered() {
        Notifications desktop;
        DBusNotifier notifier(Id);
        QList<NotificationAnswer> answers;
        const auto take = [&](const NotificationAnswer& answer) {
            answers.append(answer);
        };
        notifier.notify({u"Download finished"_s, u"<b>a</b> & b"_s, u"Show in folder"_s}, take);
        QTRY_COMPARE(desktop.told,
                     QStringList(u"0|Download finished|&lt;b&gt;a&lt;/b&gt; &amp; b"_s));
        QVERIFY(desktop.actions.contains(u"Show in folder"_s));
        Q_EMIT desktop.ActivationToken(7, u"token"_s);
        Q_EMIT desktop.ActionInvoked(7, desktop.actions.at(2));
        QTRY_COMPARE(answers.size(), 1);
        QVERIFY(answers.constFirst().isAction);
        QCOMPARE(answers.constFirst().activationToken, u"token"_s);
        notifier.notify({u"Uploads finished"_s, u"2"_s}, take);
        QTRY_COMPARE(desktop.told.last(), u"7|Uploads finished|2"_s);
        notifier.withdraw();
        QTRY_COMPARE(desktop.told.last(), u"closed 7"_s);
    }

    void theDesktopOpensFilesInTheRunningApplication() {
        DBusApplication application(Id);
        QCOMPARE(application.claim({}), DBusApplication::Claim::First);
        QList<Launch> launches;
        connect(&application, &DBusApplication::launched, this,
                [&](const Launch& launch) { launches.append(launch); });
        QDBusMessage open = QDBusMessage::createMethodCall(
            Id, u"/app/quiv/Controller"_s, u"org.freedesktop.Application"_s, u"Open"_s);
        open << QStringList(u"file:///tmp/a%20b.mkv"_s)
             << QVariantMap{{u"activation-token"_s, u"token"_s}};
        desktopBus().send(open);
        QTRY_COMPARE(launches.size(), 1);
        QCOMPARE(launches.constFirst().files, QList<QUrl>{QUrl(u"file:///tmp/a%20b.mkv"_s)});
        QCOMPARE(launches.constFirst().activationToken, u"token"_s);
    }
};

QTEST_GUILESS_MAIN(DesktopServicesTest)
#include "desktop_services_test.moc"
