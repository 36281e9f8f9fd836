#include "Passes.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <span>

#include "Line.h"

namespace qm::measure {

namespace {

constexpr std::size_t kHop = 44;  // frames of one step of the coarse search, a millisecond

// How much is going on: the high part of the sound, smoothed over a millisecond. Ticks stand out, held tones do not.
std::vector<float> activity(const std::vector<float>& samples) {
    std::vector<float> out(samples.size(), 0.0f);
    double sum = 0;
    auto high = [&](std::size_t i) { return double(std::abs(samples[i] - 2 * samples[i - 1] + samples[i - 2])); };
    for (std::size_t i = 2; i < samples.size(); ++i) {
        sum += high(i);
        if (i >= kHop + 2) {
            sum -= high(i - kHop);
        }
        out[i] = float(std::max(sum, 0.0) / kHop);
    }
    return out;
}

std::vector<float> everyHop(const std::vector<float>& values) {
    std::vector<float> out;
    for (std::size_t i = 0; i < values.size(); i += kHop) {
        out.push_back(values[i]);
    }
    return out;
}

// Likeness of two equally long stretches, -1 to 1.
double correlation(std::span<const float> a, std::span<const float> b) {
    double sa = 0, sb = 0, aa = 0, bb = 0, ab = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sa += a[i];
        sb += b[i];
        aa += double(a[i]) * a[i];
        bb += double(b[i]) * b[i];
        ab += double(a[i]) * b[i];
    }
    const double n = double(a.size());
    const double spread = std::sqrt((aa - sa * sa / n) * (bb - sb * sb / n));
    return spread > 0 ? (ab - sa * sb / n) / spread : 0;
}

double likenessAt(std::span<const float> values, std::size_t lag, std::size_t length) {
    return correlation(values.subspan(0, length), values.subspan(lag, length));
}

struct Peak {
    double lag;
    double likeness;
};

// The most alike lag of [from, to], between the steps by a parabola through its neighbours.
Peak bestLag(std::span<const float> values, std::size_t from, std::size_t to, std::size_t length) {
    std::vector<double> likeness;
    for (std::size_t lag = from; lag <= to; ++lag) {
        likeness.push_back(likenessAt(values, lag, length));
    }
    const auto best = std::max_element(likeness.begin(), likeness.end());
    Peak peak{double(from) + double(best - likeness.begin()), *best};
    if (best != likeness.begin() && best + 1 != likeness.end()) {
        const double bend = best[-1] - 2 * best[0] + best[1];
        peak.lag += bend < 0 ? 0.5 * (best[-1] - best[1]) / bend : 0;
    }
    return peak;
}

// The first lag, in hops, that is nearly as alike as the best one: multiples of the period are as good as the period.
std::optional<std::size_t> coarsePeriod(const std::vector<float>& hops, std::size_t shortest, std::size_t longest) {
    constexpr double kAlike = 0.5;
    if (hops.size() < 2 * longest) {
        return std::nullopt;
    }
    std::vector<double> likeness;
    for (std::size_t lag = shortest; lag <= longest; ++lag) {
        likeness.push_back(likenessAt(hops, lag, hops.size() - longest));
    }
    const double best = *std::max_element(likeness.begin(), likeness.end());
    if (best < kAlike) {
        return std::nullopt;
    }
    const auto first = std::find_if(likeness.begin(), likeness.end(), [&](double v) { return v > 0.85 * best; });
    const auto peak = std::max_element(first, first + std::min<std::ptrdiff_t>(20, likeness.end() - first));
    return shortest + std::size_t(peak - likeness.begin());
}

}  // namespace

std::optional<Period> findPeriod(const Sound& recording, std::size_t shortest, std::size_t longest) {
    const std::vector<float> values = activity(recording.left);
    const auto coarse = coarsePeriod(everyHop(values), shortest / kHop, longest / kHop);
    if (!coarse) {
        return std::nullopt;
    }
    // Each repetition is looked for where the ones before it put it, and the mean is the slope through all of them.
    const std::size_t length = std::min<std::size_t>(*coarse * kHop, kSampleRate);
    std::vector<double> places = {0.0};
    double period = double(*coarse * kHop);
    for (;;) {
        const auto near = std::size_t(std::lround(places.back() + period));
        const std::size_t reach = places.size() == 1 ? 3 * kHop : kHop;
        if (near + reach + length >= values.size()) {
            break;
        }
        places.push_back(bestLag(values, near - reach, near + reach, length).lag);
        period = places.back() / double(places.size() - 1);
    }
    const int passes = int(places.size()) - 1;
    if (passes == 0) {
        return std::nullopt;
    }
    const Line line = fitLine(places);
    double worst = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        worst = std::max(worst, std::abs(places[i] - line.at(double(i))));
    }
    return Period{line.slope, worst, passes};
}

std::optional<double> pitchInCents(const Sound& recording, double nominalHz) {
    constexpr std::size_t kWindow = kSampleRate / 10;
    std::vector<double> cents;
    std::complex<double> previous = 0;
    for (std::size_t start = 0; start + kWindow <= recording.frames(); start += kWindow) {
        std::complex<double> tone = 0;
        for (std::size_t i = 0; i < kWindow; ++i) {
            const double angle = 2 * std::numbers::pi * nominalHz * double(start + i) / kSampleRate;
            const double hann = 1 - std::cos(2 * std::numbers::pi * double(i) / double(kWindow));
            tone += hann * double(recording.right[start + i]) * std::polar(1.0, -angle);
        }
        if (std::abs(tone) > 1.0 && std::abs(previous) > 1.0) {
            const double turn = std::arg(tone * std::conj(previous));  // radians gained on the nominal tone in a window
            const double hz = nominalHz + turn / (2 * std::numbers::pi) * kSampleRate / double(kWindow);
            cents.push_back(1200 * std::log2(hz / nominalHz));
        }
        previous = tone;
    }
    if (cents.empty()) {
        return std::nullopt;
    }
    std::nth_element(cents.begin(), cents.begin() + std::ptrdiff_t(cents.size() / 2), cents.end());
    return cents[cents.size() / 2];
}

std::vector<Silence> findSilences(const Sound& recording) {
    std::vector<Silence> silences;
    std::size_t quiet = 0;
    bool heardSound = false;
    for (std::size_t i = 0; i < recording.frames(); ++i) {
        if (recording.silentAt(i)) {
            ++quiet;
            continue;
        }
        if (heardSound && quiet > 0) {
            silences.push_back({i - quiet, quiet});
        }
        heardSound = true;
        quiet = 0;
    }
    return silences;
}

}  // namespace qm::measure
