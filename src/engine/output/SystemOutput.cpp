// The system's default output through cubeb. What was learnt about the library:
// - its latency query may abort the process: only the position is asked for, and that runs ahead while a sound server
//   hangs, so it is held at what was handed out;
// - without a sound server it may fall back to another back end silently, which is fine: what matters is that it plays;
// - after an error neither stream nor context is of use any more: the owner drops the whole output and opens another.
#include <algorithm>
#include <mutex>
#include <utility>

#include "engine/output/AudioOutput.h"
#include "engine/output/CubebHandles.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr double kLatencySeconds = 0.025;  // at first

class SystemOutput : public AudioOutput {
public:
    explicit SystemOutput(OutputSource& source) : m_source(source) {}

    bool open(int sampleRate) {
        m_sampleRate = sampleRate;
        m_context = openCubeb();
        return m_context && openStream();
    }

    bool start() override {
        m_preferred = false;  // the thread may be another one each time
        if (!m_failed && cubeb_stream_start(m_stream.get()) != CUBEB_OK) m_failed = true;
        return !m_failed;
    }
    void stop() override {
        if (m_stream) cubeb_stream_stop(m_stream.get());
    }
    bool failed() const override { return m_failed; }
    bool keepsTime() const override { return true; }

    // A stream keeps the latency that it was opened with.
    void setReserve(double seconds) override {
        if (seconds == m_reserveSeconds || m_failed) return;
        m_reserveSeconds = seconds;
        CubebStream old;
        {
            const std::lock_guard lock(m_streamMutex);
            old = std::exchange(m_stream, nullptr);
            m_playedBefore = m_handedOut;
        }
        old.reset();
        m_finishing = m_pushedOut = m_drained = false;
        m_failed = !openStream();
    }

    // The position will not do for the end: between two messages of the server it is only reckoned.
    void finish() override { m_finishing = true; }
    bool hasFinished() const override { return m_drained; }

    std::int64_t framesPlayed() const override {
        const std::lock_guard lock(m_streamMutex);
        std::uint64_t position = 0;
        const std::int64_t handedOut = m_handedOut;
        if (m_failed || !m_stream || cubeb_stream_get_position(m_stream.get(), &position) != CUBEB_OK) return handedOut;
        return std::min(m_playedBefore + static_cast<std::int64_t>(position), handedOut);
    }

private:
    bool openStream() {
        cubeb_stream_params parameters = stereoFloat(m_sampleRate);
        const std::uint32_t latency = latencyOf(m_context.get(), parameters, m_reserveSeconds);
        if (latency == 0) return false;
        cubeb_stream* stream = nullptr;
        const int opened = cubeb_stream_init(m_context.get(), &stream, "Playback", nullptr, nullptr, nullptr,
                                             &parameters, latency, dataCallback, stateCallback, this);
        const std::lock_guard lock(m_streamMutex);
        m_stream.reset(stream);
        return opened == CUBEB_OK;
    }

    static long dataCallback(cubeb_stream*, void* user, const void*, void* output, long frames) {
        auto* self = static_cast<SystemOutput*>(user);
        if (self->m_finishing) return self->pushOut(static_cast<StereoFrame*>(output), frames);
        // The library's thread inherits the urgency of the one that opened the output, which is less.
        if (!self->m_preferred.exchange(true)) preferThisThread(Urgency::Now);
        self->m_source.fill({static_cast<StereoFrame*>(output), static_cast<std::size_t>(frames)});
        self->m_handedOut += frames;
        return frames;
    }

    // What was handed out before is played, then the stream ends. A server may never play the rest of a stream that is
    // less than it takes at once (PipeWire does not), so silence comes behind it.
    long pushOut(StereoFrame* output, long frames) {
        if (m_pushedOut.exchange(true)) return 0;
        std::fill_n(output, frames, StereoFrame{});
        return frames;
    }

    static void stateCallback(cubeb_stream*, void* user, cubeb_state state) {
        if (state == CUBEB_STATE_ERROR) static_cast<SystemOutput*>(user)->m_failed = true;
        if (state == CUBEB_STATE_DRAINED) static_cast<SystemOutput*>(user)->m_drained = true;
    }

    OutputSource& m_source;
    std::atomic<std::int64_t> m_handedOut{0};
    std::atomic<bool> m_failed{false};
    std::atomic<bool> m_preferred{false};  // the callback's thread has been told of its urgency
    std::atomic<bool> m_finishing{false};
    std::atomic<bool> m_pushedOut{false};
    std::atomic<bool> m_drained{false};
    int m_sampleRate = 0;
    double m_reserveSeconds = kLatencySeconds;
    mutable std::mutex m_streamMutex;  // never taken by the callback
    std::int64_t m_playedBefore = 0;   // by the streams before this one
    CubebContext m_context;  // outlives the stream, which is taken down first: its callbacks use all of the above
    CubebStream m_stream;
};

}  // namespace

Result<std::unique_ptr<AudioOutput>> openSystemOutput(int sampleRate, OutputSource& source) {
    auto output = std::make_unique<SystemOutput>(source);
    if (!output->open(sampleRate)) return Error{ErrorCategory::Device, "no sound output can be opened"};
    return std::unique_ptr<AudioOutput>(std::move(output));
}

}  // namespace qm
