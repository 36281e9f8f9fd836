#include "engine/media/VideoDecoder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
}

namespace qm {

namespace {

constexpr double kTolerance = 0.0005;    // seconds; time stamps are rounded
constexpr double kFirstStepBack = 0.25;  // seconds before a target where seeking tries again
constexpr double kEverything = -std::numeric_limits<double>::infinity();
constexpr double kWorthSeeking = 0.3;           // seconds of pictures to be saved by a seek
constexpr double kWorthSeekingBlindly = 10;     // the same where key pictures are not known
constexpr double kUnreferencedMargin = 0.5;     // seconds before a wanted picture in which nothing is left out
constexpr std::int64_t kMostPixels = 64 << 20;  // of one picture; more is taken for damage
constexpr int kPacketsToLand = 2000;            // decoded after a seek before it is given up

// Quarter turns clockwise, from the matrix by which a camera says how it was held.
int turnOf(const AVStream& stream) {
    std::size_t size = 0;
    const std::uint8_t* matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!matrix || size < 9 * sizeof(std::int32_t)) {
        return 0;
    }
    const double degrees = -av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    return std::isfinite(degrees) ? (static_cast<int>(std::lround(degrees / 90)) % 4 + 4) % 4 : 0;
}

RawPicture rawPicture(FramePtr frame, double seconds, bool isReduced) {
    const int bytes =
        av_image_get_buffer_size(static_cast<AVPixelFormat>(frame->format), frame->width, frame->height, 32);
    RawPicture picture;
    picture.seconds = seconds;
    picture.bytes = static_cast<std::size_t>(std::max(bytes, 1));
    picture.pixels = std::int64_t{frame->width} * frame->height;
    picture.reduced = isReduced;
    picture.frame = std::shared_ptr<AVFrame>(std::move(frame));
    return picture;
}

// Threads of the codec: groups of large pictures are to be decoded much faster than they are played.
int threadsFor(std::int64_t pixels) {
    constexpr std::int64_t kManyPixels = 1280 * 720;
    constexpr unsigned kMost = 4;
    return pixels < kManyPixels ? 1 : static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 2u, kMost));
}

}  // namespace

std::unique_ptr<VideoDecoder> VideoDecoder::open(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream,
                                                 double origin) {
    std::unique_ptr<VideoDecoder> decoder(new VideoDecoder);
    decoder->m_file = std::move(file);
    decoder->m_kind = kind;
    decoder->m_stream = stream;
    decoder->m_origin = origin;
    decoder->m_packet.reset(av_packet_alloc());
    decoder->m_frame.reset(av_frame_alloc());
    return decoder->openDemuxer() && decoder->openDecoder() ? std::move(decoder) : nullptr;
}

bool VideoDecoder::openDemuxer() {
    auto demuxer = Demuxer::open(m_file, m_kind, rowOf(m_kind).mustBeAnalysed);
    if (!demuxer || m_stream >= static_cast<int>(demuxer.value()->context().nb_streams)) {
        m_demuxer.reset();
        return false;
    }
    m_demuxer = std::move(demuxer.value());
    m_demuxer->onlyStream(m_stream);
    const AVStream& stream = m_demuxer->stream(m_stream);
    m_timeBase = stream.time_base;
    m_turn = turnOf(stream);
    const AVRational rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
    if (rate.num > 0 && rate.den > 0) {
        m_usualDuration = std::clamp(1 / av_q2d(rate), 0.001, 1.0);
    }
    return true;
}

bool VideoDecoder::openDecoder() {
    const AVStream& stream = m_demuxer->stream(m_stream);
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    m_codec.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), stream.codecpar) < 0) {
        return false;
    }
    m_codec->pkt_timebase = m_timeBase;
    m_codec->max_pixels = kMostPixels;
    m_codec->thread_count = threadsFor(std::int64_t{m_codec->width} * m_codec->height);
    return avcodec_open2(m_codec.get(), codec, nullptr) >= 0;
}

double VideoDecoder::secondsOf(std::int64_t timestamp) const {
    return static_cast<double>(timestamp) * av_q2d(m_timeBase) - m_origin;
}

std::int64_t VideoDecoder::stampOf(double seconds) const {
    constexpr double kFarthest = 1e9;
    return std::llround((std::clamp(seconds, -kFarthest, kFarthest) + m_origin) / av_q2d(m_timeBase));
}

bool VideoDecoder::restart() {
    avcodec_flush_buffers(m_codec.get());
    m_draining = m_hasLanded = m_hasLast = false;
    return openDemuxer();
}

// Lands at the key picture before `seconds`; true if that gives the picture shown at `target`.
bool VideoDecoder::landAt(double seconds, double target) {
    avcodec_flush_buffers(m_codec.get());
    m_draining = m_hasLanded = m_hasLast = false;
    if (!m_demuxer->seek(m_stream, stampOf(seconds))) {
        return false;
    }
    for (int packet = 0; packet < kPacketsToLand; ++packet) {
        const Outcome outcome = decode(kEverything);
        if (outcome == Outcome::Picture) {
            m_hasLanded = true;
            return m_last <= target + kTolerance;
        }
        if (outcome == Outcome::End) {
            return false;
        }
    }
    return false;
}

