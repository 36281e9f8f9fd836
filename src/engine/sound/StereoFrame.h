// One frame of sound: the samples of both channels at one instant.
#pragma once

namespace qm {

struct StereoFrame {
    float left = 0;
    float right = 0;

    friend bool operator==(const StereoFrame&, const StereoFrame&) = default;
    friend StereoFrame operator*(StereoFrame f, float gain) { return {f.left * gain, f.right * gain}; }
    friend StereoFrame operator+(StereoFrame a, StereoFrame b) { return {a.left + b.left, a.right + b.right}; }
};
static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

}  // namespace qm
