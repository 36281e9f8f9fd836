#include "engine/render/stretch/SourceWindow.h"

#include <algorithm>

namespace qm {

namespace {

constexpr std::int64_t kRead = 2048;  // frames read at once

}  // namespace

SourceWindow::SourceWindow(std::int64_t longestLook) : m_capacity(6 * longestLook + 2 * kRead), m_steps(kRead) {
    for (auto& plane : m_planes) plane.resize(static_cast<std::size_t>(m_capacity));
}

void SourceWindow::open(Timeline& timeline, std::int64_t begin, std::int64_t end) {
    m_timeline = &timeline;
    m_limitBegin = begin;
    m_limitEnd = end;
    m_begin = m_end = 0;
}

bool SourceWindow::ensure(std::int64_t first, std::int64_t last) {
    if (first >= m_begin && last <= m_end) return true;
    const bool goesOn = first >= m_begin && first <= m_end;
    const bool leadsUp = last <= m_end && last >= m_begin;
    if (goesOn) {
        last = std::max(last, m_end + kRead);
        if (last - m_begin > m_capacity) shift(std::max(first - m_capacity / 2, last - m_capacity));
        return load(m_end, last);
    }
    if (leadsUp) {
        first = std::min(first, m_begin - kRead);
        shift(first);
        const std::int64_t end = m_end;
        m_end = std::min(end, first + m_capacity);
        return load(first, m_begin);
    }
    m_begin = m_end = first;
    return load(first, last);
}

// Moves what is available so that the planes begin with another frame.
void SourceWindow::shift(std::int64_t newBegin) {
    for (auto& plane : m_planes) {
        if (newBegin > m_begin)
            std::copy(plane.begin() + (newBegin - m_begin), plane.begin() + (m_end - m_begin), plane.begin());
        else
            std::copy_backward(plane.begin(),
                               plane.begin() + std::min(m_end - m_begin, m_capacity - (m_begin - newBegin)),
                               plane.begin() + std::min(m_end - newBegin, m_capacity));
    }
    if (newBegin > m_begin) m_begin = newBegin;
}

// Frames before what is available, or after it.
bool SourceWindow::load(std::int64_t first, std::int64_t last) {
    const bool before = first < m_begin;
    if (before) m_begin = first;
    const Playhead& playhead = m_timeline->playhead();
    for (std::int64_t done = 0; done < last - first;) {
        const std::int64_t count = std::min(kRead, last - first - done);
        // In the order of play, so that the tone's filters go on where they were.
        const std::int64_t from = playhead.backward ? last - done - count : first + done;
        const std::span<StereoFrame> steps(m_steps.data(), static_cast<std::size_t>(count));
        const std::int64_t step = playhead.backward ? playhead.start - from - count : from - playhead.start;
        const bool outside = from + count <= m_limitBegin || from >= m_limitEnd;
        if (outside)
            std::fill(steps.begin(), steps.end(), StereoFrame{});
        else if (!m_timeline->readUnfaded(step, steps))
            return m_begin = m_end = 0, false;
        if (playhead.backward) std::reverse(steps.begin(), steps.end());
        for (std::int64_t i = 0; i < count; ++i) {
            const bool inside = from + i >= m_limitBegin && from + i < m_limitEnd;
            const StereoFrame f = inside ? steps[static_cast<std::size_t>(i)] : StereoFrame{};
            m_planes[0][static_cast<std::size_t>(from + i - m_begin)] = f.left;
            m_planes[1][static_cast<std::size_t>(from + i - m_begin)] = f.right;
        }
        done += count;
    }
    m_end = std::max(m_end, last);
    return true;
}

}  // namespace qm
