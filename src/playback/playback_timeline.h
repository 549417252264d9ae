#pragma once

#include <chrono>
#include <cstdint>

// Where the dock's timeline stands between two reports of the TV: pure functions of what the TV
// said, what the user drags and a given instant. Times are milliseconds; fractions run from 0 to 1.
namespace quiv {

inline constexpr std::int64_t SeekStepMs = 10'000;
inline constexpr std::chrono::milliseconds TimelineRefreshPeriod{250};

using TimelineInstant = std::chrono::steady_clock::time_point;

// What the TV last reported.
struct ReportedPosition {
    std::int64_t positionMs = 0;
    std::int64_t durationMs = 0; // 0 or less: unknown
    bool isPlaying = false;

    bool operator==(const ReportedPosition&) const = default;
};

// A position that was right at an instant.
struct PlaybackAnchor {
    std::int64_t positionMs = 0;
    TimelineInstant instant;

    bool operator==(const PlaybackAnchor&) const = default;
};

// The timeline as the user sees it.
struct PlaybackTimeline {
    ReportedPosition reported;
    PlaybackAnchor anchor;
    bool isSeeking = false;  // a drag is in progress
    double seekFraction = 0; // of the drag

    bool operator==(const PlaybackTimeline&) const = default;
};

// The position to show. Between reports time counts at normal speed whatever the playback's own.
std::int64_t displayedPositionMs(const PlaybackTimeline& timeline, TimelineInstant now);

// Where the knob is; 0 while the duration is unknown.
double displayedFraction(const PlaybackTimeline& timeline, TimelineInstant now);

// The TV reported its state: shown from now on, unless a drag is in progress or the TV has not
// answered to a seek. A TV that plays and reports the same again has only looked less often than it
// was asked: time goes on.
PlaybackTimeline timelineReported(PlaybackTimeline timeline, const ReportedPosition& reported,
                                  TimelineInstant now, bool isSeekPending = false);

// The position at a place of the timeline; 0 while the duration is unknown.
std::int64_t positionAt(const PlaybackTimeline& timeline, double fraction);

// A drag began or moved.
PlaybackTimeline timelineDragged(PlaybackTimeline timeline, double fraction);

// The drag ended without a wish: the timeline goes on from the last report.
PlaybackTimeline timelineDragCancelled(PlaybackTimeline timeline, TimelineInstant now);

// The position a drag would seek to if it ended now.
std::int64_t dragTargetMs(const PlaybackTimeline& timeline);

// The drag ended: the knob stays where it was dropped until the TV reports.
PlaybackTimeline timelineDropped(PlaybackTimeline timeline, TimelineInstant now);

} // namespace quiv
