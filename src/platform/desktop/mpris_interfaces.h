#pragma once

#include "platform/desktop/media_controls.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace quiv {

inline constexpr auto MprisPath = "/org/mpris/MediaPlayer2";

// The properties of a session by the names of org.mpris.MediaPlayer2.Player, without the position.
QVariantMap mprisProperties(const MediaSession& session);

// org.mpris.MediaPlayer2: the application.
class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ no)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none)

public:
    MprisRoot(QObject* parent, const QString& applicationId);

    bool no() const { return false; }
    bool yes() const { return true; }
    QString identity() const;
    QString desktopEntry() const { return m_applicationId; }
    QStringList none() const { return {}; }

    MediaControls::Player* player = nullptr;

public Q_SLOTS:
    void Raise();
    void Quit() {} // CanQuit is false

private:
    const QString m_applicationId;
};

// org.mpris.MediaPlayer2.Player: what plays. Times on the bus are microseconds.
class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ minimumRate)
    Q_PROPERTY(double MaximumRate READ maximumRate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ no)
    Q_PROPERTY(bool CanGoPrevious READ no)
    Q_PROPERTY(bool CanPlay READ isThere)
    Q_PROPERTY(bool CanPause READ isThere)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ yes)

public:
    explicit MprisPlayer(QObject* parent) : QDBusAbstractAdaptor(parent) {}

    const std::optional<MediaSession>& session() const { return m_session; }
    // Tells the bus what is different.
    void setSession(const std::optional<MediaSession>& session);
    void tellPosition();

    QString playbackStatus() const;
    double rate() const { return m_session ? m_session->speed : 1; }
    void setRate(double rate);
    double minimumRate() const { return m_session ? m_session->slowest : 1; }
    double maximumRate() const { return m_session ? m_session->fastest : 1; }
    QVariantMap metadata() const;
    double volume() const { return 1; } // the TV's remote control has it
    void setVolume(double) {}
    qlonglong position() const;
    bool no() const { return false; }
    bool yes() const { return true; }
    bool isThere() const { return m_session.has_value(); }
    bool canSeek() const { return m_session && m_session->durationMs > 0; }

    MediaControls::Player* player = nullptr;

public Q_SLOTS:
    void Next() {} // there is no list of what comes next
    void Previous() {}
    void Pause() { setPlaying(false); }
    void PlayPause() { setPlaying(!m_session || !m_session->isPlaying); }
    void Stop();
    void Play() { setPlaying(true); }
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath& TrackId, qlonglong Position);
    void OpenUri(const QString&) {} // what plays is chosen in the window

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    void setPlaying(bool isPlaying);

    std::optional<MediaSession> m_session;
};

} // namespace quiv
