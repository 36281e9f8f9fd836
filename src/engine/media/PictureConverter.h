// Decoded pictures into ones that can be painted, or into smaller ones that cost less memory to keep. One thread at a
// time.
#pragma once

#include <memory>

#include "engine/api/VideoPicture.h"
#include "engine/media/Libav.h"

struct SwsContext;

namespace qm {

struct PictureSize {
    int width = 0;
    int height = 0;
};

// The size within a box of `limit` by `limit` pixels, in the same proportions, no larger than it was; even numbers.
PictureSize fitted(int width, int height, int limit);

class PictureConverter {
public:
    static constexpr int kLargestSide = 1920;  // of pictures for painting
    static constexpr int kReducedSide = 960;   // of pictures kept small

    PictureConverter() = default;
    ~PictureConverter();
    PictureConverter(const PictureConverter&) = delete;
    PictureConverter& operator=(const PictureConverter&) = delete;

    // `quarterTurns` clockwise. `streamAspect` is the shape of a pixel where the picture itself does not say. Null if
    // the codec's format cannot be converted.
    std::shared_ptr<VideoPicture> paintable(const AVFrame& frame, int quarterTurns, AVRational streamAspect);

    FramePtr reduced(const AVFrame& frame);  // null if it cannot be

private:
    bool scale(const AVFrame& from, AVPixelFormat format, PictureSize size, std::uint8_t* const* planes,
               const int* strides, SwsContext*& context);

    SwsContext* m_toPaint = nullptr;
    SwsContext* m_toKeep = nullptr;
};

}  // namespace qm
