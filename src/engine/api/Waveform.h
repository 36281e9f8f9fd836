// The picture of a track's sound, as far as it is known. A value.
#pragma once

#include <cstddef>
#include <vector>

namespace qm {

struct Waveform {
    std::vector<float> peaks;  // the largest sample of each of equally long parts, 0 to 1; empty without sound
    std::size_t known = 0;     // parts from the beginning that have been looked at; the others are 0
    bool isComplete = false;   // nothing more comes in
};

}  // namespace qm
