// Finds out that a device was silent though it was to play: what it says it has played then falls behind the clock and
// never catches up. Its count jitters, runs ahead while a sound server hangs and is put right afterwards, so the least
// lag of each half second counts; a device whose own clock is slow or fast is followed. Render thread only.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace qm {

class GapWatch {
public:
    explicit GapWatch(int sampleRate) : m_sampleRate(sampleRate) {}

    // The device has been started or stopped: what was counted before means nothing any more.
    void restart() { *this = GapWatch(m_sampleRate); }

    // Call every few milliseconds while the device plays. True when frames went missing since the last window.
    bool sees(double seconds, std::int64_t framesPlayed) {
        if (m_windows < 0) {
            m_windows = 0;
            m_windowBegin = seconds;
        }
        m_least = std::min(m_least, seconds - static_cast<double>(framesPlayed) / m_sampleRate);
        if (seconds - m_windowBegin < kWindowSeconds) return false;
        const bool gap = m_windows > 1 && m_least - m_before > kGapSeconds;
        m_before = m_least;
        ++m_windows;
        m_windowBegin = seconds;
        m_least = std::numeric_limits<double>::infinity();
        return gap;
    }

private:
    static constexpr double kWindowSeconds = 0.5;
    static constexpr double kGapSeconds = 0.004;

    int m_sampleRate;
    int m_windows = -1;  // finished since the start; the first holds the start itself, whose length differs
    double m_windowBegin = 0;
    double m_least = std::numeric_limits<double>::infinity();
    double m_before = 0;
};

}  // namespace qm
