#include "engine/video/PictureCache.h"

#include <algorithm>

namespace qm {

void PictureCache::add(Shown shown) {
    const double begin = shown.begin;
    remove(begin);
    m_bytes += shown.picture.bytes;
    m_pictures.emplace(begin, std::move(shown));
}

void PictureCache::remove(double begin) {
    const auto found = m_pictures.find(begin);
    if (found != m_pictures.end()) {
        m_bytes -= found->second.picture.bytes;
        m_pictures.erase(found);
    }
}

const PictureCache::Shown* PictureCache::at(double seconds) const {
    auto next = m_pictures.upper_bound(seconds);
    if (next == m_pictures.begin()) {
        return nullptr;
    }
    const Shown& shown = std::prev(next)->second;
    return seconds < shown.end ? &shown : nullptr;
}

const PictureCache::Shown* PictureCache::before(const Shown& shown) const {
    const auto found = m_pictures.lower_bound(shown.begin);
    if (found == m_pictures.begin()) {
        return nullptr;
    }
    const Shown& previous = std::prev(found)->second;
    return previous.end == shown.begin ? &previous : nullptr;
}

double PictureCache::coveredFrom(const Span& span, std::int64_t leastPixels) const {
    double reached = span.begin;
    while (reached < span.end) {
        const Shown* shown = at(reached);
        if (!shown || (shown->picture.reduced && shown->picture.pixels < leastPixels)) {
            return reached;
        }
        reached = shown->end;
    }
    return span.end;
}

double PictureCache::coveredBackFrom(const Span& span) const {
    double reached = span.end;
    while (reached > span.begin) {
        auto next = m_pictures.lower_bound(reached);
        if (next == m_pictures.begin()) {
            return reached;
        }
        const Shown& shown = std::prev(next)->second;
        if (shown.end < reached) {
            return reached;
        }
        reached = shown.begin;
    }
    return span.begin;
}

void PictureCache::keepOnly(const std::vector<Span>& spans) {
    std::erase_if(m_pictures, [&](const auto& entry) {
        const Shown& shown = entry.second;
        const bool wanted = std::any_of(spans.begin(), spans.end(),
                                        [&](const Span& span) { return span.touches(shown.begin, shown.end); });
        m_bytes -= wanted ? 0 : shown.picture.bytes;
        return !wanted;
    });
}

void PictureCache::trim(const Span& span, std::size_t bytes, bool fromBegin) {
    std::vector<double> within;
    std::size_t held = 0;
    for (const auto& [begin, shown] : m_pictures) {
        if (begin >= span.begin && shown.end <= span.end) {
            within.push_back(begin);
            held += shown.picture.bytes;
        }
    }
    if (!fromBegin) {
        std::reverse(within.begin(), within.end());
    }
    for (auto begin = within.begin(); begin != within.end() && held > bytes; ++begin) {
        held -= m_pictures.find(*begin)->second.picture.bytes;
        remove(*begin);
    }
}

void PictureCache::clear() {
    m_pictures.clear();
    m_bytes = 0;
}

std::size_t PictureCache::bytesIn(const Span& span) const {
    std::size_t bytes = 0;
    for (const auto& [begin, shown] : m_pictures) {
        bytes += span.touches(begin, shown.end) ? shown.picture.bytes : 0;
    }
    return bytes;
}

const PictureCache::Shown* PictureCache::largerThan(std::int64_t pixels, const Span& span) const {
    const auto found = std::find_if(m_pictures.begin(), m_pictures.end(), [&](const auto& entry) {
        const Shown& shown = entry.second;
        return shown.picture.pixels > pixels && shown.begin >= span.begin && shown.end <= span.end;
    });
    return found == m_pictures.end() ? nullptr : &found->second;
}

}  // namespace qm
