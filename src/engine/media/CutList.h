// Gathers, packet by packet, which decoded frames are not meant to be heard. A value; bounded, so that a hostile file
// with a cut in every packet costs neither memory nor time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "engine/media/KeptRanges.h"
#include "engine/media/SkipRequest.h"

namespace qm {

class CutList {
public:
    void add(std::int64_t packetStart, std::int64_t packetFrames, const SkipRequest& skip) {
        if (skip.whole) {
            add(packetStart, packetStart + packetFrames);
        }
        if (skip.atStart > 0) {
            add(packetStart, packetStart + skip.atStart);
        }
        if (skip.atEnd > 0) {
            add(packetStart + std::max<std::int64_t>(packetFrames - skip.atEnd, 0), packetStart + packetFrames);
        }
    }

    KeptRanges kept(std::int64_t decodedFrames) const {
        KeptRanges ranges(decodedFrames);
        for (const auto& [first, last] : m_cuts) {
            ranges.cut(first, last);
        }
        return ranges;
    }

private:
    static constexpr std::size_t kMostCuts = 1000;

    void add(std::int64_t first, std::int64_t last) {
        if (!m_cuts.empty() && first >= m_cuts.back().first && first <= m_cuts.back().second) {
            m_cuts.back().second = std::max(m_cuts.back().second, last);
        } else if (m_cuts.size() < kMostCuts) {
            m_cuts.emplace_back(first, last);
        }
    }

    std::vector<std::pair<std::int64_t, std::int64_t>> m_cuts;
};

}  // namespace qm
