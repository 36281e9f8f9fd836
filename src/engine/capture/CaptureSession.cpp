#include "engine/capture/CaptureSession.h"

#include "engine/api/Log.h"

namespace qm {

bool CaptureDevice::open() {
    if (isOpen()) return true;
    close();
    m_lost = false;
    auto input = m_openInput(*this);
    if (!input) {
        qmLog("sound input: " + input.error().message);
        return false;
    }
    m_input = std::move(input.value());
    return true;
}

void CaptureDevice::close() {
    m_running = false;
    m_input.reset();  // from here on no sound comes
    m_sink = nullptr;
}

bool CaptureDevice::start(InputSink& sink) {
    if (isRunning()) return true;
    if (!open()) return false;
    m_sink = &sink;
    m_running = m_input->start();
    if (!m_running) close();
    return m_running;
}

void CaptureDevice::take(std::span<const StereoFrame> frames) noexcept {
    if (InputSink* sink = m_sink) sink->take(frames);
}

void CaptureDevice::inputLost() noexcept {
    m_lost = true;
    if (InputSink* sink = m_sink) sink->inputLost();
}

bool CaptureSession::addInput(std::shared_ptr<QTCaptureDeviceInput> input) {
    const auto added = std::dynamic_pointer_cast<CaptureDeviceInput>(input);
    if (!added || !added->device() || !added->device()->isOpen() || m_device) return false;
    m_device = added->device();
    return true;
}

bool CaptureSession::addOutput(std::shared_ptr<QTCaptureMovieFileOutput> output) {
    const auto added = std::dynamic_pointer_cast<MovieFileOutput>(output);
    if (!added || m_output) return false;
    m_output = added;
    if (m_device) m_output->setSampleRate(m_device->sampleRate());
    m_taker = m_output.get();
    return true;
}

void CaptureSession::startRunning() {
    if (!m_device || isRunning() || !m_device->open()) return;
    const int sampleRate = m_device->sampleRate();
    m_meter = std::make_unique<Meter>(sampleRate);
    m_meter->enableVolume(true);
    if (m_output) m_output->setSampleRate(sampleRate);
    m_device->start(*this);
}

void CaptureSession::stopRunning() {
    if (m_device) m_device->stop();
}

QTCaptureAudioLevels CaptureSession::audioLevels() const {
    if (!isRunning()) return {};
    const Meter::Levels levels = m_meter->levels();
    return {levels.averagePower, levels.peakHold};
}

void CaptureSession::take(std::span<const StereoFrame> frames) noexcept {
    m_meter->takeDeviceMix(frames);
    if (MovieFileOutput* taker = m_taker) taker->take(frames);
}

void CaptureSession::inputLost() noexcept {
    if (MovieFileOutput* taker = m_taker) taker->inputLost();
}

std::shared_ptr<QTCaptureDevice> SystemCapture::defaultInputDeviceWithMediaType(QTMediaType) {
    return std::make_shared<CaptureDevice>(m_openInput);
}

std::shared_ptr<QTCaptureDeviceInput> SystemCapture::makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) {
    return std::make_shared<CaptureDeviceInput>(std::dynamic_pointer_cast<CaptureDevice>(device));
}

std::shared_ptr<QTCaptureMovieFileOutput> SystemCapture::makeMovieFileOutput() {
    return std::make_shared<MovieFileOutput>();
}

std::shared_ptr<QTCaptureSession> SystemCapture::makeSession() {
    return std::make_shared<CaptureSession>();
}

}  // namespace qm
