#include "engine/analysis/Attacks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace qm {

namespace {

constexpr std::int64_t kSnapMilliseconds = 150;
constexpr std::int64_t kReachMilliseconds = 18;   // of the attack finder's error, for soft notes
constexpr std::int64_t kBeforeMilliseconds = 50;  // of sound from which the following is foretold
constexpr int kOrder = 32;
constexpr double kOverFormer = 1.6;  // how far an error of the foretelling exceeds all of those before
constexpr double kOfLargest = 0.04;  // and which part of the attack's own it is at least
constexpr double kInaudible = 1e-5;

using Prediction = std::array<double, kOrder>;

// Burg's method: the sample that follows as a sum of those before it.
Prediction predictionFrom(std::span<const double> sound) {
    Prediction prediction{};
    std::vector<double> forward(sound.begin(), sound.end()), backward = forward;
    for (std::size_t order = 0; order < kOrder; ++order) {
        double both = 0, energy = 0;
        for (std::size_t n = order + 1; n < sound.size(); ++n) {
            both += forward[n] * backward[n - 1];
            energy += forward[n] * forward[n] + backward[n - 1] * backward[n - 1];
        }
        if (energy <= kInaudible * kInaudible) break;
        const double reflection = 2 * both / energy;
        for (std::size_t n = sound.size() - 1; n > order; --n) {
            const double former = forward[n];
            forward[n] = former - reflection * backward[n - 1];
            backward[n] = backward[n - 1] - reflection * former;
        }
        const Prediction shorter = prediction;
        prediction[order] = reflection;
        for (std::size_t i = 0; i < order; ++i) prediction[i] = shorter[i] - reflection * shorter[order - 1 - i];
    }
    return prediction;
}

double errorAt(const std::vector<double>& sound, const Prediction& prediction, std::size_t at) {
    double foretold = 0;
    for (std::size_t i = 0; i < kOrder; ++i) foretold += prediction[i] * sound[at - 1 - i];
    return std::abs(sound[at] - foretold);
}

// In one channel: the sum of both, or their difference where that is louder.
std::vector<double> oneChannel(const std::vector<float>& stereo) {
    std::vector<double> sum(stereo.size() / 2), difference(stereo.size() / 2);
    double ofSum = 0, ofDifference = 0;
    for (std::size_t n = 0; n < sum.size(); ++n) {
        sum[n] = static_cast<double>(stereo[2 * n]) + static_cast<double>(stereo[2 * n + 1]);
        difference[n] = static_cast<double>(stereo[2 * n]) - static_cast<double>(stereo[2 * n + 1]);
        ofSum += sum[n] * sum[n];
        ofDifference += difference[n] * difference[n];
    }
    return ofDifference > ofSum ? difference : sum;
}

}  // namespace

std::int64_t firstFrameOfRise(SoundReader& sound, std::int64_t attack) {
    const auto frames = [&](std::int64_t milliseconds) { return milliseconds * sound.sampleRate() / 1000; };
    const std::int64_t reach = frames(kReachMilliseconds), first = attack - reach - frames(kBeforeMilliseconds);
    const auto before = static_cast<std::size_t>(frames(kBeforeMilliseconds));
    std::vector<float> stereo(2 * (before + 2 * static_cast<std::size_t>(reach)));
    sound.read(first, stereo.data(), stereo.size() / 2);
    const std::vector<double> wave = oneChannel(stereo);
    const Prediction prediction = predictionFrom(std::span(wave).first(before));
    double former = kInaudible, largest = 0;
    std::vector<double> errors(wave.size());
    for (std::size_t n = kOrder; n < wave.size(); ++n) {
        errors[n] = errorAt(wave, prediction, n);
        (n < before ? former : largest) = std::max(n < before ? former : largest, errors[n]);
    }
    const double least = std::max(kOverFormer * former, kOfLargest * largest);
    for (std::size_t n = before; n < wave.size(); ++n)
        if (errors[n] > least) return first + static_cast<std::int64_t>(n);
    return attack;
}

std::vector<Attack> attacksBetween(SoundReader& sound, std::int64_t begin, std::int64_t end) {
    const std::int64_t reach = kReachMilliseconds * sound.sampleRate() / 1000;
    AttackMap map(sound.sampleRate());
    map.explore(begin - reach, end + reach, [&](std::int64_t first, std::span<StereoFrame> out) {
        return sound.read(first, &out.front().left, out.size());
    });
    std::vector<Attack> attacks;
    map.attacks(begin - reach, end + reach, attacks);
    for (Attack& attack : attacks) attack.frame = firstFrameOfRise(sound, attack.frame);
    std::erase_if(attacks, [&](const Attack& attack) { return attack.frame < begin || attack.frame >= end; });
    std::sort(attacks.begin(), attacks.end(), [](const Attack& a, const Attack& b) { return a.frame < b.frame; });
    return attacks;
}

std::vector<std::int64_t> attacksAround(SoundReader& sound, std::int64_t frame) {
    const std::int64_t reach = kSnapMilliseconds * sound.sampleRate() / 1000;
    std::vector<std::int64_t> frames;
    for (const Attack& attack :
         attacksBetween(sound, std::max<std::int64_t>(frame - reach, 0), std::min(frame + reach + 1, sound.length())))
        if (frames.empty() || attack.frame > frames.back()) frames.push_back(attack.frame);
    return frames;
}

}  // namespace qm
