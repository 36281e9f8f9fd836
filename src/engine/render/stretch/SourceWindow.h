// The source around the place that is being stretched, as frames of the track in their own order whichever way play
// runs, with the track's tone: steps are read from a timeline, each once as far as possible, and kept a while.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/sound/StereoFrame.h"
#include "engine/sound/Timeline.h"

namespace qm {

class SourceWindow {
public:
    explicit SourceWindow(std::int64_t longestLook);  // frames that one look may need

    // Looks at frames from now on through this timeline; outside [begin, end) there is silence.
    void open(Timeline& timeline, std::int64_t begin, std::int64_t end);

    // Makes frames [first, last) available. False when the timeline was interrupted.
    bool ensure(std::int64_t first, std::int64_t last);

    // Of an available frame, and those after it as far as they are.
    const float* left(std::int64_t frame) const { return m_planes[0].data() + (frame - m_begin); }
    const float* right(std::int64_t frame) const { return m_planes[1].data() + (frame - m_begin); }
    const float* channel(int which, std::int64_t frame) const { return which == 0 ? left(frame) : right(frame); }

private:
    bool load(std::int64_t first, std::int64_t last);  // into the planes, which have room for them
    void shift(std::int64_t newBegin);

    Timeline* m_timeline = nullptr;
    const std::int64_t m_capacity;
    std::int64_t m_limitBegin = 0, m_limitEnd = 0;
    std::int64_t m_begin = 0, m_end = 0;  // what is available
    std::array<std::vector<float>, 2> m_planes;
    std::vector<StereoFrame> m_steps;
};

}  // namespace qm
