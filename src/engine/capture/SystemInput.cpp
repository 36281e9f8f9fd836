// The system's default input through cubeb. What was learnt about the library:
// - a server without any other source offers what it plays itself as its default input, which is none; where there is
//   another, it is the default only because the user wants it;
// - when a microphone vanishes, a server may go on with another input, even with that one, and the stream says nothing
//   of it: so the device is watched;
// - after an error neither stream nor context is of use any more: the owner drops the whole input and opens another.
#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>

#include "engine/capture/CubebDevices.h"
#include "engine/capture/SoundInput.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr double kLatencySeconds = 0.025;
constexpr int kHighestRate = 48000, kUsualRate = 48000;

std::optional<CubebDevice> preferredOf(const std::vector<CubebDevice>& devices) {
    const auto found =
        std::find_if(devices.begin(), devices.end(), [](const CubebDevice& device) { return device.preferred; });
    return found == devices.end() ? std::nullopt : std::optional(*found);
}

std::optional<CubebDevice> preferredInput(cubeb* context) {
    const auto inputs = devicesOf(context, CUBEB_DEVICE_TYPE_INPUT);
    if (inputs.size() != 1) return preferredOf(inputs);
    const auto output = preferredOf(devicesOf(context, CUBEB_DEVICE_TYPE_OUTPUT));
    if (output && inputs.front().id == output->id + ".monitor") return std::nullopt;
    return preferredOf(inputs);
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
        const std::uint32_t latency = latencyOf(m_context.get(), parameters, kLatencySeconds);
        if (latency == 0) return false;
        cubeb_stream* stream = nullptr;
        const int opened = cubeb_stream_init(m_context.get(), &stream, "Recording", nullptr, &parameters, nullptr,
                                             nullptr, latency, dataCallback, stateCallback, this);
        m_stream.reset(stream);
        if (opened != CUBEB_OK) return false;
        m_watch = std::make_unique<InputWatch>(m_context.get(), device->id, [this] { lose(); });
        return true;
    }

    int sampleRate() const override { return m_sampleRate; }
    bool start() override { return !m_lost && cubeb_stream_start(m_stream.get()) == CUBEB_OK; }

private:
    static long dataCallback(cubeb_stream*, void* user, const void* input, void*, long frames) {
        auto* self = static_cast<SystemInput*>(user);
        if (!self->m_preferred.exchange(true)) preferThisThread(Urgency::Now);
        self->m_sink.take({static_cast<const StereoFrame*>(input), static_cast<std::size_t>(frames)});
        return frames;
    }

    static void stateCallback(cubeb_stream*, void* user, cubeb_state state) {
        if (state == CUBEB_STATE_ERROR) static_cast<SystemInput*>(user)->lose();
    }

    void lose() noexcept {
        m_lost = true;
        m_sink.inputLost();
    }

    InputSink& m_sink;
    int m_sampleRate = kUsualRate;
    std::atomic<bool> m_lost{false};
    std::atomic<bool> m_preferred{false};  // the callback's thread has been told of its urgency
    CubebContext m_context;  // outlives the stream, which is taken down first: its callbacks use all of the above
    CubebStream m_stream;
    std::unique_ptr<InputWatch> m_watch;
};

}  // namespace

Result<std::unique_ptr<SoundInput>> openSystemInput(InputSink& sink) {
    auto input = std::make_unique<SystemInput>(sink);
    if (!input->open()) return Error{ErrorCategory::Device, "no sound input can be opened"};
    return std::unique_ptr<SoundInput>(std::move(input));
}

}  // namespace qm
