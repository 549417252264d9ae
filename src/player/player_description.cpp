#include "player/player_description.h"

#include <QStringList>

#include <array>
#include <clocale>
#include <memory>
#include <mpv/client.h>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array UsualFormats{
    std::pair{"H.264", AV_CODEC_ID_H264},        std::pair{"HEVC", AV_CODEC_ID_HEVC},
    std::pair{"VP9", AV_CODEC_ID_VP9},           std::pair{"AV1", AV_CODEC_ID_AV1},
    std::pair{"MPEG-2", AV_CODEC_ID_MPEG2VIDEO}, std::pair{"AAC", AV_CODEC_ID_AAC},
    std::pair{"AC-3", AV_CODEC_ID_AC3},          std::pair{"E-AC-3", AV_CODEC_ID_EAC3},
    std::pair{"DTS", AV_CODEC_ID_DTS},           std::pair{"Opus", AV_CODEC_ID_OPUS},
};

// Only a player tells its version: "mpv 0.35.1".
QString playerVersion() {
    std::setlocale(LC_NUMERIC, "C"); // else it refuses
    const std::unique_ptr<mpv_handle, decltype(&mpv_terminate_destroy)> player(
        mpv_create(), mpv_terminate_destroy);
    if (!player || mpv_set_option_string(player.get(), "config", "no") < 0 ||
        mpv_initialize(player.get()) < 0)
        return u"mpv does not start"_s;
    const std::unique_ptr<char, decltype(&mpv_free)> version(
        mpv_get_property_string(player.get(), "mpv-version"), mpv_free);
    return QString::fromUtf8(version.get());
}

} // namespace

QString playerDescription() {
    QStringList decoded;
    QStringList lacking;
    for (const auto& [name, format] : UsualFormats)
        (avcodec_find_decoder(format) ? decoded : lacking).append(QString::fromLatin1(name));
    QString text = u"%1, FFmpeg %2, decodes %3"_s.arg(
        playerVersion(), QString::fromUtf8(av_version_info()), decoded.join(u", "_s));
    if (!lacking.isEmpty())
        text += u", but not "_s + lacking.join(u", "_s);
    return text;
}

} // namespace quiv
