#include "transfer/upload_progress.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr double SmallestInterval = 0.2; // seconds
constexpr double OldShare = 0.65;        // of the speed so far in the new one

} // namespace

UploadProgress progressReported(UploadProgress progress, std::int64_t sentBytes,
                                std::int64_t expectedBytes,
                                std::chrono::steady_clock::time_point now) {
    const double fraction = static_cast<double>(sentBytes) / static_cast<double>(expectedBytes);
    progress.fraction = std::clamp(fraction, 0.0, 1.0);
    if (progress.lastSampleAt) {
        const std::chrono::duration<double> interval = now - *progress.lastSampleAt;
        const std::int64_t moved = sentBytes - progress.lastSentBytes;
        if (interval.count() >= SmallestInterval && moved >= 0) {
            const double speed = static_cast<double>(moved) / interval.count();
            const double old = progress.speedBytesPerSecond;
            progress.speedBytesPerSecond =
                old > 0 ? OldShare * old + (1 - OldShare) * speed : speed;
        }
    }
    progress.lastSampleAt = now;
    progress.lastSentBytes = sentBytes;
    return progress;
}

QString uploadingMessage(const QString& fileName, qsizetype queued, double fraction) {
    const QString waiting = queued > 0 ? u" (%1 queued)"_s.arg(queued) : QString();
    return u"Uploading "_s + fileName + waiting + u"... "_s +
           QString::number(static_cast<int>(fraction * 100)) + u'%';
}

} // namespace quiv
