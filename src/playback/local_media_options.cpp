#include "playback/local_media_options.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

void addOptions(LocalMediaChoices& choices, const MediaGroup& group, const QString& kind) {
    for (qsizetype index = 0; index < group.options.size(); ++index) {
        const MediaOption& option = group.options.at(index);
        const QString id = kind + u'-' + QString::number(index) + u'-' + option.displayName;
        choices.options.append({id, option.displayName});
        choices.optionByID.insert(id, option.id);
        if (option.id == group.selected)
            choices.selectedID = id;
    }
}

} // namespace

LocalMediaChoices localSubtitleChoices(const std::optional<MediaGroup>& group) {
    const QString off = QString::fromUtf16(LocalSubtitlesOff);
    LocalMediaChoices choices{.options = {{off, u"Off"_s}}, .optionByID = {}, .selectedID = off};
    if (group)
        addOptions(choices, *group, u"subtitle"_s);
    return choices;
}

LocalMediaChoices localAudioChoices(const std::optional<MediaGroup>& group) {
    LocalMediaChoices choices;
    if (group)
        addOptions(choices, *group, u"audio"_s);
    if (choices.selectedID.isEmpty() && !choices.options.isEmpty())
        choices.selectedID = choices.options.constFirst().id;
    return choices;
}

} // namespace quiv
