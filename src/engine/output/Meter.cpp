#include "engine/output/Meter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qm {

namespace {

constexpr int kSlicesPerSecond = 40;
constexpr unsigned kHoldSeconds = 2;  // a peak stands before it gives way to lower ones

float inDecibels(double power) {
    constexpr double kFloorPower = 2.5118864e-10;
    return power > kFloorPower ? static_cast<float>(10 * std::log10(power)) : Meter::kFloor;
}

}  // namespace

Meter::Meter(int sampleRate)
    : m_sliceFrames(static_cast<std::size_t>(std::max(1, sampleRate / kSlicesPerSecond))),
      m_holdSlices(kHoldSeconds * kSlicesPerSecond),
      m_split(sampleRate) {
    m_published.store({});
}

Meter::Levels Meter::levels() const {
    while (true)
        if (const auto levels = m_published.tryLoad()) return *levels;
}

// Switched off, it forgets what it has measured.
bool Meter::isWanted() noexcept {
    if (volumeEnabled() || bandsEnabled()) return true;
    fallSilent();
    return false;
}

void Meter::takeStereoMix(std::span<const StereoFrame> frames) noexcept {
    if (!bandsEnabled()) return;
    m_split.raise(m_slices[m_current].bands, frames);
    m_stereoMixTaken = true;
    m_silent = false;
}

void Meter::takeDeviceMix(std::span<const StereoFrame> frames) noexcept {
    if (!isWanted()) return;
    if (!std::exchange(m_stereoMixTaken, false)) m_split.clear();
    while (!frames.empty()) {
        const auto run = frames.first(std::min(frames.size(), m_sliceFrames - m_frames));
        Slice& slice = m_slices[m_current];
        for (const StereoFrame& frame : run) {
            slice.power[0] += double(frame.left) * double(frame.left);
            slice.power[1] += double(frame.right) * double(frame.right);
            slice.peak[0] = std::max(slice.peak[0], std::abs(frame.left));
            slice.peak[1] = std::max(slice.peak[1], std::abs(frame.right));
        }
        m_silent = false;
        m_frames += run.size();
        if (m_frames == m_sliceFrames) closeSlice();
        frames = frames.subspan(run.size());
    }
}

void Meter::closeSlice() noexcept {
    holdPeaks(m_slices[m_current]);
    publish();
    m_current = (m_current + 1) % kSlices;
    m_slices[m_current] = {};
    m_frames = 0;
}

void Meter::holdPeaks(const Slice& slice) noexcept {
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
        const bool gaveWay = ++m_heldFor[channel] > m_holdSlices;
        if (!gaveWay && slice.peak[channel] < m_peakHeld[channel]) continue;
        m_peakHeld[channel] = slice.peak[channel];
        m_heldFor[channel] = 0;
    }
}

void Meter::publish() noexcept {
    Levels levels;
    const auto frames = static_cast<double>(kSlices * m_sliceFrames);
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
        double power = 0;
        for (const Slice& slice : m_slices) power += slice.power[channel];
        levels.averagePower[channel] = inDecibels(power / frames);
        levels.peakHold[channel] = inDecibels(double(m_peakHeld[channel]) * double(m_peakHeld[channel]));
        for (std::size_t band = 0; band < kBands; ++band) {
            float highest = 0;
            for (const Slice& slice : m_slices) highest = std::max(highest, slice.bands[channel][band]);
            levels.bands[channel][band] = std::min(highest, 1.0f);
        }
    }
    m_published.store(levels);
}

void Meter::fallSilent() noexcept {
    if (m_silent) return;
    m_slices = {};
    m_frames = 0;
    m_peakHeld = {};
    m_heldFor = {};
    m_stereoMixTaken = false;
    m_split.clear();
    m_published.store({});
    m_silent = true;
}

}  // namespace qm
