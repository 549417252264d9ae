#include "stills/frame_search.h"

#include "stills/deadline.h"
#include "stills/local_media.h"
#include "stills/no_still.h"

#include <cmath>

namespace quiv {

namespace {

constexpr double Tolerance = 0.25;                             // seconds
constexpr double Nearby = 1.0;                                 // seconds before the target
constexpr std::int64_t MostPixels = std::int64_t{8192} * 4608; // 8K in any of its shapes

DecoderPointer openDecoder(const AVStream& video) {
    const AVCodec* const codec = avcodec_find_decoder(video.codecpar->codec_id);
    DecoderPointer decoder(orOutOfMemory(avcodec_alloc_context3(codec)));
    if (avcodec_parameters_to_context(decoder.get(), video.codecpar) < 0)
        throw NoStill("the video's description is broken");
    decoder->pkt_timebase = video.time_base;
    decoder->max_pixels = MostPixels;
    decoder->thread_count = 1; // no thread can be started any more
    if (avcodec_open2(decoder.get(), codec, nullptr) < 0)
        throw NoStill("the video cannot be decoded");
    return decoder;
}

bool isEncrypted(const AVPacket& packet) {
    return av_packet_get_side_data(&packet, AV_PKT_DATA_ENCRYPTION_INFO, nullptr);
}

bool isDamaged(const AVFrame& frame) {
    return (frame.flags & AV_FRAME_FLAG_CORRUPT) || frame.decode_error_flags != 0;
}

// Decodes forward until it meets the frame it looks for.
class FrameSearch {
public:
    FrameSearch(LocalMedia& media, double time)
        : m_media(media), m_target(time - Tolerance), m_decoder(openDecoder(media.video())) {}

    FramePointer run(const Deadline& deadline) {
        const PacketPointer packet(orOutOfMemory(av_packet_alloc()));
        while (!m_isFound && !(m_latest && deadline.isNear()) && !deadline.hasPassed()) {
            if (!m_media.read(*packet)) {
                decode(nullptr); // gives what the decoder still holds
                break;
            }
            if (isEncrypted(*packet))
                throw NoStill("the video is encrypted");
            hurryTo(*packet);
            decode(packet.get());
        }
        if (!m_latest)
            throw NoStill("no frame can be decoded");
        if (isDamaged(*m_latest))
            throw NoStill("the frame is damaged");
        return std::move(m_latest);
    }

private:
    // Far from the target only those frames are decoded that others build on.
    void hurryTo(const AVPacket& packet) {
        const std::int64_t timestamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
        const bool isFar = m_media.secondsOf(timestamp) < m_target - Nearby;
        m_decoder->skip_frame = isFar ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    }

    // A broken packet is no reason to end: the next ones may be whole.
    void decode(const AVPacket* packet) {
        if (avcodec_send_packet(m_decoder.get(), packet) == AVERROR(ENOMEM))
            throw std::bad_alloc();
        while (!m_isFound) {
            FramePointer frame(orOutOfMemory(av_frame_alloc()));
            if (avcodec_receive_frame(m_decoder.get(), frame.get()) < 0)
                return;
            // A frame that does not say when it is shown is as good as any.
            m_isFound = !(m_media.secondsOf(frame->best_effort_timestamp) < m_target);
            m_latest = std::move(frame);
        }
    }

    LocalMedia& m_media;
    double m_target;
    DecoderPointer m_decoder;
    FramePointer m_latest;
    bool m_isFound = false;
};

} // namespace

FramePointer findFrame(LocalMedia& media, double time, const Deadline& deadline) {
    if (time > 0)
        media.seek(time);
    return FrameSearch(media, time).run(deadline);
}

} // namespace quiv
