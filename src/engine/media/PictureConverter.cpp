#include "engine/media/PictureConverter.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/mastering_display_metadata.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace qm {

namespace {

constexpr std::size_t kSlack = 16;                // pixels: the library may write a little past the last row
constexpr double kNarrowest = 0.1, kWidest = 10;  // pixel shapes beyond these are taken for damage

double pixelAspect(const AVFrame& frame, AVRational streamAspect) {
    const AVRational aspect = frame.sample_aspect_ratio.num > 0 ? frame.sample_aspect_ratio : streamAspect;
    if (aspect.num <= 0 || aspect.den <= 0) {
        return 1;
    }
    const double value = av_q2d(aspect);
    return value >= kNarrowest && value <= kWidest ? value : 1;
}

bool isFullRange(const AVFrame& frame) {
    switch (frame.format) {
        case AV_PIX_FMT_YUVJ420P:
        case AV_PIX_FMT_YUVJ422P:
        case AV_PIX_FMT_YUVJ444P:
        case AV_PIX_FMT_YUVJ440P:
        case AV_PIX_FMT_YUVJ411P:
            return true;
        default:
            return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

// How colours are made of brightness and differences; large pictures that do not say use the newer way.
AVColorSpace colourSpace(const AVFrame& frame) {
    constexpr int kFirstLargeHeight = 720;
    switch (frame.colorspace) {
        case AVCOL_SPC_BT709:
            return AVCOL_SPC_BT709;
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return AVCOL_SPC_BT2020_NCL;
        case AVCOL_SPC_UNSPECIFIED:
            return frame.height >= kFirstLargeHeight ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
        default:
            return AVCOL_SPC_SMPTE170M;
    }
}

// The library's own number of the same.
int colourTable(const AVFrame& frame) {
    switch (colourSpace(frame)) {
        case AVCOL_SPC_BT709:
            return SWS_CS_ITU709;
        case AVCOL_SPC_BT2020_NCL:
            return SWS_CS_BT2020;
        default:
            return SWS_CS_ITU601;
    }
}

// The brightest light in the film, as far as it says.
double peakOf(const AVFrame& frame) {
    constexpr double kUsual = 1000, kHighest = 10000;
    double peak = 0;
    if (const AVFrameSideData* data = av_frame_get_side_data(&frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL)) {
        peak = reinterpret_cast<const AVContentLightMetadata*>(data->data)->MaxCLL;
    }
    if (const AVFrameSideData* data = av_frame_get_side_data(&frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA)) {
        const auto& display = *reinterpret_cast<const AVMasteringDisplayMetadata*>(data->data);
        peak = peak <= 0 && display.has_luminance ? av_q2d(display.max_luminance) : peak;
    }
    return peak > 0 && peak <= kHighest ? peak : kUsual;
}

// None for pictures whose numbers a screen can show as they are.
std::optional<ToneSource> toneSource(const AVFrame& frame) {
    switch (frame.color_trc) {
        case AVCOL_TRC_SMPTE2084:
            return ToneSource{ToneSource::Transfer::Pq, peakOf(frame)};
        case AVCOL_TRC_ARIB_STD_B67:
            return ToneSource{ToneSource::Transfer::Hlg};
        default:
            break;
    }
    return frame.color_primaries == AVCOL_PRI_BT2020 ? std::optional(ToneSource{}) : std::nullopt;
}

void turnClockwise(VideoPicture& picture) {
    const int width = picture.width, height = picture.height;
    std::vector<std::uint32_t> turned(picture.pixels.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            turned[std::size_t(x) * height + (height - 1 - y)] = picture.pixels[std::size_t(y) * width + x];
        }
    }
    picture.pixels = std::move(turned);
    std::swap(picture.width, picture.height);
    picture.aspect = 1 / picture.aspect;
}

}  // namespace

PictureSize withPixels(PictureSize size, std::int64_t most) {
    const std::int64_t pixels = std::int64_t{size.width} * size.height;
    if (pixels <= most) {
        return size;
    }
    const double scale = std::sqrt(static_cast<double>(std::max<std::int64_t>(most, 1)) / static_cast<double>(pixels));
    const auto side = [&](int length) { return std::max(static_cast<int>(length * scale) & ~1, 2); };
    return {side(size.width), side(size.height)};
}

PictureSize fitted(PictureSize coded, double aspect, PictureSize place) {
    const double width = std::min<double>(place.width, place.height * aspect);
    const double height = width / aspect;
    if (width * height >= static_cast<double>(coded.width) * coded.height) {
        return coded;
    }
    return {std::max(static_cast<int>(std::lround(width)), 1), std::max(static_cast<int>(std::lround(height)), 1)};
}

PictureConverter::~PictureConverter() {
    sws_freeContext(m_toPaint);
    sws_freeContext(m_toKeep);
}

bool PictureConverter::scale(const AVFrame& from, AVPixelFormat format, PictureSize size, std::uint8_t* const* planes,
                             const int* strides, SwsContext*& context) {
    const auto source = static_cast<AVPixelFormat>(from.format);
    if (from.width <= 0 || from.height <= 0 || !from.data[0] || !sws_isSupportedInput(source)) {
        return false;
    }
    const bool resized = size.width != from.width || size.height != from.height;
    const int method = resized ? SWS_BILINEAR : SWS_POINT;
    context = sws_getCachedContext(context, from.width, from.height, source, size.width, size.height, format, method,
                                   nullptr, nullptr, nullptr);
    if (!context) {
        return false;
    }
    const int* coefficients = sws_getCoefficients(colourTable(from));
    const bool full = isFullRange(from);
    const bool fullOut = full || format == AV_PIX_FMT_RGB32 || format == AV_PIX_FMT_RGB48;
    sws_setColorspaceDetails(context, coefficients, full, coefficients, fullOut, 0, 1 << 16, 1 << 16);
    return sws_scale(context, from.data, from.linesize, 0, from.height, planes, strides) > 0;
}

std::shared_ptr<VideoPicture> PictureConverter::paintable(const AVFrame& frame, int quarterTurns,
                                                          AVRational streamAspect, PictureSize place) {
    auto picture = std::make_shared<VideoPicture>();
    picture->aspect = pixelAspect(frame, streamAspect) * std::max(frame.width, 1) / std::max(frame.height, 1);
    const bool onItsSide = quarterTurns % 2 != 0;
    place = {std::min(onItsSide ? place.height : place.width, kLargestSide),
             std::min(onItsSide ? place.width : place.height, kLargestSide)};
    const PictureSize size = fitted({frame.width, frame.height}, picture->aspect, place);
    picture->width = size.width;
    picture->height = size.height;
    picture->pixels.resize(std::size_t(size.width) * size.height + kSlack);
    std::uint8_t* planes[4] = {reinterpret_cast<std::uint8_t*>(picture->pixels.data())};
    const int strides[4] = {4 * size.width};
    const std::optional<ToneSource> tones = toneSource(frame);
    if (tones && (!m_tones || m_tones->source() != *tones)) {
        m_tones.emplace(*tones);
    }
    if (!(tones ? mapTones(frame, size, picture->pixels.data())
                : scale(frame, AV_PIX_FMT_RGB32, size, planes, strides, m_toPaint))) {
        return nullptr;
    }
    picture->pixels.resize(std::size_t(size.width) * size.height);
    for (int turn = 0; turn < quarterTurns; ++turn) {
        turnClockwise(*picture);
    }
    return picture;
}

bool PictureConverter::mapTones(const AVFrame& frame, PictureSize size, std::uint32_t* pixels) {
    const std::size_t count = std::size_t(size.width) * size.height;
    m_wide.resize(3 * (count + kSlack));
    std::uint8_t* planes[4] = {reinterpret_cast<std::uint8_t*>(m_wide.data())};
    const int strides[4] = {6 * size.width};
    if (!scale(frame, AV_PIX_FMT_RGB48, size, planes, strides, m_toPaint)) {
        return false;
    }
    m_tones->map(m_wide.data(), pixels, count);
    return true;
}

FramePtr PictureConverter::reduced(const AVFrame& frame, std::int64_t mostPixels) {
    const PictureSize size = withPixels({frame.width, frame.height}, mostPixels);
    if (size.width == frame.width) {
        return nullptr;
    }
    FramePtr small(av_frame_alloc());
    const AVPixelFormat format = toneSource(frame) ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
    small->format = format;
    small->width = size.width;
    small->height = size.height;
    if (av_frame_get_buffer(small.get(), 0) < 0 ||
        !scale(frame, format, size, small->data, small->linesize, m_toKeep)) {
        return nullptr;
    }
    av_frame_copy_props(small.get(), &frame);
    small->colorspace = colourSpace(frame);
    small->color_range = isFullRange(frame) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    return small;
}

}  // namespace qm
