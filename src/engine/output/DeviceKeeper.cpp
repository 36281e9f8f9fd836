#include "engine/output/DeviceKeeper.h"

#include <cassert>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include "engine/api/Log.h"

namespace qm {

namespace {

// Milliseconds.
constexpr std::int64_t kIdle = 3000;        // of silence before the device is stopped
constexpr std::int64_t kUnderruns = 10000;  // underruns are counted within
constexpr std::uint32_t kUnderrunsTolerated = 4;
constexpr std::int64_t kRetry = 500;    // between attempts to open a device
constexpr std::int64_t kPlayOut = 500;  // for a device to play what it holds
constexpr std::int64_t kAnswer = 1000;  // within which a device that works has done something

}  // namespace

std::int64_t steadyMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// Whatever asks something of the device may have to wait for a sound server.
template <typename Call>
auto DeviceKeeper::onDevice(Call call) {
    struct Watch {
        Watch(std::atomic<std::int64_t>& callSince, std::int64_t now) : since(callSince) { since = now; }
        ~Watch() { since = 0; }
        std::atomic<std::int64_t>& since;
    };
    const Watch watch(m_callSince, m_clock());
    return call();
}

DeviceKeeper::DeviceKeeper(OutputCallback& output, OutputFactory openOutput, int sampleRate, Clock clock)
    : m_output(output),
      m_openOutput(std::move(openOutput)),
      m_sampleRate(sampleRate),
      m_clock(std::move(clock)),
      m_gaps(sampleRate),
      m_callSince(m_clock()) {}

void DeviceKeeper::open() {
    auto opened = onDevice([this] { return m_openOutput(m_sampleRate, m_output); });
    if (!opened) {
        qmLog("sound output: " + opened.error().message + "; playing on silently");
        opened = openNullOutput(m_sampleRate, m_output);
    }
    m_silentDevice = opened.value()->isSilent();
    m_retryAt = m_clock() + kRetry;
    setDevice(std::move(opened.value()));
}

void DeviceKeeper::close() {
    setDevice(nullptr);
}

void DeviceKeeper::watch() {
    assert(m_renderThread.isHere());
    replaceIfGone();
    watchPulse();
    watchForGaps();
}

// A device that has vanished is replaced, by silence if need be; silence is replaced as soon as there is a device.
void DeviceKeeper::replaceIfGone() {
    if (m_device->failed()) {
        qmLog("sound output: the device has gone");
        open();
    } else if (m_silentDevice && m_clock() >= m_retryAt) {
        findDevice();
        if (m_silentDevice) return;
    } else {
        return;
    }
    if (m_output.isRunning()) m_started = start();
}

void DeviceKeeper::findDevice() {
    m_retryAt = m_clock() + kRetry;
    auto opened = onDevice([this] { return m_openOutput(m_sampleRate, m_output); });
    if (!opened || opened.value()->isSilent()) return;
    qmLog("sound output: a device is there again");
    m_silentDevice = false;
    setDevice(std::move(opened.value()));
}

void DeviceKeeper::setDevice(std::unique_ptr<AudioOutput> device) {
    assert(m_renderThread.isHere());
    if (m_device) stop();
    if (device) onDevice([&] { device->setReserve(m_reserve.deviceSeconds()); });
    m_growBy = 0;
    std::unique_ptr<AudioOutput> old;
    {
        const std::lock_guard lock(m_deviceMutex);
        old = std::exchange(m_device, std::move(device));
        m_output.restartDeviceCount();
    }
    onDevice([&old] { old.reset(); });
}

bool DeviceKeeper::startToPlay() {
    assert(m_renderThread.isHere());
    m_idleSince = 0;
    if (m_started) return true;
    m_started = start();
    return false;
}

bool DeviceKeeper::start() {
    m_gaps.restart();
    const bool started = onDevice([this] { return m_device->start(); });
    m_takenAt = m_clock();  // it may have been waited for
    return started;
}

void DeviceKeeper::leaveAlone() {
    assert(m_renderThread.isHere());
    if (!m_started || !m_output.gateIsClosed()) return;
    const std::int64_t now = m_clock();
    if (m_idleSince == 0) m_idleSince = now;
    if (now - m_idleSince >= kIdle) rest();
}

void DeviceKeeper::stop() {
    onDevice([this] { m_device->stop(); });
    m_output.handOverFilling();
    m_started = false;
}

void DeviceKeeper::rest() {
    stop();
    if (m_reserve.rest(m_clock())) onDevice([this] { m_device->setReserve(m_reserve.deviceSeconds()); });
}

bool DeviceKeeper::rendererIsTooLate() {
    assert(m_renderThread.isHere());
    const std::uint32_t underruns = m_output.underruns();
    if (underruns == m_knownUnderruns) return false;
    const std::int64_t now = m_clock();
    m_reserve.laneRanDry(now);
    if (now - m_underrunsSince > kUnderruns) {
        m_underrunsSince = now;
        m_underrunsBefore = m_knownUnderruns;
    }
    m_knownUnderruns = underruns;
    return underruns - m_underrunsBefore >= kUnderrunsTolerated;
}

// A device that has nothing left to play while other programs hold up the sound server is to hold more. It plays out
// first, so that no frame is lost.
void DeviceKeeper::watchForGaps() {
    if (!m_started || !m_device->keepsTime()) return;
    const std::int64_t now = m_clock();
    if (m_growBy != 0) {
        if (m_device->hasFinished() || now >= m_growBy) growReserve();
        return;
    }
    if (!m_gaps.sees(static_cast<double>(now) / 1000, m_device->framesPlayed()) || !m_reserve.deviceRanDry(now)) return;
    m_growBy = now + kPlayOut;
    m_device->finish();
}

void DeviceKeeper::growReserve() {
    qmLog("sound output: the device ran dry; it is to hold " +
          std::to_string(std::lround(1000 * m_reserve.deviceSeconds())) + " ms from now on");
    m_growBy = 0;
    stop();
    onDevice([this] { m_device->setReserve(m_reserve.deviceSeconds()); });
    m_started = start();
}

// A device that is started takes frames all the time, also behind a closed gate.
void DeviceKeeper::watchPulse() {
    const std::int64_t now = m_clock();
    const std::int64_t taken = m_output.framesTaken();
    if (!m_started || taken != m_takenByDevice) {
        m_takenByDevice = taken;
        m_takenAt = now;
    }
    m_deviceStands = now - m_takenAt > kAnswer;
}

std::optional<DeviceKeeper::Heard> DeviceKeeper::heard() const {
    const std::lock_guard lock(m_deviceMutex);
    const std::int64_t played = m_device ? m_device->framesPlayed() : 0;
    const auto stamp = m_output.stampAt(played);
    if (!stamp) return std::nullopt;
    return Heard{stamp->lane, stamp->stepAt(played)};
}

// A movie that is opened while the sound server hangs must not say that it works, as long as nobody knows.
std::optional<SoundOutput> DeviceKeeper::soundOutput() const {
    const std::int64_t since = m_callSince;
    if (m_deviceStands || (since != 0 && m_clock() - since > kAnswer)) return SoundOutput::DoesNotAnswer;
    if (since != 0) return std::nullopt;
    return m_silentDevice ? SoundOutput::Absent : SoundOutput::Works;
}

}  // namespace qm
