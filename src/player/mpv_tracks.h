#pragma once

#include "platform/player/media_player.h"

#include <QList>

struct mpv_node;

namespace quiv {

// A track of the open file.
struct Track {
    enum class Kind { Video, Audio, Subtitles, Picture, Other };

    Kind kind = Kind::Other;
    std::int64_t id = 0;
    QString name; // to be shown
    bool isSelected = false;

    bool operator==(const Track&) const = default;
};

// What the player's "track-list" says.
QList<Track> tracksOf(const mpv_node& trackList);

// "Commentary (English)", "English", "Track 2": by its title and language code, else its number.
QString trackName(const QString& title, const QString& language, qsizetype number);

// Returns nullopt if there is no track of the kind.
std::optional<MediaGroup> groupOf(const QList<Track>& tracks, Track::Kind kind);

} // namespace quiv
