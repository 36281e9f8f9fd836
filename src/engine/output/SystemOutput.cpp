// The system's default output through cubeb. What was learnt about the library:
// - its latency query may abort the process: only the position is asked for, and that runs ahead while a sound server
//   hangs, so it is held at what was handed out;
// - without a sound server it may fall back to another back end silently, which is fine: what matters is that it plays;
// - after an error neither stream nor context is of use any more: the owner drops the whole output and opens another.
#include <cubeb/cubeb.h>

#include <algorithm>

#include "engine/api/Log.h"
#include "engine/output/AudioOutput.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr double kLatencySeconds = 0.025;

class SystemOutput : public AudioOutput {
public:
    explicit SystemOutput(OutputSource& source) : m_source(source) {}

    ~SystemOutput() override {
        if (m_stream != nullptr) {
            cubeb_stream_stop(m_stream);
            cubeb_stream_destroy(m_stream);
        }
        if (m_context != nullptr) cubeb_destroy(m_context);
    }

    bool open(int sampleRate) {
        if (cubeb_init(&m_context, "Quillmere", nullptr) != CUBEB_OK) return false;
        cubeb_stream_params parameters{};
        parameters.format = CUBEB_SAMPLE_FLOAT32NE;
        parameters.rate = static_cast<std::uint32_t>(sampleRate);
        parameters.channels = 2;
        parameters.layout = CUBEB_LAYOUT_STEREO;
        parameters.prefs = CUBEB_STREAM_PREF_NONE;
        std::uint32_t least = 0;
        if (cubeb_get_min_latency(m_context, &parameters, &least) != CUBEB_OK) return false;
        const auto latency = std::max(least, static_cast<std::uint32_t>(kLatencySeconds * sampleRate));
        return cubeb_stream_init(m_context, &m_stream, "Playback", nullptr, nullptr, nullptr, &parameters, latency,
                                 dataCallback, stateCallback, this) == CUBEB_OK;
    }

    bool start() override {
        if (!m_failed && cubeb_stream_start(m_stream) != CUBEB_OK) m_failed = true;
        return !m_failed;
    }
    void stop() override { cubeb_stream_stop(m_stream); }
    bool failed() const override { return m_failed; }

    std::int64_t framesPlayed() const override {
        std::uint64_t position = 0;
        const std::int64_t handedOut = m_handedOut;
        if (m_failed || cubeb_stream_get_position(m_stream, &position) != CUBEB_OK) return handedOut;
        return std::min(static_cast<std::int64_t>(position), handedOut);
    }

private:
    static long dataCallback(cubeb_stream*, void* user, const void*, void* output, long frames) {
        auto* self = static_cast<SystemOutput*>(user);
        self->m_source.fill({static_cast<StereoFrame*>(output), static_cast<std::size_t>(frames)});
        self->m_handedOut += frames;
        return frames;
    }

    static void stateCallback(cubeb_stream*, void* user, cubeb_state state) {
        if (state == CUBEB_STATE_STARTED) preferThisThread(Urgency::Now);
        if (state == CUBEB_STATE_ERROR) static_cast<SystemOutput*>(user)->m_failed = true;
    }

    OutputSource& m_source;
    cubeb* m_context = nullptr;
    cubeb_stream* m_stream = nullptr;
    std::atomic<std::int64_t> m_handedOut{0};
    std::atomic<bool> m_failed{false};
};

}  // namespace

Result<std::unique_ptr<AudioOutput>> openSystemOutput(int sampleRate, OutputSource& source) {
    auto output = std::make_unique<SystemOutput>(source);
    if (!output->open(sampleRate)) return Error{ErrorCategory::Device, "no sound output can be opened"};
    return std::unique_ptr<AudioOutput>(std::move(output));
}

}  // namespace qm
