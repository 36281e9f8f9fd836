#include "engine/output/MeterBands.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr double kHighestCrossover = 0.45;  // of the sample rate
constexpr float kInaudible = 1e-15f;        // below it a filter's memory only costs time
constexpr float kSenseless = 1e15f;

}  // namespace

MeterBands::Section::Section(double crossover, int sampleRate) {
    const double cycles = std::min(crossover / sampleRate, kHighestCrossover);
    const double w = 2 * std::numbers::pi * cycles;
    const double alpha = std::sin(w) / std::numbers::sqrt2;  // two sections with this damping make one crossover
    const double a0 = 1 + alpha;
    const double below = (1 - std::cos(w)) / 2;
    const double above = (1 + std::cos(w)) / 2;
    const auto lanes = [a0](double low, double high) {
        const auto l = static_cast<float>(low / a0), h = static_cast<float>(high / a0);
        return Four{l, l, h, h};
    };
    m_b0 = m_b2 = lanes(below, above);
    m_b1 = lanes(2 * below, -2 * above);
    m_a1 = lanes(-2 * std::cos(w), -2 * std::cos(w));
    m_a2 = lanes(1 - alpha, 1 - alpha);
}

inline MeterBands::Four MeterBands::Section::step(Four in) noexcept {
    const Four out = m_b0 * in + m_z1;
    m_z1 = m_b1 * in - m_a1 * out + m_z2;
    m_z2 = m_b2 * in - m_a2 * out;
    return out;
}

// Drops what has died away, and what no sound can have left behind.
void MeterBands::Section::settle() noexcept {
    for (Four* memory : {&m_z1, &m_z2}) {
        for (int i = 0; i < 4; ++i) {
            const float size = std::abs((*memory)[i]);
            if (!(size > kInaudible && size < kSenseless)) (*memory)[i] = 0;
        }
    }
}

void MeterBands::Section::clear() noexcept {
    m_z1 = m_z2 = Four{};
}

inline MeterBands::Four MeterBands::Crossover::split(float left, float right) noexcept {
    return m_sections[1].step(m_sections[0].step(Four{left, right, left, right}));
}

void MeterBands::Crossover::settle() noexcept {
    for (Section& section : m_sections) section.settle();
}

void MeterBands::Crossover::clear() noexcept {
    for (Section& section : m_sections) section.clear();
}

MeterBands::MeterBands(int sampleRate)
    : m_middle(kCrossovers[1], sampleRate), m_low(kCrossovers[0], sampleRate), m_high(kCrossovers[2], sampleRate) {}

void MeterBands::raise(Peaks& peaks, std::span<const StereoFrame> frames) noexcept {
    Four lower = {}, upper = {};
    for (const StereoFrame& frame : frames) {
        const Four halves = m_middle.split(frame.left, frame.right);
        lower = largerSize(lower, m_low.split(halves[0], halves[1]));
        upper = largerSize(upper, m_high.split(halves[2], halves[3]));
    }
    for (Crossover* crossover : {&m_middle, &m_low, &m_high}) crossover->settle();
    for (int channel = 0; channel < 2; ++channel) {
        const float bands[kBands] = {lower[channel], lower[2 + channel], upper[channel], upper[2 + channel]};
        auto& own = peaks[static_cast<std::size_t>(channel)];
        for (std::size_t band = 0; band < kBands; ++band) own[band] = std::max(own[band], bands[band]);
    }
}

void MeterBands::clear() noexcept {
    for (Crossover* crossover : {&m_middle, &m_low, &m_high}) crossover->clear();
}

}  // namespace qm
