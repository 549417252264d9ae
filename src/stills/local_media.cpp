#include "stills/local_media.h"

#include "stills/no_still.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <limits>

namespace quiv {

namespace {

constexpr char containers[] = "mov,matroska,avi,mpegts,mpeg,flv,asf";
constexpr int InputBuffer = 64 << 10;

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

int hasPassed(void* deadline) {
    return static_cast<const Deadline*>(deadline)->hasPassed();
}

class Options {
public:
    Options() = default;
    ~Options() { av_dict_free(&m_options); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void set(const char* name, const char* value) { av_dict_set(&m_options, name, value, 0); }
    AVDictionary** get() { return &m_options; }

private:
    AVDictionary* m_options = nullptr;
};

std::int64_t area(const AVStream& stream) {
    return std::int64_t{stream.codecpar->width} * stream.codecpar->height;
}

bool isBetterVideo(const AVStream& stream, const AVStream& other) {
    const bool isDefault = stream.disposition & AV_DISPOSITION_DEFAULT;
    const bool isOtherDefault = other.disposition & AV_DISPOSITION_DEFAULT;
    return isDefault != isOtherDefault ? isDefault : area(stream) > area(other);
}

bool isMovingVideo(const AVStream& stream) {
    constexpr int stillPictures = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           !(stream.disposition & stillPictures) && avcodec_find_decoder(stream.codecpar->codec_id);
}

} // namespace

LocalMedia::LocalMedia(const LocalFile& file, const Deadline& deadline)
    : m_file(file), m_deadline(deadline) {
    makeInput();
    openContainer();
    chooseVideo();
    if (m_format->start_time != AV_NOPTS_VALUE)
        m_beginning = static_cast<double>(m_format->start_time) / AV_TIME_BASE;
}

void LocalMedia::makeInput() {
    auto* const buffer = static_cast<unsigned char*>(orOutOfMemory(av_malloc(InputBuffer)));
    m_input.reset(
        avio_alloc_context(buffer, InputBuffer, 0, this, &readInput, nullptr, &seekInput));
    if (!m_input) {
        av_free(buffer);
        throw std::bad_alloc();
    }
}

void LocalMedia::openContainer() {
    AVFormatContext* format = orOutOfMemory(avformat_alloc_context());
    format->pb = m_input.get();
    format->io_open = &refuseToOpen;
    format->interrupt_callback = {&hasPassed, const_cast<Deadline*>(&m_deadline)};
    Options options;
    options.set("format_whitelist", containers);
    options.set("protocol_whitelist", "");
    options.set("enable_drefs", "0");
    options.set("use_absolute_path", "0");
    // Frees the context when it fails.
    if (avformat_open_input(&format, nullptr, nullptr, options.get()) < 0)
        throw NoStill("not a video file of a known kind");
    m_format.reset(format);
    if (avformat_find_stream_info(format, nullptr) < 0)
        throw NoStill("the file's streams cannot be read");
}

void LocalMedia::chooseVideo() {
    for (AVStream* const stream : std::span(m_format->streams, m_format->nb_streams)) {
        stream->discard = AVDISCARD_ALL;
        if (isMovingVideo(*stream) && (!m_video || isBetterVideo(*stream, *m_video)))
            m_video = stream;
    }
    if (!m_video)
        throw NoStill("there is no video in it");
    m_video->discard = AVDISCARD_DEFAULT;
}

double LocalMedia::duration() const {
    return m_format->duration == AV_NOPTS_VALUE
               ? std::numeric_limits<double>::quiet_NaN()
               : static_cast<double>(m_format->duration) / AV_TIME_BASE;
}

AVRational LocalMedia::pixelAspect(AVFrame& frame) const {
    return av_guess_sample_aspect_ratio(m_format.get(), m_video, &frame);
}

double LocalMedia::secondsOf(std::int64_t timestamp) const {
    return timestamp == AV_NOPTS_VALUE
               ? std::numeric_limits<double>::quiet_NaN()
               : static_cast<double>(timestamp) * av_q2d(m_video->time_base) - m_beginning;
}

// A container without an index is met anywhere: then the search begins earlier and earlier.
void LocalMedia::seek(double seconds) {
    for (const double lead : {0.0, 4.0, 16.0, 64.0}) {
        if (seekKeyFrame(seconds, std::max(seconds - lead, 0.0)))
            return;
        if (lead >= seconds)
            break;
    }
    throw NoStill("there is no place to begin decoding at");
}

// Whether a key frame follows the place found for `about`, and not later than `latest`.
bool LocalMedia::seekKeyFrame(double latest, double about) {
    const auto microseconds = std::llround((about + m_beginning) * AV_TIME_BASE);
    const std::int64_t timestamp =
        av_rescale_q(microseconds, AVRational{1, AV_TIME_BASE}, m_video->time_base);
    if (av_seek_frame(m_format.get(), m_video->index, timestamp, AVSEEK_FLAG_BACKWARD) < 0)
        throw NoStill("the file cannot be searched");
    PacketPointer packet(orOutOfMemory(av_packet_alloc()));
    while (read(*packet) && !(secondsOf(packet->dts) > latest)) {
        if (packet->flags & AV_PKT_FLAG_KEY) {
            m_next = std::move(packet);
            return true;
        }
    }
    return false;
}

bool LocalMedia::read(AVPacket& packet) {
    if (m_next) {
        av_packet_unref(&packet);
        av_packet_move_ref(&packet, m_next.get());
        m_next.reset();
        return true;
    }
    for (;;) {
        av_packet_unref(&packet);
        if (av_read_frame(m_format.get(), &packet) < 0)
            return false;
        if (packet.stream_index == m_video->index)
            return true;
    }
}

void LocalMedia::ReleaseInput::operator()(AVIOContext* input) const {
    av_freep(&input->buffer); // not always the one it was given
    avio_context_free(&input);
}

int LocalMedia::readInput(void* self, std::uint8_t* buffer, int size) {
    auto& media = *static_cast<LocalMedia*>(self);
    if (media.m_deadline.hasPassed())
        return AVERROR_EXIT;
    const auto count =
        media.m_file.read(media.m_position, {buffer, static_cast<std::size_t>(size)});
    media.m_position += std::max<std::int64_t>(count, 0);
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t LocalMedia::seekInput(void* self, std::int64_t offset, int whence) {
    auto& media = *static_cast<LocalMedia*>(self);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return media.m_file.size();
    case SEEK_CUR:
        offset += media.m_position;
        break;
    case SEEK_END:
        offset += media.m_file.size();
        break;
    default:
        break;
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return media.m_position = offset;
}

} // namespace quiv
