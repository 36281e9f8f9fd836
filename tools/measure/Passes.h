// What can be told of a recorded loop without knowing its marks: the period, the pitch of a steady tone, the silences.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "SoundFile.h"

namespace qm::measure {

struct Period {
    double meanFrames;   // over all passes
    double worstFrames;  // largest deviation of one pass from where the mean puts it
    int passes;          // repetitions that were compared
};

// The period of the ticks on the left channel; none when nothing repeats. Looks for periods between the two bounds.
std::optional<Period> findPeriod(const Sound& recording, std::size_t shortest, std::size_t longest);

// The pitch of the steady tone on the right channel in cents from `nominalHz`, at most 20 away: the median over short
// windows, so that the seams of a loop do not count. None in silence.
std::optional<double> pitchInCents(const Sound& recording, double nominalHz);

struct Silence {
    std::size_t at;      // frame of the recording
    std::size_t length;  // frames
};

// Stretches of nothing at all between the first sound and the last.
std::vector<Silence> findSilences(const Sound& recording);

}  // namespace qm::measure
