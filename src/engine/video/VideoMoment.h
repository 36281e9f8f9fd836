// What the pictures need to know of the playback at one moment. A value.
#pragma once

#include <functional>

namespace qm {

struct VideoMoment {
    double seconds = 0;  // of the movie, being heard now
    double rate = 0;     // signed; 0 while it stands still
    bool loops = false;
    double rangeBegin = 0;  // what is played, in seconds
    double rangeEnd = 0;

    // The time whose picture is shown. Positions are whole frames of sound and pictures begin between them: one that
    // begins within the next millisecond has begun.
    double shownTime() const;

    // Inside what is played again and again.
    bool isInLoop() const;
};

// Any thread.
using VideoClock = std::function<VideoMoment()>;

}  // namespace qm
