// The bytes that stand before the sound of a recorded movie: one sound track of 16-bit stereo in one chunk. Their
// number does not depend on what they say, so that they can be written over in place while the sound behind them grows.
#pragma once

#include <cstdint>
#include <string>

namespace qm {

struct RecordedMovie {
    int sampleRate;        // up to 65535
    std::uint32_t frames;  // of stereo, 16 bits each
    bool finished;         // otherwise the sound goes on to the end of the file, wherever that is
};

inline constexpr std::uint32_t kRecordedFrameBytes = 4;

std::string movieHeader(const RecordedMovie& movie);

}  // namespace qm
