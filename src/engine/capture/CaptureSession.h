// The capture interface over a sound input of this machine: the device, its session and the way of the sound from the
// one to the other. Main thread, but for the sound itself.
#pragma once

#include <atomic>

#include "engine/api/QTCapture.h"
#include "engine/capture/MovieFileOutput.h"
#include "engine/capture/SoundInput.h"
#include "engine/output/Meter.h"

namespace qm {

// The default input. It holds the system's device only while it is open.
class CaptureDevice : public QTCaptureDevice, private InputSink {
public:
    explicit CaptureDevice(InputFactory openInput) : m_openInput(std::move(openInput)) {}
    ~CaptureDevice() override { close(); }

    bool open() override;
    void close();
    bool isOpen() const { return m_input && !m_lost; }
    int sampleRate() const { return m_input ? m_input->sampleRate() : 0; }

    bool start(InputSink& sink);  // opens it again if need be; the sink has to outlive the next stop()
    void stop() { close(); }
    bool isRunning() const { return m_running && !m_lost; }

private:
    void take(std::span<const StereoFrame> frames) noexcept override;
    void inputLost() noexcept override;

    const InputFactory m_openInput;
    std::atomic<InputSink*> m_sink{nullptr};
    std::atomic<bool> m_lost{false};
    bool m_running = false;
    std::unique_ptr<SoundInput> m_input;
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
    explicit SystemCapture(InputFactory openInput = openSystemInput) : m_openInput(std::move(openInput)) {}

    std::shared_ptr<QTCaptureDevice> defaultInputDeviceWithMediaType(QTMediaType type) override;
    std::shared_ptr<QTCaptureDeviceInput> makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) override;
    std::shared_ptr<QTCaptureMovieFileOutput> makeMovieFileOutput() override;
    std::shared_ptr<QTCaptureSession> makeSession() override;

private:
    const InputFactory m_openInput;
};

}  // namespace qm
