#include <QTest>

#include "playback/playback_timeline.h"
#include "support/test_main.h"

#include <limits>

using namespace quiv;
using namespace std::chrono_literals;

namespace {

constexpr std::int64_t TwoHours = 7'200'000;
constexpr auto Huge = std::numeric_limits<std::int64_t>::max();
const TimelineInstant Start = TimelineInstant() + 1h;

PlaybackTimeline timeline(std::int64_t position, std::int64_t duration, bool isPlaying = true) {
    return timelineReported({}, {position, duration, isPlaying}, Start);
}

} // namespace

class PlaybackTimelineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void timePassesWhileTheTvPlays_data() {
        QTest::addColumn<std::int64_t>("position");
        QTest::addColumn<std::int64_t>("duration");
        QTest::addColumn<bool>("isPlaying");
        QTest::addColumn<int>("elapsedMs");
        QTest::addColumn<std::int64_t>("shown");
        const auto row = [](const char* name, std::int64_t position, std::int64_t duration,
                            bool isPlaying, int elapsedMs, std::int64_t shown) {
            QTest::newRow(name) << position << duration << isPlaying << elapsedMs << shown;
        };
        row("playing", 1000, TwoHours, true, 1250, 2250);
        row("paused", 1000, TwoHours, false, 1250, 1000);
        row("up to the end", TwoHours - 100, TwoHours, true, 5000, TwoHours);
        row("beyond the end", TwoHours + 1, TwoHours, false, 0, TwoHours);
        row("before the beginning", -5000, TwoHours, true, 250, 250);
        row("clock turned back", 1000, TwoHours, true, -250, 1000);
        row("unknown duration", 1000, 0, true, 1250, 1000);
        row("negative duration", -1, -1, true, 1250, 0);
        row("huge", Huge, Huge, true, 1250, Huge);
        row("almost huge", Huge - 1000, Huge, true, 1250, Huge);
    }
    void timePassesWhileTheTvPlays() {
        QFETCH(std::int64_t, position);
        QFETCH(std::int64_t, duration);
        QFETCH(bool, isPlaying);
        QFETCH(int, elapsedMs);
        QFETCH(std::int64_t, shown);
        const PlaybackTimeline shownTimeline = timeline(position, duration, isPlaying);
        const TimelineInstant now = Start + std::chrono::milliseconds(elapsedMs);
        QCOMPARE(displayedPositionMs(shownTimeline, now), shown);
        const double fraction = displayedFraction(shownTimeline, now);
        QVERIFY(fraction >= 0 && fraction <= 1);
    }

    void aDragHoldsTheKnobUntilTheTvReports() {
        PlaybackTimeline dragged = timelineDragged(timeline(0, TwoHours), 0.25);
        dragged = timelineReported(dragged, {9000, TwoHours, true}, Start + 1s);
        QCOMPARE(displayedPositionMs(dragged, Start + 2s), TwoHours / 4);
        dragged = timelineDragged(dragged, 0.5);
        QCOMPARE(dragTargetMs(dragged), 3'600'000);

        const PlaybackTimeline dropped = timelineDropped(dragged, Start + 3s);
        QCOMPARE(displayedFraction(dropped, Start + 3s), 0.5);
        QCOMPARE(displayedPositionMs(dropped, Start + 4s), 3'601'000);
        const ReportedPosition old{9000, TwoHours, true};
        const auto pending = timelineReported(dropped, old, Start + 4s, true);
        QCOMPARE(displayedPositionMs(pending, Start + 4s), 3'601'000);
        const auto repeated = timelineReported(pending, old, Start + 5s);
        QCOMPARE(displayedPositionMs(repeated, Start + 5s), 3'602'000);
        const PlaybackTimeline refused = timelineReported(dropped, {9000, TwoHours, false}, Start);
        QCOMPARE(displayedPositionMs(refused, Start + 5s), 9000);
    }

    void dragsStayOnTheTimeline_data() {
        QTest::addColumn<double>("fraction");
        QTest::addColumn<std::int64_t>("duration");
        QTest::addColumn<std::int64_t>("target");
        QTest::newRow("before") << -0.5 << TwoHours << std::int64_t(0);
        QTest::newRow("behind") << 1.5 << TwoHours << TwoHours;
        QTest::newRow("no number") << std::nan("") << TwoHours << std::int64_t(0);
        QTest::newRow("half away from zero") << 0.5 << std::int64_t(3) << std::int64_t(2);
        QTest::newRow("unknown duration") << 0.5 << std::int64_t(-7) << std::int64_t(0);
        QTest::newRow("end of a huge one") << 1.0 << Huge << Huge;
        QTest::newRow("just before it") << std::nextafter(1.0, 0.0) << Huge << Huge - 1023;
    }
    void dragsStayOnTheTimeline() {
        QFETCH(double, fraction);
        QFETCH(std::int64_t, duration);
        QFETCH(std::int64_t, target);
        QCOMPARE(dragTargetMs(timelineDragged(timeline(0, duration), fraction)), target);
    }
};

static const quiv::TestCase<PlaybackTimelineTest> registered;
#include "playback_timeline_test.moc"
