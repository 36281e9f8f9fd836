#include "engine/media/PictureConverter.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace qm {

namespace {

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

// The library's own table number for the colours of the picture; large pictures that do not say use the newer one.
int colourTable(const AVFrame& frame) {
    constexpr int kFirstLargeHeight = 720;
    switch (frame.colorspace) {
        case AVCOL_SPC_BT709:
            return SWS_CS_ITU709;
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return SWS_CS_BT2020;
        case AVCOL_SPC_UNSPECIFIED:
            return frame.height >= kFirstLargeHeight ? SWS_CS_ITU709 : SWS_CS_ITU601;
        default:
            return SWS_CS_ITU601;
    }
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

PictureSize fitted(int width, int height, int limit) {
    const int larger = std::max(width, height);
    if (larger <= limit) {
        return {width, height};
    }
    const auto side = [&](int length) {
        const auto scaled = static_cast<int>(std::int64_t{length} * limit / larger);
        return std::max(scaled & ~1, 2);
    };
    return {side(width), side(height)};
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
    sws_setColorspaceDetails(context, coefficients, full, coefficients, format == AV_PIX_FMT_RGB32 || full, 0, 1 << 16,
                             1 << 16);
    return sws_scale(context, from.data, from.linesize, 0, from.height, planes, strides) > 0;
}

std::shared_ptr<VideoPicture> PictureConverter::paintable(const AVFrame& frame, int quarterTurns,
                                                          AVRational streamAspect) {
    const PictureSize size = fitted(frame.width, frame.height, kLargestSide);
    auto picture = std::make_shared<VideoPicture>();
    picture->width = size.width;
    picture->height = size.height;
    picture->aspect = pixelAspect(frame, streamAspect) * frame.width / std::max(frame.height, 1);
    constexpr std::size_t kSlack = 16;  // the library may write a little past the last row
    picture->pixels.resize(std::size_t(size.width) * size.height + kSlack);
    std::uint8_t* planes[4] = {reinterpret_cast<std::uint8_t*>(picture->pixels.data())};
    const int strides[4] = {4 * size.width};
    if (!scale(frame, AV_PIX_FMT_RGB32, size, planes, strides, m_toPaint)) {
        return nullptr;
    }
    picture->pixels.resize(std::size_t(size.width) * size.height);
    for (int turn = 0; turn < quarterTurns; ++turn) {
        turnClockwise(*picture);
    }
    return picture;
}

FramePtr PictureConverter::reduced(const AVFrame& frame) {
    const PictureSize size = fitted(frame.width, frame.height, kReducedSide);
    FramePtr small(av_frame_alloc());
    small->format = AV_PIX_FMT_YUV420P;
    small->width = size.width;
    small->height = size.height;
    if (av_frame_get_buffer(small.get(), 0) < 0 ||
        !scale(frame, AV_PIX_FMT_YUV420P, size, small->data, small->linesize, m_toKeep)) {
        return nullptr;
    }
    small->colorspace = colourTable(frame) == SWS_CS_ITU709 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    small->color_range = isFullRange(frame) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    small->sample_aspect_ratio = frame.sample_aspect_ratio;
    return small;
}

}  // namespace qm
