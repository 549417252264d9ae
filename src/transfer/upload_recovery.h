#pragma once

#include "net/wire_records.h"

#include <QString>

#include <cstdint>
#include <optional>

// Whether an upload that seems to have failed is on the TV after all: pure functions.
namespace quiv {

// What an upload was to bring. Sizes are bytes, times milliseconds since 1970.
struct ExpectedUpload {
    QString remoteName;
    std::optional<std::int64_t> sizeBytes; // nullopt if the file could not be examined
    std::int64_t startedAtMs = 0;
    // The name under which the TV stored the upload before this one; its record and its file prove
    // nothing about this upload.
    std::optional<QString> storedBefore{};
};

// By how much the size on the TV may differ: a thousandth, 4096 bytes at least.
std::int64_t sizeTolerance(std::int64_t sizeBytes);

// The count from which on a body that starts over had almost been sent.
std::int64_t nearEndThreshold(std::int64_t sizeBytes);

// The TV's last upload is this one, and complete.
bool confirmsUpload(const UploadStatusResponse& status, const ExpectedUpload& expected);

// The TV lists the file with its size, perhaps under a copy's name.
bool confirmsUpload(const FilesResponse& listing, const ExpectedUpload& expected);

} // namespace quiv
