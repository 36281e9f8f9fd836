// Serves the pictures of the moment and the next ones from decoded ones, and decodes ahead in the direction of play:
// forward as they come, backward group by group, and beyond the seam of a loop before it is reached. What was just
// shown is kept for a turn. Without a clock or a thread of its own: the caller tells the moment. One thread. Decoded
// pictures stay within a budget, for which those that are kept for long are made smaller; a few more are ready to be
// painted.
#pragma once

#include <array>
#include <deque>
#include <memory>
#include <optional>

#include "engine/video/LookAhead.h"
#include "engine/video/PictureCursor.h"
#include "engine/video/PictureSchedule.h"

namespace qm {

class PictureServer {
public:
    PictureServer(VideoOpener open, std::size_t budget);

    // Where the pictures are shown. A picture is kept with about so many pixels where memory allows it.
    void setPlace(PictureSize place);

    // Makes one more of the pictures to be shown next ready to be painted; false if there is none.
    bool prepare(const VideoMoment& moment);
    const PictureSchedule& schedule() const { return m_schedule; }

    // Decodes a little of what is needed next; false if there is nothing to do.
    bool work(const VideoMoment& moment);

    void forget();      // gives all memory back
    bool isReadable();  // false if the film's pictures cannot be opened
    std::size_t bytes() const { return m_cache.bytes(); }

private:
    using Shown = PictureCache::Shown;

    // Fills a stretch that is to be played backward: from a key picture on, keeping the last ones that fit.
    struct GroupJob {
        Span span;
        std::size_t allowance = 0;
        std::size_t bytes = 0;
        std::optional<double> first;  // where the pictures that are read begin
        std::deque<Shown> kept;
    };

    // What reads one of the wanted stretches. The second one waits beyond the seam of a loop and is swapped in there.
    struct Lane {
        std::unique_ptr<PictureCursor> cursor;
        std::optional<GroupJob> group;
    };

    void keepWanted();
    bool isReady(Lane& lane);
    bool workForward();
    bool workBeyondSeam(const Span& span, std::size_t allowance);
    void crossSeam(double missing);
    bool approach();
    bool park(Lane& lane, const Span& span);
    void stepForward(Lane& lane, const Span& span, double missing);
    bool workBackward();
    bool workOnGroups(Lane& lane, const Span& span, std::size_t allowance, std::size_t startBelow);
    void stepGroup(Lane& lane, const Span& span);
    void keepOfGroup(GroupJob& group, Shown shown);
    bool makePassedSmaller();
    bool fits(const Span& span, std::size_t allowance) const;
    std::int64_t pixelsFor(std::size_t bytes, double seconds) const;
    std::int64_t leastPixels() const;
    std::vector<const Shown*> upcoming(const VideoMoment& moment) const;
    const Shown* following(const Shown& shown, const VideoMoment& moment) const;
    const RawPicture* lateButNew(const VideoMoment& moment) const;
    ReadyPicture ready(double begin, double end, const RawPicture& picture);

    const VideoOpener m_open;
    const std::size_t m_budget;
    PictureSize m_place{1920, 1080};
    PictureCache m_cache;
    LookAhead m_look;
    bool m_backward = false;  // in the direction of play; standing still, in the last one
    bool m_plays = false;
    std::size_t m_lastBytes = 0;  // of a picture that was kept as it was coded
    double m_bytesPerPixel = 1.5;
    std::int64_t m_groupPixels = VideoReader::kAllPixels;  // of the pictures of the last group
    std::array<Lane, 2> m_lanes;
    PictureSchedule m_schedule;
};

}  // namespace qm
