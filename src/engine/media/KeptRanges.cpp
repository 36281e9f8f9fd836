#include "engine/media/KeptRanges.h"

namespace qm {

KeptRanges::KeptRanges(std::int64_t decodedFrames) : m_length(std::max<std::int64_t>(decodedFrames, 0)) {
    if (m_length > 0) {
        m_ranges.push_back({0, m_length});
    }
}

std::optional<KeptRanges::Range> KeptRanges::only() const {
    return m_ranges.size() == 1 ? std::optional(m_ranges.front()) : std::nullopt;
}

void KeptRanges::measure() {
    std::erase_if(m_ranges, [](const Range& range) { return range.first >= range.last; });
    m_length = 0;
    for (const Range& range : m_ranges) {
        m_length += range.last - range.first;
    }
}

void KeptRanges::cut(std::int64_t first, std::int64_t last) {
    if (first >= last) {
        return;
    }
    std::vector<Range> kept;
    kept.reserve(m_ranges.size() + 1);
    for (const Range& range : m_ranges) {
        if (range.last <= first || range.first >= last) {
            kept.push_back(range);
            continue;
        }
        kept.push_back({range.first, std::min(range.last, first)});
        kept.push_back({std::max(range.first, last), range.last});
    }
    m_ranges = std::move(kept);
    measure();
}

void KeptRanges::truncate(std::int64_t heardFrames) {
    std::int64_t heard = 0;
    for (Range& range : m_ranges) {
        range.last = std::min(range.last, range.first + std::max<std::int64_t>(heardFrames - heard, 0));
        heard += range.last - range.first;
    }
    measure();
}

}  // namespace qm
