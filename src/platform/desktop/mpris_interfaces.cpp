#include "platform/desktop/mpris_interfaces.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t MicrosecondsPerMs = 1000;

// Names of videos are no object paths, but their hashes are.
QDBusObjectPath trackPath(const QString& id) {
    const QByteArray hash = QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Sha1);
    return QDBusObjectPath(u"/app/quiv/Controller/track/"_s + QString::fromLatin1(hash.toHex()));
}

} // namespace

QVariantMap mprisProperties(const MediaSession& session) {
    QVariantMap metadata{{u"mpris:trackid"_s, QVariant::fromValue(trackPath(session.id))},
                         {u"xesam:title"_s, session.title}};
    if (session.durationMs > 0)
        metadata[u"mpris:length"_s] = qlonglong(session.durationMs * MicrosecondsPerMs);
    if (!session.picture.isEmpty())
        metadata[u"mpris:artUrl"_s] = session.picture.toString(QUrl::FullyEncoded);
    return {{u"PlaybackStatus"_s, session.isPlaying ? u"Playing"_s : u"Paused"_s},
            {u"Metadata"_s, metadata},
            {u"Rate"_s, session.speed},
            {u"MinimumRate"_s, session.slowest},
            {u"MaximumRate"_s, session.fastest},
            {u"CanPlay"_s, true},
            {u"CanPause"_s, true},
            {u"CanSeek"_s, session.durationMs > 0}};
}

MprisRoot::MprisRoot(QObject* parent, const QString& applicationId)
    : QDBusAbstractAdaptor(parent), m_applicationId(applicationId) {}

QString MprisRoot::identity() const {
    return u"Quiv Controller"_s;
}

void MprisRoot::Raise() {
    if (player)
        player->raiseWindow();
}

void MprisPlayer::setSession(const std::optional<MediaSession>& session) {
    const QVariantMap before = m_session ? mprisProperties(*m_session) : QVariantMap();
    m_session = session;
    QVariantMap changed = m_session ? mprisProperties(*m_session) : QVariantMap();
    changed.removeIf([&](const auto& each) {
        const auto old = before.constFind(each.key());
        return old != before.constEnd() && *old == each.value();
    });
    if (changed.isEmpty())
        return;
    QDBusMessage signal =
        QDBusMessage::createSignal(QString::fromLatin1(MprisPath),
                                   u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
    signal << u"org.mpris.MediaPlayer2.Player"_s << changed << QStringList();
    QDBusConnection::sessionBus().send(signal);
}

void MprisPlayer::tellPosition() {
    Q_EMIT Seeked(position());
}

QString MprisPlayer::playbackStatus() const {
    if (!m_session)
        return u"Stopped"_s;
    return m_session->isPlaying ? u"Playing"_s : u"Paused"_s;
}

QVariantMap MprisPlayer::metadata() const {
    return m_session ? mprisProperties(*m_session).value(u"Metadata"_s).toMap() : QVariantMap();
}

qlonglong MprisPlayer::position() const {
    return player && m_session ? player->positionMs() * MicrosecondsPerMs : 0;
}

void MprisPlayer::setRate(double rate) {
    if (!player || !m_session)
        return;
    if (rate == 0) // as the interface demands
        player->setPlaying(false);
    else
        player->setSpeed(std::clamp(rate, m_session->slowest, m_session->fastest));
}

void MprisPlayer::setPlaying(bool isPlaying) {
    if (player && m_session && m_session->isPlaying != isPlaying)
        player->setPlaying(isPlaying);
}

void MprisPlayer::Stop() {
    if (player && m_session)
        player->stop();
}

void MprisPlayer::Seek(qlonglong Offset) {
    if (player && canSeek())
        player->seekBy(Offset / MicrosecondsPerMs);
}

void MprisPlayer::SetPosition(const QDBusObjectPath& TrackId, qlonglong Position) {
    // Of another video, or beyond its end: meant for what has gone meanwhile.
    const qlonglong positionMs = Position / MicrosecondsPerMs;
    if (player && canSeek() && TrackId == trackPath(m_session->id) && positionMs >= 0 &&
        positionMs <= m_session->durationMs)
        player->seekTo(positionMs);
}

} // namespace quiv
