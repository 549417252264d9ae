#pragma once

#include "platform/async/task.h"

#include <QByteArray>
#include <QSize>

#include <optional>

namespace quiv {

// Decodes pictures that nobody vouches for.
//
// Every request completes exactly once, from the event loop: with the pixels or with nullopt, never
// with an error; also when the decoder is destroyed meanwhile. Destroying the task ends the work.
class PictureDecoder {
public:
    static constexpr qsizetype MostBytes = 2 << 20; // of a picture

    virtual ~PictureDecoder() = default;

    // The JPEG, PNG or WebP picture in these bytes, stretched to this size: rows from the top
    // without gaps; a pixel is red, green, blue and alpha, the colours multiplied by alpha. Returns
    // nullopt for anything else, and for what takes too long or too much memory.
    virtual Task<std::optional<QByteArray>> decode(QByteArray bytes, QSize size) = 0;
};

} // namespace quiv
