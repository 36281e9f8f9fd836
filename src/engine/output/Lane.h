// A lane is a run of finished sound rendered with one playhead at one speed, so that its k-th frame belongs to step
// firstStep + k * speed. The render thread writes it, the device's callback reads it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "engine/realtime/SpscRing.h"
#include "engine/render/Playhead.h"
#include "engine/render/StereoFrame.h"

namespace qm {

struct LaneHeader {
    Playhead playhead;
    double firstStep = 0;       // step of the lane's first frame
    double speed = 1;           // steps per frame
    std::uint64_t request = 0;  // the newest request of the main thread that this lane fulfils

    double stepOf(std::uint64_t frame) const { return firstStep + static_cast<double>(frame) * speed; }
};

struct Lane {
    explicit Lane(std::size_t capacity) : frames(capacity) {}

    LaneHeader header;       // written by the render thread while the lane is idle
    std::uint64_t base = 0;  // ring position of the lane's first frame
    SpscRing<StereoFrame> frames;
    std::atomic<bool> ended{false};  // everything that will ever be in it is in it

    std::uint64_t consumed() const { return frames.readPosition() - base; }
    std::uint64_t written() const { return frames.writePosition() - base; }
};

}  // namespace qm
