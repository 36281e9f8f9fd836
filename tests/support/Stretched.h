// Sound put through the renderer at a speed and pitch, and what can be measured of it.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <numbers>
#include <vector>

#include "engine/render/Renderer.h"
#include "support/Signals.h"

namespace qm::test {

inline constexpr int kRate = 44100;

inline std::vector<float> render(std::int64_t length, std::function<StereoFrame(std::int64_t)> sound,
                                 const Playhead& head, RenderSettings settings, std::size_t frames,
                                 Stretcher stretcher = Stretcher::Library, std::int64_t step = 0) {
    PcmCache cache(std::make_unique<ComputedSound>(length, std::move(sound)));
    Renderer renderer(cache, stretcher);
    REQUIRE(renderer.begin(head, settings, true, step));
    std::vector<StereoFrame> out(frames);
    REQUIRE(renderer.render(out));
    std::vector<float> left(frames);
    for (std::size_t i = 0; i < frames; ++i) left[i] = out[i].left;
    return left;
}

// Frequency by the usual phase advance of the tone between two windows.
inline double frequencyOf(const std::vector<float>& x, double expected) {
    const auto phaseAt = [&](std::size_t begin, std::size_t n) {
        double re = 0, im = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const double window = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(n));
            const double angle = 2 * std::numbers::pi * expected * double(begin + i) / kRate;
            re += window * x[begin + i] * std::cos(angle);
            im -= window * x[begin + i] * std::sin(angle);
        }
        return std::atan2(im, re);
    };
    const std::size_t n = 8192, hop = 2048;
    std::vector<double> advances;
    for (std::size_t b = 8192; b + hop + n < x.size(); b += hop)
        advances.push_back(std::remainder(phaseAt(b + hop, n) - phaseAt(b, n), 2 * std::numbers::pi));
    std::nth_element(advances.begin(), advances.begin() + std::ptrdiff_t(advances.size() / 2), advances.end());
    return expected + advances[advances.size() / 2] * kRate / (2 * std::numbers::pi * double(hop));
}

inline double energy(const std::vector<float>& x, std::size_t begin, std::size_t count) {
    double sum = 0;
    for (std::size_t i = begin; i < std::min(begin + count, x.size()); ++i) sum += double(x[i]) * x[i];
    return sum;
}

}  // namespace qm::test
