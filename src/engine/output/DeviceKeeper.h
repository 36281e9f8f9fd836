// Looks after the device: starts it, lets it rest after a while of silence, replaces it when it has gone, makes it hold
// more when its sound breaks off, and knows whether it answers. Render thread only, unless a method says otherwise;
// every call may have to wait for a sound server.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/api/MediaEngine.h"
#include "engine/output/AudioOutput.h"
#include "engine/output/GapWatch.h"
#include "engine/output/OutputCallback.h"
#include "engine/output/Reserve.h"
#include "engine/realtime/ThreadRole.h"

namespace qm {

std::int64_t steadyMilliseconds();

class DeviceKeeper {
public:
    using Clock = std::function<std::int64_t()>;  // milliseconds since any moment but 0

    DeviceKeeper(OutputCallback& output, OutputFactory openOutput, int sampleRate, Clock clock = steadyMilliseconds);

    void open();   // the first device; silence if there is none
    void close();  // before the end
    void watch();  // every few milliseconds

    // There is something to play. True when the device was started already, so that the gate may open.
    bool startToPlay();

    // There is nothing to play. The device rests some seconds after the gate has shut.
    void leaveAlone();

    bool isStarted() const { return m_started; }
    bool isPlayingOut() const { return m_growBy != 0; }  // before it is opened again with a larger reserve

    // True when the lanes ran dry since it was last asked, and so often that rendering must cost less.
    bool rendererIsTooLate();

    double laneSeconds() const { return m_reserve.laneSeconds(); }  // what is to be rendered ahead

    // What is being heard.
    struct Heard {
        LaneHeader lane;
        double step = 0;
    };
    std::optional<Heard> heard() const;  // any thread; none before the first sound or silence

    std::optional<SoundOutput> soundOutput() const;  // any thread; none while the device is waited for a moment

private:
    template <typename Call>
    auto onDevice(Call call);
    bool start();
    void stop();
    void rest();
    void setDevice(std::unique_ptr<AudioOutput> device);
    void replaceIfGone();
    void findDevice();
    void watchPulse();
    void watchForGaps();
    void growReserve();

    OutputCallback& m_output;
    const OutputFactory m_openOutput;
    const int m_sampleRate;
    const Clock m_clock;
    const ThreadRole m_renderThread;

    bool m_started = false;
    Reserve m_reserve;
    GapWatch m_gaps;
    std::int64_t m_growBy = 0;     // when the device, which is playing out, is stopped at the latest; 0 otherwise
    std::int64_t m_idleSince = 0;  // 0 while busy
    std::int64_t m_retryAt = 0;
    std::uint32_t m_knownUnderruns = 0;
    std::uint32_t m_underrunsBefore = 0;  // count when the period that is watched began
    std::int64_t m_underrunsSince = 0;
    std::int64_t m_takenByDevice = 0;  // frames, when the device was last seen to take some
    std::int64_t m_takenAt = 0;

    // For soundOutput().
    std::atomic<std::int64_t> m_callSince;    // 0 outside calls of the device
    std::atomic<bool> m_deviceStands{false};  // it is started and takes nothing
    std::atomic<bool> m_silentDevice{false};

    mutable std::mutex m_deviceMutex;
    std::unique_ptr<AudioOutput> m_device;
};

}  // namespace qm
