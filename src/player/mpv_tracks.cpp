#include "player/mpv_tracks.h"

#include <QLocale>

#include <algorithm>
#include <mpv/client.h>
#include <string_view>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestName = 256;

// Returns nullptr if the map has no such entry, or one of another format.
const mpv_node* entryOf(const mpv_node& map, std::string_view key, mpv_format format) {
    for (int index = 0; index < map.u.list->num; ++index) {
        const mpv_node& value = map.u.list->values[index];
        if (map.u.list->keys[index] == key && value.format == format)
            return &value;
    }
    return nullptr;
}

QString textOf(const mpv_node& map, std::string_view key) {
    const mpv_node* value = entryOf(map, key, MPV_FORMAT_STRING);
    return value ? QString::fromUtf8(value->u.string).left(LongestName).trimmed() : QString();
}

bool isSet(const mpv_node& map, std::string_view key) {
    const mpv_node* value = entryOf(map, key, MPV_FORMAT_FLAG);
    return value && value->u.flag != 0;
}

Track::Kind kindOf(const mpv_node& map) {
    const QString type = textOf(map, "type");
    if (type == "video"_L1)
        return isSet(map, "albumart") ? Track::Kind::Picture : Track::Kind::Video;
    if (type == "audio"_L1)
        return Track::Kind::Audio;
    return type == "sub"_L1 ? Track::Kind::Subtitles : Track::Kind::Other;
}

QString languageName(const QString& code) {
    const QLocale::Language language = QLocale::codeToLanguage(code);
    return language == QLocale::AnyLanguage || language == QLocale::C
               ? code
               : QLocale::languageToString(language);
}

} // namespace

QString trackName(const QString& title, const QString& language, qsizetype number) {
    const bool isUndetermined = language.isEmpty() || language == "und"_L1;
    const QString name = isUndetermined ? QString() : languageName(language);
    if (title.isEmpty())
        return name.isEmpty() ? u"Track %1"_s.arg(number) : name;
    const bool isSaid = name.isEmpty() || title.contains(name, Qt::CaseInsensitive);
    return isSaid ? title : title + u" ("_s + name + u')';
}

QList<Track> tracksOf(const mpv_node& trackList) {
    QList<Track> tracks;
    if (trackList.format != MPV_FORMAT_NODE_ARRAY)
        return tracks;
    for (int index = 0; index < trackList.u.list->num; ++index) {
        const mpv_node& map = trackList.u.list->values[index];
        const bool isMap = map.format == MPV_FORMAT_NODE_MAP;
        const mpv_node* id = isMap ? entryOf(map, "id", MPV_FORMAT_INT64) : nullptr;
        if (!id)
            continue;
        const Track::Kind kind = kindOf(map);
        const auto number = std::ranges::count(tracks, kind, &Track::kind) + 1;
        tracks.append({kind, id->u.int64,
                       trackName(textOf(map, "title"), textOf(map, "lang"), number),
                       isSet(map, "selected")});
    }
    return tracks;
}

std::optional<MediaGroup> groupOf(const QList<Track>& tracks, Track::Kind kind) {
    MediaGroup group;
    for (const Track& track : tracks) {
        if (track.kind != kind)
            continue;
        group.options.append({track.id, track.name});
        if (track.isSelected)
            group.selected = track.id;
    }
    return group.options.isEmpty() ? std::nullopt : std::optional(group);
}

} // namespace quiv
