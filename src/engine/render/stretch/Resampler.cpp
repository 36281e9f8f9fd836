#include "engine/render/stretch/Resampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr int kLobes = 32;     // of the sinc, to either side
constexpr int kPerLobe = 512;  // values of the kernel, between which lines are drawn
constexpr double kBeta = 9.0;  // of the Kaiser window: 90 dB
constexpr double kPassband = 0.96;

double bessel0(double x) {
    double sum = 1, term = 1;
    for (int k = 1; k < 40; ++k) {
        term *= (x / (2 * k)) * (x / (2 * k));
        sum += term;
    }
    return sum;
}

}  // namespace

Resampler::Resampler() : m_kernel(kLobes * kPerLobe + 2) {
    const double whole = bessel0(kBeta);
    for (int i = 0; i <= kLobes * kPerLobe; ++i) {
        const double x = static_cast<double>(i) / kPerLobe;
        const double r = x / kLobes;
        const double window = bessel0(kBeta * std::sqrt(std::max(0.0, 1 - r * r))) / whole;
        const double angle = std::numbers::pi * x;
        m_kernel[static_cast<std::size_t>(i)] = static_cast<float>(i == 0 ? 1.0 : std::sin(angle) / angle * window);
    }
}

std::int64_t Resampler::reach(double factor) {
    return static_cast<std::int64_t>(std::ceil(kLobes * std::max(1.0, factor) / kPassband)) + 1;
}

void Resampler::setFactor(double factor) {
    m_factor = factor;
    m_cutoff = kPassband / std::max(1.0, factor);
    m_reach = reach(factor);
}

StereoFrame Resampler::at(double place, std::span<const StereoFrame> sound, std::int64_t firstPlace) const {
    const auto base = static_cast<std::int64_t>(std::floor(place));
    const double fraction = place - static_cast<double>(base);
    const double scale = m_cutoff * kPerLobe;
    const auto end = static_cast<double>(kLobes * kPerLobe);
    double left = 0, right = 0;
    for (std::int64_t k = -m_reach + 1; k <= m_reach; ++k) {
        const double x = std::abs(static_cast<double>(k) - fraction) * scale;
        if (x >= end) continue;
        const auto i = static_cast<std::size_t>(x);
        const auto part = static_cast<float>(x - static_cast<double>(i));
        const float weight = m_kernel[i] + part * (m_kernel[i + 1] - m_kernel[i]);
        const StereoFrame& f = sound[static_cast<std::size_t>(base + k - firstPlace)];
        left += weight * f.left;
        right += weight * f.right;
    }
    return {static_cast<float>(left * m_cutoff), static_cast<float>(right * m_cutoff)};
}

}  // namespace qm
