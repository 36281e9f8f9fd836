// Volume and balance: a new gain is reached in about five milliseconds, without a step that would click. Never locks,
// allocates or waits.
#pragma once

#include <algorithm>
#include <atomic>
#include <span>

#include "engine/render/StereoFrame.h"

namespace qm {

class Gain {
public:
    // Any thread. Factors, 1 leaves the sound as it is.
    void set(float left, float right) {
        m_wantedLeft.store(left, std::memory_order_relaxed);
        m_wantedRight.store(right, std::memory_order_relaxed);
    }

    // Callback. Nothing is heard: what is wanted is reached at once.
    void settle() {
        m_left = m_wantedLeft.load(std::memory_order_relaxed);
        m_right = m_wantedRight.load(std::memory_order_relaxed);
    }

    void apply(std::span<StereoFrame> frames) {
        const float left = m_wantedLeft.load(std::memory_order_relaxed);
        const float right = m_wantedRight.load(std::memory_order_relaxed);
        for (StereoFrame& frame : frames) {
            m_left = approach(m_left, left);
            m_right = approach(m_right, right);
            frame = {frame.left * m_left, frame.right * m_right};
        }
    }

private:
    static constexpr float kStep = 1.0f / 220;  // per frame: full scale in about 5 ms

    static float approach(float value, float target) { return value + std::clamp(target - value, -kStep, kStep); }

    std::atomic<float> m_wantedLeft{1};
    std::atomic<float> m_wantedRight{1};
    float m_left = 1, m_right = 1;  // callback only
};

}  // namespace qm
