#include "simulator/endpoints/playback_endpoints.h"

#include "simulator/endpoints/reply.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

using Outcome = Player::Outcome;

namespace {

Outcome badParameter(const char* name) {
    return Player::Refusal{400,
                           u"The parameter %1 is missing or wrong."_s.arg(QLatin1String(name))};
}

Outcome play(Television& television, const httplib::Request& request) {
    const auto name = parameterOf(request, "name");
    if (!name)
        return badParameter("name");
    const auto entry = television.library.find(*name);
    if (!entry)
        return Player::Refusal{404, u"File not found"_s};
    television.player.play(*name, television.library.detailsOf(*entry));
    return std::nullopt;
}

template <class Act>
Outcome withMilliseconds(const httplib::Request& request, const char* name, Act act) {
    bool isNumber = false;
    const qint64 value = parameterOf(request, name).value_or(QString()).toLongLong(&isNumber);
    return isNumber ? act(value) : badParameter(name);
}

Outcome setSpeed(Player& player, const httplib::Request& request) {
    bool isNumber = false;
    const double speed = parameterOf(request, "speed").value_or(QString()).toDouble(&isNumber);
    return isNumber ? player.setSpeed(speed) : badParameter("speed");
}

Outcome perform(Television& television, const httplib::Request& request) {
    Player& player = television.player;
    const QString command = parameterOf(request, "command").value_or(QString());
    const QString track = parameterOf(request, "trackId").value_or(QString());
    if (command == "play"_L1)
        return play(television, request);
    if (command == "pause"_L1)
        return player.pause();
    if (command == "resume"_L1)
        return player.resume();
    if (command == "seek_by"_L1)
        return withMilliseconds(request, "offsetMs", [&](qint64 ms) { return player.seekBy(ms); });
    if (command == "seek_to"_L1)
        return withMilliseconds(request, "positionMs",
                                [&](qint64 ms) { return player.seekTo(ms); });
    if (command == "set_speed"_L1)
        return setSpeed(player, request);
    if (command == "set_subtitle"_L1)
        return player.setSubtitle(track);
    if (command == "set_audio"_L1)
        return player.setAudio(track);
    if (command != "stop"_L1)
        return badParameter("command");
    player.stop();
    return std::nullopt;
}

} // namespace

void addPlaybackEndpoints(httplib::Server& server, Television& television) {
    server.Get("/api/playback", [&](const httplib::Request&, httplib::Response& response) {
        replyJson(response, television.player.state());
    });
    addPairedPost(server, "/api/playback", television.pairing,
                  [&](const httplib::Request& request, httplib::Response& response) {
                      if (const Outcome refusal = perform(television, request))
                          return replyError(response, refusal->status, refusal->reason);
                      replyJson(response, {{u"ok"_s, true}});
                  });
}

} // namespace quiv::simulator