// An index often knows key pictures by the time they are decoded, not shown, and some land late: then from further
// back.
bool VideoDecoder::seek(double seconds) {
    if (!m_demuxer && !restart()) {
        return false;
    }
    if (!std::isfinite(seconds)) {
        seconds = 0;
    }
    const std::int64_t start = m_demuxer->stream(m_stream).start_time;
    const double first = start == AV_NOPTS_VALUE ? 0 : secondsOf(start);
    double back = 0;
    while (seconds - back > first) {
        if (landAt(seconds - back, seconds)) {
            return true;
        }
        back = std::max(4 * back, kFirstStepBack);
    }
    return landAt(first, first) || restart();
}

bool VideoDecoder::gainsBySeeking(double from, double to) {
    if (!m_demuxer || to - from < kWorthSeeking) {
        return false;
    }
    AVStream& stream = m_demuxer->stream(m_stream);
    const int key = av_index_search_timestamp(&stream, stampOf(to), AVSEEK_FLAG_BACKWARD);
    if (key < 0) {
        return to - from > kWorthSeekingBlindly;
    }
    return secondsOf(avformat_index_get_entry(&stream, key)->timestamp) > from + kWorthSeeking;
}

// At the beginning of a pass to a picture far ahead, those that no other refers to need not be decoded.
void VideoDecoder::leaveOutUnreferenced(const AVPacket& packet, double wantedFrom) {
    const std::int64_t stamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    const bool early = stamp != AV_NOPTS_VALUE && secondsOf(stamp) < wantedFrom - kUnreferencedMargin;
    m_codec->skip_frame = early ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
}

VideoReader::Outcome VideoDecoder::decode(double wantedFrom) {
    const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
    if (received >= 0) {
        return takeFrame() ? Outcome::Picture : Outcome::Working;
    }
    if (received == AVERROR_EOF || m_draining) {
        return Outcome::End;
    }
    const int code = m_demuxer->read(m_stream, *m_packet);
    if (code == AVERROR(EAGAIN)) {
        return Outcome::Working;
    }
    if (code < 0) {
        m_draining = true;
        m_codec->skip_frame = AVDISCARD_DEFAULT;
        avcodec_send_packet(m_codec.get(), nullptr);
        return Outcome::Working;
    }
    leaveOutUnreferenced(*m_packet, wantedFrom);
    avcodec_send_packet(m_codec.get(), m_packet.get());  // what is damaged yields no picture
    return Outcome::Working;
}

// Some containers count pictures as they are decoded: they are shown earlier by as many as the codec holds back.
double VideoDecoder::heldBack() const {
    return m_kind == MediaKind::Avi ? m_codec->has_b_frames * m_usualDuration : 0;
}

// False for a picture that does not come after the one before it.
bool VideoDecoder::takeFrame() {
    const std::int64_t stamp = m_frame->best_effort_timestamp;
    const double usual = m_hasLast ? m_last + m_usualDuration : 0;
    const double seconds = stamp == AV_NOPTS_VALUE ? usual : secondsOf(stamp) - heldBack();
    if (m_hasLast && seconds <= m_last) {
        return false;
    }
    m_last = seconds;
    m_hasLast = true;
    return true;
}

VideoReader::Outcome VideoDecoder::next(RawPicture& picture, double wantedFrom, std::int64_t mostPixels) {
    if (!m_demuxer) {
        return Outcome::End;
    }
    if (m_hasLanded) {
        m_hasLanded = false;
    } else {
        const Outcome outcome = decode(wantedFrom);
        if (outcome != Outcome::Picture) {
            return outcome;
        }
    }
    FramePtr kept = m_converter.reduced(*m_frame, mostPixels);
    const bool isReduced = kept != nullptr;
    if (!isReduced) {
        kept.reset(av_frame_alloc());
        av_frame_move_ref(kept.get(), m_frame.get());
    }
    picture = rawPicture(std::move(kept), m_last, isReduced);
    return Outcome::Picture;
}

RawPicture VideoDecoder::reduced(const RawPicture& picture, std::int64_t mostPixels) {
    FramePtr smaller = m_converter.reduced(*picture.frame, mostPixels);
    return smaller ? rawPicture(std::move(smaller), picture.seconds, true) : picture;
}

std::shared_ptr<const VideoPicture> VideoDecoder::convert(const RawPicture& picture, PictureSize place) {
    if (!picture.frame) {
        return nullptr;
    }
    const AVRational aspect = m_demuxer ? m_demuxer->stream(m_stream).sample_aspect_ratio : AVRational{0, 1};
    auto converted = m_converter.paintable(*picture.frame, m_turn, aspect, place);
    if (converted) {
        converted->seconds = picture.seconds;
    }
    return converted;
}

}  // namespace qm
