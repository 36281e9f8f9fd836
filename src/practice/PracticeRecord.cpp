#include "practice/PracticeRecord.h"

#include <algorithm>
#include <cmath>

namespace qm {

std::int64_t LoopEntry::moment() const {
    if (loop) return loop->changed;
    return removed > 0 ? removed : stored[QLatin1StringView("changed")].toInteger();
}

std::vector<const KeptLoop*> PracticeRecord::keptLoops() const {
    std::vector<const KeptLoop*> kept;
    for (const LoopEntry& entry : loops)
        if (entry.loop) kept.push_back(&*entry.loop);
    return kept;
}

void PracticeRecord::putPathInFront(const QString& path) {
    paths.removeAll(path);
    paths.prepend(path);
    paths.resize(std::min(paths.size(), kMostPaths));
}

PracticeRecord PracticeRecord::inScale(std::int64_t other) const {
    PracticeRecord record = *this;
    record.scale = other;
    if (other == scale || scale <= 0) return record;
    const auto convert = [&](std::int64_t& frame) {
        frame = std::llround(static_cast<double>(frame) * static_cast<double>(other) / static_cast<double>(scale));
    };
    for (LoopEntry& entry : record.loops)
        if (entry.loop) {
            convert(entry.loop->a);
            convert(entry.loop->b);
        }
    if (record.last) {
        convert(record.last->position);
        convert(record.last->a);
        convert(record.last->b);
    }
    return record;
}

}  // namespace qm
