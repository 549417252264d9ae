#include "ui/display_format.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

struct ByteUnit {
    const char* name;
    std::uint64_t bytes;
    std::uint64_t steps; // per unit that are shown: 1, 10 or 100
};

constexpr std::array<ByteUnit, 4> ByteUnits{{
    {"KB", 1'000, 1},
    {"MB", 1'000'000, 10},
    {"GB", 1'000'000'000, 100},
    {"TB", 1'000'000'000'000, 100},
}};

// Half a step rounds up. The counts are whole, so that no binary fraction decides it.
std::uint64_t roundedSteps(std::uint64_t bytes, const ByteUnit& unit) {
    const std::uint64_t step = unit.bytes / unit.steps;
    return bytes / step + (bytes % step >= step - step / 2 ? 1 : 0);
}

QString stepsText(std::uint64_t steps, const ByteUnit& unit) {
    QString text = QString::number(steps / unit.steps);
    const std::uint64_t fraction = steps % unit.steps;
    if (fraction == 0)
        return text;
    QString digits = QString::number(fraction).rightJustified(unit.steps == 100 ? 2 : 1, u'0');
    while (digits.endsWith(u'0'))
        digits.chop(1);
    return text + u'.' + digits;
}

QString magnitudeText(std::uint64_t bytes) {
    if (bytes == 0)
        return u"Zero KB"_s;
    if (bytes == 1)
        return u"1 byte"_s;
    if (bytes < ByteUnits.front().bytes)
        return QString::number(bytes) + u" bytes"_s;
    // A count that rounds to a thousand of a unit is shown as one of the next.
    const auto unit = std::find_if(ByteUnits.begin(), ByteUnits.end() - 1, [&](const auto& each) {
        return roundedSteps(bytes, each) < 1000 * each.steps;
    });
    return stepsText(roundedSteps(bytes, *unit), *unit) + u' ' + QLatin1String(unit->name);
}

// Fits a signed 64-bit integer after truncation.
bool fitsInteger(double value) {
    constexpr double bound = 9223372036854775808.0; // 2 to the 63rd
    return std::isfinite(value) && value > -bound && value < bound;
}

QString trimmed(const std::optional<QString>& text) {
    return text ? text->trimmed() : QString();
}

std::int64_t playingSubtitleCount(const FileGroup& group,
                                  const std::optional<PlaybackResponse>& playback) {
    if (!playback || !group.video || playback->currentVideoName != group.video->name)
        return 0;
    return std::count_if(
        playback->subtitleTracks.begin(), playback->subtitleTracks.end(),
        [](const PlaybackTrack& track) { return track.id.trimmed().toLower() != u"off"_s; });
}

} // namespace

QString formatPlaybackTime(std::int64_t milliseconds) {
    const std::int64_t time = std::max<std::int64_t>(milliseconds, 0);
    const std::int64_t hours = time / 3'600'000;
    const int minutes = static_cast<int>(time / 60'000 % 60);
    const int seconds = static_cast<int>(time / 1'000 % 60);
    if (hours > 0)
        return QString::asprintf("%lld:%02d:%02d", static_cast<long long>(hours), minutes, seconds);
    return QString::asprintf("%02d:%02d", minutes, seconds);
}

QString formatPlaybackSpeed(double speed) {
    const auto isWhole = [](double value) {
        return std::abs(std::round(value) - value) < 0.001;
    };
    const int digits = isWhole(speed) ? 0 : isWhole(10 * speed) ? 1 : 2;
    return QString::number(speed, 'f', digits) + u'x';
}

double nearestSpeedOption(const QList<double>& options, double target) {
    const auto nearest =
        std::min_element(options.begin(), options.end(), [target](double a, double b) {
            return std::abs(a - target) < std::abs(b - target);
        });
    return nearest == options.end() ? target : *nearest;
}

QString formatTransferSpeed(double bytesPerSecond) {
    const double rounded = std::round(bytesPerSecond);
    if (!(bytesPerSecond > 0) || !fitsInteger(rounded))
        return u"-- B/s"_s;
    return formatByteCount(static_cast<std::int64_t>(rounded)) + u"/s"_s;
}

QString formatByteCount(std::int64_t bytes) {
    if (bytes < 0)
        return u'-' + magnitudeText(0 - static_cast<std::uint64_t>(bytes));
    return magnitudeText(static_cast<std::uint64_t>(bytes));
}

QString formatPercent(double fraction) {
    const double percent = fraction * 100;
    return QString::number(fitsInteger(percent) ? static_cast<std::int64_t>(percent) : 0) + u'%';
}

QString subtitleCountText(const FileGroup& group, const std::optional<PlaybackResponse>& playback) {
    const std::int64_t count = std::max({playingSubtitleCount(group, playback),
                                         static_cast<std::int64_t>(group.subtitles.size()),
                                         group.reportedSubtitleCount.value_or(0)});
    if (count == 0)
        return u"No subtitles"_s;
    return QString::number(count) + (count == 1 ? u" subtitle"_s : u" subtitles"_s);
}

std::optional<QString> deviceDisplayLabel(const TVEndpoint& device) {
    const QString manufacturer = trimmed(device.deviceManufacturer);
    const QString model = trimmed(device.deviceModel);
    const QString brand = trimmed(device.deviceBrand);
    if (!model.isEmpty()) {
        if (manufacturer.isEmpty() || model.toLower().startsWith(manufacturer.toLower()))
            return model;
        return manufacturer + u' ' + model;
    }
    if (!brand.isEmpty())
        return brand;
    return std::nullopt;
}

} // namespace quiv
