#include "transfer/upload_recovery.h"

#include "transfer/upload_names.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t SmallestTolerance = 4096;
constexpr std::int64_t TailBytes = 262'144;
constexpr std::int64_t ClockSkewMs = 5000;

bool hasKnownSize(const ExpectedUpload& expected) {
    return expected.sizeBytes.value_or(0) >= 1;
}

// For sizes from a TV, which may be anything.
bool isWithinTolerance(std::int64_t size, std::int64_t expected) {
    if (size < 1)
        return false;
    return std::max(size, expected) - std::min(size, expected) <= sizeTolerance(expected);
}

bool isOfUploadBefore(const QString& name, const ExpectedUpload& expected) {
    return expected.storedBefore && uploadNameKey(name) == uploadNameKey(*expected.storedBefore) &&
           uploadNameKey(name) != uploadNameKey(expected.remoteName);
}

} // namespace

std::int64_t sizeTolerance(std::int64_t sizeBytes) {
    return std::max(SmallestTolerance, sizeBytes / 1000);
}

std::int64_t nearEndThreshold(std::int64_t sizeBytes) {
    // 98.5 %, in an order that cannot overflow.
    const std::int64_t share = sizeBytes / 1000 * 985 + sizeBytes % 1000 * 985 / 1000;
    return std::max(sizeBytes - TailBytes, share);
}

bool confirmsUpload(const UploadStatusResponse& status, const ExpectedUpload& expected) {
    if (status.state.trimmed().toUpper() != "COMPLETED"_L1 ||
        status.updatedAtMs < expected.startedAtMs - ClockSkewMs ||
        isOfUploadBefore(status.fileName, expected))
        return false;
    const std::int64_t served = status.totalBytes > 0 ? status.totalBytes : status.receivedBytes;
    if (hasKnownSize(expected) && served >= 1)
        return isWithinTolerance(served, *expected.sizeBytes);
    return uploadNamesMatch(expected.remoteName, status.fileName);
}

bool confirmsUpload(const FilesResponse& listing, const ExpectedUpload& expected) {
    const QString key = uploadMatchKey(expected.remoteName);
    const auto found = std::ranges::find_if(listing.files, [&](const RemoteFile& file) {
        return uploadMatchKey(file.name) == key && !isOfUploadBefore(file.name, expected);
    });
    if (key.isEmpty() || found == listing.files.end())
        return false;
    return hasKnownSize(expected) ? isWithinTolerance(found->sizeBytes, *expected.sizeBytes)
                                  : found->sizeBytes >= 1;
}

} // namespace quiv
