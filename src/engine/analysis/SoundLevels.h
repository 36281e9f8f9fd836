// A whole track's sound at a glance: the least and the largest sample and the loudness of each 512 frames, in three
// bytes, and of four, sixteen ... times as many, so that any stretch is summed up quickly. At most 4 MB: for longer
// tracks the parts double until they fit. Written from the beginning by one thread, read by any.
#pragma once

#include <cstdint>
#include <limits>
#include <mutex>
#include <vector>

namespace qm {

// What is drawn of the frames that share one column: samples of both channels.
struct Column {
    float least = 0;
    float most = 0;
    float loudness = 0;    // root of the mean square
    bool isKnown = false;  // otherwise all is 0

    friend bool operator==(const Column&, const Column&) = default;
};

// Column `number` of `count` over [begin, end) has the frames from here to the place of the next one.
inline std::int64_t columnPlace(std::int64_t begin, std::int64_t end, std::int64_t number, std::int64_t count) {
    return begin + (end - begin) * number / count;
}

// Sums up the samples of one stretch.
class ColumnSum {
public:
    void add(const float* stereo, std::int64_t frames);
    std::int64_t frames() const { return m_frames; }
    Column column() const;

private:
    float m_least = std::numeric_limits<float>::infinity(), m_most = -std::numeric_limits<float>::infinity();
    double m_squares = 0;
    std::int64_t m_frames = 0;
};

class SoundLevels {
public:
    static constexpr std::int64_t kLeastPart = 512;  // frames
    static constexpr std::int64_t kMostBytes = 4000000;

    explicit SoundLevels(std::int64_t length);  // frames

    std::int64_t partFrames() const { return m_partFrames; }
    std::int64_t bytes() const;

    // The next frames of the track; the last part may be short.
    void add(const float* stereo, std::int64_t frames);

    // The columns of [begin, end), each to the nearest part; those that have not been reached are not known.
    std::vector<Column> columns(std::int64_t begin, std::int64_t end, std::int64_t count) const;

private:
    struct Part {
        std::int8_t least, most;
        std::uint8_t loudness;
    };
    static constexpr std::int64_t kFold = 4;  // parts of one level in a part of the next

    void push(std::size_t level, Part part);
    Column columnOf(std::int64_t first, std::int64_t last) const;

    const std::int64_t m_length;
    std::int64_t m_partFrames = kLeastPart;
    std::int64_t m_added = 0;
    ColumnSum m_sum;
    mutable std::mutex m_mutex;
    std::vector<std::vector<Part>> m_levels;  // the finest first; guarded
};

}  // namespace qm
