// A sound device as the engine needs it: it pulls frames on a thread of its own and says how many have been played.
// All methods belong to one thread (the render thread, or a test), except framesPlayed() and failed(): any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <thread>

#include "engine/api/Result.h"
#include "engine/render/StereoFrame.h"

namespace qm {

// Whoever supplies the sound. fill() runs on the device's callback: it never locks, allocates, logs or waits.
class OutputSource {
public:
    virtual void fill(std::span<StereoFrame> out) noexcept = 0;

protected:
    ~OutputSource() = default;
};

class AudioOutput {
public:
    virtual ~AudioOutput() = default;

    virtual bool start() = 0;  // begins to call fill(); false when the device has gone
    virtual void stop() = 0;   // after it returns fill() is not called any more

    // Frames that have left the loudspeaker since the device was opened; never more than fill() handed out.
    virtual std::int64_t framesPlayed() const = 0;

    // While stopped. How much sound the device is to hold from its next start on.
    virtual void setReserve([[maybe_unused]] double seconds) {}

    // Calls fill() no more, plays what it has been handed and is then to be stopped. Returns at once.
    virtual void finish() {}
    virtual bool hasFinished() const { return true; }

    // Plays at the pace of the clock, so that it has been silent when it falls behind.
    virtual bool keepsTime() const { return false; }

    virtual bool failed() const { return false; }    // the device has vanished: open another one
    virtual bool isSilent() const { return false; }  // a stand-in that nobody hears
};

using OutputFactory = std::function<Result<std::unique_ptr<AudioOutput>>(int sampleRate, OutputSource& source)>;

// The system's default output, which is followed when the user chooses another one.
Result<std::unique_ptr<AudioOutput>> openSystemOutput(int sampleRate, OutputSource& source);

// Nobody hears it, but time goes on: calls fill() at the pace of the clock.
Result<std::unique_ptr<AudioOutput>> openNullOutput(int sampleRate, OutputSource& source);

// Plays exactly the frames that its owner asks for, so that tests decide when time goes on.
class SteppedOutput : public AudioOutput {
public:
    explicit SteppedOutput(OutputSource& source) : m_source(source) {}

    bool start() override {
        m_running = true;
        return true;
    }
    void stop() override {
        m_running = false;
        while (m_stepping) std::this_thread::yield();
    }
    std::int64_t framesPlayed() const override { return m_played; }

    // Pulls frames as a device's callback would; silence while stopped.
    void step(std::span<StereoFrame> out) {
        m_stepping = true;
        if (m_running) {
            m_source.fill(out);
            m_played += static_cast<std::int64_t>(out.size());
        }
        m_stepping = false;
    }

private:
    OutputSource& m_source;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_stepping{false};
    std::atomic<std::int64_t> m_played{0};
};

}  // namespace qm
