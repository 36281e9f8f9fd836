#include "engine/output/OutputCallback.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr float kGainStep = 1.0f / 220;  // per frame: full scale in about 5 ms

float approach(float value, float target) {
    return value + std::clamp(target - value, -kGainStep, kGainStep);
}

}  // namespace

OutputCallback::OutputCallback(std::size_t laneFrames, int sampleRate)
    : m_lanes{Lane(laneFrames), Lane(laneFrames)}, m_meter(sampleRate) {}

Lane* OutputCallback::idleLane() {
    if (m_settled.load(std::memory_order_acquire) != m_issued.load(std::memory_order_relaxed)) return nullptr;
    return &m_lanes[1 - m_writtenLane];
}

void OutputCallback::splice(const Splice& splice) {
    m_pending = splice;
    m_writtenLane = 1 - m_writtenLane;
    m_issued.fetch_add(1, std::memory_order_release);
}

void OutputCallback::settleWhileStopped() {
    m_gate = 0;
    m_gateClosed.store(true, std::memory_order_release);
    takeSplice();
    if (m_fading) finishFade();
    m_meter.fallSilent();
}

void OutputCallback::setGains(float left, float right) {
    m_targetLeft.store(left, std::memory_order_relaxed);
    m_targetRight.store(right, std::memory_order_relaxed);
}

void OutputCallback::restartDeviceCount() {
    const auto last = stampAt(m_deviceFrame.load(std::memory_order_relaxed));
    m_deviceFrame.store(0, std::memory_order_relaxed);
    m_stampCount.store(0, std::memory_order_release);
    if (last) stamp(0, false);
}

void OutputCallback::fill(std::span<StereoFrame> out) noexcept {
    while (!out.empty()) {
        takeSplice();
        const std::size_t produced = step(out);
        m_meter.takeDeviceMix(out.first(produced));
        out = out.subspan(produced);
    }
}

// Looks for a splice, and carries it out when it is due.
void OutputCallback::takeSplice() {
    if (m_fading) return;
    if (!m_spliceDue) {
        const std::uint64_t issued = m_issued.load(std::memory_order_acquire);
        if (issued == m_taken) return;
        m_taken = issued;
        m_spliceDue = true;
    }
    const Lane& lane = m_lanes[m_active];
    const bool dry = lane.frames.available() == 0;
    if (m_gate == 0 || dry || lane.consumed() >= m_pending.atFrame) switchLane();
}

void OutputCallback::switchLane() {
    m_spliceDue = false;
    if (!m_pending.unrelated && m_gate > 0) catchUp();
    m_active = 1 - m_active;
    m_fading = true;
    m_fadeDone = 0;
    // Against silence the new lane fades in; against sound the fade lasts no longer than that sound does.
    const auto left = static_cast<std::uint32_t>(m_lanes[1 - m_active].frames.available());
    m_fadeFrames = left > 0 ? std::min(m_pending.fadeFrames, left) : m_pending.fadeFrames;
    if (m_gate == 0 || m_fadeFrames == 0) finishFade();
    if (m_gate == 0) stamp(0, false);
}

// The active lane has played on while the splice was late: what the new one has for that time is past.
void OutputCallback::catchUp() {
    const Lane& old = m_lanes[m_active];
    Lane& lane = m_lanes[1 - m_active];
    const auto late = static_cast<double>(old.consumed() - std::min(old.consumed(), m_pending.atFrame));
    const auto past = static_cast<std::size_t>(std::llround(late * old.header.speed / lane.header.speed));
    if (past + m_pending.fadeFrames < lane.frames.available()) lane.frames.skip(past);
}

void OutputCallback::finishFade() {
    m_lanes[1 - m_active].frames.discard();
    m_fading = false;
    m_settled.store(m_taken, std::memory_order_release);
}

