// Which source frame comes next: direction, range and wrap, as pure arithmetic. A value type; any thread.
//
// A *position* lies between frames: forward play hears frame p next, backward play frame p - 1. A playhead starts at a
// position and unrolls from there into *steps*: step 0 is the first frame played, step -1 the frame that lies just
// before it in the direction of play, whether or not it was ever heard.
#pragma once

#include <cstdint>

namespace qm {

struct Playhead {
    std::int64_t start = 0;       // position of step 0
    std::int64_t rangeBegin = 0;  // frames that may be played: [rangeBegin, rangeEnd)
    std::int64_t rangeEnd = 0;
    bool backward = false;
    bool loops = false;

    std::int64_t period() const { return rangeEnd - rangeBegin; }

    // Steps from step 0 to the first wrap or, when not looping, to the end.
    std::int64_t stepsToBoundary() const {
        const std::int64_t steps = backward ? start - rangeBegin : rangeEnd - start;
        return steps > 0 ? steps : 0;
    }

    // True when the step is one that will be played: not before the start, not past an end without a wrap.
    bool plays(std::int64_t step) const { return step >= 0 && (loops || step < stepsToBoundary()); }

    // Source frame of a step. Steps before the start and past the end go on in a straight line.
    std::int64_t frameAt(std::int64_t step) const;

    // Steps from `step` until the frames stop being consecutive; no limit when they never do.
    std::int64_t runFrom(std::int64_t step) const;

    // Steps until the next wrap, seen from a step that is played; only while looping.
    std::int64_t stepsToWrap(std::int64_t step) const;

    // Position after so many steps, folded at the wraps and held at the ends.
    double positionAt(double steps) const;
};

// A playhead that plays [begin, end) of a track, or the whole of it when that range holds nothing. A start outside the
// range of a loop is moved to the edge where play enters it; so is one on the edge where play would wrap at once.
Playhead makePlayhead(std::int64_t start, bool backward, bool loops, std::int64_t begin, std::int64_t end,
                      std::int64_t length);

}  // namespace qm
