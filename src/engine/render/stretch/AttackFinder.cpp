#include "engine/render/stretch/AttackFinder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr int kLongest = 8192;            // at 44.1 kHz
constexpr std::size_t kRiseHalvings = 4;  // rises are looked for in windows of 512
constexpr std::int64_t kGridAround = 4;   // choices on either side that are heard about one

// In frames of the levels, 2 ms apart.
constexpr std::ptrdiff_t kNewestBefore = 5, kOldestBefore = 17, kPeakReach = 11, kUsualReach = 62;

constexpr float kLeastRise = 0.07f;  // over what is usual there
constexpr float kClearRise = 0.15f;
constexpr float kBroadRise = 0.30f;
constexpr float kLeastJump = 0.3f;
constexpr float kClearJump = 0.8f;
constexpr float kSteep = 1.0f;   // ten decibels
constexpr double kMostJump = 4;  // of a band: out of silence
constexpr double kJumpSeconds = 0.003;
constexpr double kEarliest = 0.018, kLatest = 0.016;  // seconds around the rise within which the jump lies
constexpr std::int64_t kJumpStep = 8;                 // frames
constexpr float kNearlyMost = 0.97f;
constexpr double kApart = 0.025;

constexpr double kEnergyEdges[] = {80, 500, 2000, 6000, 14000};

struct Coefficients {
    double b0, b1, b2, a1, a2;
};

// Second-order sections in their transposed direct form II, as many as there are lanes.
template <std::size_t kLanes>
struct Sections {
    using Lanes = std::array<double, kLanes>;
    Lanes b0, b1, b2, a1, a2, s1{}, s2{};

    void set(std::size_t lane, const Coefficients& c) {
        b0[lane] = c.b0;
        b1[lane] = c.b1;
        b2[lane] = c.b2;
        a1[lane] = c.a1;
        a2[lane] = c.a2;
    }

    void advance(Lanes& x) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const double y = b0[lane] * x[lane] + s1[lane];
            s1[lane] = b1[lane] * x[lane] - a1[lane] * y + s2[lane];
            s2[lane] = b2[lane] * x[lane] - a2[lane] * y;
            x[lane] = y;
        }
    }
};

Coefficients butterworth(bool high, double hertz, int sampleRate) {
    const double k = std::tan(std::numbers::pi * std::min(hertz / sampleRate, 0.49));
    const double norm = 1 / (1 + std::numbers::sqrt2 * k + k * k);
    const double a1 = 2 * (k * k - 1) * norm, a2 = (1 - std::numbers::sqrt2 * k + k * k) * norm;
    if (high) return {norm, -2 * norm, norm, a1, a2};
    return {k * k * norm, 2 * k * k * norm, k * k * norm, a1, a2};
}

}  // namespace

AttackFinder::AttackFinder(int sampleRate, std::int64_t blockFrames)
    : m_rate(sampleRate),
      m_factor(AttackMap::windowFactor(sampleRate)),
      m_block(blockFrames),
      m_margin((kLongest + kGridAround * 512) * m_factor),
      m_grid(512 * m_factor),
      m_hop(std::llround(0.002 * sampleRate)),
      m_reach(kLongest * m_factor / 2) {
    for (int size = kLongest * m_factor; size >= 512 * m_factor; size /= 2) {
        m_transforms.push_back(std::make_unique<RealFft>(size));
        auto& window = m_windows.emplace_back(static_cast<std::size_t>(size));
        for (int i = 0; i < size; ++i)
            window[static_cast<std::size_t>(i)] =
                static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / size));
    }
    const auto longest = static_cast<std::size_t>(kLongest * m_factor);
    m_sound.resize(longest);
    m_spectrum.resize(longest / 2 + 1);
    m_power.resize(longest / 2 + 1);

    const int size = m_transforms[kRiseHalvings]->size();
    const auto mel = [](double hertz) { return 1127 * std::log1p(hertz / 700); };
    const auto hertz = [](double mels) { return 700 * std::expm1(mels / 1127); };
    const double low = mel(60), step = (mel(14000) - low) / (kMelBands + 1);
    for (int band = 0; band < kMelBands; ++band) {
        const double a = hertz(low + band * step), b = hertz(low + (band + 1) * step),
                     c = hertz(low + (band + 2) * step);
        const auto bin = [&](double f) { return static_cast<std::size_t>(f * size / m_rate); };
        auto& weights = m_melWeights[static_cast<std::size_t>(band)];
        std::size_t& first = m_melFirst[static_cast<std::size_t>(band)];
        first = bin(a) + 1;
        for (std::size_t k = first; k <= std::min(bin(c), static_cast<std::size_t>(size / 2)); ++k) {
            const double f = static_cast<double>(k) * m_rate / size;
            weights.push_back(static_cast<float>(f < b ? (f - a) / (b - a) : (c - f) / (c - b)));
        }
        if (weights.empty()) {
            first =
                std::min(static_cast<std::size_t>(std::llround(b * size / m_rate)), static_cast<std::size_t>(size / 2));
            weights.push_back(1);
        }
    }
    const auto length = static_cast<std::size_t>(m_block + 2 * m_margin);
    for (auto& plane : m_planes) plane.resize(length + 2 * static_cast<std::size_t>(m_reach));
    m_levels.resize(length / static_cast<std::size_t>(m_hop));
    m_highest.resize(m_levels.size());
    m_rises.resize(m_levels.size());
    for (auto& sums : m_energies) sums.resize(length + 1);
    m_picks.resize(static_cast<std::size_t>(m_block / m_grid + 2 * kGridAround));
    for (auto& scores : m_scores)
        for (auto& score : scores) score.resize(m_picks.size());
    for (auto& sums : m_sums) sums.reserve(length / 64 + 2);
}

