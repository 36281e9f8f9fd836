// THE real-time path: what the device's callback does. It takes finished frames from one of two lanes, cross-fades from
// one lane to the other at a splice, opens and closes the gate for play and pause, applies gain, and stamps which
// source position each frame handed out belongs to. fill() never locks, allocates, logs or waits.
//
// A lane is a run of sound rendered with one playhead at one speed, so that its k-th frame belongs to step
// firstStep + k * speed. Whatever changes the sound to come (a seek, a new speed, another loop) is rendered into the
// idle lane and spliced in; nothing that was rendered ahead needs to be heard out first.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

#include "engine/output/AudioOutput.h"
#include "engine/output/Limiter.h"
#include "engine/output/Meter.h"
#include "engine/realtime/SeqLocked.h"
#include "engine/realtime/SpscRing.h"
#include "engine/render/Playhead.h"

namespace qm {

struct LaneHeader {
    Playhead playhead;
    double firstStep = 0;       // step of the lane's first frame
    double speed = 1;           // steps per frame
    std::uint64_t request = 0;  // the newest request of the main thread that this lane fulfils
};

struct Lane {
    explicit Lane(std::size_t capacity) : frames(capacity) {}

    LaneHeader header;       // written by the render thread while the lane is idle
    std::uint64_t base = 0;  // ring position of the lane's first frame
    SpscRing<StereoFrame> frames;
    std::atomic<bool> ended{false};  // everything that will ever be in it is in it

    std::uint64_t consumed() const { return frames.readPosition() - base; }
    std::uint64_t written() const { return frames.writePosition() - base; }
};

// The position that a frame of the device belongs to, and how positions go on from there.
struct Stamp {
    std::int64_t deviceFrame = 0;  // count of frames handed to the device before this one
    std::int64_t frames = 0;       // for how many frames this stamp holds
    double step = 0;
    double stepsPerFrame = 0;  // 0 while standing still
    LaneHeader lane;
};

class OutputCallback final : public OutputSource {
public:
    static constexpr std::size_t kGateFrames = 128;  // length of the ramp into and out of a pause

    explicit OutputCallback(std::size_t laneFrames, int sampleRate = 44100);

    // Render thread. The lane that is free to be written, or none while a splice is still under way.
    Lane* idleLane();
    Lane& activeLane() { return m_lanes[m_writtenLane]; }
    const Lane& activeLane() const { return m_lanes[m_writtenLane]; }

    // Render thread. Switches to the idle lane when the active one has given `atFrame` frames, or at once when it has
    // given more or has run dry, cross-fading over `fadeFrames`. Unrelated sound is faded at equal power and begins
    // with its first frame. The same sound rendered twice is faded at equal gain, and goes on where it is, however
    // late.
    struct Splice {
        std::uint64_t atFrame = 0;
        std::uint32_t fadeFrames = 0;
        bool unrelated = true;
    };
    void splice(const Splice& splice);

    // Render thread, while the device is stopped: carries out a pending splice that no callback would see to.
    void settleWhileStopped();

    // Any thread.
    void setRunning(bool running) { m_running.store(running, std::memory_order_release); }
    bool isRunning() const { return m_running.load(std::memory_order_acquire); }
    void setGains(float left, float right);
    bool gateIsClosed() const { return m_gateClosed.load(std::memory_order_acquire); }
    std::int64_t framesTaken() const { return m_deviceFrame.load(std::memory_order_relaxed); }  // by this device
    std::uint32_t underruns() const { return m_underruns.load(std::memory_order_relaxed); }

    // Any thread. Frames that could be played before the render thread has to do more.
    std::size_t framesReady() const { return m_lanes[m_issued.load(std::memory_order_acquire) % 2].frames.available(); }

    // Any thread. The newest stamp at or before a frame of the device; none before the first.
    std::optional<Stamp> stampAt(std::int64_t deviceFrame) const;

    // Any thread, as the meter itself says.
    Meter& meter() { return m_meter; }

    // Render thread, while no device is running: the next device counts its frames from zero.
    void restartDeviceCount();

    void fill(std::span<StereoFrame> out) noexcept override;

private:
    void takeSplice();
    std::size_t step(std::span<StereoFrame> out);
    std::size_t framesUntilChange(std::size_t most) const;
    void mixFadingLane(std::span<StereoFrame> out);
    void applyGate(std::span<StereoFrame> out, bool opening);
    void applyGain(std::span<StereoFrame> out);
    void switchLane();
    void catchUp();
    void finishFade();
    void stamp(std::size_t frames, bool moving);

    static constexpr std::size_t kStamps = 256;

    std::array<Lane, 2> m_lanes;
    std::size_t m_writtenLane = 0;            // render thread's view of the active lane
    Splice m_pending;                         // written before m_issued is raised
    std::atomic<std::uint64_t> m_issued{0};   // splices asked for
    std::atomic<std::uint64_t> m_settled{0};  // splices carried out, old lane drained

    std::atomic<bool> m_running{false};
    std::atomic<bool> m_gateClosed{true};
    std::atomic<float> m_targetLeft{1};
    std::atomic<float> m_targetRight{1};
    std::atomic<std::uint32_t> m_underruns{0};

    // Callback only.
    std::size_t m_active = 0;
    std::uint64_t m_taken = 0;  // splices seen
    bool m_spliceDue = false;
    bool m_fading = false;
    std::uint32_t m_fadeFrames = 0;
    std::uint32_t m_fadeDone = 0;
    std::size_t m_gate = 0;  // 0 closed to kGateFrames open
    float m_left = 1, m_right = 1;
    Limiter m_limiter;
    bool m_wasDry = true;
    Meter m_meter;
    std::array<StereoFrame, 256> m_scratch{};

    std::atomic<std::int64_t> m_deviceFrame{0};
    std::array<SeqLocked<Stamp>, kStamps> m_stamps;
    std::atomic<std::uint64_t> m_stampCount{0};
};

}  // namespace qm
