#include "engine/capture/CaptureSession.h"

#include <chrono>
#include <thread>

#include "engine/api/Aside.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr std::chrono::seconds kLongest{2};  // that the sound system is waited for

}  // namespace

// What the work comes to; none, with a log line, when the sound system does not answer in time.
template <typename Work>
auto CaptureDevice::inTime(Work work) -> std::optional<decltype(work())> {
    if (!m_patience) return work();
    auto doing = aside(std::move(work));
    const auto isReady = [&doing](std::chrono::milliseconds longest) {
        return doing.wait_for(longest) == std::future_status::ready;
    };
    const auto end = std::chrono::steady_clock::now() + kLongest;
    m_isWaiting = true;
    m_patience(
        [&](std::chrono::milliseconds longest) { return isReady(longest) || std::chrono::steady_clock::now() > end; });
    m_isWaiting = false;
    if (isReady(std::chrono::milliseconds(0))) return doing.get();
    qmLog("sound input: the sound system does not answer");
    m_reaper->end(std::move(doing));
    return std::nullopt;
}

bool CaptureDevice::open() {
    if (isOpen()) return true;
    if (m_isWaiting) return false;
    close();
    auto held = std::make_shared<Held>();
    const auto opened = inTime([held, openInput = m_openInput] {
        auto input = openInput(held->gate);
        if (!input) return input.error().message;
        held->input = std::move(input.value());
        return std::string();
    });
    if (!opened) return false;
    if (!opened->empty()) {
        qmLog("sound input: " + *opened);
        return false;
    }
    m_held = std::move(held);
    return true;
}

void CaptureDevice::close() {
    m_running = false;
    if (!m_held) return;
    m_held->gate.shut();  // from here on no sound comes
    if (m_patience)
        m_reaper->end(std::move(m_held));
    else
        m_held.reset();
}

bool CaptureDevice::start(InputSink& sink) {
    if (isRunning()) return true;
    if (m_isWaiting || !open()) return false;
    m_held->gate.open(sink);
    m_running = inTime([held = m_held] { return held->input->start(); }).value_or(false);
    if (!m_running) close();
    return m_running;
}

void CaptureDevice::Gate::take(std::span<const StereoFrame> frames) noexcept {
    ++m_inside;
    if (InputSink* sink = m_sink) sink->take(frames);
    --m_inside;
}

void CaptureDevice::Gate::inputLost() noexcept {
    m_lost = true;
    ++m_inside;
    if (InputSink* sink = m_sink) sink->inputLost();
    --m_inside;
}

// Whoever is inside is through in microseconds: a sink never waits.
void CaptureDevice::Gate::shut() noexcept {
    m_sink = nullptr;
    while (m_inside > 0) std::this_thread::yield();
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
    return std::make_shared<CaptureDevice>(m_openInput, m_patience, m_reaper);
}

std::shared_ptr<QTCaptureDeviceInput> SystemCapture::makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) {
    return std::make_shared<CaptureDeviceInput>(std::dynamic_pointer_cast<CaptureDevice>(device));
}

std::shared_ptr<QTCaptureMovieFileOutput> SystemCapture::makeMovieFileOutput() {
    if (!m_patience) return std::make_shared<MovieFileOutput>();
    const auto end = [reaper = m_reaper](MovieFileOutput* output) {
        reaper->end(std::unique_ptr<MovieFileOutput>(output));
    };
    return std::shared_ptr<MovieFileOutput>(new MovieFileOutput(m_patience), end);
}

std::shared_ptr<QTCaptureSession> SystemCapture::makeSession() {
    return std::make_shared<CaptureSession>();
}

}  // namespace qm
