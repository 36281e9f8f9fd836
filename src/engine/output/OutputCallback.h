// THE real-time path: what the device's callback does. It takes finished frames from one of two lanes, cross-fades from
// one lane to the other at a splice, opens and closes the gate for play and pause, applies gain, and stamps which
// source position each frame handed out belongs to. fill() never locks, allocates, logs or waits.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "engine/output/AudioOutput.h"
#include "engine/output/Gain.h"
#include "engine/output/Gate.h"
#include "engine/output/LanePair.h"
#include "engine/output/Limiter.h"
#include "engine/output/Meter.h"
#include "engine/output/StampLog.h"
#include "engine/realtime/ThreadRole.h"

namespace qm {

class OutputCallback final : public OutputSource {
public:
    static constexpr std::size_t kGateFrames = Gate::kFrames;

    explicit OutputCallback(std::size_t laneFrames, int sampleRate = 44100)
        : m_lanes(laneFrames), m_meter(sampleRate) {}

    // Render thread, as the lanes themselves say.
    LanePair& lanes() { return m_lanes; }
    const LanePair& lanes() const { return m_lanes; }

    // Render thread. The device has been stopped: whoever calls fill() next may be another thread.
    void handOverFilling();

    // Render thread, while the device is stopped: carries out a pending splice that no callback would see to.
    void settleWhileStopped();

    // Render thread, while no device is running: the next device counts its frames from zero.
    void restartDeviceCount();

    // Any thread.
    void setRunning(bool running) { m_gate.setWanted(running); }
    bool isRunning() const { return m_gate.isWanted(); }
    bool gateIsClosed() const { return m_gate.isShut(); }
    void setGains(float left, float right) { m_gain.set(left, right); }
    std::int64_t framesTaken() const { return m_stamps.deviceFrames(); }  // by this device
    std::uint32_t underruns() const { return m_underruns.load(std::memory_order_relaxed); }
    std::optional<Stamp> stampAt(std::int64_t deviceFrame) const { return m_stamps.at(deviceFrame); }
    Meter& meter() { return m_meter; }

    void fill(std::span<StereoFrame> out) noexcept override;

private:
    void takeSplice();
    void runDry(bool running);
    void rest(std::span<StereoFrame> out);
    void play(std::span<StereoFrame> out, bool running);

    ThreadRole m_deviceThread;  // or who stands in for it while none runs
    LanePair m_lanes;
    Gate m_gate;
    Gain m_gain;
    Limiter m_limiter;
    Meter m_meter;
    StampLog m_stamps;
    bool m_wasDry = true;  // callback only
    std::atomic<std::uint32_t> m_underruns{0};
};

}  // namespace qm
