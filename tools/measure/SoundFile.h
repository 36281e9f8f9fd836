// Sound in memory, and the two forms it has on disk here: 16-bit wav for the test sounds, and raw interleaved
// 32-bit float stereo at 44100 frames a second for recordings. Failure is a std::runtime_error with the path.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qm::measure {

inline constexpr int kSampleRate = 44100;  // frames a second, of every sound made or measured here

struct Sound {
    std::vector<float> left;   // -1 to 1
    std::vector<float> right;  // as long as left

    std::size_t frames() const { return left.size(); }
    bool silentAt(std::size_t frame) const { return left[frame] == 0.0f && right[frame] == 0.0f; }
    std::size_t soundingFrames(std::size_t begin, std::size_t end) const;  // those that are not silent, of [begin, end)
    Sound from(std::size_t frame) const;  // the rest from that frame on; empty past the end
    Sound withoutSilence() const;         // the frames that are not silent
};

void writeWav(const std::string& path, const Sound& sound);
Sound readRecording(const std::string& path);

}  // namespace qm::measure
