// Serves the picture of the moment from decoded ones, and decodes ahead in the direction of play: forward as they come,
// backward group by group, and beyond the seam of a loop before it is reached. Without a clock or a thread of its own:
// the caller tells the moment. One thread. Memory stays within a budget; pictures that come too late are never shown.
#pragma once

#include <array>
#include <deque>
#include <memory>
#include <optional>

#include "engine/video/PictureCursor.h"
#include "engine/video/VideoMoment.h"

namespace qm {

class PictureServer {
public:
    PictureServer(VideoOpener open, std::size_t budget);

    // The picture of the moment, the same object for as long as it stands; null while it is not decoded yet.
    std::shared_ptr<const VideoPicture> pictureAt(const VideoMoment& moment);

    // Decodes a little of what is needed next; false if there is nothing to do.
    bool work(const VideoMoment& moment);

    // Seconds of real time for which pictureAt() stays the same; endless while standing still.
    double secondsToChange(const VideoMoment& moment) const;

    void forget();      // gives all memory back
    bool isReadable();  // false if the film's pictures cannot be opened
    std::size_t bytes() const { return m_cache.bytes(); }

private:
    // Fills a stretch that is to be played backward: from a key picture on, keeping the last ones that fit.
    struct GroupJob {
        Span span;
        std::size_t allowance = 0;
        std::size_t bytes = 0;
        std::deque<PictureCache::Shown> kept;
    };

    // What reads one of the wanted stretches. The second one waits beyond the seam of a loop and is swapped in there.
    struct Lane {
        std::unique_ptr<PictureCursor> cursor;
        std::optional<GroupJob> group;
    };

    void lookAhead(const VideoMoment& moment);
    bool isReady(Lane& lane);
    bool workForward(std::size_t allowance);
    bool workBeyondSeam(const Span& span, std::size_t allowance);
    void stepForward(Lane& lane, const Span& span, double missing);
    bool workBackward(Lane& lane, const Span& span, std::size_t allowance, std::size_t startBelow);
    void stepGroup(Lane& lane, const Span& span);
    void keepOfGroup(GroupJob& group, PictureCache::Shown shown);
    bool fits(const Span& span, std::size_t allowance) const;
    const RawPicture* lateButNew(double now) const;

    const VideoOpener m_open;
    const std::size_t m_budget;
    PictureCache m_cache;
    std::vector<Span> m_wanted;  // where playback goes from here; the second stretch lies beyond the seam of a loop
    bool m_backward = false;
    double m_ahead = 0;    // seconds of the film that are looked ahead
    bool m_parks = false;  // the second lane has a place to wait at
    std::size_t m_lastBytes = 0;
    std::array<Lane, 2> m_lanes;

    std::shared_ptr<const VideoPicture> m_shown;
    double m_shownBegin = 0;
};

}  // namespace qm
