// The thread that keeps the sound ready: it takes what the main thread asks for, has it written into lanes and spliced
// into what is playing, opens the gate, and has the device looked after.
//
// The main thread states what it wants; requests that come faster than they can be rendered coalesce into the newest.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "engine/api/SoundOutput.h"
#include "engine/output/AudioOutput.h"
#include "engine/output/DeviceKeeper.h"
#include "engine/output/OutputCallback.h"
#include "engine/realtime/ThreadRole.h"
#include "engine/render/LaneWriter.h"
#include "engine/render/PcmCache.h"
#include "engine/render/RenderRequest.h"

namespace qm {

class RenderThread {
public:
    using Request = RenderRequest;

    RenderThread(std::unique_ptr<SoundReader> reader, OutputFactory openOutput);
    ~RenderThread();

    int sampleRate() const { return m_cache.sampleRate(); }
    std::int64_t length() const { return m_cache.length(); }

    // Main thread.
    void request(const Request& request);  // one that asks for the same as the last is none
    void setGains(float left, float right) { m_output.setGains(left, right); }
    Meter& meter() { return m_output.meter(); }
    void close();  // silence at once, and nothing more is done; the end may then have to wait for device and file

    // Any thread. The position being heard, in frames; until the newest seek is heard, its target.
    double heard() const;

    Request newestRequest() const;  // any thread

    // Any thread. Counts since the beginning.
    std::uint64_t requests() const;
    std::uint64_t splices() const { return m_output.lanes().splices(); }
    std::uint32_t underruns() const { return m_output.underruns(); }

    std::optional<SoundOutput> soundOutput() const { return m_device.soundOutput(); }  // any thread, as the keeper says

    // Any thread. True when the newest request is in force and its sound lies ready; false while a splice waits for the
    // device to play on.
    bool isCaughtUp() const;
    std::size_t framesReady() const { return m_output.lanes().framesReady(); }

private:
    std::size_t framesAhead() const;
    void run();
    bool waitForWork(Request& request);
    bool isBusy() const;
    void applyRunning(const Request& request);
    void openGate();

    const ThreadRole m_mainThread;
    PcmCache m_cache;
    OutputCallback m_output;

    mutable std::mutex m_mutex;
    std::condition_variable m_requested;
    Request m_request;
    std::uint64_t m_requestCount = 0;
    std::uint64_t m_caughtUpWith = ~std::uint64_t{0};
    bool m_closing = false;

    // Render thread only, but for what the device's keeper answers to any.
    LaneWriter m_writer;
    DeviceKeeper m_device;
    std::uint64_t m_seenRequests = 0;

    std::thread m_thread;
};

}  // namespace qm
