// Changes speed and pitch by pulling source frames from a timeline: the implementation decides how far behind and ahead
// of the playhead it reads. Speed is source frames per output frame, pitch a frequency factor. Render thread only; no
// allocation once constructed, as far as the library beneath keeps to that.
//
// Exactness: after restart(step, ...) the k-th frame of output belongs to step + k * speed, without drift, and the
// sound right after `step` is whole, because what lies before it has been heard by the implementation first.
#pragma once

#include <cstdint>
#include <span>

#include "engine/sound/StereoFrame.h"
#include "engine/sound/Timeline.h"

namespace qm {

class TimeStretch {
public:
    virtual ~TimeStretch() = default;

    // Costs less and sounds worse, for a machine that cannot keep up. Takes effect with the next restart().
    virtual void setLight(bool light) = 0;

    // Speed 0.05 to 20, pitch factor 0.25 to 4. False when the timeline was interrupted: restart again.
    virtual bool restart(Timeline& timeline, std::int64_t step, double speed, double pitchFactor) = 0;

    // While `step` of the timeline is played without it: finds out, on a thread of its own, what a restart there will
    // need, so that the sound can be changed at once.
    virtual void lookAhead(Timeline& /*timeline*/, std::int64_t /*step*/) {}

    // Fills `out` and returns true; false when the timeline was interrupted, after which only restart() may follow.
    virtual bool render(Timeline& timeline, std::span<StereoFrame> out) = 0;
};

}  // namespace qm
