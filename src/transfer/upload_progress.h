#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

// Progress and speed of an upload, from the counts that its transfer reports: pure functions.
namespace quiv {

struct UploadProgress {
    double fraction = 0; // 0 to 1
    double speedBytesPerSecond = 0;
    std::optional<std::chrono::steady_clock::time_point> lastSampleAt;
    std::int64_t lastSentBytes = 0;

    bool operator==(const UploadProgress&) const = default;
};

// `expectedBytes` is at least 1. Reports closer than 0.2 s to each other say nothing about speed.
UploadProgress progressReported(UploadProgress progress, std::int64_t sentBytes,
                                std::int64_t expectedBytes,
                                std::chrono::steady_clock::time_point now);

// "Uploading a.mp4 (2 queued)... 37%".
QString uploadingMessage(const QString& fileName, qsizetype queued, double fraction);

} // namespace quiv
