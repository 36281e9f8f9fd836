// Decoded pictures into ones that can be painted, or into smaller ones that cost less memory to keep. One thread at a
// time.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/api/VideoPicture.h"
#include "engine/media/Libav.h"
#include "engine/media/ToneMap.h"
#include "engine/media/VideoReader.h"

struct SwsContext;

namespace qm {

// The size of about so many pixels in the same proportions, no larger than it was; even numbers.
PictureSize withPixels(PictureSize size, std::int64_t most);

// The size in which a picture of those proportions fills the place, as far as it has the pixels for it.
PictureSize fitted(PictureSize coded, double aspect, PictureSize place);

class PictureConverter {
public:
    static constexpr int kLargestSide = 1920;  // of pictures for painting

    PictureConverter() = default;
    ~PictureConverter();
    PictureConverter(const PictureConverter&) = delete;
    PictureConverter& operator=(const PictureConverter&) = delete;

    // Made to fit into the place. `quarterTurns` clockwise. `streamAspect` is the shape of a pixel where the picture
    // itself does not say. Null if the codec's format cannot be converted.
    std::shared_ptr<VideoPicture> paintable(const AVFrame& frame, int quarterTurns, AVRational streamAspect,
                                            PictureSize place);

    // With about so many pixels; null if it has no more of them than that, or cannot be made smaller.
    FramePtr reduced(const AVFrame& frame, std::int64_t mostPixels);

private:
    bool scale(const AVFrame& from, AVPixelFormat format, PictureSize size, std::uint8_t* const* planes,
               const int* strides, SwsContext*& context);

    bool mapTones(const AVFrame& frame, PictureSize size, std::uint32_t* pixels);

    std::optional<ToneTable> m_tones;  // of the last picture whose tones were mapped
    std::vector<std::uint16_t> m_wide;
    SwsContext* m_toPaint = nullptr;
    SwsContext* m_toKeep = nullptr;
};

}  // namespace qm