void AttackFinder::find(std::span<const StereoFrame> sound, std::int64_t firstFrame, AttackMap::Block& into) {
    spread(sound);
    findLevels();
    findRises();
    findEnergies();
    findAttacks(firstFrame, into);
    chooseWindows(into);
}

void AttackFinder::spread(std::span<const StereoFrame> sound) {
    for (std::size_t i = 0; i < sound.size(); ++i) {
        m_planes[0][static_cast<std::size_t>(m_reach) + i] = sound[i].left;
        m_planes[1][static_cast<std::size_t>(m_reach) + i] = sound[i].right;
    }
}

// The power spectrum of both channels around a frame.
void AttackFinder::spectrumAt(std::size_t which, std::int64_t centre) {
    const RealFft& transform = *m_transforms[which];
    const auto size = static_cast<std::size_t>(transform.size());
    const auto bins = static_cast<std::size_t>(transform.bins());
    const float* window = m_windows[which].data();
    std::fill_n(m_power.begin(), bins, 0.0f);
    for (const auto& plane : m_planes) {
        const float* from = plane.data() + m_reach + centre - transform.size() / 2;
        float* into = m_sound.data();
        for (std::size_t i = 0; i < size; ++i) into[i] = from[i] * window[i];
        transform.forward(into, m_spectrum.data());
        for (std::size_t k = 0; k < bins; ++k) m_power[k] += std::norm(m_spectrum[k]);
    }
}

void AttackFinder::findLevels() {
    float most = 0;
    for (std::size_t frame = 0; frame < m_levels.size(); ++frame) {
        spectrumAt(kRiseHalvings, static_cast<std::int64_t>(frame) * m_hop);
        for (std::size_t band = 0; band < kMelBands; ++band) {
            float energy = 0;
            const auto& weights = m_melWeights[band];
            for (std::size_t k = 0; k < weights.size(); ++k) energy += weights[k] * m_power[m_melFirst[band] + k];
            m_levels[frame][band] = energy;
            most = std::max(most, energy);
        }
    }
    for (Levels& levels : m_levels)
        for (float& level : levels) level = std::log10(level + 1e-6f * most + 1e-7f);
}

void AttackFinder::findRises() {
    for (std::size_t frame = 0; frame < m_levels.size(); ++frame)
        for (std::size_t band = 0; band < kMelBands; ++band) {
            const Levels& l = m_levels[frame];
            m_highest[frame][band] =
                std::max({l[band], l[band > 0 ? band - 1 : band], l[band + 1 < kMelBands ? band + 1 : band]});
        }
    const auto count = static_cast<std::ptrdiff_t>(m_levels.size());
    for (std::ptrdiff_t frame = 0; frame < count; ++frame) {
        float rise = 0;
        if (frame >= kOldestBefore) {
            Levels before = m_highest[static_cast<std::size_t>(frame - kOldestBefore)];
            for (std::ptrdiff_t f = frame - kOldestBefore + 1; f <= frame - kNewestBefore; ++f)
                for (std::size_t band = 0; band < kMelBands; ++band)
                    before[band] = std::max(before[band], m_highest[static_cast<std::size_t>(f)][band]);
            for (std::size_t band = 0; band < kMelBands; ++band)
                rise += std::max(0.0f, m_levels[static_cast<std::size_t>(frame)][band] - before[band]);
        }
        m_rises[static_cast<std::size_t>(frame)] = rise / kMelBands;
    }
}

