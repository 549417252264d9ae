#pragma once

#include "stills/deadline.h"
#include "stills/ffmpeg_types.h"
#include "stills/local_file.h"

#include <cstdint>
#include <memory>

namespace quiv {

// A video file taken apart into the packets of its best video stream.
//
// Knows the containers of the supported file types only, by content and not by name; playlists and
// other lists of files are none of them. Reads the one file: nothing a file refers to is opened.
// Throws NoStill for anything that is not such a file. Reading ends at the deadline.
class LocalMedia {
public:
    LocalMedia(const LocalFile& file, const Deadline& deadline);
    LocalMedia(const LocalMedia&) = delete;
    LocalMedia& operator=(const LocalMedia&) = delete;

    double duration() const; // in seconds; not a number when unknown
    const AVStream& video() const { return *m_video; }
    // What a frame's pixels are in width to height; a frame may know better than its container.
    AVRational pixelAspect(AVFrame& frame) const;

    // Goes on at the last place before this time where decoding can begin, as far as it can be
    // found.
    void seek(double seconds);
    // The next packet of the video; returns false at the end or after the deadline.
    bool read(AVPacket& packet);
    // Seconds since the beginning of what `video()` counts; not a number for AV_NOPTS_VALUE.
    double secondsOf(std::int64_t timestamp) const;

private:
    struct ReleaseInput {
        void operator()(AVIOContext* input) const;
    };

    static int readInput(void* self, std::uint8_t* buffer, int size);
    static std::int64_t seekInput(void* self, std::int64_t offset, int whence);

    void makeInput();
    void openContainer();
    void chooseVideo();
    bool seekKeyFrame(double latest, double about);

    const LocalFile& m_file;
    const Deadline& m_deadline;
    std::int64_t m_position = 0;
    std::unique_ptr<AVIOContext, ReleaseInput> m_input;
    FormatPointer m_format;
    AVStream* m_video = nullptr;
    PacketPointer m_next;   // read already, to be given out first
    double m_beginning = 0; // the container's time that counts as zero
};

} // namespace quiv
