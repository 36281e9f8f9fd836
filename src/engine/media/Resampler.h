// Another sample rate for one stretch of stereo sound. Every output frame is computed from the input frames around its
// own place, so any stretch comes out the same however it was reached. One thread at a time.
#pragma once

#include <cstdint>
#include <vector>

namespace qm {

class Resampler {
public:
    Resampler(int fromRate, int toRate);

    // The input frames needed for output frames [first, first + count).
    struct Need {
        std::int64_t first;
        std::int64_t count;
    };
    Need need(std::int64_t first, std::int64_t count) const;

    // Adds `count` output frames to `stereo`; `input` holds exactly the frames that need() asked for.
    void add(std::int64_t first, std::int64_t count, const float* input, float* stereo) const;

    std::int64_t outputLength(std::int64_t inputLength) const;

private:
    void weights(std::int64_t phase, float* target) const;

    std::int64_t m_from;  // both rates divided by their greatest common divisor
    std::int64_t m_to;
    double m_cutoff;             // of the lower rate's half, as a part of the input's
    int m_reach;                 // input frames on either side
    std::vector<float> m_table;  // all phases, where they are few
};

}  // namespace qm
