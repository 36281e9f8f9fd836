#include "engine/sound/Tone.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr double kBassHertz = 200;
constexpr double kTrebleHertz = 3000;
constexpr double kMostDecibels = 12;

double decibelsOf(std::int16_t setting) {
    return (std::clamp<int>(setting, 0, 256) - 128) / 128.0 * kMostDecibels;
}

}  // namespace

double Tone::State::next(const Biquad& f, double x) {
    const double y = f.b0 * x + s1;
    s1 = f.b1 * x - f.a1 * y + s2;
    s2 = f.b2 * x - f.a2 * y;
    return y;
}

Tone::Biquad Tone::shelf(bool high, double hertz, double decibels, int sampleRate) {
    const double a = std::pow(10.0, decibels / 40);
    const double w = 2 * std::numbers::pi * std::min(hertz / sampleRate, 0.45);
    const double cosine = std::cos(w) * (high ? -1 : 1);
    const double alpha = std::sin(w) / 2 * std::numbers::sqrt2;
    const double root = 2 * std::sqrt(a) * alpha;
    const double a0 = (a + 1) + (a - 1) * cosine + root;
    const double sign = high ? -1 : 1;
    Biquad f;
    f.b0 = a * ((a + 1) - (a - 1) * cosine + root) / a0;
    f.b1 = sign * 2 * a * ((a - 1) - (a + 1) * cosine) / a0;
    f.b2 = a * ((a + 1) - (a - 1) * cosine - root) / a0;
    f.a1 = sign * -2 * ((a - 1) + (a + 1) * cosine) / a0;
    f.a2 = ((a + 1) + (a - 1) * cosine - root) / a0;
    return f;
}

void Tone::set(const ToneSettings& settings, int sampleRate) {
    m_neutral = settings.neutral();
    m_low = shelf(false, kBassHertz, decibelsOf(settings.bass), sampleRate);
    m_high = shelf(true, kTrebleHertz, decibelsOf(settings.treble), sampleRate);
    reset();
}

void Tone::reset() {
    m_lowState = {};
    m_highState = {};
}

void Tone::process(std::span<StereoFrame> frames) {
    if (m_neutral) return;
    for (StereoFrame& frame : frames) {
        frame.left = static_cast<float>(m_highState[0].next(m_high, m_lowState[0].next(m_low, frame.left)));
        frame.right = static_cast<float>(m_highState[1].next(m_high, m_lowState[1].next(m_low, frame.right)));
    }
}

}  // namespace qm
