// Owners of the media library's objects, so that nothing of it is freed by hand. Only engine/media and engine/export
// include this.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>

namespace qm {

struct LibavDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

using FormatPtr = std::unique_ptr<AVFormatContext, LibavDeleter>;
using CodecPtr = std::unique_ptr<AVCodecContext, LibavDeleter>;
using ParametersPtr = std::unique_ptr<AVCodecParameters, LibavDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, LibavDeleter>;
using FramePtr = std::unique_ptr<AVFrame, LibavDeleter>;

inline ParametersPtr copyParameters(const AVCodecParameters& from) {
    ParametersPtr copy(avcodec_parameters_alloc());
    avcodec_parameters_copy(copy.get(), &from);
    return copy;
}

// Where the container places the stream's beginning.
inline double startSeconds(const AVStream& stream) {
    return stream.start_time == AV_NOPTS_VALUE ? 0 : static_cast<double>(stream.start_time) * av_q2d(stream.time_base);
}

}  // namespace qm
