#include "engine/media/Resampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace qm {

namespace {

constexpr int kZeroCrossings = 24;
constexpr std::int64_t kMostTabled = 2000;  // phases
constexpr double kPassed = 0.95;            // of the band, below the filter's slope

double blackman(double x) {  // x in -1..1
    return 0.42 + 0.5 * std::cos(std::numbers::pi * x) + 0.08 * std::cos(2 * std::numbers::pi * x);
}

}  // namespace

Resampler::Resampler(int fromRate, int toRate) {
    const int divisor = std::gcd(fromRate, toRate);
    m_from = fromRate / divisor;
    m_to = toRate / divisor;
    m_cutoff = kPassed * std::min(1.0, static_cast<double>(toRate) / fromRate);
    m_reach = static_cast<int>(std::ceil(kZeroCrossings / m_cutoff));
    if (m_to <= kMostTabled && m_to * m_reach <= 1000000) {
        const auto width = static_cast<std::size_t>(2 * m_reach);
        m_table.resize(static_cast<std::size_t>(m_to) * width);
        for (std::int64_t phase = 0; phase < m_to; ++phase) {
            weights(phase, m_table.data() + static_cast<std::size_t>(phase) * width);
        }
    }
}

void Resampler::weights(std::int64_t phase, float* target) const {
    const double fraction = static_cast<double>(phase) / static_cast<double>(m_to);
    double sum = 0;
    const auto weight = [&](int i) {
        const double x = i - m_reach + 1 - fraction;
        const double y = std::numbers::pi * m_cutoff * x;
        const double sinc = std::abs(y) < 1e-9 ? 1.0 : std::sin(y) / y;
        return std::abs(x) >= m_reach ? 0.0 : sinc * blackman(x / m_reach);
    };
    for (int i = 0; i < 2 * m_reach; ++i) {
        sum += weight(i);
    }
    for (int i = 0; i < 2 * m_reach; ++i) {
        target[i] = static_cast<float>(weight(i) / sum);
    }
}

Resampler::Need Resampler::need(std::int64_t first, std::int64_t count) const {
    const std::int64_t from = first * m_from / m_to - m_reach + 1;
    const std::int64_t to = (first + count - 1) * m_from / m_to + m_reach + 1;
    return {from, to - from};
}

std::int64_t Resampler::outputLength(std::int64_t inputLength) const {
    return (inputLength * m_to + m_from - 1) / m_from;
}

void Resampler::add(std::int64_t first, std::int64_t count, const float* input, float* stereo) const {
    const std::int64_t origin = need(first, count).first;
    const int width = 2 * m_reach;
    std::vector<float> computed(m_table.empty() ? static_cast<std::size_t>(width) : 0);
    for (std::int64_t n = 0; n < count; ++n) {
        const std::int64_t place = (first + n) * m_from;
        const float* taps = computed.data();
        if (m_table.empty()) {
            weights(place % m_to, computed.data());
        } else {
            taps = m_table.data() + (place % m_to) * width;
        }
        const float* source = input + 2 * (place / m_to - m_reach + 1 - origin);
        float left = 0;
        float right = 0;
        for (int i = 0; i < width; ++i) {
            left += taps[i] * source[2 * i];
            right += taps[i] * source[2 * i + 1];
        }
        stereo[2 * n] += left;
        stereo[2 * n + 1] += right;
    }
}

}  // namespace qm
