// Finds where a second rendering of the same sound fits the first best, so that a cross-fade between them neither
// cancels nor clicks. Pure; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/sound/StereoFrame.h"

namespace qm {

inline constexpr std::int64_t kAlignmentReach = 128;  // frames to either side

// The lag in [0, 2 * reach] at which `candidate`, from that frame on, resembles `reference` most by normalised
// cross-correlation. `reach` itself when there is nothing to compare: silence, or too little of it.
std::size_t bestAlignment(std::span<const StereoFrame> reference, std::span<const StereoFrame> candidate,
                          std::size_t reach);

}  // namespace qm
