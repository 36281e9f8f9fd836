// Keeps what goes to the device within full scale: does nothing below it, bit for bit, and lowers the gain of both
// channels just enough above it, letting go over about a tenth of a second. Callback only.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>

#include "engine/sound/StereoFrame.h"

namespace qm {

class Limiter {
public:
    void process(std::span<StereoFrame> frames) noexcept {
        for (StereoFrame& frame : frames) {
            const float peak = std::max(std::abs(frame.left), std::abs(frame.right));
            if (peak * m_gain > 1) m_gain = 1 / peak;
            if (m_gain == 1) continue;
            frame = frame * m_gain;
            m_gain = std::min(m_gain + std::max((1 - m_gain) * kRelease, kLeastStep), 1.0f);
        }
    }

private:
    static constexpr float kRelease = 1.0f / 4410;
    static constexpr float kLeastStep = 1e-6f;  // below it the sum would not move
    float m_gain = 1;
};

}  // namespace qm
