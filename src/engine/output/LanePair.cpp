#include "engine/output/LanePair.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

Lane* LanePair::idle() {
    assert(m_writer.isHere());
    if (m_settled.load(std::memory_order_acquire) != m_issued.load(std::memory_order_relaxed)) return nullptr;
    return &m_lanes[1 - m_written];
}

void LanePair::splice(const Splice& splice) {
    assert(m_writer.isHere());
    m_pending = splice;
    m_written = 1 - m_written;
    m_issued.fetch_add(1, std::memory_order_release);
}

bool LanePair::takeSplice(bool inSilence) {
    if (m_fading && inSilence) finishFade();
    if (m_fading) return false;
    if (!m_due) {
        const std::uint64_t issued = m_issued.load(std::memory_order_acquire);
        if (issued == m_taken) return false;
        m_taken = issued;
        m_due = true;
    }
    const Lane& lane = playing();
    if (!inSilence && lane.frames.available() > 0 && lane.consumed() < m_pending.atFrame) return false;
    change(inSilence);
    return true;
}

void LanePair::change(bool inSilence) {
    m_due = false;
    if (!m_pending.unrelated && !inSilence) catchUp();
    m_playing = 1 - m_playing;
    m_fading = true;
    m_fadeDone = 0;
    // Against silence the new lane fades in; against sound the fade lasts no longer than that sound does.
    const auto left = static_cast<std::uint32_t>(m_lanes[1 - m_playing].frames.available());
    m_fadeFrames = left > 0 ? std::min(m_pending.fadeFrames, left) : m_pending.fadeFrames;
    if (inSilence || m_fadeFrames == 0) finishFade();
}

// The playing lane has played on while the splice was late: what the new one has for that time is past.
void LanePair::catchUp() {
    const Lane& old = playing();
    Lane& lane = m_lanes[1 - m_playing];
    const auto late = static_cast<double>(old.consumed() - std::min(old.consumed(), m_pending.atFrame));
    const auto past = static_cast<std::size_t>(std::llround(late * old.header.speed / lane.header.speed));
    if (past + m_pending.fadeFrames < lane.frames.available()) lane.frames.skip(past);
}

std::size_t LanePair::framesInOneGo(std::size_t most) const {
    std::size_t run = std::min({most, m_old.size(), playing().frames.available()});
    if (m_fading) run = std::min<std::size_t>(run, m_fadeFrames - m_fadeDone);
    const std::uint64_t consumed = playing().consumed();
    if (m_due && m_pending.atFrame > consumed) run = std::min<std::size_t>(run, m_pending.atFrame - consumed);
    return run;
}

void LanePair::read(std::span<StereoFrame> out) {
    m_lanes[m_playing].frames.read(out);
    if (m_fading) mixOldLane(out);
}

void LanePair::mixOldLane(std::span<StereoFrame> out) {
    const std::span<StereoFrame> old(m_old.data(), out.size());
    const std::size_t got = m_lanes[1 - m_playing].frames.read(old);
    std::fill(old.begin() + static_cast<std::ptrdiff_t>(got), old.end(), StereoFrame{});
    for (std::size_t i = 0; i < out.size(); ++i) {
        const float into = (static_cast<float>(m_fadeDone++) + 0.5f) / static_cast<float>(m_fadeFrames);
        const float angle = into * std::numbers::pi_v<float> / 2;
        out[i] = m_pending.unrelated ? out[i] * std::sin(angle) + old[i] * std::cos(angle)
                                     : out[i] * into + old[i] * (1 - into);
    }
    if (m_fadeDone == m_fadeFrames) finishFade();
}

void LanePair::runDry() {
    if (m_fading && playing().ended) finishFade();
}

void LanePair::finishFade() {
    m_lanes[1 - m_playing].frames.discard();
    m_fading = false;
    m_settled.store(m_taken, std::memory_order_release);
}

}  // namespace qm
