#include "player/mpv_options.h"

#include <algorithm>
#include <array>
#include <mpv/client.h>
#include <utility>

namespace quiv {

namespace {

using Option = std::pair<const char*, const char*>;

constexpr std::array NobodyElseConfigures{
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-osd-console", "no"},
    Option{"load-stats-overlay", "no"},
    Option{"ytdl", "no"},
    Option{"osc", "no"},
    Option{"osd-level", "0"},
    Option{"terminal", "no"},
    Option{"input-default-bindings", "no"},
    Option{"input-builtin-bindings", "no"},
    Option{"input-vo-keyboard", "no"},
    Option{"input-media-keys", "no"},
    Option{"resume-playback", "no"},
    Option{"save-position-on-quit", "no"},
};

// No file names another one that is opened. Of the demuxers only FFmpeg's is asked, which rules out
// playlists, edit lists, chapters of other files, archives and discs.
constexpr std::array NothingBesideTheStream{
    Option{"demuxer", "lavf"},        Option{"access-references", "no"},
    Option{"ordered-chapters", "no"}, Option{"load-unsafe-playlists", "no"},
    Option{"autoload-files", "no"},   Option{"sub-auto", "no"},
    Option{"audio-file-auto", "no"},  Option{"cover-art-auto", "no"},
    Option{"audio-display", "no"},    Option{"embeddedfonts", "no"},
    Option{"cache-on-disk", "no"},
};

// The stream's bytes are bounded, those before the picture and those after it.
constexpr std::array Playing{
    Option{"vo", "libmpv"},
    Option{"force-window", "no"},
    Option{"idle", "yes"},
    Option{"pause", "yes"},
    Option{"keep-open", "yes"},
    Option{"hr-seek", "yes"},
    Option{"cache", "yes"},
    Option{"demuxer-max-bytes", "50331648"},
    Option{"demuxer-max-back-bytes", "16777216"},
    Option{"demuxer-donate-buffer", "no"},
    Option{"volume-max", "100"},
    Option{"ao", "pipewire,pulse,alsa"}, // not SDL's, which is not released again
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "Quiv Controller"},
    Option{"title", "Quiv Controller"},
    Option{"force-media-title", "Quiv Controller"},
    Option{"video-timing-offset", "0"},
};

// What people have of videos; no format of this list refers to other files by itself.
constexpr const char* Formats =
    "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,avi,flv,asf,mpegts,mpeg,mpegvideo,m4v,h264,hevc,ogg,rm,"
    "dv,mxf,nut,wtv,ivf,mp3,flac,wav,aac,ac3";
// A protocol that there is not: the bytes come from this program.
constexpr const char* NoProtocol = "none";

template <class Options> bool setAll(mpv_handle* player, const Options& options) {
    return std::ranges::all_of(options, [&](const Option& option) {
        return mpv_set_option_string(player, option.first, option.second) >= 0;
    });
}

// As a map, because the texts contain what separates entries.
bool limitDemuxer(mpv_handle* player, const char* option) {
    std::array<char*, 2> keys{const_cast<char*>("format_whitelist"),
                              const_cast<char*>("protocol_whitelist")};
    std::array<mpv_node, 2> values{};
    values[0].format = values[1].format = MPV_FORMAT_STRING;
    values[0].u.string = const_cast<char*>(Formats);
    values[1].u.string = const_cast<char*>(NoProtocol);
    mpv_node_list list{static_cast<int>(keys.size()), values.data(), keys.data()};
    mpv_node map{};
    map.format = MPV_FORMAT_NODE_MAP;
    map.u.list = &list;
    return mpv_set_option(player, option, MPV_FORMAT_NODE, &map) >= 0;
}

} // namespace

bool setOptions(mpv_handle* player, Drawing drawing) {
    const char* decoding = drawing == Drawing::OpenGl ? "auto-safe" : "auto-copy-safe";
    return setAll(player, NobodyElseConfigures) && setAll(player, NothingBesideTheStream) &&
           setAll(player, Playing) && limitDemuxer(player, "demuxer-lavf-o") &&
           limitDemuxer(player, "stream-lavf-o") &&
           mpv_set_option_string(player, "hwdec", decoding) >= 0;
}

} // namespace quiv
