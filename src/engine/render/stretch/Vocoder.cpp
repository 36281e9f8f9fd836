#include "engine/render/stretch/Vocoder.h"

#include <algorithm>

namespace qm {

namespace {

constexpr std::size_t kBlock = 1024;

}  // namespace

Vocoder::Vocoder(int sampleRate, AttackMap& attacks)
    : m_attacks(attacks),
      m_source(AttackMap::longestWindow(0, sampleRate)),
      m_bands{GrainBand(0, sampleRate, m_transforms), GrainBand(1, sampleRate, m_transforms),
              GrainBand(2, sampleRate, m_transforms)},
      m_left(kBlock),
      m_right(kBlock) {}

void Vocoder::begin(Timeline& timeline, const Course& course, std::int64_t sourceBegin, bool light) {
    m_timeline = &timeline;
    m_course = course;
    m_place = course.first;
    m_source.open(timeline, sourceBegin, course.end);
    for (GrainBand& band : m_bands) band.begin(course, light);
}

void Vocoder::lookAround(Timeline& timeline, std::int64_t frame) {
    const std::int64_t longest = m_bands[0].longest();
    lookAhead(timeline, std::max<std::int64_t>(frame - 3 * longest, 0), frame + 4 * longest);
}

void Vocoder::lookAhead(Timeline& timeline, std::int64_t begin, std::int64_t end) {
    m_attacks.lookAhead(
        begin, end, [&](std::int64_t first, std::int64_t count) { return timeline.hasTrack(first, count); },
        [&](std::int64_t first, std::span<StereoFrame> frames) { return timeline.readTrack(first, frames); });
}

bool Vocoder::render(std::span<StereoFrame> out) {
    const std::int64_t longest = m_bands[0].longest();
    while (!out.empty()) {
        const std::span<StereoFrame> part = out.first(std::min(out.size(), kBlock));
        const std::int64_t until = m_place + static_cast<std::int64_t>(part.size());
        const std::int64_t begin = m_course.sourceOf(m_place - longest / 2) - longest;
        const std::int64_t end = std::min(m_course.sourceOf(until + longest / 2) + 3 * longest, m_course.end + 1);
        const auto read = [this](std::int64_t first, std::span<StereoFrame> frames) {
            return m_timeline->readTrack(first, frames);
        };
        if (!m_attacks.explore(std::max<std::int64_t>(begin, 0), end, read)) return false;
        const std::int64_t beyond = m_timeline->playhead().backward ? begin - 1 : end;
        if (beyond >= 0 && beyond < m_course.end) lookAhead(*m_timeline, beyond, beyond + 1);
        const std::span<float> left(m_left.data(), part.size()), right(m_right.data(), part.size());
        std::fill(left.begin(), left.end(), 0.0f);
        std::fill(right.begin(), right.end(), 0.0f);
        for (GrainBand& band : m_bands) {
            if (!band.advance(until, m_source, m_attacks)) return false;
            band.take(left, right);
        }
        for (std::size_t i = 0; i < part.size(); ++i) part[i] = {left[i], right[i]};
        m_place = until;
        out = out.subspan(part.size());
    }
    return true;
}

}  // namespace qm