// The median of the rises around a frame.
float AttackFinder::usualRise(std::size_t frame) {
    const std::size_t first = frame > kUsualReach ? frame - kUsualReach : 0;
    const std::size_t last = std::min(frame + kUsualReach + 1, m_rises.size());
    m_sorted.assign(m_rises.begin() + static_cast<std::ptrdiff_t>(first),
                    m_rises.begin() + static_cast<std::ptrdiff_t>(last));
    const auto middle = m_sorted.begin() + static_cast<std::ptrdiff_t>(m_sorted.size() / 2);
    std::nth_element(m_sorted.begin(), middle, m_sorted.end());
    return *middle;
}

// The bands' filters run side by side, because each of them waits for itself from frame to frame.
void AttackFinder::findEnergies() {
    constexpr std::size_t kLanes = 2 * kEnergyBands;  // of either channel
    const auto window = static_cast<std::size_t>(kJumpSeconds * m_rate);
    const std::size_t length = m_energies[0].size() - 1;
    const auto first = static_cast<std::size_t>(m_reach);
    Sections<kLanes> low, high;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        low.set(lane, butterworth(false, kEnergyEdges[lane / 2 + 1], m_rate));
        high.set(lane, butterworth(true, kEnergyEdges[lane / 2], m_rate));
    }
    std::array<double, kEnergyBands> most{};
    for (std::size_t i = 0; i < length; ++i) {
        std::array<double, kLanes> x;
        for (std::size_t lane = 0; lane < kLanes; ++lane) x[lane] = static_cast<double>(m_planes[lane % 2][first + i]);
        high.advance(x);
        low.advance(x);
        for (std::size_t band = 0; band < kEnergyBands; ++band) {
            auto& sums = m_energies[band];
            sums[i + 1] = sums[i] + x[2 * band] * x[2 * band] + x[2 * band + 1] * x[2 * band + 1];
            if (i >= window) most[band] = std::max(most[band], sums[i + 1] - sums[i + 1 - window]);
        }
    }
    for (std::size_t band = 0; band < kEnergyBands; ++band) m_floor[band] = 1e-6 * most[band] + 1e-10;
}

// How much the energies after a place exceed those before it, in tens of decibels over all bands.
float AttackFinder::jumpAt(std::int64_t at, int& steepBands) const {
    const auto window = static_cast<std::int64_t>(kJumpSeconds * m_rate);
    steepBands = 0;
    if (at < window || at + window >= static_cast<std::int64_t>(m_energies[0].size())) return 0;
    float jump = 0;
    for (std::size_t band = 0; band < kEnergyBands; ++band) {
        const auto& sums = m_energies[band];
        const double here = sums[static_cast<std::size_t>(at)];
        const double after = sums[static_cast<std::size_t>(at + window)] - here + m_floor[band];
        const double before = here - sums[static_cast<std::size_t>(at - window)] + m_floor[band];
        const auto step = static_cast<float>(std::clamp(std::log10(after / before), 0.0, kMostJump));
        if (step >= kSteep) ++steepBands;
        jump += step;
    }
    return jump;
}

// The last of the places between two that jump as much as any, nearly: where the energies after it are whole.
AttackFinder::Jump AttackFinder::steepest(std::int64_t from, std::int64_t to) const {
    Jump best;
    int steepBands = 0;
    for (std::int64_t at = from; at < to; at += kJumpStep) best.most = std::max(best.most, jumpAt(at, steepBands));
    for (std::int64_t at = from; at < to; at += kJumpStep) {
        if (jumpAt(at, steepBands) < kNearlyMost * best.most) continue;
        best.place = at;
        best.steepBands = steepBands;
    }
    return best;
}

void AttackFinder::findAttacks(std::int64_t firstFrame, AttackMap::Block& into) {
    into.attacks.clear();
    const auto count = static_cast<std::ptrdiff_t>(m_rises.size());
    std::int64_t last = -m_rate;
    for (std::ptrdiff_t frame = kPeakReach; frame < count - kPeakReach; ++frame) {
        const float rise = m_rises[static_cast<std::size_t>(frame)];
        const auto around = m_rises.begin() + frame;
        if (rise <= kLeastRise || rise < *std::max_element(around - kPeakReach, around + kPeakReach + 1)) continue;
        if (rise <= kLeastRise + usualRise(static_cast<std::size_t>(frame))) continue;
        const std::int64_t from = frame * m_hop - std::llround(kEarliest * m_rate);
        const std::int64_t to = frame * m_hop + std::llround(kLatest * m_rate);
        const auto [place, most, steepBands] = steepest(from, to);
        if (most <= kLeastJump || place - last < std::llround(kApart * m_rate)) continue;
        last = place;
        const std::int64_t inBlock = place - m_margin;
        if (inBlock < 0 || inBlock >= m_block) continue;
        const Confidence confidence = rise >= kBroadRise && steepBands >= 3      ? Confidence::High
                                      : rise >= kClearRise && most >= kClearJump ? Confidence::Medium
                                                                                 : Confidence::Low;
        into.attacks.push_back({firstFrame + inBlock, confidence, rise});
    }
}

