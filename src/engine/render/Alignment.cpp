#include "engine/render/Alignment.h"

#include <cmath>

namespace qm {

namespace {

double dot(std::span<const StereoFrame> a, std::span<const StereoFrame> b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += double(a[i].left) * b[i].left + double(a[i].right) * b[i].right;
    return sum;
}

}  // namespace

std::size_t bestAlignment(std::span<const StereoFrame> reference, std::span<const StereoFrame> candidate,
                          std::size_t reach) {
    constexpr double kSilence = 1e-9;
    const std::size_t lags = 2 * reach + 1;
    if (reference.size() < 64 || candidate.size() < reference.size() + lags) return reach;
    if (dot(reference, reference) < kSilence) return reach;
    std::size_t best = reach;
    double bestScore = 0;
    for (std::size_t lag = 0; lag < lags; ++lag) {
        const auto window = candidate.subspan(lag, reference.size());
        const double energy = dot(window, window);
        if (energy < kSilence) continue;
        const double score = dot(reference, window) / std::sqrt(energy);
        // A lag far from the middle is a jump of its own: it has to be better, not as good.
        const double distance =
            std::abs(static_cast<double>(lag) - static_cast<double>(reach)) / static_cast<double>(reach);
        const double weighted = score * (1.0 - 0.05 * distance);
        if (weighted > bestScore) {
            bestScore = weighted;
            best = lag;
        }
    }
    return best;
}

}  // namespace qm
