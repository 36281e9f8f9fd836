// Which stretches of a film are worth holding at a moment of its playback. A value; times are seconds of the film.
#pragma once

#include <vector>

#include "engine/video/PictureCache.h"
#include "engine/video/VideoMoment.h"

namespace qm {

struct LookAhead {
    static constexpr double kPassed = 3;  // seconds of real time for which what was shown is kept, for a turn

    Span next;                 // what is played from now on
    Span beyondSeam;           // and then, where a loop begins again
    Span following;            // forward, after `next`: not decoded yet, but kept where it was just played backward
    std::vector<Span> passed;  // just played; touches none of the others
    double speed = 1;          // seconds of the film in one of real time; at least 1
    double ahead = 0;          // seconds that are looked ahead
    bool parks = false;        // what is beyond the seam goes on after it: its reader has a place to wait at
};

// Of a moment at which it stands still: as if it went on in the direction in which it was played.
LookAhead lookAhead(const VideoMoment& moment, bool backward);

}  // namespace qm
