// The pictures of one film, one after the other in the order they are shown. Times are seconds of the movie: 0 is its
// first frame of sound. One thread at a time; not the thread of the sound. A damaged picture is left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>

#include "engine/api/VideoPicture.h"

struct AVFrame;

namespace qm {

// A decoded picture as the codec left it, cheaper to keep than one that can be painted.
struct RawPicture {
    double seconds = 0;     // shown from here until the next picture begins
    std::size_t bytes = 0;  // of memory
    std::int64_t pixels = 0;
    bool reduced = false;  // kept smaller than it was coded
    std::shared_ptr<const AVFrame> frame;
};

// A place in which pictures are shown, in pixels.
struct PictureSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

class VideoReader {
public:
    static constexpr std::int64_t kAllPixels = std::numeric_limits<std::int64_t>::max();

    virtual ~VideoReader() = default;

    // Makes the picture shown at `seconds`, or one before it, the next one: reading goes on from the nearest key
    // picture that allows it. Earlier than all pictures is the first. False if the file has become unreadable.
    virtual bool seek(double seconds) = 0;

    // True if seeking to a time gets there with less decoding than reading on from an earlier time.
    virtual bool gainsBySeeking(double from, double to) = 0;

    enum class Outcome {
        Picture,
        Working,  // nothing yet; ask again
        End,      // after the last picture, or the file has become unreadable
    };

    // Reads and decodes a little. Pictures that end before `wantedFrom` may be left out where that saves time; those
    // of more than so many pixels are made smaller.
    virtual Outcome next(RawPicture& picture, double wantedFrom, std::int64_t mostPixels) = 0;

    // What is usual for this film, in seconds.
    virtual double secondsPerPicture() const = 0;

    // The same with about so many pixels, if it has more of them and that is possible.
    virtual RawPicture reduced(const RawPicture& picture, std::int64_t mostPixels) = 0;

    // For painting, made smaller where it does not fit; null if it cannot be converted.
    virtual std::shared_ptr<const VideoPicture> convert(const RawPicture& picture, PictureSize place) = 0;
};

// Opens the pictures when they are first wanted; null if they cannot be read.
using VideoOpener = std::function<std::unique_ptr<VideoReader>()>;

}  // namespace qm
