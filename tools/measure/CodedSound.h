// A sound whose samples say where they come from, and the reading of a recording of it. Loss, repetition, shift and any
// change of a sample show in the numbers.
//
// Left counts the frames of the second, upward through zero at the whole second; right names the second in the middle
// half of it and is a constant otherwise. So the sound around every whole second is the same: a loop between whole
// seconds has a seam that is already continuous.
#pragma once

#include <cstdint>
#include <vector>

#include "SoundFile.h"

namespace qm::measure {

Sound makeCodedSound(int seconds);

// A stretch of the recording that holds consecutive frames of the coded sound, bit for bit.
struct Run {
    std::size_t at;       // frame of the recording
    std::int64_t source;  // frame of the coded sound; -1 when the stretch is too short to tell its second
    std::size_t length;   // frames

    std::size_t end() const { return at + length; }
    std::int64_t sourceEnd() const { return source + std::int64_t(length); }
};

// The runs of a recording that was played with this gain, in order. A seam at a whole second starts a new run without
// a gap; what lies between runs is silence, a fade or a fault.
std::vector<Run> findRuns(const Sound& recording, double gain);

}  // namespace qm::measure
