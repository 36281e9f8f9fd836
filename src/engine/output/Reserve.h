// How much sound lies ready on its way to the loudspeaker: little while that is enough, because what lies with the
// device has to be heard out before a change is heard; more after the sound has broken off, because a break is worse
// than a late change. Render thread only; times are milliseconds of any steady clock.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace qm {

class Reserve {
public:
    // Rendered ahead of the device. A change is spliced in before it, so this much costs no time, only work.
    double laneSeconds() const { return kLaneSeconds[m_lane]; }
    static constexpr double mostLaneSeconds() { return kLaneSeconds.back(); }

    // Handed to the device. A change is heard only after it.
    double deviceSeconds() const { return kDeviceSeconds[m_device]; }

    // The renderer had nothing ready for the device.
    void laneRanDry(std::int64_t now) {
        m_lane = std::min(m_lane + 1, kLaneSeconds.size() - 1);
        m_lastBreak = now;
    }

    // The device had nothing left to play, though it could have been given more. One break may be anybody's; at the
    // second within half a minute the device is to hold more. True when it now is to.
    bool deviceRanDry(std::int64_t now) {
        const bool again = m_lastDeviceBreak && now - *m_lastDeviceBreak <= kAgainMilliseconds;
        m_lastDeviceBreak = m_lastBreak = now;
        if (!again || m_device + 1 == kDeviceSeconds.size()) return false;
        ++m_device;
        m_lastDeviceBreak.reset();
        return true;
    }

    // Nothing is heard now, so that the device may be opened anew unnoticed. True when it is to hold less.
    bool rest(std::int64_t now) {
        if (!m_lastBreak || now - *m_lastBreak < kQuietMilliseconds) return false;
        m_lastBreak = now;  // one step less for each quiet while
        m_lane -= m_lane > 0 ? 1 : 0;
        if (m_device == 0) return false;
        --m_device;
        return true;
    }

private:
    static constexpr std::array kLaneSeconds = {0.15, 0.3, 0.6};
    static constexpr std::array kDeviceSeconds = {0.025, 0.06, 0.12, 0.2};
    static constexpr std::int64_t kAgainMilliseconds = 30000;
    static constexpr std::int64_t kQuietMilliseconds = 60000;

    std::size_t m_lane = 0;
    std::size_t m_device = 0;
    std::optional<std::int64_t> m_lastBreak;
    std::optional<std::int64_t> m_lastDeviceBreak;  // that has not made the reserve grow yet
};

}  // namespace qm
