#pragma once

#include "platform/async/task.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quiv {

// Takes a JPEG still from a local video file, at most 960 x 540.
//
// Every request completes exactly once, from the event loop: with a still or with none, never with
// an error; also when the extractor is destroyed meanwhile. Destroying the task ends the work.
class StillExtractor {
public:
    virtual ~StillExtractor() = default;
    virtual Task<std::optional<QByteArray>> makeUploadThumbnail(QString path) = 0;
};

} // namespace quiv
