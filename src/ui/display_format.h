#pragma once

#include "library/library_content.h"
#include "net/tv_endpoint.h"
#include "net/wire_records.h"
#include "platform/display_text.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

// The short texts in which the views show values. Pure functions that never fail: every view that
// shows such a value goes through them, so that it reads the same everywhere; texts from outside go
// through displayText().
namespace quiv {

// "1:02:03" from an hour on, else "01:23"; a negative time counts as zero.
QString formatPlaybackTime(std::int64_t milliseconds);

// "1x", "1.5x", "1.25x": as many digits as the value needs, two at most.
QString formatPlaybackSpeed(double speed);

// Returns the option closest to the target, the earlier of two equally close ones, or the target
// itself if there are no options.
double nearestSpeedOption(const QList<double>& options, double target);

// "31.5 MB/s", or "-- B/s" while there is no speed.
QString formatTransferSpeed(double bytesPerSecond);

// "12.4 GB": decimal units up to TB; none, one or two fraction digits by unit, zeros dropped.
QString formatByteCount(std::int64_t bytes);

// "42%", truncated; "0%" for what is no number or beyond any percentage.
QString formatPercent(double fraction);

// "No subtitles", "1 subtitle", "3 subtitles": the highest of what is listed, reported and playing.
QString subtitleCountText(const FileGroup& group, const std::optional<PlaybackResponse>& playback);

// Maker and model of a TV without repeating the maker, else its brand. Returns nullopt if the TV
// has told none of them.
std::optional<QString> deviceDisplayLabel(const TVEndpoint& device);

} // namespace quiv
