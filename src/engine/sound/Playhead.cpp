#include "engine/sound/Playhead.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qm {

std::int64_t Playhead::frameAt(std::int64_t step) const {
    const std::int64_t first = stepsToBoundary();
    if (loops && step >= first && period() > 0) {
        const std::int64_t phase = (step - first) % period();
        return backward ? rangeEnd - 1 - phase : rangeBegin + phase;
    }
    return backward ? start - 1 - step : start + step;
}

std::int64_t Playhead::runFrom(std::int64_t step) const {
    if (!loops || period() <= 0) return std::numeric_limits<std::int64_t>::max();
    if (step < stepsToBoundary()) return stepsToBoundary() - step;
    return stepsToWrap(step);
}

std::int64_t Playhead::stepsToWrap(std::int64_t step) const {
    const std::int64_t first = stepsToBoundary();
    return step < first ? first - step : period() - (step - first) % period();
}

double Playhead::positionAt(double steps) const {
    steps = std::max(steps, 0.0);
    const auto first = static_cast<double>(stepsToBoundary());
    if (loops && period() > 0 && steps >= first) {
        const double phase = std::fmod(steps - first, static_cast<double>(period()));
        return backward ? static_cast<double>(rangeEnd) - phase : static_cast<double>(rangeBegin) + phase;
    }
    steps = std::min(steps, first);
    return backward ? static_cast<double>(start) - steps : static_cast<double>(start) + steps;
}

Playhead makePlayhead(std::int64_t start, bool backward, bool loops, std::int64_t begin, std::int64_t end,
                      std::int64_t length) {
    begin = std::clamp<std::int64_t>(begin, 0, length);
    end = std::clamp<std::int64_t>(end, 0, length);
    if (end <= begin) {
        begin = 0;
        end = length;
    }
    start = std::clamp<std::int64_t>(start, 0, length);
    if (loops) {
        const bool inside = backward ? start > begin && start <= end : start >= begin && start < end;
        if (!inside) start = backward ? end : begin;
    }
    return {start, begin, end, backward, loops && end > begin};
}

}  // namespace qm
