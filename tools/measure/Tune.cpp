#include "Tune.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace qm::measure {

namespace {

// A small repeatable generator: the tune is the same on every machine.
class Dice {
public:
    std::uint32_t next(std::uint32_t sides) {
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 16) % sides;
    }
    double noise() { return double(next(65536)) / 32768.0 - 1.0; }

private:
    std::uint32_t m_state = 20;
};

void addPluck(std::vector<float>& out, std::size_t at, double hz) {
    for (std::size_t i = 0; i < kSampleRate && at + i < out.size(); ++i) {
        const double t = double(i) / kSampleRate;
        const double phase = 2 * std::numbers::pi * hz * t;
        out[at + i] += float(0.22 * std::exp(-5 * t) * (std::sin(phase) + 0.4 * std::sin(2 * phase)));
    }
}

void addTick(std::vector<float>& out, std::size_t at, double strength, Dice& dice) {
    for (std::size_t i = 0; i < kSampleRate / 40 && at + i < out.size(); ++i) {
        out[at + i] += float(strength * std::exp(-double(i) / 150.0) * dice.noise());
    }
}

}  // namespace

Sound makeTune(int seconds) {
    constexpr std::array kPentatonic = {220.0, 261.63, 293.66, 329.63, 392.0, 523.25, 587.33, 659.26};
    const auto frames = std::size_t(seconds) * kSampleRate;
    Sound tune{std::vector<float>(frames), std::vector<float>(frames)};
    Dice dice;
    for (std::size_t at = kSampleRate / 10; at < frames; at += (2 + dice.next(5)) * kSampleRate / 20) {
        addPluck(tune.left, at, kPentatonic[dice.next(kPentatonic.size())]);
        addTick(tune.left, at, 0.1 + 0.3 * dice.next(4) / 3.0, dice);
    }
    for (std::size_t i = 0; i < frames; ++i) {
        tune.right[i] = float(0.3 * std::sin(2 * std::numbers::pi * kSteadyToneHz * double(i) / kSampleRate));
    }
    return tune;
}

}  // namespace qm::measure
