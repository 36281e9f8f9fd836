#include "engine/analysis/SoundLevels.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr float kSteps = 127;
constexpr float kLoudnessSteps = 255;  // of its root, so that quiet sound has steps, too

std::int64_t partsOf(std::int64_t frames, std::int64_t part) {
    return (frames + part - 1) / part;
}

std::int8_t step(float sample) {
    return static_cast<std::int8_t>(std::clamp(sample, -kSteps, kSteps));
}

float loudnessOf(std::uint8_t step) {
    const float root = static_cast<float>(step) / kLoudnessSteps;
    return root * root;
}

std::uint8_t loudnessStep(float loudness) {
    return static_cast<std::uint8_t>(std::lround(std::sqrt(std::clamp(loudness, 0.0f, 1.0f)) * kLoudnessSteps));
}

}  // namespace

// What is no number compares with nothing, and is left out.
void ColumnSum::add(const float* stereo, std::int64_t frames) {
    for (std::int64_t i = 0; i < 2 * frames; ++i) {
        const float sample = stereo[i];
        if (sample < m_least) m_least = sample;
        if (sample > m_most) m_most = sample;
        if (sample == sample) m_squares += static_cast<double>(sample) * static_cast<double>(sample);
    }
    m_frames += frames;
}

Column ColumnSum::column() const {
    if (m_frames == 0 || m_least > m_most) return {.isKnown = m_frames > 0};
    const double mean = m_squares / static_cast<double>(2 * m_frames);
    return {m_least, m_most, static_cast<float>(std::sqrt(mean)), true};
}

SoundLevels::SoundLevels(std::int64_t length) : m_length(length) {
    // A third more for the coarser levels.
    while (partsOf(length, m_partFrames) * static_cast<std::int64_t>(sizeof(Part)) * 4 / 3 > kMostBytes)
        m_partFrames *= 2;
    for (std::int64_t parts = partsOf(length, m_partFrames); parts > 0; parts /= kFold) {
        m_levels.emplace_back();
        m_levels.back().reserve(static_cast<std::size_t>(parts));
    }
}

std::int64_t SoundLevels::bytes() const {
    const std::lock_guard lock(m_mutex);
    std::int64_t all = 0;
    for (const auto& level : m_levels) all += static_cast<std::int64_t>(level.capacity() * sizeof(Part));
    return all;
}

void SoundLevels::add(const float* stereo, std::int64_t frames) {
    const std::lock_guard lock(m_mutex);
    frames = std::min(frames, m_length - m_added);
    while (frames > 0) {
        const std::int64_t count = std::min(frames, m_partFrames - m_sum.frames());
        m_sum.add(stereo, count);
        stereo += 2 * count;
        frames -= count;
        m_added += count;
        if (m_sum.frames() < m_partFrames && m_added < m_length) continue;
        const Column column = m_sum.column();
        push(0, {step(std::floor(column.least * kSteps)), step(std::ceil(column.most * kSteps)),
                 loudnessStep(column.loudness)});
        m_sum = {};
    }
}

void SoundLevels::push(std::size_t level, Part part) {
    auto& parts = m_levels[level];
    parts.push_back(part);
    if (level + 1 == m_levels.size() || std::ssize(parts) % kFold != 0) return;
    float squares = 0;
    for (auto one = parts.end() - kFold; one != parts.end(); ++one) {
        part.least = std::min(part.least, one->least);
        part.most = std::max(part.most, one->most);
        squares += loudnessOf(one->loudness) * loudnessOf(one->loudness);
    }
    part.loudness = loudnessStep(std::sqrt(squares / kFold));
    push(level + 1, part);
}

// Of the finest parts [first, last): by the coarsest ones that lie within.
Column SoundLevels::columnOf(std::int64_t first, std::int64_t last) const {
    if (first >= last || last > std::ssize(m_levels.front())) return {};
    int least = 127, most = -127;
    double squares = 0;
    for (std::int64_t at = first; at < last;) {
        std::size_t level = 0;
        std::int64_t size = 1;
        while (level + 1 < m_levels.size() && at % (size * kFold) == 0 && at + size * kFold <= last) {
            ++level;
            size *= kFold;
        }
        const Part& part = m_levels[level][static_cast<std::size_t>(at / size)];
        least = std::min<int>(least, part.least);
        most = std::max<int>(most, part.most);
        const double loudness = static_cast<double>(loudnessOf(part.loudness));
        squares += loudness * loudness * static_cast<double>(size);
        at += size;
    }
    const double mean = squares / static_cast<double>(last - first);
    return {static_cast<float>(least) / kSteps, static_cast<float>(most) / kSteps, static_cast<float>(std::sqrt(mean)),
            true};
}

std::vector<Column> SoundLevels::columns(std::int64_t begin, std::int64_t end, std::int64_t count) const {
    std::vector<Column> columns(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    const std::int64_t parts = partsOf(m_length, m_partFrames);
    if (parts == 0) return columns;
    const auto nearest = [&](std::int64_t frame) { return (frame + m_partFrames / 2) / m_partFrames; };
    const std::lock_guard lock(m_mutex);
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t from = columnPlace(begin, end, i, count), to = columnPlace(begin, end, i + 1, count);
        if (to <= 0 || from >= m_length) continue;
        const std::int64_t first = std::clamp<std::int64_t>(nearest(from), 0, parts - 1);
        const std::int64_t last = std::clamp<std::int64_t>(nearest(to), first + 1, parts);
        columns[static_cast<std::size_t>(i)] = columnOf(first, last);
    }
    return columns;
}

}  // namespace qm
