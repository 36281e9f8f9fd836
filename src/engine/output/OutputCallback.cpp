#include "engine/output/OutputCallback.h"

#include <algorithm>
#include <cassert>

namespace qm {

void OutputCallback::fill(std::span<StereoFrame> out) noexcept {
    assert(m_deviceThread.isHere());
    while (!out.empty()) {
        takeSplice();
        const bool running = m_gate.isWanted();  // asked once: it may change at any time
        if (m_gate.isShut()) m_gain.settle();
        std::span<StereoFrame> part = out;
        if (!running && m_gate.isShut()) {
            rest(part);
        } else if (const std::size_t ready = m_lanes.framesInOneGo(m_gate.framesOfRamp(running, out.size()))) {
            part = out.first(ready);
            play(part, running);
        } else {
            rest(part);
            runDry(running);
        }
        m_meter.takeDeviceMix(part);
        out = out.subspan(part.size());
    }
}

void OutputCallback::takeSplice() {
    const bool inSilence = m_gate.isShut();
    if (m_lanes.takeSplice(inSilence) && inSilence) m_stamps.add(0, m_lanes.playing(), false);
}

void OutputCallback::play(std::span<StereoFrame> out, bool running) {
    m_wasDry = false;
    m_stamps.add(out.size(), m_lanes.playing(), true);
    m_lanes.read(out);
    m_gate.apply(out, running);
    m_meter.takeStereoMix(out);
    m_gain.apply(out);
    m_limiter.process(out);
}

// Nothing is ready though it should be, unless the sound has come to its end.
void OutputCallback::runDry(bool running) {
    if (!m_lanes.playing().ended && !m_wasDry) m_underruns.fetch_add(1, std::memory_order_relaxed);
    m_wasDry = true;
    m_lanes.runDry();
    if (!running) m_gate.shut();
}

void OutputCallback::rest(std::span<StereoFrame> out) {
    std::fill(out.begin(), out.end(), StereoFrame{});
    m_stamps.add(out.size(), m_lanes.playing(), false);
}

void OutputCallback::handOverFilling() {
    m_deviceThread.handOver();
    m_lanes.handOverReading();
}

void OutputCallback::settleWhileStopped() {
    assert(m_deviceThread.isHere());
    m_gate.shut();
    takeSplice();
    m_meter.fallSilent();
    handOverFilling();
}

void OutputCallback::restartDeviceCount() {
    assert(m_deviceThread.isHere());
    m_stamps.restart(m_lanes.playing());
    handOverFilling();
}

}  // namespace qm
