#include "playback/playback_timeline.h"

#include <algorithm>
#include <cmath>

namespace quiv {

namespace {

std::int64_t knownDuration(const PlaybackTimeline& timeline) {
    return std::max<std::int64_t>(timeline.reported.durationMs, 0);
}

// Written so that a NaN gives 0.
double unitFraction(double fraction) {
    return fraction > 0 ? std::min(fraction, 1.0) : 0.0;
}

PlaybackAnchor resyncPlaybackAnchor(const ReportedPosition& reported, TimelineInstant now) {
    const std::int64_t position = std::max<std::int64_t>(reported.positionMs, 0);
    return {reported.durationMs >= 1 ? std::min(position, reported.durationMs) : position, now};
}

} // namespace

std::int64_t displayedPositionMs(const PlaybackTimeline& timeline, TimelineInstant now) {
    if (timeline.isSeeking)
        return dragTargetMs(timeline);
    const std::int64_t duration = knownDuration(timeline);
    if (duration < 1)
        return std::max<std::int64_t>(timeline.reported.positionMs, 0);
    const auto base = std::clamp<std::int64_t>(timeline.anchor.positionMs, 0, duration);
    if (!timeline.reported.isPlaying)
        return base;
    using Milliseconds = std::chrono::milliseconds;
    const auto elapsed = std::chrono::duration_cast<Milliseconds>(now - timeline.anchor.instant);
    return base + std::clamp<std::int64_t>(elapsed.count(), 0, duration - base);
}

double displayedFraction(const PlaybackTimeline& timeline, TimelineInstant now) {
    const std::int64_t duration = knownDuration(timeline);
    if (duration < 1)
        return 0;
    if (timeline.isSeeking)
        return timeline.seekFraction;
    const auto position = static_cast<double>(displayedPositionMs(timeline, now));
    return unitFraction(position / static_cast<double>(duration));
}

PlaybackTimeline timelineReported(PlaybackTimeline timeline, const ReportedPosition& reported,
                                  TimelineInstant now, bool isSeekPending) {
    const bool isRepeated = reported.isPlaying && reported == timeline.reported;
    timeline.reported = reported;
    if (!timeline.isSeeking && !isSeekPending && !isRepeated)
        timeline.anchor = resyncPlaybackAnchor(reported, now);
    return timeline;
}

PlaybackTimeline timelineDragged(PlaybackTimeline timeline, double fraction) {
    timeline.isSeeking = true;
    timeline.seekFraction = unitFraction(fraction);
    return timeline;
}

PlaybackTimeline timelineDragCancelled(PlaybackTimeline timeline, TimelineInstant now) {
    if (!timeline.isSeeking)
        return timeline;
    timeline.isSeeking = false;
    timeline.anchor = resyncPlaybackAnchor(timeline.reported, now);
    return timeline;
}

std::int64_t positionAt(const PlaybackTimeline& timeline, double fraction) {
    const std::int64_t duration = knownDuration(timeline);
    const double share = unitFraction(fraction);
    if (share >= 1)
        return duration; // also where a double cannot hold it
    const double target = std::round(share * static_cast<double>(duration));
    return target < static_cast<double>(duration) ? static_cast<std::int64_t>(target) : duration;
}

std::int64_t dragTargetMs(const PlaybackTimeline& timeline) {
    return positionAt(timeline, timeline.seekFraction);
}

PlaybackTimeline timelineDropped(PlaybackTimeline timeline, TimelineInstant now) {
    timeline.anchor = {dragTargetMs(timeline), now};
    timeline.isSeeking = false;
    return timeline;
}

} // namespace quiv