// How sparse the energies of the bands are in windows of one length, along the grid.
void AttackFinder::gather(std::size_t which) {
    const int size = m_transforms[which]->size();
    const std::int64_t hop = size / 4;
    const auto bin = [&](double hertz) {
        return static_cast<std::size_t>(std::clamp(hertz * size / m_rate, 1.0, size / 2.0));
    };
    for (auto& sums : m_sums) sums.clear();
    for (std::int64_t centre = 0; centre < m_block + 2 * m_margin; centre += hop) {
        spectrumAt(which, centre);
        for (int band = 0; band < AttackMap::kBands; ++band) {
            if (AttackMap::longestWindow(band, m_rate) < size) continue;
            Sum sum;
            const std::size_t last = bin(AttackMap::bandEdge(band + 1));
            for (std::size_t k = bin(AttackMap::bandEdge(band)); k <= last; ++k) {
                sum.squares += static_cast<double>(m_power[k]) * m_power[k];
                sum.powers += static_cast<double>(m_power[k]);
            }
            m_sums[static_cast<std::size_t>(band)].push_back(sum);
        }
    }
    for (int band = 0; band < AttackMap::kBands; ++band) {
        const int halvings = std::countr_zero(static_cast<unsigned>(AttackMap::longestWindow(band, m_rate) / size));
        if (AttackMap::longestWindow(band, m_rate) < size ||
            halvings >= AttackMap::kWindows[static_cast<std::size_t>(band)])
            continue;
        score(m_sums[static_cast<std::size_t>(band)], hop,
              m_scores[static_cast<std::size_t>(band)][static_cast<std::size_t>(halvings)]);
    }
}

void AttackFinder::score(const std::vector<Sum>& sums, std::int64_t hop, std::vector<float>& into) const {
    const std::int64_t reach = std::max<std::int64_t>(kLongest * m_factor / hop / 2, 1);
    for (std::size_t i = 0; i < into.size(); ++i) {
        const std::int64_t at = m_margin + (static_cast<std::int64_t>(i) - kGridAround) * m_grid + m_grid / 2;
        const auto from = static_cast<std::size_t>(std::max<std::int64_t>(at / hop - reach, 0));
        const auto to = std::min(static_cast<std::size_t>(at / hop + reach), sums.size() - 1);
        Sum sum;
        for (std::size_t k = from; k <= to; ++k) {
            sum.squares += sums[k].squares;
            sum.powers += sums[k].powers;
        }
        into[i] = static_cast<float>(sum.squares * static_cast<double>(to - from + 1) /
                                     (sum.powers * sum.powers + 1e-30) * static_cast<double>(hop));
    }
}

void AttackFinder::chooseWindows(AttackMap::Block& into) {
    for (std::size_t which = 0; which < kRiseHalvings; ++which) gather(which);  // the shortest suits no band
    for (int band = 0; band < AttackMap::kBands; ++band) {
        const int lengths = AttackMap::kWindows[static_cast<std::size_t>(band)];
        const auto& scores = m_scores[static_cast<std::size_t>(band)];
        for (std::size_t i = 0; i < m_picks.size(); ++i) {
            m_picks[i] = 0;
            for (std::uint8_t h = 1; h < lengths; ++h)
                if (scores[h][i] > scores[m_picks[i]][i]) m_picks[i] = h;
        }
        auto& choice = into.halvings[static_cast<std::size_t>(band)];
        choice.resize(m_picks.size() - 2 * kGridAround);
        for (std::size_t i = 0; i < choice.size(); ++i) {
            std::array<std::uint8_t, 2 * kGridAround + 1> around;
            std::copy_n(m_picks.begin() + static_cast<std::ptrdiff_t>(i), around.size(), around.begin());
            std::nth_element(around.begin(), around.begin() + kGridAround, around.end());
            choice[i] = around[kGridAround];
        }
    }
}

}  // namespace qm
