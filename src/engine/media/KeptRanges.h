// Which of a track's decoded frames are meant to be heard: all but the encoder's delay and padding and what the
// container's edits leave out. Maps heard frames to decoded ones. A value, pure.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace qm {

class KeptRanges {
public:
    explicit KeptRanges(std::int64_t decodedFrames = 0);

    void cut(std::int64_t first, std::int64_t last);  // decoded frames [first, last) are not heard
    void truncate(std::int64_t heardFrames);          // no more than so many are heard

    std::int64_t length() const { return m_length; }  // heard frames

    struct Range {  // decoded frames [first, last)
        std::int64_t first;
        std::int64_t last;
    };
    std::optional<Range> only() const;  // none where what is heard has a gap in it, or nothing is

    // Calls fn(decodedFirst, count, offset) for each stretch of [first, first + count) that is heard without a break;
    // `offset` counts from `first`.
    template <typename Fn>
    void forEach(std::int64_t first, std::int64_t count, Fn&& fn) const {
        std::int64_t heard = 0;
        for (const Range& range : m_ranges) {
            const std::int64_t from = std::max(first, heard);
            const std::int64_t to = std::min(first + count, heard + range.last - range.first);
            if (from < to) {
                fn(range.first + from - heard, to - from, from - first);
            }
            heard += range.last - range.first;
        }
    }

private:
    void measure();

    std::vector<Range> m_ranges;
    std::int64_t m_length = 0;
};

}  // namespace qm
