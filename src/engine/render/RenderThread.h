// The thread that keeps the sound ready: it turns what the main thread asks for into lanes of finished frames, splices
// them into what is playing, and looks after the device. It owns the renderer and the device.
//
// The main thread states what it wants; requests that come faster than they can be rendered coalesce into the newest.
// A change is rendered from a place just ahead of what the device has taken and cross-faded in there, so nothing that
// was rendered ahead is heard out first.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "engine/api/SoundOutput.h"
#include "engine/output/AudioOutput.h"
#include "engine/output/GapWatch.h"
#include "engine/output/OutputCallback.h"
#include "engine/output/Reserve.h"
#include "engine/render/PcmCache.h"
#include "engine/render/Renderer.h"

namespace qm {

class RenderThread {
public:
    struct Request {
        bool playing = false;
        double rate = 1;  // signed; 0 stands still and keeps the last direction
        double cents = 0;
        ToneSettings tone;
        bool loops = false;
        std::int64_t rangeBegin = 0;  // frames; an empty range is the whole track
        std::int64_t rangeEnd = 0;
        std::int64_t seekTarget = 0;  // frames
        std::uint64_t seek = 0;       // counts the seeks
    };

    RenderThread(std::unique_ptr<SoundReader> reader, OutputFactory openOutput);
    ~RenderThread();

    int sampleRate() const { return m_cache.sampleRate(); }
    std::int64_t length() const { return m_cache.length(); }

    // Main thread.
    void request(const Request& request);
    void close();  // silence at once, and nothing more is done; the end may then have to wait for device and file
    void setGains(float left, float right) { m_output.setGains(left, right); }
    Meter& meter() { return m_output.meter(); }

    // Any thread. The position being heard, in frames, and the newest seek that it takes account of.
    struct Heard {
        double position = 0;
        std::uint64_t seek = 0;
    };
    Heard heard() const;

    std::uint32_t underruns() const { return m_output.underruns(); }

    std::optional<SoundOutput> soundOutput() const;  // any thread; none while the device is waited for a moment

    // Any thread. True when the newest request is in force and its sound lies ready; false while a splice waits for the
    // device to play on.
    bool isCaughtUp() const;
    std::size_t framesReady() const { return m_output.framesReady(); }

private:
    // What a lane was rendered for: while it stays the same there is nothing to splice.
    struct Shape {
        RenderSettings settings;
        bool backward = false;
        bool loops = false;
        std::int64_t rangeBegin = 0;
        std::int64_t rangeEnd = 0;
        std::uint64_t seek = 0;

        friend bool operator==(const Shape&, const Shape&) = default;
    };

    std::size_t frames(double seconds) const;
    std::size_t firstFrames(const Shape& shape) const;
    void run();
    bool waitForWork(Request& request);
    Shape shapeOf(const Request& request);
    bool needsSplice(const Request& request, const Shape& shape) const;
    void spliceTo(const Request& request, const Shape& shape);
    bool startJump(Lane& lane, const Playhead& playhead, const Shape& shape);
    bool startContinuous(Lane& lane, Playhead playhead, const Shape& shape, std::uint64_t atFrame);
    void publish(Lane& lane, const OutputCallback::Splice& splice, const Shape& shape);
    bool wantsFrames() const;
    void fillLane();
    void applyRunning(const Request& request);
    void openGate();
    void watchDevice();
    void watchUnderruns();
    void watchForGaps();
    void growReserve();
    void restDevice();
    bool startDevice();
    void openDevice();
    void setDevice(std::unique_ptr<AudioOutput> device);
    void watchPulse();
    template <typename Call>
    auto onDevice(Call call);

    PcmCache m_cache;
    OutputCallback m_output;
    const OutputFactory m_openOutput;

    mutable std::mutex m_mutex;
    std::condition_variable m_requested;
    Request m_request;
    std::uint64_t m_requestCount = 0;
    std::uint64_t m_caughtUpWith = ~std::uint64_t{0};
    bool m_closing = false;

    // Render thread only.
    Renderer m_renderer;
    Shape m_shape;
    bool m_shapeValid = false;    // false: whatever is asked for must be rendered anew
    bool m_spliceWaits = false;   // the last splice is still under way, and the next one is wanted already
    bool m_outsideRange = false;  // paused outside the loop's range: it is entered when play begins
    std::uint64_t m_seenRequests = 0;
    std::int64_t m_laneFrames = 0;  // length of the lane being written, when it has one
    std::vector<StereoFrame> m_block;
    std::vector<StereoFrame> m_heardOn;  // what the active lane would play on, for alignment
    bool m_deviceStarted = false;
    Reserve m_reserve;
    GapWatch m_gaps;
    std::int64_t m_growBy = 0;     // when the device, which is playing out, is stopped at the latest; 0 otherwise
    std::int64_t m_idleSince = 0;  // milliseconds of the steady clock; 0 while busy
    std::int64_t m_retryAt = 0;
    bool m_light = false;
    std::uint32_t m_knownUnderruns = 0;
    std::uint32_t m_underrunsBefore = 0;  // count when the period that is watched began
    std::int64_t m_underrunsSince = 0;

    std::int64_t m_takenByDevice = 0;  // frames, when the device was last seen to take some
    std::int64_t m_takenAt = 0;

    // For soundOutput().
    std::atomic<std::int64_t> m_callSince;    // milliseconds of the steady clock; 0 outside calls of the device
    std::atomic<bool> m_deviceStands{false};  // it is started and takes nothing
    std::atomic<bool> m_silentDevice{false};

    mutable std::mutex m_deviceMutex;
    std::unique_ptr<AudioOutput> m_device;
    std::thread m_thread;
};

}  // namespace qm