// Produces frames up to the next change of state, at least one.
std::size_t OutputCallback::step(std::span<StereoFrame> out) {
    const bool running = m_running.load(std::memory_order_acquire);
    Lane& lane = m_lanes[m_active];
    if (m_gate == 0) {
        m_left = m_targetLeft.load(std::memory_order_relaxed);
        m_right = m_targetRight.load(std::memory_order_relaxed);
        if (m_fading) finishFade();
    }
    if (!running && m_gate == 0) {
        std::fill(out.begin(), out.end(), StereoFrame{});
        stamp(out.size(), false);
        return out.size();
    }
    const bool gateMoves = m_gate != (running ? kGateFrames : 0);
    std::size_t run = framesUntilChange(out.size());
    if (gateMoves) run = std::min(run, running ? kGateFrames - m_gate : m_gate);
    run = std::min(run, lane.frames.available());
    if (run == 0) {
        if (!lane.ended && !m_wasDry) m_underruns.fetch_add(1, std::memory_order_relaxed);
        m_wasDry = true;
        m_gate = running ? m_gate : 0;
        if (m_fading && lane.ended) finishFade();
        std::fill(out.begin(), out.end(), StereoFrame{});
        stamp(out.size(), false);
        m_gateClosed.store(m_gate == 0, std::memory_order_release);
        return out.size();
    }
    m_wasDry = false;
    stamp(run, true);
    const auto produced = out.first(run);
    lane.frames.read(produced);
    if (m_fading) mixFadingLane(produced);
    if (gateMoves) applyGate(produced, running);
    m_meter.takeStereoMix(produced);
    applyGain(produced);
    return run;
}

std::size_t OutputCallback::framesUntilChange(std::size_t most) const {
    std::size_t run = std::min(most, m_scratch.size());
    if (m_fading) run = std::min<std::size_t>(run, m_fadeFrames - m_fadeDone);
    if (m_spliceDue) {
        const std::uint64_t consumed = m_lanes[m_active].consumed();
        if (m_pending.atFrame > consumed) run = std::min<std::size_t>(run, m_pending.atFrame - consumed);
    }
    return run;
}

void OutputCallback::mixFadingLane(std::span<StereoFrame> out) {
    const std::span<StereoFrame> old(m_scratch.data(), out.size());
    const std::size_t got = m_lanes[1 - m_active].frames.read(old);
    std::fill(old.begin() + static_cast<std::ptrdiff_t>(got), old.end(), StereoFrame{});
    for (std::size_t i = 0; i < out.size(); ++i) {
        const float into = (static_cast<float>(m_fadeDone++) + 0.5f) / static_cast<float>(m_fadeFrames);
        const float angle = into * std::numbers::pi_v<float> / 2;
        out[i] = m_pending.unrelated ? out[i] * std::sin(angle) + old[i] * std::cos(angle)
                                     : out[i] * into + old[i] * (1 - into);
    }
    if (m_fadeDone == m_fadeFrames) finishFade();
}

void OutputCallback::applyGate(std::span<StereoFrame> out, bool opening) {
    for (StereoFrame& frame : out) {
        m_gate += opening ? 1 : -1;
        frame = frame * (static_cast<float>(m_gate) / kGateFrames);
    }
    m_gateClosed.store(m_gate == 0, std::memory_order_release);
}

void OutputCallback::applyGain(std::span<StereoFrame> out) {
    const float left = m_targetLeft.load(std::memory_order_relaxed);
    const float right = m_targetRight.load(std::memory_order_relaxed);
    for (StereoFrame& frame : out) {
        m_left = approach(m_left, left);
        m_right = approach(m_right, right);
        frame = {frame.left * m_left, frame.right * m_right};
    }
    m_limiter.process(out);
}

void OutputCallback::stamp(std::size_t frames, bool moving) {
    const Lane& lane = m_lanes[m_active];
    const std::int64_t deviceFrame = m_deviceFrame.load(std::memory_order_relaxed);
    Stamp stamp;
    stamp.deviceFrame = deviceFrame;
    stamp.frames = static_cast<std::int64_t>(frames);
    stamp.step = lane.header.firstStep + static_cast<double>(lane.consumed()) * lane.header.speed;
    stamp.stepsPerFrame = moving ? lane.header.speed : 0;
    stamp.lane = lane.header;
    const std::uint64_t count = m_stampCount.load(std::memory_order_relaxed);
    m_stamps[count % kStamps].store(stamp);
    m_stampCount.store(count + 1, std::memory_order_release);
    m_deviceFrame.store(deviceFrame + static_cast<std::int64_t>(frames), std::memory_order_relaxed);
}

std::optional<Stamp> OutputCallback::stampAt(std::int64_t deviceFrame) const {
    const std::uint64_t count = m_stampCount.load(std::memory_order_acquire);
    const std::uint64_t oldest = count > kStamps - 8 ? count - (kStamps - 8) : 0;
    std::optional<Stamp> earliest;
    for (std::uint64_t n = count; n-- > oldest;) {
        const auto stamp = m_stamps[n % kStamps].tryLoad();
        if (!stamp) continue;
        if (stamp->deviceFrame <= deviceFrame) return stamp;
        earliest = stamp;
    }
    return earliest;
}

}  // namespace qm
