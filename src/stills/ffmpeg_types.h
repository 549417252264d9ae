#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <new>

namespace quiv {

namespace detail {

// FFmpeg frees through the address of the pointer.
template <auto release> struct ReleaseByAddress {
    template <class T> void operator()(T* object) const { release(&object); }
};
template <auto release> struct Release {
    template <class T> void operator()(T* object) const { release(object); }
};

} // namespace detail

using DecoderPointer =
    std::unique_ptr<AVCodecContext, detail::ReleaseByAddress<avcodec_free_context>>;
using FormatPointer =
    std::unique_ptr<AVFormatContext, detail::ReleaseByAddress<avformat_close_input>>;
using FramePointer = std::unique_ptr<AVFrame, detail::ReleaseByAddress<av_frame_free>>;
using PacketPointer = std::unique_ptr<AVPacket, detail::ReleaseByAddress<av_packet_free>>;
using ScalerPointer = std::unique_ptr<SwsContext, detail::Release<sws_freeContext>>;

template <class T> T* orOutOfMemory(T* object) {
    if (!object)
        throw std::bad_alloc();
    return object;
}

} // namespace quiv
