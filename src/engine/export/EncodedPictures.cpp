#include "engine/export/EncodedPictures.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/export/PictureTraits.h"

extern "C" {
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace qm {

namespace {

constexpr AVRational kTimeBase{1, 60000};  // a whole number of them in a picture at every usual rate
constexpr double kEverything = -std::numeric_limits<double>::infinity();
constexpr int kPicturesToTry = 10000;  // of damage in front of the first good picture

bool isRgb(const AVFrame& picture) {
    return picture.colorspace == AVCOL_SPC_RGB;
}

void setQuality(AVCodecContext& encoder) {
    if (encoder.codec_id == AV_CODEC_ID_H264) {
        av_opt_set(encoder.priv_data, "preset", "fast", 0);
        av_opt_set(encoder.priv_data, "crf", "18", 0);
    } else {
        encoder.flags |= AV_CODEC_FLAG_QSCALE;
        encoder.global_quality = 2 * FF_QP2LAMBDA;
    }
}

}  // namespace

EncodedPictures::EncodedPictures(std::unique_ptr<VideoReader> reader, const AVStream& source)
    : m_reader(std::move(reader)), m_source(source) {}

EncodedPictures::~EncodedPictures() {
    sws_freeContext(m_scaler);
}

std::unique_ptr<EncodedPictures> EncodedPictures::create(std::unique_ptr<VideoReader> reader, const AVStream& source) {
    if (!reader) {
        return nullptr;
    }
    std::unique_ptr<EncodedPictures> pictures(new EncodedPictures(std::move(reader), source));
    const bool ready = pictures->readFirst() && (pictures->openEncoder("libx264") || pictures->openEncoder("mpeg4"));
    return ready ? std::move(pictures) : nullptr;
}

// The first picture tells the size.
bool EncodedPictures::readFirst() {
    for (int i = 0; i < kPicturesToTry && !m_hasPicture; ++i) {
        switch (m_reader->next(m_picture, kEverything, VideoReader::kAllPixels)) {
            case VideoReader::Outcome::Picture:
                m_hasPicture = true;
                break;
            case VideoReader::Outcome::Working:
                break;
            case VideoReader::Outcome::End:
                return false;
        }
    }
    return m_hasPicture;
}

bool EncodedPictures::openEncoder(const char* name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name);
    m_encoder.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!m_encoder) {
        return false;
    }
    const AVFrame& first = *m_picture.frame;
    const AVRational rate = pictureRate(m_source);
    m_encoder->width = std::max(first.width & ~1, 2);
    m_encoder->height = std::max(first.height & ~1, 2);
    m_encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    m_encoder->time_base = kTimeBase;
    m_encoder->framerate = rate;
    m_encoder->gop_size = std::clamp(static_cast<int>(std::lround(av_q2d(rate))), 1, 60);  // quick to seek in
    m_encoder->sample_aspect_ratio =
        first.sample_aspect_ratio.num > 0 ? first.sample_aspect_ratio : m_source.sample_aspect_ratio;
    m_encoder->colorspace = isRgb(first) ? AVCOL_SPC_SMPTE170M : first.colorspace;
    m_encoder->color_primaries = first.color_primaries;
    m_encoder->color_trc = first.color_trc;
    m_encoder->color_range = AVCOL_RANGE_MPEG;
    m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    setQuality(*m_encoder);
    return avcodec_open2(m_encoder.get(), codec, nullptr) >= 0;
}

void EncodedPictures::describe(AVStream& stream) const {
    avcodec_parameters_from_context(stream.codecpar, m_encoder.get());
    stream.codecpar->codec_tag = 0;
    stream.time_base = m_encoder->time_base;
    stream.avg_frame_rate = m_encoder->framerate;
    stream.sample_aspect_ratio = m_encoder->sample_aspect_ratio;
    copyTurn(m_source, stream);
}

FramePtr EncodedPictures::converted(const AVFrame& picture) {
    FramePtr frame(av_frame_alloc());
    frame->width = m_encoder->width;
    frame->height = m_encoder->height;
    frame->format = m_encoder->pix_fmt;
    m_scaler =
        sws_getCachedContext(m_scaler, picture.width, picture.height, static_cast<AVPixelFormat>(picture.format),
                             frame->width, frame->height, m_encoder->pix_fmt, SWS_BICUBIC, nullptr, nullptr, nullptr);
    if (!m_scaler || av_frame_get_buffer(frame.get(), 0) < 0) {
        return nullptr;
    }
    sws_scale(m_scaler, picture.data, picture.linesize, 0, picture.height, frame->data, frame->linesize);
    return frame;
}

bool EncodedPictures::encode(const AVFrame& picture, double seconds) {
    const FramePtr frame = converted(picture);
    if (!frame) {
        return true;  // a picture in a form that is not known is left out
    }
    frame->pts = std::llround(seconds / av_q2d(kTimeBase));
    if (m_lastTime != AV_NOPTS_VALUE) {
        frame->pts = std::max(frame->pts, m_lastTime + 1);
    }
    m_lastTime = frame->pts;
    return avcodec_send_frame(m_encoder.get(), frame.get()) >= 0;
}

ExportTrack::Outcome EncodedPictures::feed() {
    if (!m_hasPicture) {
        const VideoReader::Outcome outcome = m_reader->next(m_picture, kEverything, VideoReader::kAllPixels);
        if (outcome == VideoReader::Outcome::End) {
            return avcodec_send_frame(m_encoder.get(), nullptr) >= 0 ? Outcome::Working : Outcome::Failed;
        }
        m_hasPicture = outcome == VideoReader::Outcome::Picture;
    }
    if (m_hasPicture && !encode(*m_picture.frame, m_picture.seconds)) {
        return Outcome::Failed;
    }
    m_hasPicture = false;
    m_picture.frame.reset();
    return Outcome::Working;
}

ExportTrack::Outcome EncodedPictures::next(AVPacket& packet) {
    av_packet_unref(&packet);
    const int code = avcodec_receive_packet(m_encoder.get(), &packet);
    if (code == AVERROR(EAGAIN)) {
        return feed();
    }
    if (code == AVERROR_EOF) {
        return Outcome::End;
    }
    packet.duration = av_rescale_q(1, av_inv_q(m_encoder->framerate), kTimeBase);
    return code < 0 ? Outcome::Failed : Outcome::Packet;
}

}  // namespace qm
