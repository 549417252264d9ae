#pragma once

#include "platform/player/media_player.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace quiv {

// A choice in the menus of the local player.
struct LocalMediaOption {
    QString id;
    QString label;

    bool operator==(const LocalMediaOption&) const = default;
};

// The id of the choice "no subtitles".
inline constexpr char16_t LocalSubtitlesOff[] = u"off";

// The choices of one menu, the player's option for each of them, and the one that is selected.
struct LocalMediaChoices {
    QList<LocalMediaOption> options;
    QHash<QString, std::int64_t> optionByID;
    QString selectedID;
};

// "Off" first, selected unless the player says otherwise; "subtitle-2-English" is the third option.
LocalMediaChoices localSubtitleChoices(const std::optional<MediaGroup>& group);
// The first is selected unless the player says otherwise; "audio-0-English" is the first option.
LocalMediaChoices localAudioChoices(const std::optional<MediaGroup>& group);

} // namespace quiv
