// Which position each of the newest frames handed to the device belongs to. The callback writes, any thread asks for
// the frame that the device has played. Never locks, allocates or waits.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/output/Lane.h"
#include "engine/realtime/SeqLocked.h"

namespace qm {

// The position that a frame of the device belongs to, and how positions go on from there.
struct Stamp {
    std::int64_t deviceFrame = 0;  // count of frames handed to the device before this one
    std::int64_t frames = 0;       // for how many frames this stamp holds
    double step = 0;
    double stepsPerFrame = 0;  // 0 while standing still
    LaneHeader lane;

    // Held at both ends of what the stamp holds for.
    double stepAt(std::int64_t frame) const {
        const auto since = std::clamp<std::int64_t>(frame - deviceFrame, 0, frames);
        return step + static_cast<double>(since) * stepsPerFrame;
    }
};

class StampLog {
public:
    // Callback. The next frames of the device are the next ones of a lane, or as many of silence, which stand still.
    void add(std::size_t frames, const Lane& lane, bool moving) {
        const std::int64_t deviceFrame = m_deviceFrame.load(std::memory_order_relaxed);
        const auto count = static_cast<std::int64_t>(frames);
        const double speed = moving ? lane.header.speed : 0;
        const std::uint64_t number = m_count.load(std::memory_order_relaxed);
        m_stamps[number % kStamps].store({deviceFrame, count, lane.header.stepOf(lane.consumed()), speed, lane.header});
        m_count.store(number + 1, std::memory_order_release);
        m_deviceFrame.store(deviceFrame + count, std::memory_order_relaxed);
    }

    // Any thread. The newest stamp at or before a frame of the device; the oldest one there is when all are later; none
    // before the first.
    std::optional<Stamp> at(std::int64_t deviceFrame) const {
        const std::uint64_t count = m_count.load(std::memory_order_acquire);
        const std::uint64_t oldest = count > kReadable ? count - kReadable : 0;
        std::optional<Stamp> earliest;
        for (std::uint64_t n = count; n-- > oldest;) {
            const auto stamp = m_stamps[n % kStamps].tryLoad();
            if (!stamp) continue;
            if (stamp->deviceFrame <= deviceFrame) return stamp;
            earliest = stamp;
        }
        return earliest;
    }

    std::int64_t deviceFrames() const { return m_deviceFrame.load(std::memory_order_relaxed); }  // any thread

    // While no callback runs: the next device counts its frames from zero, where `lane` stands still.
    void restart(const Lane& lane) {
        const bool any = m_count.load(std::memory_order_relaxed) > 0;
        m_deviceFrame.store(0, std::memory_order_relaxed);
        m_count.store(0, std::memory_order_release);
        if (any) add(0, lane, false);
    }

private:
    static constexpr std::uint64_t kStamps = 256;
    static constexpr std::uint64_t kReadable = kStamps - 8;  // the others may be written over meanwhile

    std::array<SeqLocked<Stamp>, kStamps> m_stamps;
    std::atomic<std::uint64_t> m_count{0};
    std::atomic<std::int64_t> m_deviceFrame{0};
};

}  // namespace qm
