// The system's default input through cubeb. What was learnt about the library:
// - a server without any microphone offers what it plays itself as its default input, which is none;
// - when a microphone vanishes, a server may go on with another input, even with that one, and say nothing of it: so a
//   stream stays with its device, and ends with it;
// - after an error neither stream nor context is of use any more: the owner drops the whole input and opens another.
#include <atomic>
#include <optional>
#include <string>

#include "engine/capture/SoundInput.h"
#include "engine/output/CubebHandles.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr double kLatencySeconds = 0.025;
constexpr int kHighestRate = 48000, kUsualRate = 48000;

struct Preferred {
    std::string id;
    int sampleRate;
};

// The device that the user has chosen among those of a kind.
std::optional<Preferred> preferredDevice(cubeb* context, cubeb_device_type type) {
    cubeb_device_collection devices{};
    if (cubeb_enumerate_devices(context, type, &devices) != CUBEB_OK) return std::nullopt;
    std::optional<Preferred> preferred;
    for (std::size_t i = 0; i < devices.count; ++i) {
        const cubeb_device_info& device = devices.device[i];
        if (preferred || device.preferred == CUBEB_DEVICE_PREF_NONE || device.state != CUBEB_DEVICE_STATE_ENABLED)
            continue;
        preferred = Preferred{device.device_id ? device.device_id : "", static_cast<int>(device.default_rate)};
    }
    cubeb_device_collection_destroy(context, &devices);
    return preferred;
}

std::optional<Preferred> preferredInput(cubeb* context) {
    const auto input = preferredDevice(context, CUBEB_DEVICE_TYPE_INPUT);
    if (!input) return std::nullopt;
    const auto output = preferredDevice(context, CUBEB_DEVICE_TYPE_OUTPUT);
    if (output && input->id == output->id + ".monitor") return std::nullopt;
    return input;
}

int recordingRate(int deviceRate) {
    if (deviceRate <= 0) return kUsualRate;
    while (deviceRate > kHighestRate) deviceRate /= 2;
    return deviceRate;
}

class SystemInput : public SoundInput {
public:
    explicit SystemInput(InputSink& sink) : m_sink(sink) {}

    bool open() {
        m_context = openCubeb();
        const auto device = m_context ? preferredInput(m_context.get()) : std::nullopt;
        if (!device) return false;
        m_sampleRate = recordingRate(device->sampleRate);
        cubeb_stream_params parameters = stereoFloat(m_sampleRate);
        parameters.prefs = CUBEB_STREAM_PREF_DISABLE_DEVICE_SWITCHING;
        const std::uint32_t latency = latencyOf(m_context.get(), parameters, kLatencySeconds);
        if (latency == 0) return false;
        cubeb_stream* stream = nullptr;
        const int opened = cubeb_stream_init(m_context.get(), &stream, "Recording", nullptr, &parameters, nullptr,
                                             nullptr, latency, dataCallback, stateCallback, this);
        m_stream.reset(stream);
        return opened == CUBEB_OK;
    }

    int sampleRate() const override { return m_sampleRate; }
    bool start() override { return !m_lost && cubeb_stream_start(m_stream.get()) == CUBEB_OK; }

private:
    static long dataCallback(cubeb_stream*, void* user, const void* input, void*, long frames) {
        auto* self = static_cast<SystemInput*>(user);
        self->m_sink.take({static_cast<const StereoFrame*>(input), static_cast<std::size_t>(frames)});
        return frames;
    }

    static void stateCallback(cubeb_stream*, void* user, cubeb_state state) {
        auto* self = static_cast<SystemInput*>(user);
        if (state == CUBEB_STATE_STARTED) preferThisThread(Urgency::Next);
        if (state != CUBEB_STATE_ERROR) return;
        self->m_lost = true;
        self->m_sink.inputLost();
    }

    InputSink& m_sink;
    int m_sampleRate = kUsualRate;
    std::atomic<bool> m_lost{false};
    CubebContext m_context;  // outlives the stream, which is taken down first: its callbacks use all of the above
    CubebStream m_stream;
};

}  // namespace

Result<std::unique_ptr<SoundInput>> openSystemInput(InputSink& sink) {
    auto input = std::make_unique<SystemInput>(sink);
    if (!input->open()) return Error{ErrorCategory::Device, "no sound input can be opened"};
    return std::unique_ptr<SoundInput>(std::move(input));
}

}  // namespace qm
