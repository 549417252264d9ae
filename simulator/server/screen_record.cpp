#include "simulator/server/screen_record.h"

#include <QDateTime>
#include <QJsonDocument>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

QJsonObject pairingJson(const Pairing::Shown& shown) {
    return {{u"code"_s, shown.code},
            {u"expiresInSec"_s, shown.expiresInSec},
            {u"wanted"_s, shown.isWanted}};
}

// Empty where nothing is open.
QString titleOf(const QJsonObject& playback) {
    const QString name = playback["currentVideoName"_L1].toString();
    return name.isEmpty() ? QString() : displayNameOf(name);
}

} // namespace

QJsonObject screenRecord(Television& television) {
    const QJsonObject playback = television.player.state();
    return {
        {u"name"_s, television.identity.name()},
        {u"serverInstanceId"_s, television.identity.toJson()["serverInstanceId"_L1]},
        {u"pairing"_s, pairingJson(television.pairing.shown())},
        {u"playback"_s, playback},
        {u"title"_s, titleOf(playback)},
        {u"move"_s, television.mover.status()},
        {u"upload"_s, QJsonDocument::fromJson(television.uploads.status()).object()},
        {u"nowMs"_s, QDateTime::currentMSecsSinceEpoch()},
    };
}

} // namespace quiv::simulator
