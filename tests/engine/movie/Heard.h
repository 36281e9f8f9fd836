// Which frames of the coded sound a stepped player gave to its device.
#pragma once

#include <vector>

#include "engine/movie/SteppedPlayer.h"

namespace qm::test {

// The frames heard at full level, without the silence and the ramps around them.
inline std::vector<std::int64_t> heard(const std::vector<StereoFrame>& sound) {
    std::vector<std::int64_t> frames;
    for (const StereoFrame& f : sound)
        if (f.left != 0 && f.right == -f.left) frames.push_back(frameOf(f.left));
    return frames;
}

inline int breaks(const std::vector<std::int64_t>& frames, std::int64_t step = 1) {
    int count = 0;
    for (std::size_t i = 1; i < frames.size(); ++i) count += frames[i] - frames[i - 1] != step;
    return count;
}

inline std::vector<std::int64_t> settled(const std::vector<StereoFrame>& sound, std::size_t skip = 128) {
    return heard({sound.begin() + std::ptrdiff_t(skip), sound.end()});
}

inline void loop(Player& p, std::int64_t a, std::int64_t b) {
    p.movie->setSelectionAttribute({at(a), at(b - a)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
}

}  // namespace qm::test
