// Reads a sound at a constant factor other than its own rate, through a windowed sinc that lets nothing fold back. The
// k-th frame lies at place k * factor, without drift. Never allocates while reading.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "engine/sound/StereoFrame.h"

namespace qm {

class Resampler {
public:
    static constexpr double kMostFactor = 4;

    Resampler();

    // Frames of the sound on either side of a place that are needed for it.
    static std::int64_t reach(double factor);

    void setFactor(double factor);

    // The frame at a place of a sound whose frames from `firstPlace` on are `sound`.
    StereoFrame at(double place, std::span<const StereoFrame> sound, std::int64_t firstPlace) const;

private:
    double m_factor = 1;
    double m_cutoff = 1;  // of half the rate
    std::int64_t m_reach = 0;
    std::vector<float> m_kernel;  // one half, finely, at full cutoff
};

}  // namespace qm
