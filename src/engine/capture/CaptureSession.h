// The capture interface over a sound input of this machine: the device, its session and the way of the sound from the
// one to the other. Main thread, but for the sound itself.
#pragma once

#include <atomic>

#include "engine/api/Patience.h"
#include "engine/api/QTCapture.h"
#include "engine/capture/MovieFileOutput.h"
#include "engine/capture/SoundInput.h"
#include "engine/output/Meter.h"
#include "engine/waiting/Reaper.h"

namespace qm {

// The default input. It holds the system's device only while it is open. With `patience`, whatever may have to wait for
// the sound system does so on another thread, and an input that does not answer for two seconds cannot be used.
class CaptureDevice : public QTCaptureDevice {
public:
    CaptureDevice(InputFactory openInput, Patience patience, std::shared_ptr<Reaper> reaper)
        : m_openInput(std::move(openInput)), m_patience(std::move(patience)), m_reaper(std::move(reaper)) {}
    ~CaptureDevice() override { close(); }

    bool open() override;
    void close();
    bool isOpen() const { return m_held && !m_held->gate.isLost(); }
    int sampleRate() const { return m_held ? m_held->input->sampleRate() : 0; }

    bool start(InputSink& sink);  // opens it again if need be; the sink has to outlive the next stop()
    void stop() { close(); }
    bool isRunning() const { return m_running && isOpen(); }

private:
    // What the device's threads call. They may still come when nobody takes the sound any more.
    class Gate final : public InputSink {
    public:
        void open(InputSink& sink) { m_sink = &sink; }
        void shut() noexcept;  // after it the sink is not called any more
        bool isLost() const { return m_lost; }

    private:
        void take(std::span<const StereoFrame> frames) noexcept override;
        void inputLost() noexcept override;

        std::atomic<InputSink*> m_sink{nullptr};
        std::atomic<int> m_inside{0};
        std::atomic<bool> m_lost{false};
    };

    struct Held {
        Gate gate;
        std::unique_ptr<SoundInput> input;  // ends before what it calls
    };

    template <typename Work>
    auto inTime(Work work) -> std::optional<decltype(work())>;

    const InputFactory m_openInput;
    const Patience m_patience;
    const std::shared_ptr<Reaper> m_reaper;
    bool m_isWaiting = false;  // for the sound system, and the window lives on
    bool m_running = false;
    std::shared_ptr<Held> m_held;
};

class CaptureDeviceInput : public QTCaptureDeviceInput {
public:
    explicit CaptureDeviceInput(std::shared_ptr<CaptureDevice> device) : m_device(std::move(device)) {}
    const std::shared_ptr<CaptureDevice>& device() const { return m_device; }

private:
    std::shared_ptr<CaptureDevice> m_device;
};

class CaptureSession : public QTCaptureSession, private InputSink {
public:
    ~CaptureSession() override { stopRunning(); }

    bool addInput(std::shared_ptr<QTCaptureDeviceInput> input) override;
    bool addOutput(std::shared_ptr<QTCaptureMovieFileOutput> output) override;
    void startRunning() override;
    void stopRunning() override;
    bool isRunning() const override { return m_device && m_device->isRunning(); }
    QTCaptureAudioLevels audioLevels() const override;

private:
    void take(std::span<const StereoFrame> frames) noexcept override;
    void inputLost() noexcept override;

    std::shared_ptr<CaptureDevice> m_device;
    std::shared_ptr<MovieFileOutput> m_output;
    std::atomic<MovieFileOutput*> m_taker{nullptr};  // m_output, for the device's threads
    std::unique_ptr<Meter> m_meter;                  // none before the first start
};

class SystemCapture : public CaptureEngine {
public:
    explicit SystemCapture(InputFactory openInput = openSystemInput, Patience patience = {})
        : m_openInput(std::move(openInput)), m_patience(std::move(patience)), m_reaper(std::make_shared<Reaper>()) {}

    std::shared_ptr<QTCaptureDevice> defaultInputDeviceWithMediaType(QTMediaType type) override;
    std::shared_ptr<QTCaptureDeviceInput> makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) override;
    std::shared_ptr<QTCaptureMovieFileOutput> makeMovieFileOutput() override;
    std::shared_ptr<QTCaptureSession> makeSession() override;

private:
    const InputFactory m_openInput;
    const Patience m_patience;
    const std::shared_ptr<Reaper> m_reaper;
};

}  // namespace qm
