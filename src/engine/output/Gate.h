// What play and pause open and close: a short ramp in front of the sound, so that neither clicks. Nothing is taken from
// the sound behind it while it is shut, so a pause loses no frame. Never locks, allocates or waits.
#pragma once

#include <atomic>
#include <cstddef>
#include <span>

#include "engine/render/StereoFrame.h"

namespace qm {

class Gate {
public:
    static constexpr std::size_t kFrames = 128;  // length of the ramp

    // Any thread.
    void setWanted(bool open) { m_wanted.store(open, std::memory_order_release); }
    bool isWanted() const { return m_wanted.load(std::memory_order_acquire); }
    bool isShut() const { return m_opened.load(std::memory_order_acquire) == 0; }

    // The callback, or in its place while none runs.
    void shut() { m_opened.store(0, std::memory_order_release); }

    // The part of so many frames that the ramp takes, all of them when it is at its end.
    std::size_t framesOfRamp(bool opening, std::size_t most) const {
        const std::size_t opened = m_opened.load(std::memory_order_relaxed);
        const std::size_t left = opening ? kFrames - opened : opened;
        return left > 0 && left < most ? left : most;
    }

    void apply(std::span<StereoFrame> frames, bool opening) {
        std::size_t opened = m_opened.load(std::memory_order_relaxed);
        if (opened == (opening ? kFrames : 0)) return;
        for (StereoFrame& frame : frames) {
            opening ? ++opened : --opened;
            frame = frame * (static_cast<float>(opened) / kFrames);
        }
        m_opened.store(opened, std::memory_order_release);
    }

private:
    std::atomic<bool> m_wanted{false};
    std::atomic<std::size_t> m_opened{0};  // frames of the ramp, written by the callback; 0 is shut
};

}  // namespace qm
